#include "tests/nd_data_adapter/model/random/Walk.h"

namespace random_walk {

Walk::Walk(unsigned seed, std::ostream* trace) : ElementCourse(seed, trace, 1) {}

Walk::~Walk() = default;

/// The twin at the beginning of a transaction, which the walk knows while that is open.
class Walk::KeptTwin final : public Kept {
 public:
  explicit KeptTwin(Walk& walk) : walk_(walk), twin_(walk.twin_) { walk_.levels_.push_back(&twin_); }
  ~KeptTwin() override { walk_.levels_.pop_back(); }
  void putBack() override { walk_.twin_ = twin_; }

 private:
  Walk& walk_;
  const Twin twin_;
};

std::unique_ptr<Walk::Kept> Walk::keep(int) {
  return std::make_unique<KeptTwin>(*this);
}

/// Do what changes an element. One that is gone and was a proxy refuses as a proxy does.
void Walk::change(Id id, Outcome expected, const std::function<void()>& change) {
  perform(!twin_.contains(id) && pairing_[id].isProxy() ? Outcome::CannotModifyProxy : expected, change);
}

}  // namespace random_walk
