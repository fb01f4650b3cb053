#pragma once

#include <string>
#include <vector>

#include "platform/foundation/ModelImpl.h"
#include "tests/support/AllocationWalk.h"
#include "tests/support/model/Containers.h"
#include "tests/support/model/Cube.h"
#include "tests/support/model/Leaf.h"
#include "tests/support/model/Lists.h"
#include "tests/support/model/MoreReferences.h"
#include "tests/support/model/Optionals.h"
#include "tests/support/model/Sets.h"
#include "tests/support/model/Twig.h"
#include "tests/support/model/Values.h"

namespace allocation_test {

using lx::base::Model;
using lx::base::ModelElement;
using lx::base::Transaction;
using lx::base::Value;
using probe::Containers;
using probe::Machine;
using probe::Thing;
using probe::inner::MoreReferences;
using probe::inner::Robot;

/// A text that doesn't fit into its object.
constexpr const char16_t* Long = u"a text that is long enough to have memory of its own";

/// A model of the test metamodel with something in every kind of property, always the same.
struct WholeWorld {
  static constexpr bool isReproducible = true;

  explicit WholeWorld(bool isObserved);
  WholeWorld(const WholeWorld&) = delete;
  WholeWorld& operator=(const WholeWorld&) = delete;
  ~WholeWorld();

  /// Change something of all elements, in the open transaction.
  void touch() const;

  /// Write down the model with elements as numbers, so that two worlds compare, and what their handles tell.
  std::string state() const;

  /// Give the identity of a proxy by the collection that holds it.
  static boost::uuids::uuid identity(unsigned number);

  Model model = Model::create(), second = Model::create();
  Containers containers;             // things in every collection, and a proxy in each
  MoreReferences references, other;  // refer to things and proxies; to each other
  probe::Values values;
  probe::Optionals optionals;
  probe::Lists lists;
  probe::Sets sets;
  probe::Cube cube;
  Robot robot;                       // holds parts, tools and orders
  Thing thing, target, foreign;      // in no container; referred to by everything; of the second model
  Thing proxy;                       // in no container
  std::vector<ModelElement> loaded;  // what the proxies stand for
  Reader reader;
  bool isObserved;
};

using WholeOperation = OperationOn<const WholeWorld>;

/// List the operations by what they concern.
std::vector<WholeOperation> referenceOperations();
std::vector<WholeOperation> referenceCollectionOperations();
std::vector<WholeOperation> valueOperations();
std::vector<WholeOperation> keyedOperations();
std::vector<WholeOperation> proxyOperations();
std::vector<WholeOperation> builderOperations();
std::vector<WholeOperation> reflectionOperations();
std::vector<WholeOperation> queryOperations();

}  // namespace allocation_test
