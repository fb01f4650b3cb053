#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include <boost/functional/hash.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_hash.hpp>

#include "platform/export.h"
#include "platform/foundation/ModelElement.h"
#include "platform/foundation/Transaction.h"

namespace lx::base {

class ChangeSet;

/// Told of changes once each outermost transaction has been committed and the model stands whole.
class ND_PLATFORM_EXPORT ChangeObserver {
 public:
  virtual ~ChangeObserver();

  /// Called once a commit. The change set lives for the call only. The observer may change the model in
  /// transactions of its own, whose notices come at once, within this one; it must not throw, since what is
  /// committed can't be taken back.
  virtual void changed(const ChangeSet& changes) noexcept = 0;
};

namespace detail {

/// One open transaction: what to undo, and where to hand it over.
struct Level {
  Model::Impl* model = nullptr;
  Level* outer = nullptr;
  Transaction* owner = nullptr;                  // null for a mutator's own level
  ModelElement::Impl* newestBefore = nullptr;    // elements behind it were created in this level
  ModelElement::Impl::Storage* saved = nullptr;  // storages of this level, the latest first
  ModelElement::Impl::Storage created;           // what elements created in this level have as their storage
  boost::optional<Value> label;
  std::size_t toldBefore = 0;  // how many elements knew of their destruction when the level was opened
  bool quiet = false;

  Level();
};

}  // namespace detail

/// A model itself.
class ND_PLATFORM_EXPORT Model::Impl {
 public:
  /// How often something happened to the model since it was made, for tests that count.
  struct Counters {
    std::uint64_t transactions = 0;  // begun, by hand or by a mutator
    std::uint64_t notices = 0;       // change sets told to an observer
  };

  Impl(const Constellation& constellation, std::shared_ptr<const WorkQueueFactory> factory);
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  ~Impl();

  void addRef() noexcept { ++references_; }
  void removeRef() noexcept;

  bool isAlive() const noexcept { return alive_; }
  boost::uuids::uuid identifier();
  void destroy();

  /// Open a transaction; true makes it quiet, so that observers hear nothing of it. A transaction within a
  /// quiet one is told, or not told, with the outermost. Raises `InvalidValue` if the model is gone or
  /// frozen.
  Transaction beginTransaction(bool quiet);

  bool hasOpenTransaction() const noexcept { return top_ != nullptr; }

  /// Give the living element of this identity; a null handle if there is none or the identity is nil.
  ModelElement findElement(const boost::uuids::uuid& uuid) const;

  /// Give the elements that nothing contains, in the order of their creation.
  std::vector<ModelElement> roots() const;

  /// Give all elements that exist, in the order of their creation.
  std::vector<ModelElement> elements() const;

  /// Count the elements that exist, by walking over them.
  std::size_t numberOfElements() const noexcept;

  /// Add an observer, which hears from the next commit on; the caller keeps it alive until it removes it or
  /// the model is gone.
  void addObserver(ChangeObserver& observer);
  void removeObserver(ChangeObserver& observer) noexcept;

  const Counters& counters() const noexcept { return counters_; }
  bool isFrozen() const noexcept { return frozen_; }

  /// Note an element's identity. Raises `CannotAddSecondObject` if a living element bears it.
  void identify(const boost::uuids::uuid& uuid, ModelElement::Impl& element);

 private:
  friend class FinalChanges;
  friend class ModelAccess;
  friend class ModelElement::Impl;
  friend class Model::Thawer;
  friend class Model::Freezer;

  ModelElement::Impl* newest_ = nullptr;
  ModelElement::Impl* oldest_ = nullptr;
  detail::Level* top_ = nullptr;
  ModelElement::Impl::Storage* retained_ = nullptr;  // of commits within a notice, the latest first
  std::vector<std::unique_ptr<detail::Level>> spareLevels_;
  std::vector<ChangeObserver*> observers_;  // null where one was removed while they are told
  std::unordered_multimap<boost::uuids::uuid, ModelElement::Impl*, boost::hash<boost::uuids::uuid>>
      identified_;
  std::shared_ptr<const WorkQueueFactory> factory_;
  Constellation constellation_;
  boost::uuids::uuid uuid_;
  Counters counters_;
  std::vector<ModelElement> told_;  // elements that know already that they are about to be destroyed
  std::uint32_t references_ = 0;
  std::uint32_t telling_ = 0;     // notices under way
  std::uint32_t destroying_ = 0;  // destructions under way, one within the other
  std::uint32_t dying_ = 0;       // elements in their aboutToDestroy
  bool alive_ = true;
  bool frozen_ = false;
  bool identifiedItself_ = false;
};

/// What happened in one outermost transaction.
class ND_PLATFORM_EXPORT ChangeSet {
 public:
  /// Give the model that changed.
  const Model& model() const noexcept { return model_; }

