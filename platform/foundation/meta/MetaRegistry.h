#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <typeindex>
#include <vector>

#include "platform/export.h"
#include "platform/foundation/Transaction.h"
#include "platform/foundation/meta/Meta.h"
#include "platform/foundation/meta/MetaImpl.h"
#include "platform/foundation/meta/PropertySerializer.h"
#include "platform/text/Compare.h"

namespace lx::base::meta {

/// Knows every type by name, and owns the model in which the meta elements live.
///
/// The types that the foundation brings itself are registered from the start, under their name alone and
/// under their qualified one: `ModelElement`, `String`, `StdString`, `Boolean`, `Integer`, `Model`,
/// `HvArray`, `UUID`, and the classes of meta elements. Between calls the meta model is frozen. If it was
/// destroyed, the next update makes another one with these types; a metapackage brings its types back by its
/// `initialize`.
///
/// Whoever writes the registry holds the mutex, and so does every look-up while it lasts. Meta elements keep
/// their memory from the commit of their making to the end of the process, whether they stay registered or
/// not; any thread may look them up, keep handles to them and read them. What must not be is that a root
/// package is taken away, or the model destroyed, while another thread reads the types, or that two threads
/// ask meta elements for their model.
class ND_PLATFORM_EXPORT MetaRegistry {
 public:
  class Update;
  using Names = std::map<std::u16string, Type, text::Less>;

  static MetaRegistry& getInstance();

  std::recursive_mutex& mutex() noexcept { return mutex_; }

  /// Give the model of the meta elements; one that is gone if it was destroyed and nobody updated since.
  const Model& model() const noexcept { return model_; }

  /// Give a type by one of its names. Raises `NoSuchType`.
  Type getType(const std::u16string& name) const;

  /// Find a type by one of its names; a null handle if there is none.
  Type findType(const std::u16string& name) const;

  /// Give a type of one kind by name. Raise `NoSuchType` if the name is unknown or that of another kind.
  Class getClass(const std::u16string& name) const;
  PrimitiveType getPrimitiveType(const std::u16string& name) const;

  /// Tell whether values of a native type are values of a type: for a class its handles and those of
  /// registered subclasses. False for a null handle, and for a type that came without a native one.
  bool isCorrectTypeForTypeId(const Type& type, std::type_index native) const;

  /// Give the root packages, in the order of their registration, or one of them; null if there is none.
  std::vector<Package> getRootPackages() const;
  Package findRootPackage(const std::u16string& name) const;

  /// Register a type, or a name more for it; within an update.
  void registerTypeNames(const Type& type, const std::vector<std::u16string>& names);

  /// Register what makes collections of a class's elements, and what makes its builders.
  void registerType(const Class& type, CollectionFactory collectionFactory, BuilderFactory builderFactory);
  void registerRootPackage(const Package& package);

  /// Take a root package away with all that it holds and the serializers of its types; within an update.
  void unregisterRootPackage(const std::u16string& name);

 private:
  MetaRegistry();
  void makeStandard();
  MetaRegistry& standing();
  std::vector<ModelElement> unpinnedElements(const Model& model);
  void pin(std::vector<ModelElement> elements) noexcept;

  mutable std::recursive_mutex mutex_;
  Model model_;
  Names types_;
  std::vector<Package> rootPackages_;
  std::vector<ModelElement> pinned_;
};

/// The scope of a change to the registry: holds its mutex, makes its model anew if that was destroyed, thaws
/// it, and opens a quiet transaction on it. What was not committed is undone, in the model, the registry and
/// the serializers.
class ND_PLATFORM_EXPORT MetaRegistry::Update {
 public:
  explicit Update(MetaRegistry& registry);
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;
  ~Update();

  void commit();

 private:
  MetaRegistry& registry_;
  std::scoped_lock<std::recursive_mutex> lock_;
  Names types_;
  std::vector<Package> rootPackages_;
  PropertySerializerRegistry::Entries serializers_;
  Model::Thawer thawer_;
  Transaction transaction_;
};

/// Give what is made at the first call and kept for good, and asks the registry while it is made: a
/// metapackage.
///
/// It is made under the registry's mutex. Whoever holds the mutex may come here, too, so that everybody takes
/// it before the guard of the static; the other order, by the static's own guard first, would let two threads
/// wait for each other.
template <class T, class Make>
T& madeOnce(Make make) {
  static std::atomic<T*> made = nullptr;  // constant, so that it needs no guard
  T* present = made.load(std::memory_order_acquire);
  if (present == nullptr) {
    const std::scoped_lock lock(MetaRegistry::getInstance().mutex());
    static T& first = *make();
    present = &first;
    made.store(present, std::memory_order_release);
  }
  return *present;
}

}  // namespace lx::base::meta
