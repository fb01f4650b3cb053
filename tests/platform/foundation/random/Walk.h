#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/platform/foundation/random/Access.h"
#include "tests/platform/foundation/random/Witness.h"

namespace model_walk {

/// A sequence of changes, drawn by a seed, that is done to two models and to their twin. Transactions are
/// opened within each other, committed, abandoned, and left by exceptions; models and twin are compared all
/// the way.
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
  /// Found a difference between models and twin, or in what was told.
  struct Mismatch : std::runtime_error {
    using std::runtime_error::runtime_error;
  };
  /// Leaves so many transactions besides the one that it is thrown in.
  struct Abandonment {
    int more;
  };

  unsigned below(unsigned bound) { return static_cast<unsigned>(random_()) % bound; }
  bool oneOf(unsigned many) { return below(many) == 0; }
  template <class List>
  const auto& oneIn(const List& list) {
    return *std::next(std::begin(list),
                      static_cast<std::ptrdiff_t>(below(static_cast<unsigned>(std::size(list)))));
  }

  // The frame
  void steps();
  void step();
  void nest();
  void nestAndEndOutOfOrder();
  void commitTooEarly(lx::base::Transaction& outer, int model);
  void perform(Outcome expected, const std::function<void()>& change);
  void change(Id id, Outcome expected, const std::function<void()>& change);
  void changeAndTell(Id id, Outcome expected, bool isChange, const std::function<bool()>& change);
  void check(bool always);
  void checkClosely();
  void end();
  std::size_t depth() const { return static_cast<std::size_t>(open_[0] + open_[1]); }
  lx::base::Transaction begin(int model, bool quiet = false);
  template <class... Parts>
  void note(const Parts&... parts) {
    if (trace_ == nullptr) return;
    *trace_ << std::string(2 * depth() + 2, ' ');
    (*trace_ << ... << parts) << '\n';
  }

  // Draws
  struct Slot {
    Kind kind;
    unsigned index;
    const PropertyOfKind& property() const { return propertiesOf(kind)[index - 1]; }
  };
  int drawModel() { return oneOf(4) ? 1 : 0; }
  Id drawOf(std::uint32_t kinds, int model);
  Id draw(int model) { return drawOf(kinds_, model); }
  Id drawOwner(const Slot& slot) { return drawOf(1U << static_cast<int>(slot.kind), drawModel()); }
  Id drawFor(Id owner, const Slot& slot);
  Slot drawSlot(bool (*isWanted)(const PropertyOfKind&));
  Content drawValue(const PropertyOfKind& property);
  boost::uuids::uuid drawIdentity(bool known);
  Id createNow(Kind kind, int model);
  std::u16string nameOf(const Slot& slot) const { return descriptionOf(slot.kind, slot.index).getName(); }
  const Access& access(const Slot& slot) const { return accessTo(slot.kind, slot.index); }
  ModelElement::Impl& impl(Id id) const { return *pairing_[id].impl(); }

  // The steps
  void create();
  void createWithIdentity();
  void createProxy();
  void build();
  void createInto();
  void set();
  void setKey();
  void changeValues();
  void put();
  void insert();
  void remove();
  void clear();
  void replace();
  void refer();
  void resolve();
  void destroy();
  void makeProxy();
  void askIdentity();

  // What a builder is to make: the values, and for each place the element that is there or is to be made
  struct Plan {
    Kind kind;
    std::vector<std::pair<unsigned, Content>> values = {};
    struct Part {
      unsigned index;
      Id element;
      std::unique_ptr<Plan> made;
    };
    std::vector<Part> parts = {};
  };
  struct Reference {
    Id owner;
    unsigned index;
    Id target;
    const Plan* made;
  };
  Kind drawKindFor(const PropertyOfKind& property);
  Plan drawPlan(Kind kind, int model, unsigned depth);
  std::unique_ptr<ModelElement::Builder> makeBuilder(const Plan& plan) const;
  Outcome makeTwin(const Plan& plan, int model, Id& next, std::vector<Reference>& references);
  Outcome makeTwinWithReferences(const Plan& plan, int model);
  void pairNew(int model);
  std::string written(const Plan& plan) const;

  std::mt19937 random_;
  std::ostream* trace_;
  std::uint32_t kinds_;  // a bit for each that this walk makes for their own sake
  std::array<Model, 2> models_{Model::create(), Model::create()};
  Pairing pairing_;
  Twin twin_;
  std::array<Twin::Elements, 2> told_;  // what observers know, or are not to hear of
  std::array<std::optional<Witness>, 2> witnesses_;
  std::array<int, 2> open_{};  // transactions
  unsigned left_;              // how many steps are still to be done
};

}  // namespace model_walk
