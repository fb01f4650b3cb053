#include "platform/services/Diagnostic.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

using lx::services::CatalogMessage;

namespace {

struct Item {
  CatalogMessage message;
  std::u16string text;
};

static_assert(std::is_nothrow_move_constructible_v<Item>);

std::atomic<std::size_t> liveDiagnostics = 0;

std::function<void(const CatalogMessage&)>& createHook() {
  static std::function<void(const CatalogMessage&)>& hook = *new std::function<void(const CatalogMessage&)>;
  return hook;
}

std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)>& replaceHook() {
  using Hook = std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)>;
  static Hook& hook = *new Hook;
  return hook;
}

}  // namespace

struct ndsvDiagnosticImpl {
  ndsvDiagnosticImpl() noexcept { ++liveDiagnostics; }
  explicit ndsvDiagnosticImpl(Item first) {
    items.push_back(std::move(first));
    ++liveDiagnostics;
  }
  ndsvDiagnosticImpl(const ndsvDiagnosticImpl&) = delete;
  ndsvDiagnosticImpl& operator=(const ndsvDiagnosticImpl&) = delete;
  ~ndsvDiagnosticImpl() { --liveDiagnostics; }

  std::vector<Item> items;
};

namespace {

const Item& itemOf(const ndsvDiagnosticImpl* diagnostic, std::size_t index) {
  const std::size_t count = ndsvGetNumItemsInDiagnostic(diagnostic);
  if (index >= count) {
    throw std::out_of_range("A diagnostic with " + std::to_string(count) + " items was asked for item " +
                            std::to_string(index) +
                            ", counted from 0: the number must be smaller than the count.");
  }
  return diagnostic->items[index];
}

// Makes room for more items, doubling it so that joining one by one stays linear.
void reserveFor(std::vector<Item>& items, std::size_t more) {
  const std::size_t wanted = items.size() + more;
  if (wanted > items.capacity()) items.reserve(std::max(wanted, 2 * items.capacity()));
}

void appendOnOneLine(std::u16string& lines, const std::u16string& text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') ++at;
    const bool breaks = text[at] == u'\n' || text[at] == u'\r';
    lines.push_back(breaks ? u' ' : text[at]);
  }
}

}  // namespace

ndsvDiagnosticImpl* ndsvCreateDiagnostic(const CatalogMessage& message, const std::u16string& second) {
  if (createHook()) createHook()(message);
  const std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)>& replaced = replaceHook();
  std::u16string text = message.text();
  if (!second.empty()) text.insert(0, second + u": ");
  ndsvDiagnosticImpl* const made =
      std::make_unique<ndsvDiagnosticImpl>(Item{message, std::move(text)}).release();
  return replaced ? replaced(made) : made;
}

void ndsvConcatenateDiagnosticsNoCheck(ndsvDiagnosticImpl*& result, ndsvDiagnosticImpl* added,
                                       bool addedFirst) {
  if (added == nullptr || added == result) return;
  if (result == nullptr) {
    result = added;
    return;
  }
  std::vector<Item>& first = addedFirst ? added->items : result->items;
  std::vector<Item>& last = addedFirst ? result->items : added->items;
  reserveFor(first, last.size());
  first.insert(first.end(), std::make_move_iterator(last.begin()), std::make_move_iterator(last.end()));
  if (addedFirst) last.swap(first);
  ndsvDestroyDiagnostic(added);
}

std::size_t ndsvGetNumItemsInDiagnostic(const ndsvDiagnosticImpl* diagnostic) noexcept {
  return diagnostic == nullptr ? 0 : diagnostic->items.size();
}

void ndsvDestroyDiagnostic(ndsvDiagnosticImpl* diagnostic) noexcept {
  delete diagnostic;
}

std::u16string ndsvGetDiagnosticItemText(const ndsvDiagnosticImpl* diagnostic, std::size_t index) {
  return itemOf(diagnostic, index).text;
}

lx::services::MessageId ndsvGetDiagnosticItemId(const ndsvDiagnosticImpl* diagnostic, std::size_t index) {
  const CatalogMessage& message = itemOf(diagnostic, index).message;
  return {message.catalogue(), message.key()};
}

std::u16string ndsvFormatDiagnostic(const ndsvDiagnosticImpl* diagnostic) {
  std::u16string lines;
  for (std::size_t index = 0; index < ndsvGetNumItemsInDiagnostic(diagnostic); ++index) {
    if (index > 0) lines.push_back(u'\n');
    appendOnOneLine(lines, diagnostic->items[index].text);
  }
  return lines;
}

std::size_t ndsvGetLiveDiagnosticCount() noexcept {
  return liveDiagnostics;
}

std::function<void(const CatalogMessage&)> ndsvSetCreateDiagnosticHook(
    std::function<void(const CatalogMessage&)> hook) {
  createHook().swap(hook);
  return hook;
}

std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)> ndsvSetReplaceDiagnosticHook(
    std::function<ndsvDiagnosticImpl*(ndsvDiagnosticImpl*)> hook) {
  replaceHook().swap(hook);
  return hook;
}

ndsvDiagnosticImpl* ndsvCreateDiagnosticWithoutItems() {
  return new ndsvDiagnosticImpl;
}
