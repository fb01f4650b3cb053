#pragma once

#include "platform/export.h"
#include "platform/services/CatalogMessage.h"

/// An error of the host: what a caller of the host's functions did wrong, with the id of its message
/// (catalogue and key), its arguments, and the finished sentence in what(). The array functions raise the
/// keys of the catalogue "hv:messages"; their descriptions name them.
class ND_PLATFORM_EXPORT hvError : public lx::services::CatalogMessage {
 public:
  /// Make the error that says a message of any catalogue.
  explicit hvError(const lx::services::CatalogMessage& message) noexcept : CatalogMessage(message) {}
};