  /// Give the label of the commit, empty if it had none.
  const Value& label() const noexcept { return label_; }

  /// List the elements that now exist and did not, and those that existed and don't any more.
  const std::vector<ModelElement>& created() const noexcept { return created_; }
  const std::vector<ModelElement>& destroyed() const noexcept { return destroyed_; }

  /// List what changed of elements that existed before and exist now, property by property.
  std::vector<std::unique_ptr<ModelElement::Impl::Changes>> changes() const;

 private:
  friend class ModelAccess;
  ChangeSet() = default;

  Model model_;
  Value label_;
  std::vector<ModelElement> created_;
  std::vector<ModelElement> destroyed_;
  const ModelElement::Impl::Storage* saved_ = nullptr;
  bool hasChanges_ = false;
};

/// The foundation's own way into models and elements: levels are opened, handed over, kept and undone here.
class ND_PLATFORM_EXPORT ModelAccess {
 public:
  using Element = ModelElement::Impl;
  using Storage = ModelElement::Impl::Storage;

  static detail::Level& begin(Model::Impl& model, bool quiet);
  static void commit(detail::Level& level, const boost::optional<Value>& label);
  static void rollBack(detail::Level& level) noexcept;

  /// Begin what a mutator does. A level of its own is opened only if observers must hear of it and no
  /// transaction is open that it can join; null otherwise.
  static detail::Level* beginMutation(Model::Impl& model);

  static void link(Element& element);
  static void unlink(Element& element) noexcept;
  static void tell(Element& element);
  static void destroyContents(Element& element);
  static void destroy(Element& element);
  static void tearDown(Model::Impl& model, bool swallow);

  /// Tell whether an element that contains this one is in its `aboutToDestroy`.
  static bool isWithinDying(const Element& element) noexcept;

  /// Call f(element, storage) for each living element with changed properties.
  template <class F>
  static void forEachChanged(const Storage* saved, F f) {
    constexpr std::uint64_t NoProperty =
        std::uint64_t{1} << Element::LifeIndex | std::uint64_t{1} << Element::ContainerIndex;
    for (; saved != nullptr; saved = saved->next_) {
      if ((saved->mask_ & ~NoProperty) != 0 && saved->element_->isAlive()) f(*saved->element_, *saved);
    }
  }

 private:
  static void tellAll(Element& root, const Transaction& transaction);
  static void tellModel(Model::Impl& model, bool swallow);
  static void untell(Model::Impl& model, std::size_t from) noexcept;
  static void kill(Element& element);
  static void handOver(detail::Level& level) noexcept;
  static ChangeSet collectChanges(detail::Level& level);
  static Element* settle(detail::Level& level) noexcept;
  static void notify(Model::Impl& model, const ChangeSet& changes) noexcept;
  static void recycle(detail::Level& level) noexcept;
  static void release(Storage* saved) noexcept;
  static Storage* releaseOfDead(Storage* saved) noexcept;
  static void retire(Model::Impl& model, Storage* saved) noexcept;
  static void bury(Element* dead) noexcept;
  static void forget(Element& element) noexcept;
};

/// While one lives, what is changed in what the element contains is final: no old value of it is kept.
///
/// The foundation has one in place while it calls an element's `aboutToDestroy`.
class ND_PLATFORM_EXPORT FinalChanges {
 public:
  explicit FinalChanges(ModelElement::Impl& element);
  FinalChanges(const FinalChanges&) = delete;
  FinalChanges& operator=(const FinalChanges&) = delete;
  ~FinalChanges();

 private:
  const ModelElement element_;
  const Model model_;
  const bool wasOn_;
};

/// The transaction of one mutator. Joins one that is open; undone unless committed.
///
/// Between its making and its commit nothing may throw once something has changed: in a joined transaction
/// there is nothing of its own to undo.
class MutationScope {
 public:
  explicit MutationScope(Model::Impl& model) : level_(ModelAccess::beginMutation(model)) {}
  MutationScope(const MutationScope&) = delete;
  MutationScope& operator=(const MutationScope&) = delete;
  ~MutationScope() {
    if (level_ != nullptr) ModelAccess::rollBack(*level_);
  }
  void commit() {
    if (level_ != nullptr) {
      detail::Level& level = *level_;
      ModelAccess::commit(level, boost::none);
      level_ = nullptr;
    }
  }

 private:
  detail::Level* level_;
};

}  // namespace lx::base
