#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <boost/optional.hpp>
#include <boost/uuid/uuid.hpp>

#include "platform/export.h"

namespace lx::base {

namespace meta {
class Class;
}

class ChangeObserver;
class ModelElement;
class Transaction;

/// Names the group of models that a model is created into. One thread serves all of them, so the group makes
/// no difference; it is kept with the model.
class ND_PLATFORM_EXPORT Constellation {};

/// Makes the queue on which a model's deferred work would run. Nothing is deferred on one thread; the factory
/// is kept with the model.
class ND_PLATFORM_EXPORT WorkQueueFactory {
 public:
  virtual ~WorkQueueFactory();

  /// Give the factory that models get unless told otherwise.
  static const std::shared_ptr<const WorkQueueFactory>& getDefault();
};

/// A model: the owner of its elements, and the scope of their transactions.
///
/// A handle shares the model; the last handle destroys it, and destroying a model destroys its elements. Each
/// element is told by `aboutToDestroy` while all of the model is still whole.
///
///     Model model = Model::create();
///     auto tuple = ChangeTuple::create(model);
///     {
///       Transaction change = model.impl()->beginTransaction(false);
///       tuple.setId(u"gain");
///     }                       // not committed: the id is as before
///
/// A model and its elements are used by one thread.
class ND_PLATFORM_EXPORT Model {
 public:
  class Impl;
  class Thawer;
  class Freezer;

  Model() noexcept = default;
  explicit Model(Impl* impl) noexcept;
  Model(const Model& other) noexcept;
  Model(Model&& other) noexcept : impl_(other.impl_) { other.impl_ = nullptr; }
  Model& operator=(const Model& other) noexcept;
  Model& operator=(Model&& other) noexcept;
  ~Model();

  /// Give the class that describes models: it has no elements.
  static meta::Class metaClass();

  /// Make a new, empty model.
  static Model create(
      const Constellation& constellation = {},
      const std::shared_ptr<const WorkQueueFactory>& factory = WorkQueueFactory::getDefault());

  /// Make a new, empty model for the time of one task: what is in it is not meant to last. Like every model
  /// it goes with its last handle.
  static Model createTransientModel();

  /// Make a new, empty model under an address, which is its name for people: nothing is looked up by it, and
  /// two models may have one address. Its identity is the UUID given, also if that is the nil one.
  static Model createRegistryModel(const std::u16string& address, const boost::uuids::uuid& uuid);

  /// Tell whether the handle is not null. It says nothing of life: `isAlive` does.
  explicit operator bool() const noexcept { return impl_ != nullptr; }

  /// Tell whether the handle's model is there and was not destroyed.
  bool isAlive() const noexcept;

  /// Give the model's identity, random and made when first asked for. Raises `InvalidValue` for a null
  /// handle.
  boost::uuids::uuid identifier() const;

  /// Tell whether the model was made for one task. False for a null handle.
  bool isTransient() const noexcept;

  /// Give the address of a registry model; empty for every other one and for a null handle.
  std::u16string address() const;

  /// Destroy the model and all of its elements now, whoever holds a handle.
  ///
  /// Passes on what an element's `aboutToDestroy` throws; the model then lives on. Raises `InvalidValue`
  /// while a transaction is open. Destroying a model that is gone does nothing.
  void destroy() const;

  Impl* impl() const noexcept { return impl_; }

  friend bool operator==(const Model& left, const Model& right) noexcept { return left.impl_ == right.impl_; }

 private:
  Impl* impl_ = nullptr;
};

/// Lifts the read-only state of a model for as long as it lives.
class ND_PLATFORM_EXPORT Model::Thawer {
 public:
  Thawer(Thawer&& other) noexcept;
  Thawer(const Thawer&) = delete;
  Thawer& operator=(const Thawer&) = delete;
  Thawer& operator=(Thawer&&) = delete;
  ~Thawer();

 private:
  friend class Model::Freezer;
  explicit Thawer(const Model& model) noexcept;

  Model model_;
};

/// Makes a model read-only: every mutator on it and its elements then raises `InvalidValue`, and no
/// transaction can be begun. One that is open can still be committed or undone.
class ND_PLATFORM_EXPORT Model::Freezer {
 public:
  /// Make the model read-only. Raises `InvalidValue` for a null or dead model.
  static void freeze(const Model& model);

  /// Lift the read-only state until the result goes. A model that isn't frozen stays writable.
  [[nodiscard]] static Thawer thaw(const Model& model);
};

}  // namespace lx::base
