#ifndef DMCOMMON_TESTS_FIELDS_FIELDTEST_H
#define DMCOMMON_TESTS_FIELDS_FIELDTEST_H

// Comparisons shared by the field tests: components by content, never by
// address.

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/fields/dmgeo.h"
#include "dmcommon/fields/dmmodelfield.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"

namespace dmtest {

// Whether `actual` is `expected`: the same nullness and type and, when set,
// the same value.
inline ::testing::AssertionResult SameDatum(const DMDatum& actual, const DMDatum& expected) {
  if (actual.IsNull() != expected.IsNull() || actual.GetType() != expected.GetType()) {
    return ::testing::AssertionFailure()
           << "null " << actual.IsNull() << " type " << actual.GetType() << ", expected null "
           << expected.IsNull() << " type " << expected.GetType();
  }
  if (!actual.IsNull() && actual.Compare(expected) != 0) {
    std::string actualText;
    std::string expectedText;
    actual.ToString(actualText, 0);
    expected.ToString(expectedText, 0);
    return ::testing::AssertionFailure() << "value " << actualText << ", expected " << expectedText;
  }
  return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult SameRange(const DMRange& actual, const DMRange& expected) {
  const auto [lower, upper] = actual.GetLimits();
  const auto [expectedLower, expectedUpper] = expected.GetLimits();
  if (auto result = SameDatum(lower, expectedLower); !result) return result << " (lower limit)";
  if (auto result = SameDatum(upper, expectedUpper); !result) return result << " (upper limit)";
  return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult SameValues(const std::vector<DMValue>& actual,
                                             const std::vector<DMValue>& expected) {
  if (actual.size() != expected.size()) {
    return ::testing::AssertionFailure()
           << actual.size() << " values, expected " << expected.size();
  }
  for (size_t i = 0; i < actual.size(); ++i) {
    if (auto result = SameDatum(actual[i].GetDatum(), expected[i].GetDatum()); !result) {
      return result << " (value " << i << ")";
    }
    if (actual[i].GetLabel() != expected[i].GetLabel() ||
        actual[i].GetFlag() != expected[i].GetFlag() ||
        actual[i].GetPartition() != expected[i].GetPartition()) {
      return ::testing::AssertionFailure() << "label, flag or partition of value " << i;
    }
  }
  return ::testing::AssertionSuccess();
}

inline ::testing::AssertionResult SameMissingValues(const DMMissingValues& actual,
                                                    const DMMissingValues& expected) {
  if (auto result = SameRange(actual.GetMissingRange(), expected.GetMissingRange()); !result) {
    return result << " (missing range)";
  }
  if (auto result = SameValues(actual.GetMissingValueList(), expected.GetMissingValueList());
      !result) {
    return result << " (missing values)";
  }
  if (actual.IsNullMissing() != expected.IsNullMissing() ||
      actual.IsWhiteSpMissing() != expected.IsWhiteSpMissing()) {
    return ::testing::AssertionFailure() << "missing-value switches differ";
  }
  return ::testing::AssertionSuccess();
}

// Every getter of `actual` gives what `expected`'s gives; components are
// compared by content.
inline void ExpectSameField(const DMField& actual, const DMField& expected) {
  EXPECT_EQ(actual.GetName(), expected.GetName());
  EXPECT_EQ(actual.GetType(), expected.GetType());
  EXPECT_EQ(actual.GetStorage(), expected.GetStorage());
  EXPECT_EQ(actual.GetRole(), expected.GetRole());
  EXPECT_EQ(actual.GetStructure(), expected.GetStructure());
  EXPECT_EQ(actual.GetStructureStorage(), expected.GetStructureStorage());
  EXPECT_EQ(actual.GetSubRole(), expected.GetSubRole());
  EXPECT_EQ(actual.GetMaxStringLength(), expected.GetMaxStringLength());
  EXPECT_EQ(actual.GetDepth(), expected.GetDepth());
  EXPECT_EQ(actual.GetElementCount(), expected.GetElementCount());
  EXPECT_EQ(actual.GetLabel(), expected.GetLabel());
  EXPECT_TRUE(SameRange(actual.GetRange(), expected.GetRange()));
  EXPECT_TRUE(SameValues(actual.GetValues(), expected.GetValues()));
  EXPECT_TRUE(SameMissingValues(actual.GetMissingValues(), expected.GetMissingValues()));
  EXPECT_TRUE(SameValues(actual.GetValueLabels(), expected.GetValueLabels()));
  EXPECT_EQ(actual.GetFormatReference(), expected.GetFormatReference());
  ASSERT_EQ(actual.GetPrivateFormat() == nullptr, expected.GetPrivateFormat() == nullptr);
  if (expected.GetPrivateFormat() != nullptr) {
    EXPECT_EQ(actual.GetPrivateFormat()->GetFormatClass(),
              expected.GetPrivateFormat()->GetFormatClass());
    EXPECT_EQ(actual.GetPrivateFormat()->GetWidth(), expected.GetPrivateFormat()->GetWidth());
  }
  ASSERT_EQ(actual.GetModelField() == nullptr, expected.GetModelField() == nullptr);
  if (expected.GetModelField() != nullptr) {
    EXPECT_EQ(actual.GetModelField()->GetMFRole(), expected.GetModelField()->GetMFRole());
    std::string field[2];
    DMDatum value[2];
    std::string group[2];
    std::string tag[2];
    actual.GetModelField()->GetTargetProps(field[0], value[0], group[0], tag[0]);
    expected.GetModelField()->GetTargetProps(field[1], value[1], group[1], tag[1]);
    EXPECT_EQ(field[0], field[1]);
    EXPECT_TRUE(SameDatum(value[0], value[1]));
    EXPECT_EQ(group[0], group[1]);
    EXPECT_EQ(tag[0], tag[1]);
  }
  ASSERT_EQ(actual.GetGeo() == nullptr, expected.GetGeo() == nullptr);
  if (expected.GetGeo() != nullptr) {
    bool actualSet = false;
    bool expectedSet = false;
    EXPECT_EQ(actual.GetGeo()->GetType(actualSet), expected.GetGeo()->GetType(expectedSet));
    EXPECT_EQ(actualSet, expectedSet);
    EXPECT_EQ(actual.GetGeo()->GetWkid(actualSet), expected.GetGeo()->GetWkid(expectedSet));
    EXPECT_EQ(actualSet, expectedSet);
    ASSERT_EQ(actual.GetGeo()->GetGeoEnvelope() == nullptr,
              expected.GetGeo()->GetGeoEnvelope() == nullptr);
    if (expected.GetGeo()->GetGeoEnvelope() != nullptr) {
      EXPECT_EQ(actual.GetGeo()->GetGeoEnvelope()->GetLeftUpperX(actualSet),
                expected.GetGeo()->GetGeoEnvelope()->GetLeftUpperX(expectedSet));
      EXPECT_EQ(actualSet, expectedSet);
    }
  }
  ASSERT_EQ(actual.GetCatStats() == nullptr, expected.GetCatStats() == nullptr);
  if (expected.GetCatStats() != nullptr) {
    ASSERT_EQ(actual.GetCatStats()->GetNCats(), expected.GetCatStats()->GetNCats());
    for (unsigned i = 0; i < expected.GetCatStats()->GetNCats(); ++i) {
      EXPECT_TRUE(SameDatum(actual.GetCatStats()->GetCatValDatum(i),
                            expected.GetCatStats()->GetCatValDatum(i)));
      EXPECT_EQ(actual.GetCatStats()->GetCatWeight(i), expected.GetCatStats()->GetCatWeight(i));
    }
  }
  ASSERT_EQ(actual.GetContStats() == nullptr, expected.GetContStats() == nullptr);
  if (expected.GetContStats() != nullptr) {
    EXPECT_EQ(actual.GetContStats()->GetSumFreqWeights(),
              expected.GetContStats()->GetSumFreqWeights());
    EXPECT_EQ(actual.GetContStats()->GetMean(), expected.GetContStats()->GetMean());
    EXPECT_EQ(actual.GetContStats()->GetExtrema(), expected.GetContStats()->GetExtrema());
  }
  ASSERT_EQ(actual.GetBaseField() == nullptr, expected.GetBaseField() == nullptr);
  if (expected.GetBaseField() != nullptr) {
    ExpectSameField(*actual.GetBaseField(), *expected.GetBaseField());
  }
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_FIELDS_FIELDTEST_H
