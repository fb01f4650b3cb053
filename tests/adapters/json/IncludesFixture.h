#pragma once

#include <string>
#include <string_view>

#include "platform/host/ArrayComparison.h"
#include "tests/adapters/json/AdapterFixture.h"
#include "tests/adapters/json/arrays.h"

/// An adapter that reads files which include others.
class IncludesFixture : public AdapterFixture {
 protected:
  /// Read a source; gives what the error states.
  ErrorState read(const std::u16string& source) {
    adapter_.open(source);
    return getData();
  }

  bool is(const std::string& name, double value) const {
    return hvEqual(variable(name), arrays::scalar(value).get());
  }

  std::u16string quoted(std::string_view name) const { return u"\"" + sourceOf(name) + u"\""; }

  /// What is said of an included file that isn't there.
  std::u16string missing(std::string_view including, const std::u16string& place,
                         std::string_view included) const {
    return u"in " + quoted(including) + u", " + place + u": expected a file that can be read, but found " +
           quoted(included) + u". There is no such file.";
  }
};
