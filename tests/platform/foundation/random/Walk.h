#pragma once

#include <array>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/platform/foundation/random/Access.h"
#include "tests/support/walks/ElementCourse.h"

namespace model_walk {

/// Goes over all kinds of elements of the test model: in two models, so that elements meet such of another.
class Walk final : public walking::ElementCourse<Pairing, Twin> {
 public:
  /// A walk that writes down its steps if it is given a stream.
  explicit Walk(unsigned seed, std::ostream* trace = nullptr);
  ~Walk() override;

 private:
  // What differs
  std::unique_ptr<Kept> keep(int model) override;
  void empty(int model) override { twin_.putBack(model, {}); }
  void learn(int model) override;
  std::string difference(int model) const override;
  std::string closeDifference(int model) const override;
  std::string differenceOfTold(int model, walking::Witness& witness) const override;

  void performAndTell(Outcome expected, bool isChange, const std::function<bool()>& change);

  // Draws
  struct Slot {
    Kind kind;
    unsigned index;
    const PropertyOfKind& property() const { return propertiesOf(kind)[index - 1]; }
  };
  struct Place {
    Id owner;
    Slot slot;
    Id proxy;
  };
  Id drawOf(std::uint32_t kinds, int model);
  Id draw() override { return draw(drawModel()); }
  Id draw(int model) { return drawOf(kinds_, model); }
  Id drawOwner(const Slot& slot) { return drawOf(1U << static_cast<int>(slot.kind), drawModel()); }
  Id drawFor(Id owner, const Slot& slot);
  Slot drawSlot(bool (*isWanted)(const PropertyOfKind&));
  Content drawValue(const PropertyOfKind& property);
  boost::uuids::uuid drawIdentity(bool known);
  Id createNow(Kind kind, int model);
  std::u16string nameOf(const Slot& slot) const { return descriptionOf(slot.kind, slot.index).getName(); }
  static const std::string& written(const Slot& slot) { return writtenNameOf(slot.kind, slot.index); }
  const Access& access(const Slot& slot) const { return accessTo(slot.kind, slot.index); }
  ModelElement::Impl& impl(Id id) const { return *pairing_[id].impl(); }

  // The steps
  void step() override;
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
  std::vector<Id> sortedElements() const;
  Slot keyOf(Id id) const;
  Id drawHearing(int model);
  Slot drawRowFor(Kind kind);
  std::vector<Place> placesOf(bool proxies) const;
  void load(Id proxy);
  void resolve();
  void resolveAt(const Place& place);
  void destroyAndChangeKey();

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

  std::uint32_t kinds_;                 // a bit for each that this walk makes for their own sake
  std::array<Twin::Elements, 2> told_;  // what observers know, or are not to hear of
};

}  // namespace model_walk
