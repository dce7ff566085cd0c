#ifndef DMCOMMON_TESTS_FIELDS_FIELDTEST_H
#define DMCOMMON_TESTS_FIELDS_FIELDTEST_H

// Comparisons shared by the field tests: components by content, never by
// address; and a field with every component, for round trips.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/fields/dmgeo.h"
#include "dmcommon/fields/dmmodelfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
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

// A field named `name` of `storage` and `type` with every component its kind
// can hold. Without a storage it names the shared format "shared".
inline DMField FullField(const std::string& name, DMField::StorageType storage,
                         DMField::FieldType type) {
  using Storage = DMField::StorageType;
  using Type = DMField::FieldType;
  using Role = DMField::RoleType;
  DMField field(name, type, storage, Role::Target);
  field.SetSubRole("score");
  field.SetStructure(DMField::StructureType::List);
  field.SetStructureStorage(storage);
  field.SetDepth(1);
  field.SetElementCount(4);
  field.SetMaxStringLength(30);
  field.SetLabel("Full \"field\" & co");
  const bool isInteger = storage == Storage::Integer;
  const bool isString = storage == Storage::String;
  auto datum = [&](int n) {
    if (isInteger) return DMDatum(static_cast<long long>(n));
    if (isString) return DMDatum(std::string(1, static_cast<char>('a' + n)));
    return DMDatum(n + 0.25);
  };
  if (!isString) field.SetRange(DMRange(datum(1), datum(8)));
  // Flags are written for Flag fields only; elsewhere they would not come back.
  const bool isFlag = type == Type::Flag;
  field.SetValues(
      {DMValue(datum(1), "one", isFlag ? 1 : 0, 1), DMValue(datum(2), "two", isFlag ? 2 : 0, 3)});
  // Texts have no missing range in this form: ranges of texts are never read.
  field.SetMissingValues(DMMissingValues(isString ? DMRange() : DMRange(datum(90), datum(99)),
                                         {DMValue(datum(7), "seven", 0, 2)}, false, true));
  field.SetValueLabels({DMValue(datum(1), "One"), DMValue(datum(3), "Three")});
  std::unique_ptr<DMFormat> format;
  switch (storage) {
    case Storage::Integer:
      format = std::make_unique<DMNumberFormat>(DMNumberFormat::Standard, 8, 0);
      break;
    case Storage::Real:
      format = std::make_unique<DMDecoratedFormat>(DMDecoratedFormat::Currency, 10, 2);
      break;
    case Storage::String:
      format = std::make_unique<DMStringFormat>(12, false);
      break;
    case Storage::Date:
    case Storage::Timestamp:
      format = std::make_unique<DMDateFormat>(DMDateFormat::D_M_Y, 10, 0,
                                              DMFormat::UnitsSeparator::Slash, false, false);
      break;
    case Storage::Time:
      format = std::make_unique<DMTimeFormat>(DMTimeFormat::H_M_S, 8, 0,
                                              DMFormat::UnitsSeparator::Colon, true);
      break;
    case Storage::Unknown:
      break;
  }
  if (format != nullptr) {
    EXPECT_TRUE(field.SetPrivateFormat(format.get()));
  } else {
    EXPECT_TRUE(field.SetFormatReference("shared"));
  }
  DMModelField modelField(DMModelField::Probability, "", DMModelField::MFRuleFeatureType::None);
  EXPECT_TRUE(modelField.SetTargetProps("target", datum(2), "g", "t"));
  EXPECT_TRUE(field.SetModelField(&modelField));
  DMGeo geo;
  geo.SetType(DMGeo::Polygon);
  geo.SetWkid(4326);
  DMGeoEnvelope envelope;
  envelope.SetLeftUpperX(-1.5);
  envelope.SetRightLowerY(2.5);
  geo.SetGeoEnvelope(&envelope);
  EXPECT_TRUE(field.SetGeo(&geo));
  if (type == Type::Continuous) {
    if (isInteger) {
      DMContStatsInt stats;
      stats.Update(3LL);
      stats.Update(5LL);
      EXPECT_TRUE(field.SetSumStats(&stats));
    } else if (!isString && storage != Storage::Unknown) {
      DMContStatsDbl stats;
      stats.Update(3.5);
      stats.Update(5.0);
      EXPECT_TRUE(field.SetSumStats(&stats));
    }
  } else if (type == Type::Typeless || type == Type::Unknown) {
    // Neither kind of statistics belongs to these measurement levels.
  } else if (isInteger) {
    DMCatStatsInt stats;
    stats.Update(1, 2.0);
    EXPECT_TRUE(field.SetSumStats(&stats));
  } else if (isString) {
    DMCatStatsStr stats;
    stats.Update("b", 3.0);
    EXPECT_TRUE(field.SetSumStats(&stats));
  } else if (storage != Storage::Unknown) {
    DMCatStatsDbl stats;
    stats.Update(1.25, 1.0);
    EXPECT_TRUE(field.SetSumStats(&stats));
  }
  DMField base("raw", Type::Typeless, storage, Role::None);
  base.SetLabel("before recoding");
  field.SetBaseField(base);
  return field;
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_FIELDS_FIELDTEST_H
