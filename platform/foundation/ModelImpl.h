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

class ChangeObserver;

/// A model itself.
class ND_PLATFORM_EXPORT Model::Impl {
 public:
  /// How often something happened to the model since it was made, for tests that count.
  struct Counters {
    std::uint64_t transactions = 0;  // begun, by hand or by a mutator
    std::uint64_t notices = 0;       // change sets told to an observer
  };

  /// What a model was made for.
  struct Origin {
    bool isTransient = false;
    std::u16string address;
    boost::optional<boost::uuids::uuid> uuid;  // a random one if there is none
  };

  Impl(const Constellation& constellation, std::shared_ptr<const WorkQueueFactory> factory, Origin origin);
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  ~Impl();

  void addRef() noexcept { ++references_; }
  void removeRef() noexcept {
    if (--references_ == 0) end();
  }

  bool isAlive() const noexcept { return alive_; }
  boost::uuids::uuid identifier();
  const Origin& origin() const noexcept { return origin_; }
  void destroy();

  /// Open a transaction; true makes it quiet, so that observers hear nothing of it. A transaction within a
  /// quiet one is told, or not told, with the outermost. Raises `InvalidValue` if the model is gone or
  /// frozen.
  Transaction beginTransaction(bool quiet);

  bool hasOpenTransaction() const noexcept { return top_ != nullptr; }

  /// Give the living element of this identity, a proxy only if no other has it; a null handle if there is
  /// none or the identity is nil.
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
  void removeObservers() noexcept;

  const Counters& counters() const noexcept { return counters_; }
  bool isFrozen() const noexcept { return frozen_; }

  /// Note an element's identity. Raises `CannotAddSecondObject` if a living element that is no proxy bears
  /// it.
  void identify(const boost::uuids::uuid& uuid, ModelElement::Impl& element);

 private:
  friend class FinalChanges;
  friend class ModelAccess;
  friend class ModelElement::Impl;
  friend class Model::Thawer;
  friend class Model::Freezer;

  void end() noexcept;

  ModelElement::Impl* newest_ = nullptr;
  ModelElement::Impl* oldest_ = nullptr;
  detail::Level* top_ = nullptr;
  ModelElement::Impl::Storage* retained_ = nullptr;  // of commits within a notice
  std::vector<std::unique_ptr<detail::Level>> spareLevels_;
  std::vector<ChangeObserver*> observers_;  // null where one was removed while they are told
  std::unordered_multimap<boost::uuids::uuid, ModelElement::Impl*, boost::hash<boost::uuids::uuid>>
      identified_;
  std::shared_ptr<const WorkQueueFactory> factory_;
  Constellation constellation_;
  Origin origin_;
  boost::uuids::uuid uuid_;
  Counters counters_;
  std::uint64_t links_ = 0;         // made so far, to number them
  std::vector<ModelElement> told_;  // elements that know already that they are about to be destroyed
  std::vector<ModelElement>* toBeTold_ = nullptr;  // while elements are told, those to come, the next last
  std::uint32_t references_ = 0;
  std::uint32_t telling_ = 0;     // notices under way
  std::uint32_t destroying_ = 0;  // destructions under way, one within the other
  std::uint32_t dying_ = 0;       // elements in their aboutToDestroy
  bool alive_ = true;
  bool frozen_ = false;
  bool identifiedItself_ = false;
  bool isUntidy_ = false;  // something is left that had to stay while observers are told
};

inline void ModelElement::Impl::checkWritable(unsigned index) const {
  const bool isWritable = (flags_ & (Alive | Proxy)) == Alive && !model_->frozen_;
  if (!isWritable) raiseNotWritable(index);
}

inline void ModelElement::Impl::checkPresent(unsigned index) const {
  if ((flags_ & (Alive | Proxy)) != Alive) raiseNotWritable(index);
}

inline void ModelElement::Impl::checkThawed(unsigned index) const {
  if (model_->frozen_) raiseNotWritable(index);
}

inline bool ModelElement::Impl::isSavedInOpenTransaction(unsigned index) const noexcept {
  return storage_ != nullptr && storage_->level_ == model_->top_ && storage_->isChanged(index);
}

inline void ModelElement::Impl::notifyModifying(unsigned index) {
  if (model_ != nullptr && model_->top_ != nullptr && !isSavedInOpenTransaction(index)) saveOldValue(index);
}

}  // namespace lx::base
