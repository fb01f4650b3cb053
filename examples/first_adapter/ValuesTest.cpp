#include <algorithm>
#include <array>
#include <complex>
#include <cstdint>

#include <gtest/gtest.h>

#include "nd_data_adapter/nd_data_adapter.h"
#include "platform/host/Workspace.h"
#include "platform/host/hv.h"

TEST(Values, AreMadeAsTheManualSays) {
  // [values]
  const hvArrayPtr text(hvCreateString("V/s"));  // UTF-8; a row of characters
  const hvArrayPtr truth(hvCreateLogicalScalar(true));
  const hvArrayPtr number(hvCreateDoubleScalar(0.35));

  // A matrix. Elements stand column by column: this is [1 2 3; 4 5 6].
  const hvArrayPtr matrix(hvCreateNumericMatrix(2, 3, hvClassCode::Double));
  const std::array<double, 6> elements{1, 4, 2, 5, 3, 6};
  std::copy(elements.begin(), elements.end(), hvGetWritableData<double>(matrix.get()).begin());

  const hvArrayPtr counts(hvCreateNumericMatrix(1, 2, hvClassCode::Int32));
  hvGetWritableData<std::int32_t>(counts.get())[1] = -7;

  const hvArrayPtr waves(hvCreateNumericMatrix(1, 1, hvClassCode::Double, hvComplexity::Complex));
  hvGetWritableData<std::complex<double>>(waves.get())[0] = {1.0, -0.5};

  const hvArrayPtr truths(hvCreateLogicalArray({1, 2}));
  hvGetWritableData<bool>(truths.get())[0] = true;

  const hvArrayPtr names(hvCreateStringArray({1, 2}));  // whole texts, one an element
  hvSetString(names.get(), 0, std::u16string(u"roll"));
  hvSetString(names.get(), 1, boost::none);  // the missing value

  // What is put into a structure or a cell belongs to it from then on.
  const hvArrayPtr limits(hvCreateStructArray({1, 1}, {"lower", "upper"}));
  hvSetField(limits.get(), 0, "lower", hvArrayPtr(hvCreateDoubleScalar(-1)));
  hvSetField(limits.get(), 0, "upper", hvArrayPtr(hvCreateDoubleScalar(1)));

  const hvArrayPtr cells(hvCreateCellArray({1, 2}));
  hvSetCell(cells.get(), 0, hvArrayPtr(hvCreateString("trim")));
  hvSetCell(cells.get(), 1, hvArrayPtr(hvCreateSharedDataCopy(matrix.get())));
  // [/values]

  EXPECT_EQ(hvPreview(text.get(), 40), "\"V/s\"");
  EXPECT_EQ(hvPreview(truth.get(), 40), "true");
  EXPECT_EQ(hvPreview(number.get(), 40), "0.35");
  EXPECT_EQ(hvPreview(matrix.get(), 40), "[1 2 3; 4 5 6]");
  EXPECT_EQ(hvPreview(counts.get(), 40), "[0 -7]");
  EXPECT_EQ(hvPreview(waves.get(), 40), "1-0.5i");
  EXPECT_EQ(hvPreview(truths.get(), 40), "[true false]");
  EXPECT_EQ(hvPreview(names.get(), 40), "[\"roll\" <missing>]");
  EXPECT_EQ(hvPreview(limits.get(), 40), "(lower: -1, upper: 1)");
  EXPECT_EQ(hvPreview(cells.get(), 40), "{\"trim\", [1 2 3; 4 5 6]}");
}
