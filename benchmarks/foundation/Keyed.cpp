// What does it cost to make a hundred thousand elements and to key them, and how much memory do they take?

#include <vector>

#include "benchmarks/foundation/Stock.h"

using namespace stock;

namespace {

constexpr std::uint32_t Count = 100000;

const std::vector<std::u16string>& names() {
  static const std::vector<std::u16string> result = [] {
    std::vector<std::u16string> made;
    for (std::uint32_t number = 0; number < Count; ++number) made.push_back(nameOf(number));
    return made;
  }();
  return result;
}

void KeyedFloor(benchmark::State& state) {
  names();
  double bytes = 0;
  for (auto _ : state) {
    const double before = heapInUse();
    std::map<std::u16string, PlainArticle> shelf;
    for (const std::u16string& name : names()) {
      PlainArticle article;
      article.name = name;
      article.note = Notes[0];
      article.amount = 7;
      shelf.emplace(article.name, std::move(article));
    }
    bytes = (heapInUse() - before) / Count;
    state.PauseTiming();
    shelf.clear();
    state.ResumeTiming();
  }
  state.counters["bytes"] = bytes;
}
BENCHMARK(KeyedFloor)->Unit(benchmark::kMillisecond);

void addArticle(const Model& model, const Shelf& shelf, const std::u16string& name) {
  const Article article = Article::create(model);
  article.setName(name);
  article.setNote(Notes[0]);
  article.setAmount(7);
  shelf.getArticlesMutable().add(article);
}

void KeyedInOneTransaction(benchmark::State& state) {
  measureBy(state, "KeyedFloor");
  names();
  double bytes = 0;
  for (auto _ : state) {
    const double before = heapInUse();
    Model model = Model::create();
    const Shelf shelf = Shelf::create(model);
    Transaction transaction = model.impl()->beginTransaction(false);
    for (const std::u16string& name : names()) addArticle(model, shelf, name);
    transaction.commit();
    bytes = (heapInUse() - before) / Count;
    state.PauseTiming();
    model = Model();
    state.ResumeTiming();
  }
  state.counters["bytes"] = bytes;
}
BENCHMARK(KeyedInOneTransaction)->Unit(benchmark::kMillisecond);

void KeyedInATransactionEach(benchmark::State& state) {
  measureBy(state, "KeyedFloor");
  names();
  double bytes = 0;
  CountingObserver observer;
  for (auto _ : state) {
    const double before = heapInUse();
    Model model = Model::create();
    model.impl()->addObserver(observer);
    const Shelf shelf = Shelf::create(model);
    for (const std::u16string& name : names()) {
      Transaction transaction = model.impl()->beginTransaction(false);
      addArticle(model, shelf, name);
      transaction.commit();
    }
    bytes = (heapInUse() - before) / Count;
    state.PauseTiming();
    model = Model();
    state.ResumeTiming();
  }
  state.counters["bytes"] = bytes;
}
BENCHMARK(KeyedInATransactionEach)->Unit(benchmark::kMillisecond);

}  // namespace
