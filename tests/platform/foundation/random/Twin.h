#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "tests/platform/foundation/random/Kinds.h"

namespace model_walk {

/// What two models are expected to be: the same elements as plain numbers, which are copied where a model
/// opens a transaction and put back where it abandons one. Nothing here knows of the foundation.
class Twin {
 public:
  struct Held {
    Content content;
    Content apart;    // proxies in a keyed collection
    Content numbers;  // of references, parallel to the content: they ascend in the order of the making
    bool operator==(const Held&) const = default;
  };
  /// What the properties of an element hold; that of property 1 comes first. Copies share it until one is
  /// changed.
  class Values {
   public:
    explicit Values(std::vector<Held> all) : all_(std::make_shared<std::vector<Held>>(std::move(all))) {}

    std::size_t size() const noexcept { return all_->size(); }
    const Held& operator[](std::size_t at) const { return (*all_)[at]; }
    Held& edit(std::size_t at) {
      if (all_.use_count() > 1) all_ = std::make_shared<std::vector<Held>>(*all_);
      return (*all_)[at];
    }
    bool operator==(const Values& other) const { return all_ == other.all_ || *all_ == *other.all_; }

   private:
    std::shared_ptr<std::vector<Held>> all_;
  };
  struct Element {
    Kind kind;
    int model;
    bool isProxy = false;
    Id container = 0;
    unsigned slot = 0;  // the container's property
    Values values;

    const Content& value(unsigned index) const { return values[index - 1].content; }
    const Content& apart(unsigned index) const { return values[index - 1].apart; }
    bool holdsSame(const Element& other, unsigned index) const {
      return value(index) == other.value(index) && apart(index) == other.apart(index);
    }
    bool operator==(const Element&) const = default;
  };
  using Elements = std::map<Id, Element>;

  /// Give what exists in a model. What is gone isn't there.
  const Elements& elements(int model) const { return models_[static_cast<std::size_t>(model)]; }
  void putBack(int model, const Elements& elements) { models_[static_cast<std::size_t>(model)] = elements; }

  bool contains(Id id) const { return find(id) != nullptr; }
  const Element& at(Id id) const;
  /// Give the kind of an element, also of one that is gone.
  Kind kindOf(Id id) const { return kinds_[static_cast<std::size_t>(id) - 1]; }
  bool isProxy(Id id) const { return contains(id) && at(id).isProxy; }
  bool holds(Id owner, unsigned index, Id child) const;
  bool refersTo(Id owner, unsigned index, Id target) const;

  /// List the elements of the model that refer to this one, each with its oldest reference's number, by
  /// which they ascend.
  std::vector<std::pair<int, Id>> referrers(Id id) const;

  void create(Id id, Kind kind, int model);
  void createProxy(Id id, Kind kind, int model);

  /// Set a property that holds values, whatever its form.
  Outcome set(Id id, unsigned index, const Content& value);
  Outcome addValue(Id id, unsigned index, int value);
  Outcome removeValue(Id id, unsigned index, int value);

  /// Put a child, or none, into a property for one; a child into a collection; the position counts in a
  /// sequence only.
  Outcome put(Id owner, unsigned index, Id child);
  Outcome insert(Id owner, unsigned index, std::size_t position, Id child);

  /// Refer to an element, or none; add to a collection of references, and take from it.
  Outcome refer(Id owner, unsigned index, Id target);
  Outcome addReference(Id owner, unsigned index, std::size_t position, Id target);
  Outcome removeReference(Id owner, unsigned index, Id target);

  Outcome clear(Id owner, unsigned index);

  /// Replace what a collection of elements has, as reflection does.
  Outcome replace(Id owner, unsigned index, const Content& elements);

  Outcome destroy(Id id);
  Outcome makeProxy(Id id);

  /// Put a loaded element, or nothing if it is 0, where a property holds a proxy for it.
  Outcome resolve(Id owner, unsigned index, Id proxy, Id loaded);

  /// Say what a change of the element comes to before its particulars matter.
  Outcome writable(Id id) const;

  std::size_t sizeOf(Id owner, unsigned index) const {
    return contains(owner) ? at(owner).value(index).size() : 0;
  }

 private:
  const Element* find(Id id) const;
  Element& mutableAt(Id id) { return const_cast<Element&>(at(id)); }
  Held& held(Id owner, unsigned index) { return mutableAt(owner).values.edit(index - 1); }
  const PropertyOfKind& property(Id owner, unsigned index) const;

  Outcome addable(Id owner, Id child) const;
  Outcome referable(Id owner, unsigned index, Id target) const;
  Outcome replaceable(Id owner, unsigned index, const Content& elements) const;
  bool isMadeOf(Id owner, unsigned index, const Content& elements) const;
  bool isTaken(Id owner, unsigned index, const Content& key) const;
  std::size_t placeOf(Id owner, unsigned index, Id child) const;
  std::size_t placeInBag(Id owner, unsigned index, Id target) const;
  void takeOut(Id child);
  void hang(Id owner, unsigned index, std::size_t position, Id child);
  void forget(Id owner, unsigned index, Id target);
  void putReference(Id owner, unsigned index, std::size_t position, Id target);
  void replaceReference(Id owner, unsigned index, Id former, Id target);
  void erase(Id id);
  template <class F>
  void forEachReference(int model, Id target, F f);

  std::array<Elements, 2> models_;
  std::vector<Kind> kinds_;
  int numbers_ = 0;
};

}  // namespace model_walk
