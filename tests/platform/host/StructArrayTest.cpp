#include <string_view>

#include "platform/host/StructArray.h"
#include "tests/platform/host/HostTest.h"

namespace {

class StructArrayTest : public HostTest {};

std::vector<std::string> manyNames(std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back("field" + std::to_string(i));
  return names;
}

TEST_F(StructArrayTest, FieldsKeepTheirOrderAndStartAsNull) {
  const hvArrayPtr array(hvCreateStructArray({1, 2}, {"zeta", "alpha", ""}));
  ASSERT_EQ(hvGetNumberOfFields(array.get()), 3U);
  EXPECT_EQ(hvGetFieldName(array.get(), 0), "zeta");
  EXPECT_EQ(hvGetFieldName(array.get(), 1), "alpha");
  EXPECT_EQ(hvGetFieldName(array.get(), 2), "");
  EXPECT_EQ(hvGetField(array.get(), 1, "alpha"), nullptr);
  EXPECT_EQ(hvGetField(array.get(), 0, ""), nullptr);
}

TEST_F(StructArrayTest, EachElementHasValuesOfItsOwn) {
  const hvArrayPtr array(hvCreateStructArray({1, 2}, {"a", "b"}));
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t field = 0; field < 2; ++field) {
      hvSetField(array.get(), i, hvGetFieldName(array.get(), field),
                 doubleScalar(static_cast<double>(10 * i + field)));
    }
  }
  EXPECT_EQ(*hvGetData<double>(hvGetField(array.get(), 0, "a")), 0);
  EXPECT_EQ(*hvGetData<double>(hvGetField(array.get(), 0, "b")), 1);
  EXPECT_EQ(*hvGetData<double>(hvGetField(array.get(), 1, "a")), 10);
  EXPECT_EQ(*hvGetData<double>(hvGetField(array.get(), 1, "b")), 11);
  EXPECT_EQ(hvGetFieldByNumber(array.get(), 1, 1), hvGetField(array.get(), 1, "b"));
}

TEST_F(StructArrayTest, ReplacingDestroysWhatWasThere) {
  const hvArrayPtr array(hvCreateStructArray({1, 1}, {"a"}));
  hvSetField(array.get(), 0, "a", doubleScalar(1));
  hvSetField(array.get(), 0, "a", doubleScalar(2));
  EXPECT_EQ(arraysMade(), 2U);
  hvSetField(array.get(), 0, "a", nullptr);
  EXPECT_EQ(arraysMade(), 1U);
}

TEST_F(StructArrayTest, TwoFieldsOfOneNameAreRefused) {
  EXPECT_EQ(raised([] { hvCreateStructArray({1, 1}, {"a", "b", "a"}); }), "hv:messages/DuplicateField");
  EXPECT_EQ(raised([] { hvCreateStructArray({1, 1}, {"", ""}); }), "hv:messages/DuplicateField");
  std::vector<std::string> names = manyNames(100);
  names.push_back("field50");
  EXPECT_EQ(sentence([&] {
              hvCreateStructArray({1, 1}, names);
            }),
            "A structure can't have two fields named \"field50\": give each field a name of its own.");
}

TEST_F(StructArrayTest, ManyFieldsAreFoundByName) {
  for (const std::size_t count : {8UL, 9UL, 1000UL}) {
    const hvArrayPtr array(hvCreateStructArray({1, 1}, manyNames(count)));
    for (std::size_t i = 0; i < count; ++i) {
      const std::string name = "field" + std::to_string(i);
      EXPECT_TRUE(hvHasField(array.get(), name));
      hvSetField(array.get(), 0, name, doubleScalar(static_cast<double>(i)));
    }
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_EQ(*hvGetData<double>(hvGetFieldByNumber(array.get(), 0, i)), static_cast<double>(i));
    }
    EXPECT_FALSE(hvHasField(array.get(), "field" + std::to_string(count)));
  }
}

TEST_F(StructArrayTest, NamesAreComparedExactly) {
  const hvArrayPtr array(hvCreateStructArray({1, 1}, {"name", std::string("a\0b", 3)}));
  EXPECT_TRUE(hvHasField(array.get(), "name"));
  EXPECT_FALSE(hvHasField(array.get(), "Name"));
  EXPECT_FALSE(hvHasField(array.get(), "nam"));
  EXPECT_FALSE(hvHasField(array.get(), ""));
  EXPECT_TRUE(hvHasField(array.get(), std::string_view("a\0b", 3)));
  EXPECT_FALSE(hvHasField(array.get(), "a"));
  EXPECT_FALSE(hvHasField(nullptr, "name"));
  EXPECT_FALSE(hvHasField(doubleScalar(1).get(), "name"));
}

