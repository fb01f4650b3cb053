// What does setting a property cost, with one observer?

#include "benchmarks/foundation/Stock.h"
#include "platform/foundation/meta/Meta.h"

using namespace stock;

namespace {

void IntegerFloor(benchmark::State& state) {
  PlainArticle article;
  const std::unique_ptr<PlainObserver> observer = std::make_unique<CountingPlainObserver>();
  std::int32_t value = 0;
  for (auto _ : state) {
    const std::int32_t next = value ^= 1;
    keepAlive(next);
    if (article.amount != next) {
      article.amount = next;
      observer->changed();
    }
    keepAlive(article);
  }
}
BENCHMARK(IntegerFloor);

void IntegerAlone(benchmark::State& state) {
  measureBy(state, "IntegerFloor");
  const Observed observed;
  Article::Impl& article = *observed.article.impl();
  std::int32_t value = 0;
  for (auto _ : state) article.setAmount(value ^= 1);
}
BENCHMARK(IntegerAlone);

void IntegerAloneUnobserved(benchmark::State& state) {
  measureBy(state, "IntegerFloor");
  const Model model = Model::create();
  const Article created = Article::create(model);
  Article::Impl& article = *created.impl();
  std::int32_t value = 0;
  for (auto _ : state) article.setAmount(value ^= 1);
}
BENCHMARK(IntegerAloneUnobserved);

void IntegerInOpenTransaction(benchmark::State& state) {
  measureBy(state, "IntegerFloor");
  const Observed observed;
  Article::Impl& article = *observed.article.impl();
  const Transaction open = observed.model.impl()->beginTransaction(false);
  std::int32_t value = 0;
  for (auto _ : state) article.setAmount(value ^= 1);
}
BENCHMARK(IntegerInOpenTransaction);

void EqualIntegerFloor(benchmark::State& state) {
  PlainArticle article;
  for (auto _ : state) article.setAmount(0);
}
BENCHMARK(EqualIntegerFloor);

void EqualInteger(benchmark::State& state) {
  measureBy(state, "EqualIntegerFloor");
  const Observed observed;
  Article::Impl& article = *observed.article.impl();
  for (auto _ : state) article.setAmount(0);
}
BENCHMARK(EqualInteger);

void TextFloor(benchmark::State& state) {
  PlainArticle article;
  const std::unique_ptr<PlainObserver> observer = std::make_unique<CountingPlainObserver>();
  unsigned value = 0;
  for (auto _ : state) {
    const std::u16string& next = Notes[value ^= 1U];
    keepAlive(next);
    if (article.note != next) {
      article.note = next;
      observer->changed();
    }
    keepAlive(article);
  }
}
BENCHMARK(TextFloor);

void TextAlone(benchmark::State& state) {
  measureBy(state, "TextFloor");
  const Observed observed;
  Article::Impl& article = *observed.article.impl();
  unsigned value = 0;
  for (auto _ : state) article.setNote(Notes[value ^= 1U]);
}
BENCHMARK(TextAlone);

void TextInOpenTransaction(benchmark::State& state) {
  measureBy(state, "TextFloor");
  const Observed observed;
  Article::Impl& article = *observed.article.impl();
  const Transaction open = observed.model.impl()->beginTransaction(false);
  unsigned value = 0;
  for (auto _ : state) article.setNote(Notes[value ^= 1U]);
}
BENCHMARK(TextInOpenTransaction);

void EqualTextFloor(benchmark::State& state) {
  PlainArticle article;
  article.setNote(Notes[0]);
  for (auto _ : state) article.setNote(Notes[0]);
}
BENCHMARK(EqualTextFloor);

void EqualText(benchmark::State& state) {
  measureBy(state, "EqualTextFloor");
  const Observed observed;
  Article::Impl& article = *observed.article.impl();
  article.setNote(Notes[0]);
  for (auto _ : state) article.setNote(Notes[0]);
}
BENCHMARK(EqualText);

void ByName(benchmark::State& state) {
  measureBy(state, "IntegerAlone");
  const Observed observed;
  const std::u16string name = u"amount";
  std::int32_t value = 0;
  for (auto _ : state) observed.article.setPropertyValue(name, lx::base::Value(value ^= 1));
}
BENCHMARK(ByName);

void TextByName(benchmark::State& state) {
  measureBy(state, "TextAlone");
  const Observed observed;
  const std::u16string name = u"note";
  unsigned value = 0;
  for (auto _ : state) observed.article.setPropertyValue(name, lx::base::Value(Notes[value ^= 1U]));
}
BENCHMARK(TextByName);

}  // namespace
