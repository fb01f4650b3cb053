// What do creating and destroying an element cost, and how much memory does one take?

#include "benchmarks/foundation/Stock.h"
#include "nd_data_adapter/model/ChangeTuple.h"

using namespace stock;

namespace {

void CreateAndDestroyFloor(benchmark::State& state) {
  const std::unique_ptr<PlainObserver> observer = std::make_unique<CountingPlainObserver>();
  for (auto _ : state) {
    auto article = std::make_unique<PlainArticle>();
    observer->changed();
    keepAlive(*article);
    article.reset();
    observer->changed();
  }
}
BENCHMARK(CreateAndDestroyFloor);

void CreateAndDestroy(benchmark::State& state) {
  measureBy(state, "CreateAndDestroyFloor");
  const Observed observed;
  for (auto _ : state) Article::create(observed.model).destroy();
}
BENCHMARK(CreateAndDestroy);

void BytesOfAnEmptyChangeTuple(benchmark::State& state) {
  constexpr int Count = 10000;
  double bytes = 0;
  for (auto _ : state) {
    const Model model = Model::create();
    const double before = heapInUse();
    for (int count = 0; count < Count; ++count) nd::data::adapter::ChangeTuple::create(model);
    bytes = (heapInUse() - before) / Count;
  }
  state.counters["bytes"] = bytes;
}
BENCHMARK(BytesOfAnEmptyChangeTuple)->Iterations(1);

}  // namespace
