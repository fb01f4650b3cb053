#pragma once

#include <string>
#include <vector>

#include <boost/uuid/uuid.hpp>

#include "platform/foundation/CreateElement.h"
#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/References.h"

/// What the tests of references and proxies have in common: elements of the test model, and a model as a
/// text.
namespace probing {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Transaction;
using lx::base::Value;
using lxb::messages::CannotAddIncompatibleTypes;
using lxb::messages::CannotAddNonExistentObject;
using lxb::messages::CannotAddSecondObject;
using lxb::messages::CannotCreateCrossModelAssociation;
using lxb::messages::CannotModifyProxy;
using lxb::messages::InvalidValue;
using lxb::messages::UniquenessConstraint;
using probe::Containers;
using probe::Machine;
using probe::References;
using probe::Thing;

using Elements = std::vector<ModelElement>;

/// What a test throws to abandon a transaction.
struct Abandoned {};

inline Transaction begin(const Model& model) {
  return model.impl()->beginTransaction(false);
}

inline std::uint64_t transactions(const Model& model) {
  return model.impl()->counters().transactions;
}

/// Give the identity that ends in a number.
boost::uuids::uuid identity(std::uint8_t number);

/// Make a thing of a name.
Thing thing(const Model& model, const std::u16string& name = u"");

/// Write down all of a model: each element in the order of creation, by its address, with what it is, where
/// it is, its identity, what that finds, who refers to it and what its properties hold, proxies too. What
/// undoing brings back is as it was only if two such texts are equal.
std::string stateOf(const Model& model);

/// Do a step, which is to change the model, in transactions that are abandoned: in one, in one within
/// another, in one that was handed over to the other, and left by an exception. The model is as before each
/// time. Then do it for good.
template <class F>
void undoneThenDone(const Model& model, F step);

template <class Collection>
Elements elementsOf(const Collection& collection) {
  Elements result;
  for (const ModelElement& each : collection) result.push_back(each);
  return result;
}

// What is a template

void expectUndone(const std::string& before, const Model& model, const char* how);

template <class F>
void undoneThenDone(const Model& model, F step) {
  const std::string before = stateOf(model);
  {
    const Transaction open = begin(model);
    step();
    EXPECT_NE(stateOf(model), before) << "the step changes nothing";
  }
  expectUndone(before, model, "abandoned");
  {
    Transaction outer = begin(model);
    {
      const Transaction inner = begin(model);
      step();
    }
    expectUndone(before, model, "abandoned within another");
    outer.commit();
  }
  expectUndone(before, model, "abandoned within one that was committed");
  {
    const Transaction outer = begin(model);
    Transaction inner = begin(model);
    step();
    inner.commit();
  }
  expectUndone(before, model, "handed over and abandoned");
  try {
    const Transaction open = begin(model);
    step();
    throw Abandoned();
  } catch (const Abandoned&) {
  }
  expectUndone(before, model, "left by an exception");
  step();
}

}  // namespace probing
