#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "tests/nd_data_adapter/model/ModelTest.h"
#include "tests/nd_data_adapter/model/random/Twin.h"

namespace random_walk {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;

/// Give an element as one of a class that it is known to have.
template <class E>
E as(const ModelElement& element) {
  return E(static_cast<typename E::Impl*>(element.impl()));
}

/// Knows which element of the model is which of the twin, also of those that are gone, and compares the two.
class Pairing {
 public:
  /// Give the number of the element that is added next.
  Id next() const noexcept { return static_cast<Id>(elements_.size()) + 1; }

  void add(const ModelElement& element, Kind kind);

  const ModelElement& operator[](Id id) const { return elements_[static_cast<std::size_t>(id) - 1].handle; }
  Kind kindOf(Id id) const { return elements_[static_cast<std::size_t>(id) - 1].kind; }
  const std::vector<Id>& all(Kind kind) const { return ofKind_[static_cast<std::size_t>(kind)]; }

  /// Give the number of an element, 0 for null; -1 for one that was never added.
  Id idOf(const ModelElement& element) const;

  /// Turn what a property holds into what the twin's would hold.
  Content contentOf(const Value& value) const;
  Content contentOf(const Twin::Element&, unsigned, const Value& value) const { return contentOf(value); }
  static std::string written(const Content& content) { return random_walk::written(content); }

  /// Keep which identity an element bears.
  void identify(Id id, const boost::uuids::uuid& uuid) { identities_[id] = uuid; }
  const std::map<Id, boost::uuids::uuid>& identities() const noexcept { return identities_; }

  /// Give the living element that bears an identity, a proxy only if no other does; 0 if there is none.
  Id bearerOf(const boost::uuids::uuid& uuid, const Twin& twin) const;

  /// Say in which respect a model differs from the twin; empty for none. Looks at the elements that exist,
  /// their order, containers and values.
  std::string difference(const Model& model, const Twin& twin) const;

  /// Look besides at handles of elements that are gone, identities, and collections as their users see them.
  std::string closeDifference(const Model& model, const Twin& twin) const;

 private:
  struct Pair {
    ModelElement handle;
    Kind kind;
  };

  std::string differenceOfGone(Id id) const;
  std::string differenceOfCollections(Id id, const Twin& twin) const;

  std::vector<Pair> elements_;
  std::vector<Id> ofKind_[Kinds];
  std::unordered_map<const ModelElement::Impl*, Id> ids_;
  std::map<Id, boost::uuids::uuid> identities_;
};

}  // namespace random_walk
