#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/nd_data_adapter/model/random/Pairing.h"
#include "tests/support/walks/ElementCourse.h"

namespace random_walk {

/// Goes over the elements of the library's own classes, in one model.
class Walk final : public walking::ElementCourse<Pairing, Twin> {
 public:
  /// A walk that writes down its steps if it is given a stream.
  explicit Walk(unsigned seed, std::ostream* trace = nullptr);
  ~Walk() override;

 private:
  // What differs
  class KeptTwin;
  std::unique_ptr<Kept> keep(int model) override;
  void empty(int) override { twin_ = Twin(); }
  void learn(int) override {
    if (told_ != twin_) told_ = twin_;
  }
  std::string difference(int) const override { return pairing_.difference(model(), twin_); }
  std::string closeDifference(int) const override { return pairing_.closeDifference(model(), twin_); }
  std::string differenceOfTold(int, walking::Witness& witness) const override {
    return witness.difference(pairing_, told_.elements(), twin_.elements());
  }

  const Model& model() const { return modelAt(0); }
  void change(Id id, Outcome expected, const std::function<void()>& change);

  // Draws
  Id drawOf(Kind kind);
  Id draw() override;
  std::u16string drawText();
  Content drawValue(Kind kind, unsigned index);
  struct Slot {
    Id owner;
    unsigned index;
    Kind child;
  };
  Slot drawCollection();

  // The steps
  void step() override;
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
  std::vector<std::pair<Slot, Id>> placesOf(bool proxies) const;
  void load(Id proxy);
  Id loadedFor(Id proxy) const;
  void resolve();
  void resolveAt(const Slot& slot, Id proxy);

  bool isRenamedUnseen(Id id, unsigned index) const;
  ModelElement make(Kind kind, const boost::uuids::uuid& uuid = {});

  Twin told_;                        // what observers know, or are not to hear of
  std::vector<const Twin*> levels_;  // what the open transactions began with
};

}  // namespace random_walk
