#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "platform/foundation/Builder.h"

namespace lx::base {

/// Carries a builder of an E, or of a subclass, by value. Copies share what they carry, as those of every
/// wrapper do.
///
/// It is `E::BuilderWrapper`; under this name it can be named where E is only declared.
template <class E>
class BuilderOf : public ModelElement::BuilderWrapper {
 public:
  template <class B>
  requires std::is_base_of_v<E, typename B::Element> BuilderOf(
      B builder)  // NOLINT(google-explicit-constructor): a builder is what is carried
      : ModelElement::BuilderWrapper(std::move(builder)) {}

  /// Carry the same as a wrapper of a subclass.
  template <class D>
  requires(std::is_base_of_v<E, D> && !std::is_same_v<E, D>)
      BuilderOf(const BuilderOf<D>& other)  // NOLINT(google-explicit-constructor): builds an E as well
      : ModelElement::BuilderWrapper(other) {}
};

}  // namespace lx::base
