#pragma once

#include <string>
#include <string_view>

#include "tools/ndx/Output.h"

namespace nd::tools {

enum class Paint { Heading, Error };

/// Put a text into the colour of its meaning if the stream shows colours; else give it as it is.
std::string paint(const Look& look, Paint meaning, std::string_view text);

}  // namespace nd::tools
