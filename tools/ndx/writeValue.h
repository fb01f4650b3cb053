#pragma once

#include "platform/host/Array.h"
#include "tools/ndx/JsonWriter.h"

namespace nd::tools {

/// Write an array as a JSON object with its class, its size and its elements; docs/ndx.md tells the form.
/// What is null within a cell or a field is written as null.
void writeValue(JsonWriter& json, const hvArray* array);

/// Write the sizes along all dimensions as a JSON array.
void writeSize(JsonWriter& json, const hvArray* array);

}  // namespace nd::tools
