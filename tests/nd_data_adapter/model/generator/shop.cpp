// The bodies of the operations that the small and the hostile model describe.
#include "tests/nd_data_adapter/model/generator/shop.h"

#include <stdexcept>

#include "platform/text/Convert.h"
#include "tests/nd_data_adapter/model/generator/hostile/Hostile.h"
#include "tests/nd_data_adapter/model/generator/hostile/Value.h"

namespace shop {

void stock::Book::Impl::didCreate() {
  if (Doings::refusesBooks) throw std::runtime_error("no more books");
  ++Doings::booksCreated;
}

void stock::Book::Impl::open() {
  setComment(u"opened");
}

bool stock::Article::Impl::reduce(const std::int64_t& by, const std::u16string& because,
                                  const std::vector<Article>& also, const std::vector<Size>& sizes) {
  setComment(because + lx::text::toUtf16(std::to_string(by)));
  for (const Article& each : also) each.setComment(getComment());
  return sizes.size() == also.size();
}

std::vector<stock::Article> stock::Article::find(const lx::base::Model& model, std::int32_t Number) {
  Constrainables wanted(model);
  wanted.number.equals(Number);
  return lx::base::query::find<Article>(wanted);
}

void Shelf::Impl::aboutToDestroy() {
  ++Doings::shelvesToldOfTheirEnd;
}

Till* Shelf::Impl::till() {
  return &Doings::till;
}

}  // namespace shop

namespace hostile::std::lx::base {

::std::u16string Hostile::Impl::operate(const ::std::u16string& self, const Hostile& element,
                                        ::std::int32_t impl, bool value,
                                        const ::hostile::std::lx::base::Flag& property,
                                        const ::std::vector<Hostile>& result, const ::std::u16string& std) {
  const bool known =
      element && value && property == ::hostile::std::lx::base::Flag::name && result.empty() && impl == 0;
  return known ? self + std : u"";
}

bool Hostile::Impl::typed(::std::int32_t Uuid, const Hostile& hostile, ::hostile::std::lx::base::Flag& flag,
                          ::std::vector<Hostile>& create, ::std::u16string& lx) {
  flag = ::hostile::std::lx::base::Flag::Flag;
  create.assign(static_cast<::std::size_t>(Uuid), hostile);
  lx = getLx() == ::hostile::std::lx::base::Flag::Texts ? u"texts" : u"others";
  return true;
}

::std::u16string Hostile::Impl::toText() {
  return u"hostile";
}

::std::u16string Hostile::Impl::getDerived() const {
  return getValue() + u"'";
}

::std::u16string Value::Impl::toText() {
  return u"value of " + Hostile::Impl::toText();
}

}  // namespace hostile::std::lx::base
