#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/adapters/json/arrays.h"
#include "tests/adapters/json/readText.h"

using arrays::cells;
using arrays::doubles;
using arrays::list;
using arrays::nothing;
using arrays::row;
using arrays::scalar;
using arrays::structures;

TEST(ReaderStructures, ReadsAnObjectAsAStructure) {
  EXPECT_TRUE(readsAs(R"({"lower": -1, "unit": "V"})",
                      structures(1, {"lower", "unit"}, list(scalar(-1), row(u"V")))));
  EXPECT_TRUE(readsAs("{}", structures(1, {}, {})));
}

TEST(ReaderStructures, ReadsNestedObjects) {
  EXPECT_TRUE(readsAs(
      R"({"a": {"b": {"c": [1, 2]}}, "d": null})",
      structures(
          1, {"a", "d"},
          list(structures(1, {"b"}, list(structures(1, {"c"}, list(doubles({1, 2}, {1, 2}))))), nothing()))));
}

TEST(ReaderStructures, TakesAnyTextAsTheNameOfAField) {
  EXPECT_TRUE(readsAs(R"({"": 1, "max speed": 2, "2nd": 3, "\u00e4\n": 4})",
                      structures(1, {"", "max speed", "2nd", "\xC3\xA4\n"},
                                 list(scalar(1), scalar(2), scalar(3), scalar(4)))));
}

TEST(ReaderStructures, ReadsLikeObjectsAsAStructureArray) {
  EXPECT_TRUE(
      readsAs(R"([{"a": 1, "b": "x"}, {"a": [2, 3], "b": null}])",
              structures(2, {"a", "b"}, list(scalar(1), row(u"x"), doubles({1, 2}, {2, 3}), nothing()))));
  EXPECT_TRUE(readsAs(R"([{"a": 1}])", structures(1, {"a"}, list(scalar(1)))));
  EXPECT_TRUE(readsAs("[{}, {}, {}]", structures(3, {}, {})));
}

TEST(ReaderStructures, TakesTheOrderOfTheFirstObjectForAll) {
  EXPECT_TRUE(readsAs(R"([{"a": 1, "b": 2, "c": 3}, {"c": 6, "a": 4, "b": 5}, {"a": 7, "b": 8, "c": 9}])",
                      structures(3, {"a", "b", "c"},
                                 list(scalar(1), scalar(2), scalar(3), scalar(4), scalar(5), scalar(6),
                                      scalar(7), scalar(8), scalar(9)))));
}

TEST(ReaderStructures, ReadsUnlikeObjectsAsCells) {
  EXPECT_TRUE(readsAs(R"([{"a": 1}, {"b": 2}])",
                      cells(structures(1, {"a"}, list(scalar(1))), structures(1, {"b"}, list(scalar(2))))));
  EXPECT_TRUE(readsAs(
      R"([{"a": 1}, {"a": 2, "b": 3}])",
      cells(structures(1, {"a"}, list(scalar(1))), structures(1, {"a", "b"}, list(scalar(2), scalar(3))))));
  EXPECT_TRUE(readsAs(
      R"([{"a": 1, "b": 2}, {"a": 3, "b": 4}, {"a": 5}, {"b": 7, "a": 6}])",
      cells(structures(1, {"a", "b"}, list(scalar(1), scalar(2))),
            structures(1, {"a", "b"}, list(scalar(3), scalar(4))), structures(1, {"a"}, list(scalar(5))),
            structures(1, {"b", "a"}, list(scalar(7), scalar(6))))));
  EXPECT_TRUE(readsAs(R"([{"a": 1, "b": 2}, {"b": 3, "a": 4}, {"a": 5, "b": 6}, {"b": 7, "a": 8}, "x"])",
                      cells(structures(1, {"a", "b"}, list(scalar(1), scalar(2))),
                            structures(1, {"b", "a"}, list(scalar(3), scalar(4))),
                            structures(1, {"a", "b"}, list(scalar(5), scalar(6))),
                            structures(1, {"b", "a"}, list(scalar(7), scalar(8))), row(u"x"))));
}

