#include "tests/platform/foundation/random/Walk.h"

using walking::Mismatch;

namespace model_walk {

namespace {

template <class... K>
constexpr std::uint32_t bitsOf(K... kinds) {
  return ((1U << static_cast<int>(kinds)) | ...);
}

/// What a walk is about: few kinds, so that its elements meet, or all.
constexpr std::uint32_t themes[]{
    bitsOf(Kind::Thing, Kind::Machine, Kind::Robot, Kind::Containers),
    bitsOf(Kind::Thing, Kind::Machine, Kind::References, Kind::MoreReferences),
    bitsOf(Kind::Thing, Kind::Robot, Kind::Containers, Kind::References, Kind::MoreReferences),
    bitsOf(Kind::Containers, Kind::Thing, Kind::References),
    bitsOf(Kind::Branch, Kind::Leaf, Kind::Twig, Kind::References),
    bitsOf(Kind::Values, Kind::Optionals, Kind::Defaults, Kind::Traits, Kind::Lists, Kind::Sets, Kind::Square,
           Kind::Cube),
    (1U << Kinds) - 1};

}  // namespace

Walk::Walk(unsigned seed, std::ostream* trace) : ElementCourse(seed, trace, 2), kinds_(oneIn(themes)) {}

Walk::~Walk() = default;

// What differs

std::unique_ptr<Walk::Kept> Walk::keep(int model) {
  class KeptElements final : public Kept {
   public:
    KeptElements(Walk& walk, int model)
        : walk_(walk),
          model_(model),
          elements_(walk.twin_.elements(model)),
          order_(walk.pairing_.orderOfBags(model, walk.twin_)) {}
    void putBack() override {
      walk_.twin_.putBack(model_, elements_);
      if (walk_.pairing_.orderOfBags(model_, walk_.twin_) != order_)
        throw Mismatch("an order was not brought back");
    }

   private:
    Walk& walk_;
    const int model_;
    const Twin::Elements elements_;
    const std::vector<Content> order_;
  };
  return std::make_unique<KeptElements>(*this, model);
}

void Walk::learn(int model) {
  Twin::Elements& told = told_[static_cast<std::size_t>(model)];
  if (told != twin_.elements(model)) told = twin_.elements(model);
}

std::string Walk::difference(int number) const {
  return pairing_.difference(modelAt(number), number, twin_);
}

std::string Walk::closeDifference(int number) const {
  std::string text = pairing_.closeDifference(modelAt(number), number, twin_);
  if (text.empty() && number == 0) text = pairing_.differenceOfGone(twin_);  // once for both
  return text;
}

std::string Walk::differenceOfTold(int model, walking::Witness& witness) const {
  return witness.difference(pairing_, told_[static_cast<std::size_t>(model)], twin_.elements(model));
}

/// Do what changes an element and tells whether it did.
void Walk::performAndTell(Outcome expected, bool isChange, const std::function<bool()>& doIt) {
  perform(expected, [&] {
    if (doIt() != isChange) throw Mismatch(isChange ? "it changed nothing" : "it changed something");
  });
}

}  // namespace model_walk
