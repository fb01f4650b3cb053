#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include <malloc.h>

#include "benchmarks/KeepAlive.h"
#include "benchmarks/Ratios.h"
#include "benchmarks/foundation/stock/Article.h"
#include "benchmarks/foundation/stock/Shelf.h"
#include "platform/foundation/ChangeObserver.h"
#include "platform/foundation/ModelImpl.h"

/// The elements that the foundation's benchmarks use, and the floor beside them: plain structs with the same
/// fields, whose changes are told to one virtual observer behind a comparison and an assignment.
namespace stock {

using lx::base::Model;
using lx::base::Transaction;

class CountingObserver final : public lx::base::ChangeObserver {
 public:
  void changed(const lx::base::ChangeSet&) noexcept override { ++notices; }
  long notices = 0;
};

/// A model with one observed element.
struct Observed {
  Observed() { model.impl()->addObserver(observer); }
  ~Observed() { model.impl()->removeObserver(observer); }
  Observed(const Observed&) = delete;
  Observed& operator=(const Observed&) = delete;

  Model model = Model::create();
  CountingObserver observer;
  Article article = Article::create(model);
};

struct PlainObserver {
  virtual ~PlainObserver() = default;
  virtual void changed() = 0;
};

struct CountingPlainObserver final : PlainObserver {
  void changed() override { ++notices; }
  long notices = 0;
};

struct PlainArticle {
  std::u16string name;
  std::u16string note;
  std::int32_t amount = 0;

  /// Set a property as a class of its own source file would.
  [[gnu::noinline]] void setAmount(std::int32_t value) {
    if (amount != value) amount = value;
  }
  [[gnu::noinline]] void setNote(const std::u16string& value) {
    if (note != value) note = value;
  }
};

/// Two texts of 32 units.
inline const std::u16string Notes[] = {u"a text of 32 units, the first...",
                                       u"a text of 32 units, the second.."};

/// Give the name of the n-th article; the names come in no order.
inline std::u16string nameOf(std::uint32_t number) {
  const std::string digits = std::to_string(number * 2654435761U);
  return u"article " + std::u16string(digits.begin(), digits.end());
}

/// Give the bytes of the heap that are in use, with what the allocator needs for them, and without blocks
/// that the foundation keeps for later.
inline double heapInUse() {
  lx::base::detail::keepFreedBlocks(false);
  lx::base::detail::keepFreedBlocks(true);
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<double>(heap.uordblks + heap.hblkhd);
}

}  // namespace stock
