#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/foundation/Builder.h"
#include "platform/foundation/meta/Meta.h"
#include "tests/platform/foundation/random/Pairing.h"

namespace model_walk {

/// How a property of elements is reached: by the functions of its class. Contents are as the twin has them.
class Access {
 public:
  using Impl = ModelElement::Impl;

  virtual ~Access() = default;

  /// Describe the property for the twin, but for what its class's description says of it.
  virtual PropertyOfKind describe() const = 0;

  /// Tell whether an element is of a class that the property takes.
  virtual bool accepts(const lx::base::meta::Class&) const { return false; }

  virtual Content read(const Pairing& pairing, Impl& owner) const = 0;
  virtual Content readValue(const Pairing& pairing, const Value& value) const = 0;
  virtual Value makeValue(const Pairing& pairing, const Content& content) const = 0;

  /// Give what a collection says of itself and `read` doesn't show, if it differs from what its content
  /// should make it say; empty for no difference.
  virtual std::string difference(const Pairing&, Impl&, const Twin::Element&, unsigned) const { return {}; }

  /// List the elements in the order that the property has.
  virtual Content order(const Pairing& pairing, Impl& owner) const { return read(pairing, owner); }

  // What changes the property. `one` is an element's number or a value.
  virtual void set(const Pairing&, Impl&, const Content&) const { refuse(); }
  virtual bool add(const Pairing&, Impl&, int) const { return refuse(); }
  virtual bool insert(const Pairing&, Impl&, std::size_t, int) const { return refuse(); }
  virtual bool remove(const Pairing&, Impl&, int) const { return refuse(); }
  virtual void clear(Impl&) const { refuse(); }
  virtual ModelElement resolve(Impl&, const ModelElement&) const { refuse(); }
  virtual void createInto(Impl&, std::unique_ptr<ModelElement::Builder>) const { refuse(); }

 private:
  [[noreturn]] static bool refuse() { throw std::logic_error("the property has no such function"); }
};

/// Give how a property of a kind is reached.
const Access& accessTo(Kind kind, unsigned index);

/// Give the description of a property; the index of one that is derived belongs to none.
const lx::base::meta::Property& descriptionOf(Kind kind, unsigned index);

/// Give the name of a property, to be written down.
const std::string& writtenNameOf(Kind kind, unsigned index);

// What is done for a class as a whole
ModelElement createElement(Kind kind, const Model& model, const boost::uuids::uuid& uuid);
ModelElement createProxy(Kind kind, const Model& model, const boost::uuids::uuid& uuid);
std::unique_ptr<ModelElement::Builder> makeBuilder(Kind kind);

}  // namespace model_walk
