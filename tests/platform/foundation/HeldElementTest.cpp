// What is asked of an element through a handle holds the element: a body may come to destroy it and to let go
// of the handle.

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/messages.h"
#include "tests/platform/foundation/raised.h"
#include "tests/support/model/Square.h"

using lx::base::Model;
using lx::base::Value;
using lxb::messages::InvalidValue;
using probe::Shape;
using probe::Square;

namespace {

using Lines = std::vector<std::string>;

/// A square that runs a function in the midst of its bodies, and notes what happens to itself.
class LettingGo final : public Square::Impl {
 public:
  LettingGo(const Model& model, Lines& lines) : Square::Impl(model, {}), lines_(&lines) {}
  ~LettingGo() override { lines_->push_back("ends"); }

  std::int32_t area() const override {
    runMidway();
    return 9;
  }
  void scale(std::int32_t) override { runMidway(); }
  Shape twin(const Model& other) override {
    runMidway();
    return Square::create(other);
  }

  std::function<void()> midway;

 private:
  void runMidway() const {
    const std::function<void()> run = midway;  // what runs may end this element
    Lines& lines = *lines_;
    run();
    lines.push_back("goes on");
  }

  Lines* lines_;
};

class HeldElement : public testing::Test {
 protected:
  HeldElement() {
    auto* const impl = new LettingGo(model, lines);
    square = Square(impl);
    impl->notifyCreated();
    impl->midway = [this] {
      square.destroy();
      square = Square();
    };
  }

  LettingGo& impl() const { return static_cast<LettingGo&>(*square.impl()); }

  const Model model = Model::create();
  Lines lines;
  Square square;
  const Lines wentOnAndEnded{"goes on", "ends"};
};

TEST_F(HeldElement, OutlivesAnOperation) {
  EXPECT_EQ(square.area(), 9);
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, OutlivesAnOperationWithoutResult) {
  square.scale(2);
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, OutlivesAnOperationThatGivesASubclass) {
  EXPECT_TRUE(square.twin(model).isAlive());
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, OutlivesAnOperationThatIsCalledByReflection) {
  EXPECT_EQ(square.invoke(u"area", {}), Value(std::int32_t{9}));
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, OutlivesADerivedProperty) {
  EXPECT_EQ(square.label(), u"Square 9");
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, OutlivesADerivedPropertyThatIsReadByReflection) {
  EXPECT_EQ(square.getPropertyValue(u"label"), Value(u"Square 9"));
  EXPECT_EQ(lines, wentOnAndEnded);
}

TEST_F(HeldElement, EndsAfterAnExceptionOfItsOperation) {
  impl().midway = [this] {
    square.destroy();
    square = Square();
    throw std::runtime_error("midway");
  };
  EXPECT_THROW(static_cast<void>(square.area()), std::runtime_error);
  EXPECT_EQ(lines, Lines{"ends"});
}

TEST_F(HeldElement, IsLetGoOfWhenItIsRefusedAsGone) {
  square.destroy();
  EXPECT_THAT(raised<InvalidValue>([this] { static_cast<void>(square.area()); }),
              testing::StartsWith("InvalidValue(probe.Shape.area; "));
  EXPECT_TRUE(lines.empty());
  square = Square();
  EXPECT_EQ(lines, Lines{"ends"});
}

}  // namespace
