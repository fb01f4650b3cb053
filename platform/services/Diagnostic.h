#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/export.h"
#include "platform/services/CatalogMessage.h"

// Diagnostics: ordered lists of catalogued messages that are handed to a person. They are held by plain
// pointer; null is the diagnostic that says nothing. A diagnostic is used by one thread at a time.
//
//   ndsvDiagnosticImpl* result = nullptr;
//   ndsvConcatenateDiagnosticsNoCheck(result, ndsvCreateDiagnostic(message, u""), false);
//   std::cerr << lx::text::toUtf8(ndsvFormatDiagnostic(result)) << '\n';
//   ndsvDestroyDiagnostic(result);

struct ndsvDiagnosticImpl;

namespace lx::services {

/// What identifies a message, whatever its text and arguments.
struct MessageId {
  std::string catalogue;
  std::string key;

  bool operator==(const MessageId&) const = default;
};

}  // namespace lx::services

/// Create a diagnostic with one item, the message. A second text that isn't empty is put before the message
/// as its context, with a colon between the two. The caller owns the result. Throws what an allocation
/// throws.
ND_PLATFORM_EXPORT ndsvDiagnosticImpl* ndsvCreateDiagnostic(const lx::services::CatalogMessage& message,
                                                            const std::u16string& second);

/// Join added's items to those of result, behind them, or before them if addedFirst is true; added itself
/// becomes the result when result is null. Takes added over and frees it; a null added and result itself
/// change nothing. When an allocation throws, both diagnostics are as they were and added stays the caller's.
ND_PLATFORM_EXPORT void ndsvConcatenateDiagnosticsNoCheck(ndsvDiagnosticImpl*& result,
                                                          ndsvDiagnosticImpl* added, bool addedFirst);

/// Count the items of a diagnostic; null has none.
ND_PLATFORM_EXPORT std::size_t ndsvGetNumItemsInDiagnostic(const ndsvDiagnosticImpl* diagnostic) noexcept;

/// Free a diagnostic; null is borne.
ND_PLATFORM_EXPORT void ndsvDestroyDiagnostic(ndsvDiagnosticImpl* diagnostic) noexcept;

/// Get the finished sentence of an item, with its context. Throws `std::out_of_range` if there is no such
/// item.
ND_PLATFORM_EXPORT std::u16string ndsvGetDiagnosticItemText(const ndsvDiagnosticImpl* diagnostic,
                                                            std::size_t index);

/// Get the catalogue and key of an item's message. Throws `std::out_of_range` if there is no such item.
ND_PLATFORM_EXPORT lx::services::MessageId ndsvGetDiagnosticItemId(const ndsvDiagnosticImpl* diagnostic,
                                                                   std::size_t index);

/// Give all of a diagnostic as text for a person: one line for each item, in order, no line break behind the
/// last. A line break within an item's sentence becomes a blank. Null gives an empty text.
ND_PLATFORM_EXPORT std::u16string ndsvFormatDiagnostic(const ndsvDiagnosticImpl* diagnostic);

/// Count the diagnostics of the process that nobody has destroyed yet, for tests.
ND_PLATFORM_EXPORT std::size_t ndsvGetLiveDiagnosticCount() noexcept;

/// Let a function see each message before a diagnostic is made of it, for tests: what it throws leaves
/// `ndsvCreateDiagnostic`, and nothing has been made. An empty function ends that. Returns the former
/// function.
ND_PLATFORM_EXPORT std::function<void(const lx::services::CatalogMessage&)> ndsvSetCreateDiagnosticHook(
    std::function<void(const lx::services::CatalogMessage&)> hook);

/// Let a function put another diagnostic in the place of each that is made, for tests: it takes the new one
/// over, and `ndsvCreateDiagnostic` gives what it returns, which may be null. An empty function ends that.
/// Returns the former function.
ND_PLATFORM_EXPORT std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)> ndsvSetReplaceDiagnosticHook(
    std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)> hook);

/// Create a diagnostic without items, which nothing else makes, for tests. The caller owns the result.
ND_PLATFORM_EXPORT ndsvDiagnosticImpl* ndsvCreateDiagnosticWithoutItems();
