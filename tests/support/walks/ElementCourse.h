#pragma once

#include "tests/support/walks/Course.h"

namespace walking {

/// A course whose twin knows elements by their numbers, and a pairing which is which: with the steps that are
/// the same whatever classes the elements are of.
template <class Pairing, class Twin>
class ElementCourse : public Course {
 protected:
  using Course::Course;

  /// Draw the number of any element, maybe one that is gone.
  virtual int draw() = 0;

  void destroy() {
    const int id = draw();
    note("destroy #", id);
    perform(twin_.destroy(id), [&] { pairing_[id].destroy(); });
  }

  void makeProxy() { makeProxyOf(draw()); }

  void makeProxyOf(int id) {
    note("make a proxy of #", id);
    const Aside aside(*this, "make a proxy");
    perform(twin_.makeProxy(id), [&] {
      pairing_[id].impl()->convertToProxy();
      identify(id);
    });
  }

  void askIdentity() {
    const int id = draw();
    if (!twin_.contains(id)) return;
    note("ask #", id, " for its identity");
    perform(Outcome::Done, [&] { identify(id); });
  }

  Pairing pairing_;
  Twin twin_;

 private:
  void identify(int id) { pairing_.identify(id, pairing_[id].identifier()); }
};

}  // namespace walking
