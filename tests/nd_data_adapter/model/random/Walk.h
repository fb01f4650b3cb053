#pragma once

#include <optional>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/nd_data_adapter/model/random/Pairing.h"
#include "tests/nd_data_adapter/model/random/Witness.h"

namespace random_walk {

/// A sequence of changes, drawn by a seed, that is done to a model and to its twin. Transactions are opened
/// within each other, committed, abandoned, and left by exceptions; the two are compared after each step.
class Walk {
 public:
  /// A walk that writes down its steps if it is given a stream.
  explicit Walk(unsigned seed, std::ostream* trace = nullptr);
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  ~Walk();

  /// Go the way. Gives what differs behind the last step, empty for nothing.
  std::string run();

 private:
  /// Found a difference between model and twin, or in what was told.
  struct Mismatch : std::runtime_error {
    using std::runtime_error::runtime_error;
  };
  /// Leaves so many transactions besides the one that it is thrown in.
  struct Abandonment {
    int more;
  };

  unsigned below(unsigned bound) { return static_cast<unsigned>(random_()) % bound; }
  bool oneOf(unsigned many) { return below(many) == 0; }

  // The frame
  void steps();
  void step();
  void nest();
  void nestAndEndOutOfOrder();
  void commitTooEarly(lx::base::Transaction& outer);
  void perform(Outcome expected, const std::function<void()>& change);
  void change(Id id, Outcome expected, const std::function<void()>& change);
  void check();
  void checkClosely();
  void end();
  template <class... Parts>
  void note(const Parts&... parts) {
    if (trace_ == nullptr) return;
    *trace_ << std::string(2 * levels_.size() + 2, ' ');
    (*trace_ << ... << parts) << '\n';
  }

  // Draws
  Id drawOf(Kind kind);
  Id draw();
  std::u16string drawText();
  Content drawValue(Kind kind, unsigned index);
  struct Slot {
    Id owner;
    unsigned index;
    Kind child;
  };
  Slot drawCollection();

  // The steps
  void create();
  void createWithIdentity();
  void build();
  void buildInto(Id owner);
  void set();
  void insert();
  void put();
  void clear();
  void remove();
  void replace();
  void changeTexts();
  void destroy();
  void makeProxy();
  void resolve();
  void askIdentity();

  bool isRenamedUnseen(Id id, unsigned index) const;
  ModelElement make(Kind kind, const boost::uuids::uuid& uuid = {});

  std::mt19937 random_;
  std::ostream* trace_;
  Model model_;
  Pairing pairing_;
  Twin twin_;
  Twin told_;  // what observers know, or are not to hear of
  std::optional<Witness> witness_;
  std::vector<const Twin*> levels_;  // what the open transactions began with
  unsigned left_;                    // how many steps are still to be done
};

}  // namespace random_walk
