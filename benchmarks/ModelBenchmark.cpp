// What does a change of a model element cost? Each figure stands beside its floor: a plain struct with one
// virtual observer, told behind a comparison and an assignment.

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/KeepAlive.h"
#include "nd_data_adapter/model/ChangeTuple.h"
#include "platform/foundation/ModelImpl.h"

using lx::base::ChangeObserver;
using lx::base::ChangeSet;
using lx::base::Model;
using lx::base::Transaction;
using nd::data::adapter::ChangeTuple;
using nd::data::adapter::ChangeType;

namespace {

const std::u16string Texts[] = {u"a text of 32 units, the first....", u"a text of 32 units, the second..."};

class Told final : public ChangeObserver {
 public:
  void changed(const ChangeSet&) noexcept override { ++notices; }
  long notices = 0;
};

/// A model with one observed element.
struct Observed {
  Observed() { model.impl()->addObserver(observer); }
  ~Observed() { model.impl()->removeObserver(observer); }
  Observed(const Observed&) = delete;
  Observed& operator=(const Observed&) = delete;

  Model model = Model::create();
  Told observer;
  ChangeTuple tuple = ChangeTuple::create(model);
};

struct PlainObserver {
  virtual ~PlainObserver() = default;
  virtual void changed() = 0;
};
struct CountingObserver final : PlainObserver {
  void changed() override { ++notices; }
  long notices = 0;
};
struct PlainTuple {
  ChangeType x = ChangeType::Create;
  std::u16string id;
};

void SetIntegerFloor(benchmark::State& state) {
  PlainTuple tuple;
  const std::unique_ptr<PlainObserver> observer = std::make_unique<CountingObserver>();
  int value = 0;
  for (auto _ : state) {
    const auto next = static_cast<ChangeType>(value ^= 1);
    keepAlive(next);
    if (tuple.x != next) {
      tuple.x = next;
      observer->changed();
    }
    keepAlive(tuple);
  }
}
BENCHMARK(SetIntegerFloor);

void SetIntegerInItsOwnTransaction(benchmark::State& state) {
  const Observed observed;
  ChangeTuple::Impl& tuple = *observed.tuple.impl();
  int value = 0;
  for (auto _ : state) tuple.setX(static_cast<ChangeType>(value ^= 1));
}
BENCHMARK(SetIntegerInItsOwnTransaction);

void SetIntegerInAnOpenTransaction(benchmark::State& state) {
  const Observed observed;
  ChangeTuple::Impl& tuple = *observed.tuple.impl();
  const Transaction open = observed.model.impl()->beginTransaction(false);
  int value = 0;
  for (auto _ : state) tuple.setX(static_cast<ChangeType>(value ^= 1));
}
BENCHMARK(SetIntegerInAnOpenTransaction);

void SetEqualInteger(benchmark::State& state) {
  const Observed observed;
  ChangeTuple::Impl& tuple = *observed.tuple.impl();
  for (auto _ : state) tuple.setX(ChangeType::Create);
}
BENCHMARK(SetEqualInteger);

void SetTextFloor(benchmark::State& state) {
  PlainTuple tuple;
  const std::unique_ptr<PlainObserver> observer = std::make_unique<CountingObserver>();
  unsigned value = 0;
  for (auto _ : state) {
    const std::u16string& next = Texts[value ^= 1U];
    if (tuple.id != next) {
      tuple.id = next;
      observer->changed();
    }
    keepAlive(tuple);
  }
}
BENCHMARK(SetTextFloor);

void SetTextInItsOwnTransaction(benchmark::State& state) {
  const Observed observed;
  ChangeTuple::Impl& tuple = *observed.tuple.impl();
  unsigned value = 0;
  for (auto _ : state) tuple.setId(Texts[value ^= 1U]);
}
BENCHMARK(SetTextInItsOwnTransaction);

void CreateAndDestroyFloor(benchmark::State& state) {
  for (auto _ : state) {
    auto tuple = std::make_unique<PlainTuple>();
    keepAlive(*tuple);
  }
}
BENCHMARK(CreateAndDestroyFloor);

void CreateAndDestroy(benchmark::State& state) {
  const Observed observed;
  for (auto _ : state) ChangeTuple::create(observed.model).destroy();
}
BENCHMARK(CreateAndDestroy);

}  // namespace
