#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "adapters/json/FormatFailure.h"
#include "platform/host/ArrayComparison.h"
#include "platform/host/ArrayData.h"
#include "platform/host/ArrayText.h"
#include "platform/host/CellArray.h"
#include "platform/host/StructArray.h"
#include "platform/host/TextArray.h"
#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/hasPlainForm.h"
#include "tests/adapters/json/losslessForm.h"
#include "tests/adapters/json/readText.h"

namespace {

/// Makes arrays of every class at random, small ones, with values at the edges of their class.
class RandomArrays {
 public:
  explicit RandomArrays(unsigned seed) : random_(seed) {}

  hvArrayPtr operator()(int depth = 2) {
    switch (below(depth > 0 ? 15U : 13U)) {
      case 0:
        return numbers<double>(hvClassCode::Double);
      case 1:
        return numbers<float>(hvClassCode::Single);
      case 2:
        return numbers<std::int8_t>(hvClassCode::Int8);
      case 3:
        return numbers<std::uint8_t>(hvClassCode::UInt8);
      case 4:
        return numbers<std::int16_t>(hvClassCode::Int16);
      case 5:
        return numbers<std::uint16_t>(hvClassCode::UInt16);
      case 6:
        return numbers<std::int32_t>(hvClassCode::Int32);
      case 7:
        return numbers<std::uint32_t>(hvClassCode::UInt32);
      case 8:
        return numbers<std::int64_t>(hvClassCode::Int64);
      case 9:
        return numbers<std::uint64_t>(hvClassCode::UInt64);
      case 10:
        return truths();
      case 11:
        return characters();
      case 12:
        return texts();
      case 13:
        return cells(depth - 1);
      default:
        return structures(depth - 1);
    }
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  hvDims dimensions() {
    hvDims dimensions{below(3), below(3)};
    if (below(2) == 0) dimensions[0] = 1;
    if (below(4) == 0) dimensions.push_back(below(3));
    return dimensions;
  }

  template <typename T>
  T number() {
    if constexpr (std::is_floating_point_v<T>) {
      constexpr T some[] = {0,
                            -T{0},
                            T{1},
                            T{-2.5},
                            std::numeric_limits<T>::max(),
                            std::numeric_limits<T>::denorm_min(),
                            std::numeric_limits<T>::infinity(),
                            -std::numeric_limits<T>::infinity(),
                            std::numeric_limits<T>::quiet_NaN()};
      if (below(3) != 0) return some[below(below(2) == 0 ? 4U : std::size(some))];
      if constexpr (std::is_same_v<T, float>) {
        return std::bit_cast<float>(static_cast<std::uint32_t>(random_()));
      } else {
        return std::bit_cast<double>(std::uint64_t{random_()});
      }
    } else {
      constexpr T some[] = {0, 1, std::numeric_limits<T>::max(), std::numeric_limits<T>::min()};
      if (below(2) == 0) return some[below(std::size(some))];
      if constexpr (sizeof(T) == sizeof(std::uint64_t)) {
        return std::bit_cast<T>(std::uint64_t{random_()});
      } else {
        return static_cast<T>(random_());
      }
    }
  }

  template <typename T>
  hvArrayPtr numbers(hvClassCode classCode) {
    const bool isComplex = below(4) == 0;
    hvArrayPtr array(hvCreateNumericArray(dimensions(), classCode,
                                          isComplex ? hvComplexity::Complex : hvComplexity::Real));
    for (std::size_t index = 0; index < hvGetNumberOfElements(array.get()); ++index) {
      if (isComplex) {
        hvGetWritableData<std::complex<T>>(array.get())[index] = {number<T>(), number<T>()};
      } else {
        hvGetWritableData<T>(array.get())[index] = number<T>();
      }
    }
    return array;
  }

  hvArrayPtr truths() {
    hvArrayPtr array(hvCreateLogicalArray(dimensions()));
    for (std::size_t index = 0; index < hvGetNumberOfElements(array.get()); ++index)
      hvGetWritableData<bool>(array.get())[index] = below(2) == 0;
    return array;
  }

  char16_t unit() {
    constexpr char16_t some[] = {u'a', u'"', u'\\',  u'$',   0,      u'\n',
                                 0x7F, 0xE4, 0x20AC, 0xD83D, 0xDE00, 0xFFFF};
    return some[below(std::size(some))];
  }

  std::u16string text() {
    std::u16string text(below(4), u'\0');
    for (char16_t& each : text) each = unit();
    return text;
  }

  hvArrayPtr characters() {
    hvArrayPtr array(hvCreateCharArray(dimensions()));
    for (std::size_t index = 0; index < hvGetNumberOfElements(array.get()); ++index)
      hvGetWritableData<char16_t>(array.get())[index] = unit();
    return array;
  }

  hvArrayPtr texts() {
    hvArrayPtr array(hvCreateStringArray(dimensions()));
    for (std::size_t index = 0; index < hvGetNumberOfElements(array.get()); ++index) {
      if (below(3) == 0) {
        hvSetString(array.get(), index, boost::none);
      } else {
        hvSetString(array.get(), index, text());
      }
    }
    return array;
  }

  hvArrayPtr cells(int depth) {
    hvArrayPtr array(hvCreateCellArray(dimensions()));
    for (std::size_t index = 0; index < hvGetNumberOfElements(array.get()); ++index) {
      if (below(6) != 0) hvSetCell(array.get(), index, (*this)(depth));
    }
    return array;
  }

  hvArrayPtr structures(int depth) {
    std::vector<std::string> names{"a", "b", "", "$class", "\xC3\xA4", "\xFF", "\"\\\n"};
    std::shuffle(names.begin(), names.end(), random_);
    names.resize(below(4));
    if (below(2) == 0) std::erase_if(names, [](const std::string& name) { return name.starts_with('$'); });
    hvArrayPtr array(hvCreateStructArray(dimensions(), names));
    for (std::size_t index = 0; index < hvGetNumberOfElements(array.get()); ++index) {
      for (const std::string& name : names) hvSetField(array.get(), index, name, (*this)(depth));
    }
    return array;
  }

  std::mt19937_64 random_;
};

std::string formOf(const hvArrayPtr& array) {
  const std::string form = losslessForm(array.get());
  EXPECT_TRUE(readsAs(form, array));
  return form;
}

/// Values that may be taken for one another when they stand side by side.
std::vector<hvArrayPtr> neighbours() {
  using namespace arrays;
  constexpr std::int64_t great = 9007199254740993;
  constexpr std::uint64_t greatest = 18446744073709551615U;
  return list(
      nothing(), doubles({1, 0}, {}), doubles({2, 0}, {}), scalar(1), scalar(2.5), scalar(-1),
      int64s({1, 1}, {great}), uint64s({1, 1}, {greatest}), int64s({1, 1}, {1}), doubles({1, 2}, {1, 2}),
      int64s({1, 2}, {1, great}), doubles({2, 1}, {1, 2}), truth(true), logicals({1, 2}, {true, false}),
      row(u""), row(u"x"), strings({1, 1}, {u"a"}), strings({1, 2}, {boost::none, u"a"}),
      strings({1, 1}, {boost::none}), structures(1, {}, {}), structures(2, {}, {}),
      structures(1, {"a"}, list(scalar(1))), structures(1, {"a", "b"}, list(scalar(1), scalar(2))),
      structures(1, {"b", "a"}, list(scalar(1), scalar(2))), structures(2, {"a"}, list(scalar(1), row(u"x"))),
      structures(1, {"$a"}, list(scalar(1))), cells(nothing()), cells(nothing(), nothing()),
      cells(cells(nothing())), cells(scalar(1), row(u"x")), cells());
}

/// Tell whether a text reads as an array; what can't be read does not.
bool reads(const std::string& form, const hvArrayPtr& array) {
  try {
    return hvEqual(readValue(form).get(), array.get());
  } catch (const nd::adapters::json::FormatFailure&) {
    return false;
  }
}

hvArrayPtr cellArray(const hvDims& dimensions, std::vector<hvArrayPtr> cells) {
  hvArrayPtr array(hvCreateCellArray(dimensions));
  for (std::size_t index = 0; index < cells.size(); ++index)
    hvSetCell(array.get(), index, std::move(cells[index]));
  return array;
}

}  // namespace

TEST(LosslessForm, IsPlainWhereThatReadsAsTheValue) {
  EXPECT_EQ(formOf(arrays::scalar(2.5)), "2.5e+00");
  EXPECT_EQ(formOf(arrays::scalar(-0.0)), "-0");
  EXPECT_EQ(formOf(arrays::nothing()), "null");
  EXPECT_EQ(formOf(arrays::doubles({1, 0}, {})), "[]");
  EXPECT_EQ(formOf(arrays::doubles({2, 0}, {})), "[[], []]");
  EXPECT_EQ(formOf(arrays::doubles({2, 2}, {1, 2, 3, 4})), "[[1, 3], [2, 4]]");
  EXPECT_EQ(formOf(arrays::doubles({1, 1, 2}, {1, 2})), "[[[1, 2]]]");
  EXPECT_EQ(formOf(arrays::int64s({1, 2}, {1, 9007199254740993})), "[1, 9007199254740993]");
  EXPECT_EQ(formOf(arrays::uint64s({1, 1}, {18446744073709551615U})), "18446744073709551615");
  EXPECT_EQ(formOf(arrays::logicals({2, 1}, {true, false})), "[[true], [false]]");
  EXPECT_EQ(formOf(arrays::row(u"x\u00e4")), "\"x\u00e4\"");
  EXPECT_EQ(formOf(arrays::strings({1, 2}, {u"a", boost::none})), R"(["a", null])");
  EXPECT_EQ(formOf(arrays::structures(2, {"a"}, arrays::list(arrays::scalar(1), arrays::row(u"x")))),
            R"([{"a": 1}, {"a": "x"}])");
  EXPECT_EQ(formOf(arrays::cells(arrays::scalar(1), arrays::row(u"x"))), R"([1, "x"])");
}

TEST(LosslessForm, IsTaggedWhereThePlainOneWouldReadAsSomethingElse) {
  EXPECT_EQ(formOf(arrays::doubles({0, 2}, {})), R"({"$class": "double", "$size": [0, 2], "$data": []})");
  EXPECT_EQ(formOf(arrays::doubles({1, 1}, {std::numeric_limits<double>::infinity()})),
            R"({"$class": "double", "$size": [1, 1], "$data": ["Inf"]})");
  EXPECT_EQ(formOf(arrays::int64s({1, 1}, {1})), R"({"$class": "int64", "$size": [1, 1], "$data": [1]})");
  EXPECT_EQ(formOf(arrays::uint64s({1, 1}, {9007199254740993U})),
            R"({"$class": "uint64", "$size": [1, 1], "$data": [9007199254740993]})");
  EXPECT_EQ(formOf(arrays::strings({1, 1}, {boost::none})),
            R"({"$class": "string", "$size": [1, 1], "$data": [null]})");
  EXPECT_EQ(formOf(arrays::cells(arrays::scalar(1), arrays::scalar(2))),
            R"({"$class": "cell", "$size": [1, 2], "$data": [1, 2]})");
  EXPECT_EQ(formOf(cellArray({2, 1}, arrays::list(arrays::scalar(1), arrays::row(u"x")))),
            R"({"$class": "cell", "$size": [2, 1], "$data": [1, "x"]})");
  EXPECT_EQ(formOf(arrays::structures(1, {"$a"}, arrays::list(arrays::scalar(1)))),
            R"({"$class": "struct", "$size": [1, 1], "$fields": ["$a"], "$data": [[1]]})");
}

TEST(LosslessForm, IsPlainExactlyWhereThatReadsAsTheValue) {
  RandomArrays random(815);
  std::size_t plain = 0;
  constexpr std::size_t rounds = 5000;
  for (std::size_t round = 0; round < rounds; ++round) {
    const hvArrayPtr array = random();
    if (hvIsComplex(array.get())) {
      EXPECT_FALSE(hasPlainForm(array.get()));
      continue;
    }
    const std::string form = plainForm(array.get());
    ASSERT_EQ(hasPlainForm(array.get()), reads(form, array)) << form << "\n"
                                                             << hvFormat(array.get(), "value");
    plain += hasPlainForm(array.get()) ? 1U : 0U;
  }
  EXPECT_GT(plain, rounds / 8);
}

TEST(LosslessForm, OfCellsIsPlainExactlyWhereThatReadsAsCells) {
  const std::vector<hvArrayPtr> some = neighbours();
  const auto copy = [&](std::size_t index) { return hvArrayPtr(hvCreateSharedDataCopy(some[index].get())); };
  const auto check = [](const hvArrayPtr& cells) {
    const std::string form = plainForm(cells.get());
    EXPECT_EQ(hasPlainForm(cells.get()), reads(form, cells)) << form;
    EXPECT_TRUE(reads(losslessForm(cells.get()), cells)) << form;
  };
  for (std::size_t one = 0; one < some.size(); ++one) {
    check(arrays::cells(copy(one)));
    check(arrays::cells(arrays::cells(copy(one))));
    for (std::size_t two = 0; two < some.size(); ++two) {
      check(arrays::cells(copy(one), copy(two)));
      check(arrays::cells(arrays::cells(copy(one), copy(two)), arrays::cells(copy(two), copy(one))));
      for (std::size_t three = 0; three < some.size(); three += 3)
        check(arrays::cells(copy(one), copy(two), copy(three)));
    }
  }
}

TEST(LosslessForm, OfEveryValueReadsAsThatValue) {
  RandomArrays random(4711);
  std::size_t tagged = 0;
  constexpr std::size_t rounds = 3000;
  for (std::size_t round = 0; round < rounds; ++round) {
    const hvArrayPtr array = random();
    const std::string form = losslessForm(array.get());
    const hvArrayPtr read = readValue(form);
    ASSERT_TRUE(hvEqual(read.get(), array.get()))
        << form << "\n"
        << hvFormat(read.get(), "read") << hvFormat(array.get(), "written");
    tagged += form.starts_with("{\"$class\"") ? 1U : 0U;
  }
  EXPECT_GT(tagged, rounds / 2);
  EXPECT_LT(tagged, rounds - 100);
}
