#pragma once

#include <functional>
#include <vector>

#include "platform/export.h"
#include "platform/foundation/ModelImpl.h"

namespace lx::base::query {

/// What a query asks of one element.
using Condition = std::function<bool(const ModelElement::Impl&)>;

/// Finds the elements of a model that meet all conditions. The class of the elements, and the properties to
/// put conditions on, come from the generated `Constrainables` of a class:
///
///     ChangeTuple::Constrainables wanted(model);
///     wanted.x.equals(ChangeType::Delete);
///     for (const ChangeTuple& tuple : query::find<ChangeTuple>(wanted)) …
class ND_PLATFORM_EXPORT AbstractQuery {
 public:
  AbstractQuery(const AbstractQuery&) = delete;
  AbstractQuery& operator=(const AbstractQuery&) = delete;
  virtual ~AbstractQuery();

  /// List the living elements that meet all conditions, in the order of their creation.
  std::vector<ModelElement> matches() const;

  void addCondition(Condition condition);

 protected:
  /// Ask the model; raises `InvalidValue` if it is null or gone.
  explicit AbstractQuery(const Model& model);

 private:
  Model model_;
  std::vector<Condition> conditions_;
};

/// A property of the wanted elements. Conditions on one property, and on several, must all be met.
template <class T>
class Constrainable {
 public:
  using Getter = std::function<T(const ModelElement::Impl&)>;

  Constrainable(AbstractQuery& query, Getter getter) : query_(query), getter_(std::move(getter)) {}

  /// Ask that the property has this value.
  void equals(const T& value) {
    satisfies([value](const T& present) { return present == value; });
  }

  /// Ask that the property's value meets a condition.
  void satisfies(std::function<bool(const T&)> condition) {
    query_.addCondition([getter = getter_, condition = std::move(condition)](
                            const ModelElement::Impl& element) { return condition(getter(element)); });
  }

 private:
  AbstractQuery& query_;
  Getter getter_;
};

/// List what a query finds as handles of class E; what is of another class is left out.
template <class E>
std::vector<E> find(const AbstractQuery& query) {
  std::vector<E> result;
  for (const ModelElement& element : query.matches()) {
    if (auto* const impl = dynamic_cast<typename E::Impl*>(element.impl())) result.emplace_back(impl);
  }
  return result;
}

}  // namespace lx::base::query
