// The bodies of the operations and derived properties that the test model describes.
#include "tests/support/model/bodies.h"

#include "platform/text/Convert.h"

namespace probe {

using lx::text::toUtf16;

// Shape

std::u16string Shape::Impl::getLabel() const {
  return getMetaClass().getName() + u" " + toUtf16(std::to_string(area()));
}

boost::optional<std::int32_t> Shape::Impl::getHalf() const {
  return getSide() % 2 == 0 ? boost::optional<std::int32_t>(getSide() / 2) : boost::none;
}

lx::base::ModelElement Shape::Impl::getHolder() const {
  return lx::base::ModelElement(container());
}

bool Shape::Impl::getSecret() const {
  return area() % 2 == 0;
}

void Shape::Impl::scale(std::int32_t by) {
  ++Doings::shapesScaled;
  setSide(getSide() * by);
}

Shape Shape::Impl::twin(const lx::base::Model&) {
  return {};
}

std::int32_t Shape::sum(const std::vector<Shape>& shapes) {
  std::int32_t result = 0;
  for (const Shape& shape : shapes) result += shape.area();
  return result;
}

std::vector<std::int32_t> Shape::Impl::corners() {
  return {};
}

std::int32_t Shape::Impl::count() {
  return Doings::shapesScaled;
}

std::int32_t Shape::Impl::measure() {
  return getSide();
}

// Square

void Square::Impl::didCreate() {
  ++Doings::squaresCreated;
}

void Square::Impl::aboutToDestroy() {
  ++Doings::squaresToldOfTheirEnd;
}

std::int32_t Square::Impl::area() const {
  return getSide() * getSide();
}

bool Square::Impl::describe(const std::u16string& language, std::u16string& text,
                            std::vector<Colour>& colours) const {
  if (language != u"en") return false;
  text = u"a square of side " + toUtf16(std::to_string(getSide()));
  colours = {getColour()};
  return true;
}

std::u16string Square::Impl::create(const Shape& from) {
  setSide(from.side());
  return from.label();
}

Shape Square::Impl::twin(const lx::base::Model& model) {
  const Square made = Square::create(model);
  made.setSide(getSide());
  made.setColour(getColour());
  return made;
}

// Cube

std::int32_t Cube::Impl::area() const {
  return 6 * Square::Impl::area();
}

void Cube::Impl::scale(std::int32_t by) {
  Square::Impl::scale(by);
  setColour(Colour::Green);
}

std::int32_t Cube::Impl::volume() {
  return getSide() * getSide() * getSide();
}

}  // namespace probe
