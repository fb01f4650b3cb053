#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/json/Block.h"
#include "adapters/json/Document.h"
#include "adapters/json/MemberNames.h"
#include "adapters/json/TextScan.h"

namespace nd::adapters::json {

/// Reads a text of JSON, or a piece of it, slowly and exactly: what is wrong first is thrown first, as a
/// `Fault` with its place. What it reads is what `readDocument` reads.
///
///     Document document = ExactReader(text).document();
///
/// It serves where the parser can't: to word what is wrong with a text, and to read the objects whose names
/// begin with "$", as they are read by other rules than the rest.
class ExactReader {
 public:
  /// Begin at an offset of a text, within so many levels of objects and arrays.
  explicit ExactReader(std::string_view text, std::size_t offset = 0, std::size_t depth = 0)
      : ExactReader(text, offset, depth, ownStacks_) {}

  /// Begin likewise, and put elements on the stacks of somebody else.
  ExactReader(std::string_view text, std::size_t offset, std::size_t depth, BlockStacks& stacks)
      : scan_(text, offset), depth_(depth), stacks_(stacks) {}
  ExactReader(const ExactReader&) = delete;
  ExactReader& operator=(const ExactReader&) = delete;

  /// Read all of the text.
  Document document();

  /// Read the value here, as the first element of an array or as anything else.
  hvArrayPtr value(bool isFirstElement = false);

  /// Read the value here, and leave its elements on the stacks.
  Block block(bool isFirstElement = false);

  /// Read the value of "$meta" here.
  void metaData(Document& into);

  /// Read the value of "$include" here.
  std::vector<Include> includes();

  /// Read what the text includes and nothing beyond that: "$include" stands ahead of all other members.
  std::vector<Include> leadingIncludes();

  TextScan& scan() noexcept { return scan_; }

  /// Pass the object here: `check(name, offset)` for each name, and `read(name)` at its value.
  template <typename Check, typename Read>
  std::shared_ptr<const MemberNameList> forEachMember(const Check& check, const Read& read);

  /// Pass the array here: `read(isFirst)` at each element. It counts as so many levels.
  template <typename Read>
  void forEachElement(const Read& read, std::size_t levels = 1);

  /// Throw a `Fault` if `names` has the name already, which stands at an offset; else add it.
  void addName(MemberNames& names, const std::string& name, std::size_t offset) const;

 private:
  void enter(std::size_t levels = 1);
  void leave(std::size_t levels = 1) noexcept;
  void passColon();
  bool passCommaBehindMember();
  bool passCommaBehindElement();
  static void checkNamesInMetaData(const Document& document);

  Block object();
  Block array();
  Block number();
  Block text(boost::optional<std::u16string> text);
  Block truth(bool truth);
  VariableMetaData metaDataOf(const std::string& variable);

  TextScan scan_;
  std::size_t depth_;
  BlockStacks ownStacks_;
  BlockStacks& stacks_;
};

template <typename Check, typename Read>
std::shared_ptr<const MemberNameList> ExactReader::forEachMember(const Check& check, const Read& read) {
  MemberNames names;
  enter();
  if (!scan_.isAt('}')) {
    do {
      const std::size_t offset = scan_.offset();
      const std::string name = scan_.string();
      addName(names, name, offset);
      check(name, offset);
      passColon();
      read(name);
    } while (passCommaBehindMember());
  }
  leave();
  return names.finish();
}

template <typename Read>
void ExactReader::forEachElement(const Read& read, std::size_t levels) {
  enter(levels);
  if (!scan_.isAt(']')) {
    bool isFirst = true;
    do {
      scan_.skipSpace();
      read(isFirst);
      isFirst = false;
    } while (passCommaBehindElement());
  }
  leave(levels);
}

}  // namespace nd::adapters::json
