#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "platform/foundation/Model.h"
#include "tests/support/CallLog.h"

struct inWorkSpace_tag;

/// Whole states as lines of text, so that a test compares all that there is and not what it thought of.
namespace support {

/// Describes what is registered and what is open, as "registered a: a" and "open x.test::s: a'1": key and
/// label.
Lines stateOfBroker();

/// Describes every element of a model with the values of all its properties, in the order of creation.
Lines contentsOf(const lx::base::Model& model);

/// Describes the variables of a workspace, as "gain: 1x1 double = 2.5", in their order. An empty pointer has
/// none.
Lines contentsOf(const boost::shared_ptr<inWorkSpace_tag>& workspace);

/// What of the second list is not in the first: how often a line is there counts.
Lines missingIn(const Lines& lines, const Lines& wanted);

}  // namespace support