TEST(ReaderStructures, LosesNothingBesideObjectsWithoutMembers) {
  const auto empty = [] { return structures(1, {}, {}); };
  const auto one = [] { return structures(1, {"a"}, list(scalar(1))); };
  EXPECT_TRUE(readsAs(R"([{}, {"a": 1}])", cells(empty(), one())));
  EXPECT_TRUE(readsAs(R"([{"a": 1}, {}])", cells(one(), empty())));
  EXPECT_TRUE(readsAs(R"([{}, {}, {"a": 1}])", cells(empty(), empty(), one())));
  EXPECT_TRUE(readsAs(R"({"p": [{}, {"q": "lost"}]})",
                      structures(1, {"p"}, list(cells(empty(), structures(1, {"q"}, list(row(u"lost"))))))));
  EXPECT_TRUE(readsAs(R"([[{}, {"a": 1}], [{}, {}]])", cells(cells(empty(), one()), structures(2, {}, {}))));
}

TEST(ReaderStructures, ReadsObjectsAmongOtherValuesAsCells) {
  EXPECT_TRUE(readsAs(R"([{"a": 1}, 2])", cells(structures(1, {"a"}, list(scalar(1))), scalar(2))));
  EXPECT_TRUE(readsAs(R"([null, {"a": 1}])", cells(nothing(), structures(1, {"a"}, list(scalar(1))))));
  EXPECT_TRUE(readsAs(R"([1, {}, [{}]])", cells(scalar(1), structures(1, {}, {}), structures(1, {}, {}))));
}

TEST(ReaderStructures, ReadsArraysOfArraysOfObjectsAsCellsOfStructureArrays) {
  EXPECT_TRUE(readsAs(R"([[{"a": 1}, {"a": 2}], [{"a": 3}, {"a": 4}]])",
                      cells(structures(2, {"a"}, list(scalar(1), scalar(2))),
                            structures(2, {"a"}, list(scalar(3), scalar(4))))));
  EXPECT_TRUE(readsAs(R"([[{"a": 1}, {"a": 2}]])", cells(structures(2, {"a"}, list(scalar(1), scalar(2))))));
}

TEST(ReaderStructures, KeepsTheOrderOfNamesOfEachStructureArrayAmongCells) {
  EXPECT_TRUE(readsAs(R"([[{"a": 1, "b": 2}, {"b": 4, "a": 3}], [{"b": 5, "a": 6}, {"a": 8, "b": 7}]])",
                      cells(structures(2, {"a", "b"}, list(scalar(1), scalar(2), scalar(3), scalar(4))),
                            structures(2, {"b", "a"}, list(scalar(5), scalar(6), scalar(7), scalar(8))))));
}

TEST(ReaderStructures, ReadsArraysWithinTheObjectsOfAnArray) {
  EXPECT_TRUE(readsAs(
      R"([{"a": [1, "x"], "b": [{"c": 1}]}, {"a": [[1, 2], [3, 4]], "b": [{"c": 2}, {"c": 3}]}])",
      structures(2, {"a", "b"},
                 list(cells(scalar(1), row(u"x")), structures(1, {"c"}, list(scalar(1))),
                      doubles({2, 2}, {1, 3, 2, 4}), structures(2, {"c"}, list(scalar(2), scalar(3)))))));
}

TEST(ReaderStructures, ReadsObjectsOfManyMembers) {
  std::string text = "[{";
  std::string turned = "{";
  std::vector<std::string> names;
  std::vector<hvArrayPtr> values;
  constexpr int count = 100;
  for (int number = 0; number < count; ++number) {
    const auto member = [](int it) { return "\"m" + std::to_string(it) + "\": " + std::to_string(it); };
    text += (number == 0 ? "" : ", ") + member(number);
    turned += (number == 0 ? "" : ", ") + member(count - 1 - number);
    names.push_back("m" + std::to_string(number));
  }
  for (int element = 0; element < 2; ++element) {
    for (int number = 0; number < count; ++number) values.push_back(scalar(number));
  }
  EXPECT_TRUE(readsAs(text + "}, " + turned + "}]", structures(2, names, std::move(values))));
}
