#pragma once

#include <array>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/foundation/ModelImpl.h"
#include "tests/platform/foundation/random/Twin.h"

namespace model_walk {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Value;

/// Give an element as one of a class that it is known to have.
template <class E>
E as(const ModelElement& element) {
  return E(static_cast<typename E::Impl*>(element.impl()));
}

/// Knows which element of the models is which of the twin, also of those that are gone, and compares the two.
class Pairing {
 public:
  /// Give the number of the element that is added next.
  Id next() const noexcept { return static_cast<Id>(elements_.size()); }

  void add(const ModelElement& element);

  /// Give an element by its number; a null handle for 0.
  const ModelElement& operator[](Id id) const { return elements_[static_cast<std::size_t>(id)]; }

  /// Give the number of an element, 0 for null; -1 for one that was never added.
  Id idOf(const ModelElement& element) const;
  template <class Elements>
  Content idsOf(const Elements& elements) const {
    Content result;
    for (const ModelElement& element : elements) result.push_back(idOf(element));
    return result;
  }

  /// Turn what reflection gives of a property into what the twin's would hold.
  Content contentOf(const Twin::Element& element, unsigned index, const Value& value) const;
  static std::string written(const Content& content) { return model_walk::written(content); }

  /// Keep which identity an element bears.
  void identify(Id id, const boost::uuids::uuid& uuid) { identities_[id] = uuid; }
  const std::map<Id, boost::uuids::uuid>& identities() const noexcept { return identities_; }

  /// Give the loaded element of a model that bears an identity; 0 if there is none.
  Id bearerOf(const boost::uuids::uuid& uuid, int model, const Twin& twin) const;

  /// Give what a proxy stands for; 0 if it is none or that isn't loaded.
  Id loadedFor(Id proxy, const Twin& twin) const;

  /// Say in which respect a model differs from the twin; empty for none. Looks at the elements that exist,
  /// their order, containers and values.
  std::string difference(const Model& model, int number, const Twin& twin) const;

  /// Look besides at identities, what refers to what, and properties as reflection shows them.
  std::string closeDifference(const Model& model, int number, const Twin& twin) const;

  /// Say what a handle of an element that is gone, whichever model had it, shows and should not.
  std::string differenceOfGone(const Twin& twin) const;

  /// List the elements of all bags of a model in the order that they have.
  std::vector<Content> orderOfBags(int number, const Twin& twin) const;

 private:
  std::string differenceOf(Id id, const Twin::Element& element) const;
  std::string closeDifferenceOf(Id id, const Twin& twin) const;
  std::string closeDifferenceOf(ModelElement::Impl& impl, const Twin::Element& element, unsigned index,
                                const Twin& twin) const;
  std::string differenceOfGone(Id id, Kind kind) const;
  std::string differenceOfReferrers(Id id, const Twin& twin) const;
  std::string differenceOfIdentities(const Model& model, int number, const Twin& twin) const;

  std::vector<ModelElement> elements_{ModelElement()};
  std::unordered_map<const ModelElement::Impl*, Id> ids_;
  std::map<Id, boost::uuids::uuid> identities_;
};

}  // namespace model_walk
