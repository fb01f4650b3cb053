#include <limits>

#include "platform/host/messages.h"
#include "platform/host/orbex_string.h"
#include "tests/platform/host/HostTest.h"

namespace {

class HostErrorTest : public HostTest {
 protected:
  hvArrayPtr number_ = doubleScalar(1);
  hvArrayPtr cell_ = hvArrayPtr(hvCreateCellArray({1, 1}));

  hvArray* takenOver() {
    hvSetCell(cell_.get(), 0, doubleScalar(1));
    return const_cast<hvArray*>(hvGetCell(cell_.get(), 0));
  }

  static hvArrayPtr nested(std::size_t depth) {
    hvArrayPtr result = doubleScalar(1);
    for (std::size_t level = 0; level < depth; ++level) {
      hvArrayPtr outer(hvCreateCellArray({1, 1}));
      hvSetCell(outer.get(), 0, std::move(result));
      result = std::move(outer);
    }
    return result;
  }

  static hvArrayPtr missing() {
    hvArrayPtr array(hvCreateStringScalar(u""));
    hvSetString(array.get(), 0, boost::none);
    return array;
  }
};

// Tells whether a call throws the class of the message itself, as an error of the host.
template <typename Message, typename Call>
bool throws(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const Message& message) {
    const hvError& error = message;
    return error.key() == std::string(Message::Key) && error.catalogue() == std::string(Message::Catalogue);
  } catch (...) {
    return false;
  }
  return false;
}

TEST_F(HostErrorTest, IsCaughtAsTheMessageThatItSays) {
  using namespace hv::messages;
  constexpr std::size_t tooMany = std::numeric_limits<std::size_t>::max();
  EXPECT_TRUE(throws<NullArray>([] { hvGetCell(nullptr, 0); }));
  EXPECT_TRUE(throws<WrongClass>([&] { hvGetCell(number_.get(), 0); }));
  EXPECT_TRUE(throws<NotNumeric>([] { hvCreateNumericMatrix(1, 1, hvClassCode::Cell); }));
  EXPECT_TRUE(throws<TooFewDimensions>([] { hvCreateCellArray({1}); }));
  EXPECT_TRUE(throws<ArrayTooLarge>([] { hvCreateCellArray({tooMany, tooMany}); }));
  EXPECT_TRUE(throws<IndexOutOfRange>([&] { hvGetCell(cell_.get(), 1); }));
  EXPECT_TRUE(throws<NoSuchField>([] {
    hvGetField(hvArrayPtr(hvCreateStructArray({1, 1}, {"a"})).get(), 0, "b");
  }));
  EXPECT_TRUE(throws<DuplicateField>([] { hvCreateStructArray({1, 1}, {"a", "a"}); }));
  EXPECT_TRUE(throws<InsideItself>([&] { hvSetCell(cell_.get(), 0, cell_.get()); }));
  EXPECT_TRUE(throws<AlreadyTakenOver>([&] { hvGetWritableData<double>(takenOver()); }));
  EXPECT_TRUE(throws<NestedTooDeep>([&] { hvSetCell(cell_.get(), 0, nested(hvMaximumNesting)); }));
  EXPECT_TRUE(throws<NotOneText>([&] { hvArrayToString(number_.get()); }));
  EXPECT_TRUE(throws<NullText>([] { hvCreateString(static_cast<const char*>(nullptr)); }));
  EXPECT_TRUE(throws<StaleData>([&] {
    const hvdetail::WritePermit permit(number_.get());
    copyOf(number_).reset();
    permit.check();
  }));
  EXPECT_TRUE(throws<orbex::messages::MissingNotSupported>([] { hvArrayToString(missing().get()); }));
}

TEST_F(HostErrorTest, SaysWhichOperationWasGivenWhat) {
  EXPECT_EQ(sentence([&] { hvSetCell(nullptr, 0, number_.get()); }),
            "hvSetCell needs an array, and was given the null value.");
  EXPECT_EQ(
      sentence([] { hvCreateNumericMatrix(1, 1, hvClassCode::Cell); }),
      "A numeric array can't have the class code 4: it takes 6 to 15 (single, double and the integers).");
  EXPECT_EQ(sentence([] { hvCreateCellArray({}); }),
            "An array has at least two dimensions, and 0 were given: write a row of n elements as 1-by-n.");
  EXPECT_EQ(sentence([&] { hvSetCell(cell_.get(), 0, cell_.get()); }),
            "hvSetCell can't put an array into itself: put a copy into it.");
  EXPECT_EQ(
      sentence([&] { hvGetWritableData<double>(takenOver()); }),
      "hvGetWritableData was given an array that a cell, a structure or a workspace owns already: make a "
      "copy and use that.");
  EXPECT_EQ(sentence([&] { hvSetCell(cell_.get(), 0, nested(hvMaximumNesting)); }),
            "hvSetCell would nest cells and structures more than 1000 deep: make the value flatter.");
  EXPECT_EQ(sentence([] { hvCreateString(static_cast<const char*>(nullptr)); }),
            "hvCreateString needs a text, and was given a null pointer.");
  EXPECT_EQ(sentence([] { hvArrayToString(missing().get()); }),
            "A missing string has no text: replace it by a text first.");
}

}  // namespace
