#pragma once

#include <cstdint>
#include <vector>

#include "platform/export.h"
#include "platform/foundation/OwnedCollection.h"

namespace lx::base::detail {

class ReferringField;

/// That a field refers to an element. The target has the links of its own model in a list.
struct Link {
  ModelElement target;
  ReferringField* field = nullptr;  // null while the target doesn't have the link in its list
  Link* previous = nullptr;         // the target's list, the latest first but for what was undone
  Link* next = nullptr;
  std::uint64_t number = 0;  // ascends in the order in which references were made; undoing brings it back
};

/// A property of an element that refers to elements without containing them.
///
/// References within a model are known to their targets, so that they end with them. A reference to an
/// element of another model only keeps its memory.
class ND_PLATFORM_EXPORT ReferringField : public AbstractOwnedCollection {
 public:
  ~ReferringField() override;

  /// Tell whether the element is of a class that the property takes.
  virtual bool accepts(const ModelElement::Impl& element) const noexcept = 0;

  // What happens to a target, told within its transaction; each changes the field like a mutator of it.
  virtual void targetDies(Link& link) = 0;
  virtual void targetBecomesProxy(Link& link) = 0;
  virtual void targetIsResolved(Link& link, ModelElement::Impl& element) = 0;

  /// Refer to nothing any more.
  virtual void loseAll() = 0;

 protected:
  using AbstractOwnedCollection::AbstractOwnedCollection;

  void link(Link& link) noexcept;
  static void unlink(Link& link) noexcept;
};

/// List the living elements that refer to an element, each once, the oldest reference first.
std::vector<ModelElement> referrersOf(const ModelElement::Impl& element);

/// Tell the fields of living elements that refer to an element that it died, or is becoming a proxy, or that
/// another element stands in its place.
void endReferences(ModelElement::Impl& element);
void referencesBecomeProxies(ModelElement::Impl& element);
void resolveReferences(ModelElement::Impl& proxy, ModelElement::Impl& element);

/// Let all properties of an element refer to nothing. Gives a bit for the index of each that refers.
std::uint64_t loseReferences(ModelElement::Impl& element);

/// Give the element that a proxy stands for, if the proxy's model has it and it is loaded; else a null
/// handle.
ND_PLATFORM_EXPORT ModelElement loadedElement(const ModelElement& proxy);

/// Tell whether an element is a living proxy of that identity.
ND_PLATFORM_EXPORT bool isProxyTo(const ModelElement::Impl& element, const boost::uuids::uuid& uuid) noexcept;

}  // namespace lx::base::detail
