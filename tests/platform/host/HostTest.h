#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/host/hv.h"

/// A test at whose end no array is alive that was not alive at its beginning.
class HostTest : public testing::Test {
 protected:
  // Here and not in TearDown, because the members of the test's own class may hold arrays until they go.
  ~HostTest() override { EXPECT_EQ(hvGetLiveArrayCount(), before_) << "arrays have leaked"; }

  std::size_t arraysMade() const { return hvGetLiveArrayCount() - before_; }

 private:
  std::size_t before_ = hvGetLiveArrayCount();
};

/// Gives the id of the message that a call raises, as "catalogue/key", or "nothing".
template <typename Call>
std::string raised(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const lx::services::CatalogMessage& message) {
    return std::string(message.catalogue()) + "/" + std::string(message.key());
  }
  return "nothing";
}

/// Gives the sentence that a call raises.
template <typename Call>
std::string sentence(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const hvError& error) {
    return error.what();
  }
  return "nothing";
}

inline hvArrayPtr doubleScalar(double value) {
  return hvArrayPtr(hvCreateDoubleScalar(value));
}

inline hvArrayPtr doubleMatrix(std::size_t rows, std::size_t columns, const std::vector<double>& values) {
  hvArrayPtr matrix(hvCreateNumericMatrix(rows, columns, hvClassCode::Double));
  hvData<double> data = hvGetWritableData<double>(matrix.get());
  for (std::size_t i = 0; i < values.size(); ++i) data[i] = values[i];
  return matrix;
}

/// Gives an element of a string array; none is the missing value.
inline std::optional<std::u16string> textAt(const hvArrayPtr& array, std::size_t index) {
  const boost::optional<std::u16string>& text = hvGetString(array.get(), index);
  return text ? std::optional<std::u16string>(*text) : std::nullopt;
}

inline hvArrayPtr copyOf(const hvArrayPtr& array) {
  return hvArrayPtr(hvCreateSharedDataCopy(array.get()));
}
