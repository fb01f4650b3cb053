#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/model/Thing.h"
#include "tests/support/walks/Course.h"

using probe::Thing;
using testing::HasSubstr;

namespace {

/// What a course does amiss, so that it differs from its twin.
enum class Fault { None, OtherValue, OtherOutcome, NothingPutBack, OpenTransaction, Untold };

constexpr unsigned Number = 2;  // the property of a thing

/// Creates things, sets their numbers and destroys them.
class Things final : public walking::Course {
 public:
  Things(unsigned seed, Fault fault) : Course(seed, nullptr, 1), fault_(fault) {}

 private:
  struct Element {
    std::vector<std::int32_t> values{0, 7};
    std::int32_t value(unsigned index) const { return values[index - 1]; }
    bool holdsSame(const Element& other, unsigned index) const { return value(index) == other.value(index); }
    bool operator==(const Element&) const = default;
  };
  using Twin = std::map<int, Element>;
  struct Pairing {
    std::vector<Thing> things;
    int idOf(const lx::base::ModelElement& element) const {
      return static_cast<int>(std::find(things.begin(), things.end(), element) - things.begin());
    }
    static std::int32_t contentOf(const Element&, unsigned, const lx::base::Value& value) {
      return value.as<std::int32_t>();
    }
    static std::string written(std::int32_t content) { return std::to_string(content); }
  };
  class KeptTwin final : public Kept {
   public:
    explicit KeptTwin(Things& things) : things_(things), twin_(things.twin_) {}
    void putBack() override {
      if (things_.fault_ != Fault::NothingPutBack) things_.twin_ = twin_;
    }

   private:
    Things& things_;
    const Twin twin_;
  };

  std::unique_ptr<Kept> keep(int) override { return std::make_unique<KeptTwin>(*this); }
  void empty(int) override { twin_.clear(); }
  void learn(int) override { told_ = twin_; }
  std::string difference(int) const override {
    if (modelAt(0).impl()->numberOfElements() != twin_.size()) return "the number of things";
    for (const auto& [id, element] : twin_) {
      if (pairing_.things[static_cast<std::size_t>(id)].number() != element.value(Number)) return "a number";
    }
    return {};
  }
  std::string closeDifference(int model) const override { return difference(model); }
  std::string differenceOfTold(int, walking::Witness& witness) const override {
    return witness.difference(pairing_, told_, twin_);
  }

  void step() override {
    static constexpr Way<Things> ways[]{
        {2, "create", &Things::create}, {2, "set", &Things::set}, {1, "destroy", &Things::destroy}};
    goOneOf(*this, ways);
  }
  void create() {
    twin_[static_cast<int>(pairing_.things.size())];
    perform(walking::Outcome::Done, [&] { pairing_.things.push_back(Thing::create(modelAt(0))); });
  }
  void set() {
    if (pairing_.things.empty()) return;
    const auto id = static_cast<int>(below(static_cast<unsigned>(pairing_.things.size())));
    const auto number = static_cast<std::int32_t>(below(3));
    const auto found = twin_.find(id);
    if (found != twin_.end())
      found->second.values[Number - 1] = number + (fault_ == Fault::OtherValue ? 1 : 0);
    const bool isRefused = found == twin_.end() && fault_ != Fault::OtherOutcome;
    perform(isRefused ? walking::Outcome::InvalidValue : walking::Outcome::Done, [&] {
      lx::base::Transaction transaction = modelAt(0).impl()->beginTransaction(fault_ == Fault::Untold);
      pairing_.things[static_cast<std::size_t>(id)].setNumber(number);
      transaction.commit();
      if (fault_ == Fault::OpenTransaction && depth() == 0)
        left_ = std::make_unique<lx::base::Transaction>(modelAt(0).impl()->beginTransaction(false));
    });
  }
  void destroy() {
    if (pairing_.things.empty()) return;
    const auto id = static_cast<int>(below(static_cast<unsigned>(pairing_.things.size())));
    twin_.erase(id);
    perform(walking::Outcome::Done, [&] { pairing_.things[static_cast<std::size_t>(id)].destroy(); });
  }

  const Fault fault_;
  Pairing pairing_;
  Twin twin_, told_;
  std::unique_ptr<lx::base::Transaction> left_;
};

/// Give what is first found to differ in fifty walks.
std::string differenceWith(Fault fault) {
  for (unsigned seed = 1; seed <= 50; ++seed) {
    if (std::string text = Things(seed, fault).run(); !text.empty()) return text;
  }
  return {};
}

TEST(Course, FindsNothingWhereModelAndTwinAreEqual) {
  EXPECT_EQ(differenceWith(Fault::None), "");
}

TEST(Course, FindsAModelThatDiffersFromItsTwin) {
  EXPECT_THAT(differenceWith(Fault::OtherValue), testing::AnyOf("a number", HasSubstr("told as changed: #")));
}

TEST(Course, FindsAChangeThatComesToSomethingElse) {
  EXPECT_EQ(differenceWith(Fault::OtherOutcome), "the change came to InvalidValue and not to Done");
}

TEST(Course, FindsThatARollbackLeftSomething) {
  EXPECT_THAT(differenceWith(Fault::NothingPutBack), testing::AnyOf("a number", "the number of things"));
}

TEST(Course, FindsATransactionThatIsLeftOpen) {
  EXPECT_EQ(differenceWith(Fault::OpenTransaction), "a transaction is left open");
}

TEST(Course, FindsAChangeThatIsNotTold) {
  EXPECT_THAT(differenceWith(Fault::Untold), HasSubstr("told as changed:  and not #"));
}

TEST(Course, GoesAllTheWaysThatTransactionsEnd) {
  walking::Counts counts;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    Things walk(seed, Fault::None);
    EXPECT_EQ(walk.run(), "");
    counts.add(walk.counts());
  }
  for (const char* each : {"commit a transaction", "commit a quiet transaction", "roll a transaction back",
                           "leave a transaction by an exception", "end transactions out of order",
                           "try to commit a transaction too early"})
    EXPECT_GT(counts.of(each).gone, 0U) << each;
  EXPECT_EQ(counts.of("create").gone, counts.of("create").done);
  EXPECT_GT(counts.of("set").gone, counts.of("set").done);
}

}  // namespace
