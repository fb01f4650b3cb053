#include "tests/platform/foundation/Probing.h"

#include <sstream>

#include <boost/uuid/uuid_io.hpp>
#include <gtest/gtest.h>

#include "platform/text/Convert.h"

namespace probing {

namespace {

void write(std::ostream& out, const ModelElement& element) {
  out << static_cast<const void*>(element.impl());
}

void write(std::ostream& out, const Elements& elements) {
  out << '[';
  for (const ModelElement& element : elements) write(out, element), out << ' ';
  out << ']';
}

void write(std::ostream& out, const Value& value) {
  if (value.is<ModelElement>())
    write(out, value.as<ModelElement>());
  else if (value.is<Elements>())
    write(out, value.as<Elements>());
  else if (value.is<std::u16string>())
    out << '"' << lx::text::toUtf8(value.as<std::u16string>()) << '"';
  else if (value.is<std::int32_t>())
    out << value.as<std::int32_t>();
}

/// Write down what the values don't tell: the proxies that keyed collections hold apart.
void writeProxies(std::ostream& out, const ModelElement& element) {
  const auto* const containers = dynamic_cast<const Containers::Impl*>(element.impl());
  if (containers == nullptr) return;
  out << " apart ";
  write(out, elementsOf(containers->getByName().proxies()));
  write(out, elementsOf(containers->getByNumber().proxies()));
  write(out, elementsOf(containers->getAllByName().proxies()));
}

}  // namespace

boost::uuids::uuid identity(std::uint8_t number) {
  boost::uuids::uuid uuid{};
  uuid.data[15] = number;
  return uuid;
}

Thing thing(const Model& model, const std::u16string& name) {
  const Thing result = Thing::create(model);
  result.setName(name);
  return result;
}

std::string stateOf(const Model& model) {
  std::ostringstream out;
  for (const ModelElement& element : model.impl()->elements()) {
    write(out, element);
    out << (element.isProxy() ? " proxy of " : " ") << lx::text::toUtf8(element.getMetaClass().getName())
        << ' ' << element.identifier() << " in ";
    write(out, element.container());
    out << " of ";
    write(out, element.referrers());
    for (const lx::base::meta::Property& property : element.getMetaClass().getProperties()) {
      out << ' ' << lx::text::toUtf8(property.getName()) << '=';
      write(out, element.impl()->getPropertyValue(property));
    }
    writeProxies(out, element);
    out << " found ";
    write(out, model.impl()->findElement(element.identifier()));
    out << '\n';
  }
  return out.str();
}

void expectUndone(const std::string& before, const Model& model, const char* how) {
  EXPECT_EQ(stateOf(model), before) << how;
}

}  // namespace probing
