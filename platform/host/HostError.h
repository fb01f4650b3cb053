#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/export.h"
#include "platform/services/CatalogMessage.h"

/// An error of the host: what a caller of the host's functions did wrong, with the id of its message
/// (catalogue and key), its arguments, and the finished sentence in what().
///
/// The functions throw the classes of the catalogues themselves, all of them derived from this one: those of
/// "hv:messages" (platform/host/messages.h), and of "Orbex:string" (platform/host/orbex_string.h) for the
/// missing string. The functions' descriptions name them. Catch the class to bear one error, and hvError for
/// any:
///
///     try {
///       hvSetCell(table, row, value);
///     } catch (const hv::messages::IndexOutOfRange&) {
///       break;
///     }
class ND_PLATFORM_EXPORT hvError : public lx::services::CatalogMessage {
 protected:
  hvError(const char* catalogue, const char* key, const char16_t* text, std::vector<std::u16string> arguments)
      : CatalogMessage(catalogue, key, text, std::move(arguments)) {}
};
