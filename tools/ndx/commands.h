#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/ndx/Output.h"
#include "tools/ndx/Source.h"

namespace nd::tools {

/// The commands of the tool. Each writes to `out`, for people or, if `asJson`, for programs; docs/ndx.md
/// tells the forms. They raise Failure.

/// List the registered adapters, or those for one section; NoAdapter if there is none for it.
void showAdapters(const std::optional<std::string>& section, bool asJson, Output& out);

/// Tell what is known of a source. What stands before its reading fails is written all the same. If several
/// adapters read it and no section is named, it is not read, and they are listed.
void showInfo(const SourceName& name, bool asJson, Output& out);

/// List the variables of a source.
void listVariables(const SourceName& name, bool asJson, Output& out);

/// Show the whole values of variables, in the order in which they are named; nothing if one is missing.
void getVariables(const SourceName& name, const std::vector<std::string>& variables, bool asJson,
                  Output& out);

/// Load an adapter module and let it register its adapters. Raises Failure WrongUsage.
void loadModule(const std::string& path);

}  // namespace nd::tools
