#include "platform/foundation/ReferringField.h"

#include <algorithm>
#include <functional>

namespace lx::base::detail {

ReferringField::~ReferringField() = default;

void ReferringField::link(Link& link) noexcept {
  if (!link.target || link.target.impl()->modelImpl() != owner().modelImpl()) return;
  link.field = this;
  owner()._inverseAddThis(link);
}

void ReferringField::unlink(Link& link) noexcept {
  if (link.field == nullptr) return;
  link.target.impl()->inverseRemove(link);
  link.field = nullptr;
}

namespace {

/// Call f with each link by which a living element refers to the element. f may take the link out.
template <class F>
void forEachReference(const ModelElement::Impl& element, F f) {
  for (Link* next = element.incoming(); next != nullptr;) {
    Link& link = *next;
    next = link.next;
    if (link.field->owner().isAlive()) f(link);
  }
}

/// Let the fields that refer to elements let go of them.
class Loser final : public ModelElement::Impl::ContainedVisitor {
 public:
  void visit(ModelElement::Impl&) override {}
  void visitReferring(ReferringField& field) override {
    indices |= std::uint64_t{1} << field.index();
    field.loseAll();
  }

  std::uint64_t indices = 0;
};

}  // namespace

std::vector<ModelElement> referrersOf(const ModelElement::Impl& element) {
  std::vector<const Link*> links;
  if (element.isAlive()) forEachReference(element, [&](const Link& link) { links.push_back(&link); });
  const auto ownerOf = [](const Link* link) { return &link->field->owner(); };
  const auto isOlder = [](const Link* left, const Link* right) { return left->number < right->number; };
  std::sort(links.begin(), links.end(), [&](const Link* left, const Link* right) {
    return ownerOf(left) == ownerOf(right) ? isOlder(left, right)
                                           : std::less<>()(ownerOf(left), ownerOf(right));
  });
  links.erase(
      std::unique(links.begin(), links.end(),
                  [&](const Link* left, const Link* right) { return ownerOf(left) == ownerOf(right); }),
      links.end());
  std::sort(links.begin(), links.end(), isOlder);
  std::vector<ModelElement> result;
  result.reserve(links.size());
  for (const Link* link : links) result.emplace_back(ownerOf(link));
  return result;
}

void endReferences(ModelElement::Impl& element) {
  forEachReference(element, [](Link& link) { link.field->targetDies(link); });
}

void referencesBecomeProxies(ModelElement::Impl& element) {
  forEachReference(element, [](Link& link) { link.field->targetBecomesProxy(link); });
}

void resolveReferences(ModelElement::Impl& proxy, ModelElement::Impl& element) {
  forEachReference(proxy, [&](Link& link) {
    if (link.field->accepts(element)) link.field->targetIsResolved(link, element);
  });
}

std::uint64_t loseReferences(ModelElement::Impl& element) {
  Loser loser;
  element.doDestroy(loser);
  return loser.indices;
}

ModelElement loadedElement(const ModelElement& proxy) {
  if (!proxy.isAlive() || !proxy.isProxy()) return {};
  const ModelElement::Impl& impl = *proxy.impl();
  ModelElement found = impl.modelImpl()->findElement(impl.getPersistentProxyId(false));
  return found.isProxy() ? ModelElement() : found;
}

bool isProxyTo(const ModelElement::Impl& element, const boost::uuids::uuid& uuid) noexcept {
  return element.isAlive() && element.isProxy() && !uuid.is_nil() &&
         element.getPersistentProxyId(false) == uuid;
}

}  // namespace lx::base::detail
