#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <boost/optional.hpp>

#include "adapters/json/MemberNames.h"
#include "platform/host/Array.h"

namespace nd::adapters::json {

class ExactReader;

/// Reads an object such as
///
///     {"$class": "int8", "$size": [2, 3], "$data": [1, 2, 3, 4, 5, 6]}
///
/// as an array of this class and size, its elements column by column. "$class" comes first, so that the
/// elements can be read as they come; the other members have any order. What is wrong is thrown as a `Fault`.
class TaggedValue {
 public:
  explicit TaggedValue(ExactReader& reader) noexcept : reader_(reader) {}

  /// Read the object that stands where the reader is.
  hvArrayPtr read();

 private:
  /// Numbers bit by bit: integers as uint64, single and double in their own form.
  using Numbers = std::vector<std::uint64_t>;

  void readMember(const std::string& name);
  void readClass();
  void readSize();
  void readFields();
  void readData();
  void readNumbers(Numbers& numbers);
  void readTruths();
  void readCharacters();
  void readTexts();
  void readCells();
  void readStructures();
  std::size_t readValues(std::size_t levels);

  std::uint64_t number();
  std::uint64_t floatingPoint();
  std::uint64_t integer();
  std::u16string units();
  std::string fieldName();

  void checkName(const std::string& name, std::size_t offset);
  void checkCompleteness() const;
  void checkValuesOfFields() const;
  void checkCount(std::size_t count, std::size_t offset) const;
  hvArrayPtr make();
  hvArrayPtr makeNumeric() const;
  template <typename T>
  hvArrayPtr makeNumbers() const;
  hvArrayPtr makeLogical() const;
  hvArrayPtr makeCharacters() const;
  hvArrayPtr makeTexts();
  hvArrayPtr makeCells();
  hvArrayPtr makeStructures();

  ExactReader& reader_;
  bool isFirst_ = true;
  hvClassCode classCode_ = hvClassCode::Unknown;
  std::string class_;
  boost::optional<hvDims> size_;
  boost::optional<std::vector<std::string>> fields_;
  /// Where "$size", "$data" and "$imaginary" have their values.
  std::size_t sizeOffset_ = 0;
  boost::optional<std::size_t> dataOffset_;
  boost::optional<std::size_t> imaginaryOffset_;
  std::size_t end_ = 0;

  /// The elements, in what is made for their class, and how many.
  std::size_t count_ = 0;
  Numbers numbers_;
  Numbers imaginary_;
  std::u16string characters_;
  std::vector<boost::optional<std::u16string>> texts_;
  std::vector<hvArrayPtr> values_;
  /// A structure by where its values begin and how many there are.
  struct Values {
    std::size_t offset = 0;
    std::size_t count = 0;
  };
  /// The first structure, and the first one that has another number of values.
  boost::optional<Values> first_;
  boost::optional<Values> deviating_;
};

}  // namespace nd::adapters::json
