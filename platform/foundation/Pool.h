#pragma once

#include <cstddef>

#include "platform/export.h"

/// Memory for elements and for what transactions keep of them: blocks that come and go by the thousand.
///
/// A freed block is kept for the next one of its size, up to four megabytes for each size and thread, and
/// given back when the thread ends. Every block comes from `operator new`, so that memory that runs out is
/// seen there.
namespace lx::base::detail {

ND_PLATFORM_EXPORT void* allocateBlock(std::size_t size);
ND_PLATFORM_EXPORT void freeBlock(void* block, std::size_t size) noexcept;

/// Let every block go to `operator delete` at once, or keep them again. A program that looks for leaks, or
/// makes memory run out, asks for this before it makes a model. Under the address sanitizer nothing is ever
/// kept.
ND_PLATFORM_EXPORT void keepFreedBlocks(bool keep) noexcept;

}  // namespace lx::base::detail
