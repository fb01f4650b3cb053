// What do a hundred thousand changes in one transaction cost, and their undoing? The floor is a journal
// written by hand: what was changed, and what it was before.

#include <vector>

#include "benchmarks/foundation/Stock.h"

using namespace stock;

namespace {

constexpr std::uint32_t Count = 100000;

struct Entry {
  PlainArticle* article;
  std::u16string note;
};

std::vector<PlainArticle> plainArticles() {
  std::vector<PlainArticle> result(Count);
  for (PlainArticle& article : result) article.note = Notes[0];
  return result;
}

void changeAll(std::vector<PlainArticle>& articles, std::vector<Entry>& journal) {
  for (PlainArticle& article : articles) {
    if (article.note == Notes[1]) continue;
    journal.push_back({&article, article.note});
    article.note = Notes[1];
  }
}

void undo(std::vector<Entry>& journal) {
  for (; !journal.empty(); journal.pop_back()) journal.back().article->note.swap(journal.back().note);
}

void ChangesFloor(benchmark::State& state) {
  std::vector<PlainArticle> articles = plainArticles();
  for (auto _ : state) {
    std::vector<Entry> journal;
    changeAll(articles, journal);
    state.PauseTiming();
    undo(journal);
    state.ResumeTiming();
  }
}
BENCHMARK(ChangesFloor)->Unit(benchmark::kMillisecond);

void RollbackFloor(benchmark::State& state) {
  std::vector<PlainArticle> articles = plainArticles();
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Entry> journal;
    changeAll(articles, journal);
    state.ResumeTiming();
    undo(journal);
  }
}
BENCHMARK(RollbackFloor)->Unit(benchmark::kMillisecond);

struct Many {
  Many() {
    for (std::uint32_t number = 0; number < Count; ++number) {
      articles.push_back(Article::create(model));
      articles.back().setNote(Notes[0]);
    }
  }
  void changeAll() const {
    for (const Article& article : articles) article.setNote(Notes[1]);
  }

  Model model = Model::create();
  std::vector<Article> articles;
};

void Changes(benchmark::State& state) {
  measureBy(state, "ChangesFloor");
  const Many many;
  for (auto _ : state) {
    auto transaction = std::make_unique<Transaction>(many.model.impl()->beginTransaction(false));
    many.changeAll();
    state.PauseTiming();
    transaction.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(Changes)->Unit(benchmark::kMillisecond);

void Rollback(benchmark::State& state) {
  measureBy(state, "RollbackFloor");
  const Many many;
  for (auto _ : state) {
    state.PauseTiming();
    auto transaction = std::make_unique<Transaction>(many.model.impl()->beginTransaction(false));
    many.changeAll();
    state.ResumeTiming();
    transaction.reset();
  }
}
BENCHMARK(Rollback)->Unit(benchmark::kMillisecond);

}  // namespace
