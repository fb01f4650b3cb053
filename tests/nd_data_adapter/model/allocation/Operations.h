#pragma once

#include <vector>

#include "tests/nd_data_adapter/model/allocation/World.h"
#include "tests/support/AllocationWalk.h"

namespace allocation_test {

using Operation = OperationOn<const World>;

/// List the operations by what they concern.
std::vector<Operation> lifeOperations();
std::vector<Operation> valueOperations();
std::vector<Operation> collectionOperations();
std::vector<Operation> builderOperations();
std::vector<Operation> transactionOperations();
std::vector<Operation> reflectionOperations();

/// Give the one change that is outside of all transactions.
Operation nameOfFreeEntry();

}  // namespace allocation_test
