#pragma once

#include <array>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/walks/Counts.h"
#include "tests/support/walks/Outcome.h"
#include "tests/support/walks/Witness.h"

namespace walking {

/// Found a difference between models and twin, or in what was told.
struct Mismatch : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The course of a walk: a sequence of changes, drawn by a seed, that is done to models and to their twin.
/// Transactions are opened within each other, committed, abandoned, ended out of order, and left by
/// exceptions; models and twin are compared all the way. Which changes there are, and what the twin is, is
/// the derived class's.
class Course {
 public:
  Course(const Course&) = delete;
  Course& operator=(const Course&) = delete;
  virtual ~Course();

  /// Go the way. Gives what differs behind the last step, empty for nothing.
  std::string run();

  /// Tell how often each kind of step was gone.
  const Counts& counts() const noexcept { return counts_; }

 protected:
  /// A model's twin as it was when a transaction was opened.
  class Kept {
   public:
    Kept() = default;
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    virtual ~Kept() = default;
    virtual void putBack() = 0;
  };

  /// A kind of step, and how often it is drawn beside the others.
  template <class Walk>
  struct Way {
    unsigned weight;
    const char* name;
    void (Walk::*go)();
  };

  /// Counts what is performed while it lives as another step than the one that was drawn.
  class Aside {
   public:
    Aside(Course& course, const char* name) : course_(course), former_(course.doing_) {
      course.doing_ = name;
    }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;
    ~Aside() { course_.doing_ = former_; }

   private:
    Course& course_;
    const char* const former_;
  };

  /// A course for one model or two, which writes down its steps if it is given a stream.
  Course(unsigned seed, std::ostream* trace, std::size_t models);

  unsigned below(unsigned bound) { return static_cast<unsigned>(random_()) % bound; }
  bool oneOf(unsigned many) { return below(many) == 0; }
  template <class List>
  const auto& oneIn(const List& list) {
    return *std::next(std::begin(list),
                      static_cast<std::ptrdiff_t>(below(static_cast<unsigned>(std::size(list)))));
  }
  int drawModel() { return models_.size() > 1 && oneOf(4) ? 1 : 0; }
  template <class Walk, std::size_t N>
  void goOneOf(Walk& walk, const Way<Walk> (&ways)[N]) {
    unsigned weights = 0;
    for (const Way<Walk>& each : ways) weights += each.weight;
    unsigned drawn = below(weights);
    const Way<Walk>* way = ways;
    for (; drawn >= way->weight; ++way) drawn -= way->weight;
    const Aside aside(*this, way->name);
    (walk.*way->go)();
  }

  /// Do a change of the models, behind that of the twin. One that is refused leaves transactions at times.
  void perform(Outcome expected, const std::function<void()>& change);

  const Model& modelAt(int number) const { return models_[static_cast<std::size_t>(number)]; }
  int models() const noexcept { return static_cast<int>(models_.size()); }
  /// Tell how many transactions are open.
  std::size_t depth() const { return static_cast<std::size_t>(open_[0] + open_[1]); }
  template <class... Parts>
  void note(const Parts&... parts) {
    if (trace_ == nullptr) return;
    *trace_ << std::string(2 * depth() + 2, ' ');
    (*trace_ << ... << parts) << '\n';
  }

 private:
  /// Leaves so many transactions besides the one that it is thrown in.
  struct Abandonment {
    int more;
  };

  virtual void step() = 0;
  virtual std::unique_ptr<Kept> keep(int model) = 0;
  /// Empty the twin of a model that has ended.
  virtual void empty(int model) = 0;
  /// Take what the twin is for what observers know.
  virtual void learn(int model) = 0;

  // What differs between model and twin: as is seen at once, as is seen by looking at all of it, and in what
  // was told
  virtual std::string difference(int model) const = 0;
  virtual std::string closeDifference(int model) const = 0;
  virtual std::string differenceOfTold(int model, Witness& witness) const = 0;

  void steps();
  void nest();
  void nestAndEndOutOfOrder();
  void commitTooEarly(lx::base::Transaction& outer, int model);
  void check(bool compares);
  void checkClosely();
  void end();
  lx::base::Transaction beginIn(int model, bool quiet = false);

  std::mt19937 random_;
  std::ostream* trace_;
  std::vector<Model> models_;
  std::array<std::unique_ptr<Witness>, 2> witnesses_;
  std::array<int, 2> open_{};  // transactions
  unsigned left_;              // how many steps are still to be done
  const char* doing_ = "";
  Counts counts_;
};

}  // namespace walking