TEST_F(StructArrayTest, AnAbsentFieldIsToldWithTheFieldsThatThereAre) {
  const hvArrayPtr array(hvCreateStructArray({1, 1}, {"lower", "upper"}));
  EXPECT_EQ(raised([&] { hvGetField(array.get(), 0, "middle"); }), "hv:messages/NoSuchField");
  EXPECT_EQ(raised([&] { hvSetField(array.get(), 0, "middle", nullptr); }), "hv:messages/NoSuchField");
  EXPECT_EQ(sentence([&] { hvGetField(array.get(), 0, "middle"); }),
            "hvGetField found no field \"middle\" in a structure whose fields are: lower, upper.");
  EXPECT_EQ(raised([&] {
              hvGetField(hvArrayPtr(hvCreateStructArray({1, 1}, {})).get(), 0, "a");
            }),
            "hv:messages/NoSuchField");
}

TEST_F(StructArrayTest, EveryIndexAndClassIsChecked) {
  const hvArrayPtr array(hvCreateStructArray({1, 2}, {"a"}));
  const hvArrayPtr number = doubleScalar(1);
  EXPECT_EQ(raised([&] { hvGetField(array.get(), 2, "a"); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvSetField(array.get(), 2, "a", nullptr); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvGetFieldByNumber(array.get(), 2, 0); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvGetFieldByNumber(array.get(), 0, 1); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvGetFieldName(array.get(), 1); }), "hv:messages/IndexOutOfRange");
  EXPECT_EQ(raised([&] { hvGetField(number.get(), 0, "a"); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvSetField(number.get(), 0, "a", nullptr); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetFieldByNumber(number.get(), 0, 0); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetFieldName(number.get(), 0); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetNumberOfFields(number.get()); }), "hv:messages/WrongClass");
  EXPECT_EQ(raised([&] { hvGetField(nullptr, 0, "a"); }), "hv:messages/NullArray");
  EXPECT_EQ(raised([&] { hvSetField(nullptr, 0, "a", nullptr); }), "hv:messages/NullArray");
  EXPECT_EQ(raised([&] { hvGetNumberOfFields(nullptr); }), "hv:messages/NullArray");
}

TEST_F(StructArrayTest, ARefusedValueStaysTheCallers) {
  const hvArrayPtr array(hvCreateStructArray({1, 1}, {"a"}));
  hvArrayPtr value = doubleScalar(1);
  EXPECT_EQ(raised([&] { hvSetField(array.get(), 0, "b", std::move(value)); }), "hv:messages/NoSuchField");
  EXPECT_EQ(raised([&] { hvSetField(array.get(), 1, "a", std::move(value)); }),
            "hv:messages/IndexOutOfRange");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(hvGetField(array.get(), 0, "a"), nullptr);
  hvSetField(array.get(), 0, "a", std::move(value));
  EXPECT_EQ(value, nullptr);
}

TEST_F(StructArrayTest, AStructureCannotHoldItself) {
  const hvArrayPtr array(hvCreateStructArray({1, 1}, {"a"}));
  EXPECT_EQ(raised([&] { hvSetField(array.get(), 0, "a", array.get()); }), "hv:messages/InsideItself");
  hvArray* const inner = hvCreateStructArray({1, 1}, {"b"});
  hvSetField(array.get(), 0, "a", inner);
  EXPECT_EQ(raised([&] { hvSetField(inner, 0, "b", array.get()); }), "hv:messages/AlreadyTakenOver");
}

TEST_F(StructArrayTest, ALentFieldSurvivesAChangeOfAnother) {
  const hvArrayPtr array(hvCreateStructArray({1, 1}, {"a", "b"}));
  hvSetField(array.get(), 0, "a", doubleScalar(1));
  const hvArray* const lent = hvGetField(array.get(), 0, "a");
  hvSetField(array.get(), 0, "b", doubleScalar(2));
  EXPECT_EQ(hvGetField(array.get(), 0, "a"), lent);
}

}  // namespace
