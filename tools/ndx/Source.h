#pragma once

#include <optional>
#include <string>
#include <vector>

#include "nd_data_adapter/model/AdapterConfig.h"
#include "nd_data_adapter/model/DataContainer.h"
#include "platform/foundation/Model.h"

namespace nd::tools {

/// What a person asks the tool to look at.
struct SourceName {
  std::string source;
  std::optional<std::string> section;  // none: the one that there is
};

/// What the broker knows of a source before it is opened.
struct SourceFacts {
  lx::base::Model model;
  std::vector<nd::data::adapter::AdapterConfig> adapters;
};

/// Ask the broker which adapters claim a source. Raises Failure WrongUsage for a name whose tag hides a file
/// of the whole name behind another one.
SourceFacts factsOf(const SourceName& name);

/// List the sections of those adapters that read the source.
std::vector<std::string> sectionsThatRead(const SourceFacts& facts);

/// Choose the section to read. Raises Failure: NoAdapter if no adapter reads the source, or not this section;
/// WrongUsage if several do and none was named.
std::string chooseSection(const SourceName& name, const SourceFacts& facts);

/// A source that is open for one section and was read. It is closed when this goes.
class Source {
 public:
  /// Open and read a source. Raises Failure Unreadable with what the adapter says, and what may help.
  Source(const SourceName& name, const SourceFacts& facts);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  const std::string& section() const noexcept { return section_; }
  boost::shared_ptr<inWorkSpace_tag> variables() const { return container_.dataCache(); }

  /// List the names of the variables in the order of the source.
  std::vector<std::string> names() const;

  std::string checksum() const;
  std::vector<std::string> externalSources() const;

 private:
  void read();
  void close() noexcept;

  std::string source_;
  std::string section_;
  lx::base::Model model_;
  nd::data::adapter::DataContainer container_;
};

/// Say what may be wrong with the path of a source: that a part of it is taken as a tag or marker, that it is
/// a folder, that it isn't there, and which names are near.
std::vector<std::string> hintsForPath(const std::string& source);

/// Say that a file of the whole name is there, and that its name is not taken whole; empty otherwise.
std::vector<std::string> hintsForTag(const std::string& source);

}  // namespace nd::tools
