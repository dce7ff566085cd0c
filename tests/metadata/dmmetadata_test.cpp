#include "dmcommon/metadata/dmmetadata.h"

#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmvalue.h"
#include "tests/metadata/metadatatest.h"

namespace {

using Storage = DMField::StorageType;
using Measure = DMField::FieldType;
using GroupType = DMMetaData::GroupType;

using dmtest::ContinuousReal;
using dmtest::DateFormat;
using dmtest::kSummaries;
using dmtest::NominalText;
using dmtest::NumberFormat;
using dmtest::StringFormat;
using dmtest::TimeFormat;
using dmtest::UpperCaser;

// Fields and keys.

TEST(DMMetaDataTest, EmptyContainerHasNothingAndEveryCountUnknown) {
  const DMMetaData metadata(nullptr);
  EXPECT_EQ(metadata.FieldCount(), 0u);
  EXPECT_EQ(metadata.GetField(0), nullptr);
  EXPECT_EQ(metadata.GetField("a"), nullptr);
  EXPECT_EQ(metadata.GetSharedFormat(0), nullptr);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Real), nullptr);
  EXPECT_EQ(metadata.GetRecordCount(false), -1);
  EXPECT_EQ(metadata.GetRecordCount(true), -1);
  EXPECT_EQ(metadata.GetDroppedCount(), -1);
  double badWeight = 0;
  double weightedDropped = 0;
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, -1);
  EXPECT_EQ(weightedDropped, -1);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::FieldGroup, 0, ""), -1);
  EXPECT_EQ(metadata.getDatasetSummaries(), nullptr);
}

TEST(DMMetaDataTest, AppendFieldReturnsConsecutiveIndicesAndKeepsACopy) {
  DMMetaData metadata(nullptr);
  auto field = std::make_unique<DMField>(NominalText("a"));
  EXPECT_EQ(metadata.AppendField(*field), 0);
  field.reset();
  EXPECT_EQ(metadata.AppendField(ContinuousReal("b")), 1);
  ASSERT_EQ(metadata.FieldCount(), 2u);
  EXPECT_EQ(metadata.GetField(0u)->GetName(), "a");
  EXPECT_EQ(metadata.GetField(1u)->GetName(), "b");
  EXPECT_EQ(metadata.GetField(2u), nullptr);
  EXPECT_EQ(metadata.GetField("b"), metadata.GetField(1u));
  EXPECT_EQ(metadata.GetFieldIndex("a"), 0);
  EXPECT_EQ(metadata.GetFieldIndex("c"), -1);
  EXPECT_EQ(metadata.GetField("c"), nullptr);
}

TEST(DMMetaDataTest, AppendFieldRefusesAnUnnamedFieldAndAnExactDuplicate) {
  DMMetaData metadata(nullptr);
  EXPECT_EQ(metadata.AppendField(DMField()), -1);
  EXPECT_EQ(metadata.AppendField(NominalText("a")), 0);
  EXPECT_EQ(metadata.AppendField(ContinuousReal("a")), -1);
  ASSERT_EQ(metadata.FieldCount(), 1u);
  EXPECT_EQ(metadata.GetField(0u)->GetType(), Measure::Nominal);
}

TEST(DMMetaDataTest, WithAnUpperCasingCallbackAgeAfterAGEIsRefused) {
  UpperCaser upper;
  DMMetaData metadata(&upper);
  EXPECT_EQ(metadata.AppendField(NominalText("AGE")), 0);
  EXPECT_EQ(metadata.AppendField(NominalText("age")), -1);
  EXPECT_EQ(metadata.FieldCount(), 1u);
  // Lookups fold the query too, and the field keeps its name as given.
  EXPECT_EQ(metadata.GetFieldIndex("Age"), 0);
  EXPECT_EQ(metadata.GetField("aGE")->GetName(), "AGE");
}

TEST(DMMetaDataTest, WithoutACallbackAgeAndAGEAreBothKeptAndAgeFindsNeither) {
  DMMetaData metadata(nullptr);
  EXPECT_EQ(metadata.AppendField(NominalText("AGE")), 0);
  EXPECT_EQ(metadata.AppendField(NominalText("age")), 1);
  EXPECT_EQ(metadata.GetFieldIndex("Age"), -1);
  EXPECT_EQ(metadata.GetField("Age"), nullptr);
  EXPECT_EQ(metadata.GetFieldIndex("age"), 1);
  EXPECT_EQ(metadata.GetFieldIndex("AGE"), 0);
}

TEST(DMMetaDataTest, AppendingAndLookingUpOneHundredThousandFieldsGivesEveryIndex) {
  constexpr int kCount = 100000;
  UpperCaser upper;
  DMMetaData metadata(&upper);
  DMField field = NominalText("f");
  for (int i = 0; i < kCount; ++i) {
    field.SetName("f" + std::to_string(i));
    ASSERT_EQ(metadata.AppendField(field), i);
  }
  ASSERT_EQ(metadata.FieldCount(), static_cast<unsigned>(kCount));
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(metadata.GetFieldIndex("F" + std::to_string(i)), i);
  }
  field.SetName("F99999");
  EXPECT_EQ(metadata.AppendField(field), -1);
  EXPECT_EQ(metadata.GetFieldIndex("f100000"), -1);
}

// Replacing fields.

TEST(DMMetaDataTest, ReplacingField2ByTheNameOfField0IsRefusedAndByItsOwnNameSucceeds) {
  DMMetaData metadata(nullptr);
  for (const char* name : {"a", "b", "c"}) metadata.AppendField(NominalText(name));
  const DMField taken = ContinuousReal("a");
  EXPECT_EQ(metadata.ReplaceField(2, &taken), -1);
  EXPECT_EQ(metadata.GetField(2u)->GetType(), Measure::Nominal);
  const DMField own = ContinuousReal("c");
  EXPECT_EQ(metadata.ReplaceField(2, &own), 2);
  EXPECT_EQ(metadata.GetField(2u)->GetType(), Measure::Continuous);
  EXPECT_EQ(metadata.GetFieldIndex("c"), 2);
}

TEST(DMMetaDataTest, ReplacingByANewNameMovesTheLookupToIt) {
  DMMetaData metadata(nullptr);
  for (const char* name : {"a", "b"}) metadata.AppendField(NominalText(name));
  const DMField renamed = NominalText("z");
  EXPECT_EQ(metadata.ReplaceField(0, &renamed), 0);
  EXPECT_EQ(metadata.GetFieldIndex("a"), -1);
  EXPECT_EQ(metadata.GetFieldIndex("z"), 0);
  // The old name is free again.
  EXPECT_EQ(metadata.AppendField(NominalText("a")), 2);
}

TEST(DMMetaDataTest, WithACallbackReplacingByAnotherCaseOfItsOwnNameSucceeds) {
  UpperCaser upper;
  DMMetaData metadata(&upper);
  for (const char* name : {"a", "b"}) metadata.AppendField(NominalText(name));
  const DMField ownOtherCase = NominalText("B");
  EXPECT_EQ(metadata.ReplaceField(1, &ownOtherCase), 1);
  EXPECT_EQ(metadata.GetField(1u)->GetName(), "B");
  const DMField otherCaseOfA = NominalText("A");
  EXPECT_EQ(metadata.ReplaceField(1, &otherCaseOfA), -1);
}

TEST(DMMetaDataTest, ReplaceFieldRefusesAnIndexOutOfRangeAndAnUnnamedField) {
  DMMetaData metadata(nullptr);
  metadata.AppendField(NominalText("a"));
  const DMField unnamed;
  const DMField named = NominalText("b");
  EXPECT_EQ(metadata.ReplaceField(1, &named), -1);
  EXPECT_EQ(metadata.ReplaceField(1, nullptr), -1);
  EXPECT_EQ(metadata.ReplaceField(0, &unnamed), -1);
  ASSERT_EQ(metadata.FieldCount(), 1u);
  EXPECT_EQ(metadata.GetField(0u)->GetName(), "a");
}

TEST(DMMetaDataTest, ReplacingByNullRemovesTheFieldAndLaterFieldsMoveUp) {
  DMMetaData metadata(nullptr);
  for (const char* name : {"a", "b", "c", "d"}) metadata.AppendField(NominalText(name));
  EXPECT_EQ(metadata.ReplaceField(1, nullptr), 1);
  ASSERT_EQ(metadata.FieldCount(), 3u);
  const std::vector<std::string> expected = {"a", "c", "d"};
  for (unsigned i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(metadata.GetField(i)->GetName(), expected[i]);
    EXPECT_EQ(metadata.GetFieldIndex(expected[i]), static_cast<int>(i));
  }
  EXPECT_EQ(metadata.GetFieldIndex("b"), -1);
  EXPECT_EQ(metadata.AppendField(NominalText("b")), 3);
}

// Forwarding setters.

TEST(DMMetaDataTest, ForwardingSettersOutOfRangeChangeNothingAndReturnFalse) {
  DMMetaData metadata(nullptr);
  metadata.AppendField(NominalText("a"));
  const DMCatStatsStr catStats;
  const DMContStatsDbl contStats;
  const std::vector<DMValue> values = {DMValue(DMDatum("x"))};
  EXPECT_FALSE(metadata.SetSumStats(1, &catStats));
  EXPECT_FALSE(metadata.SetSumStats(1, &contStats));
  EXPECT_FALSE(metadata.SetFieldType(1, Measure::Continuous));
  EXPECT_FALSE(metadata.SetValues(1, values));
  EXPECT_FALSE(metadata.SetValueLabels(1, values));
  EXPECT_EQ(metadata.GetField(0u)->GetType(), Measure::Nominal);
  EXPECT_TRUE(metadata.GetField(0u)->GetValues().empty());
}

TEST(DMMetaDataTest, ForwardingSettersPassTheFieldsOwnResult) {
  DMMetaData metadata(nullptr);
  metadata.AppendField(NominalText("text"));
  metadata.AppendField(ContinuousReal("real"));
  const DMCatStatsStr textStats;
  const DMCatStatsInt integerStats;
  const DMContStatsDbl realStats;
  EXPECT_TRUE(metadata.SetSumStats(0, &textStats));
  EXPECT_NE(metadata.GetField(0u)->GetCatStats(), nullptr);
  EXPECT_FALSE(metadata.SetSumStats(0, &integerStats));
  EXPECT_FALSE(metadata.SetSumStats(0, &realStats));
  EXPECT_TRUE(metadata.SetSumStats(1, &realStats));
  EXPECT_NE(metadata.GetField(1u)->GetContStats(), nullptr);
  EXPECT_TRUE(metadata.SetFieldType(1, Measure::Ordinal));
  EXPECT_EQ(metadata.GetField(1u)->GetType(), Measure::Ordinal);
  EXPECT_EQ(metadata.GetField(1u)->GetContStats(), nullptr);
}

TEST(DMMetaDataTest, SetValuesAndLabelsReachTheFieldWhichKeepsItsOwnRules) {
  DMMetaData metadata(nullptr);
  metadata.AppendField(NominalText("a"));
  const std::vector<DMValue> texts = {DMValue(DMDatum("x"), "Ex")};
  const std::vector<DMValue> integers = {DMValue(DMDatum(1LL), "One")};
  EXPECT_TRUE(metadata.SetValues(0, texts));
  EXPECT_TRUE(metadata.SetValueLabels(0, texts));
  ASSERT_EQ(metadata.GetField(0u)->GetValues().size(), 1u);
  ASSERT_EQ(metadata.GetField(0u)->GetValueLabels().size(), 1u);
  EXPECT_EQ(metadata.GetField(0u)->GetValueLabels()[0].GetLabel(), "Ex");
  // The field refuses integers on text storage; the container only reports
  // that it reached the field.
  EXPECT_TRUE(metadata.SetValues(0, integers));
  EXPECT_TRUE(metadata.SetValueLabels(0, integers));
  EXPECT_EQ(metadata.GetField(0u)->GetValueLabels()[0].GetLabel(), "Ex");
  EXPECT_EQ(metadata.GetField(0u)->GetValues().size(), 1u);
}

// Shared formats and default slots.

TEST(DMMetaDataTest, AddSharedFormatRefusesAnInvalidOrUnnamedFormat) {
  DMMetaData metadata(nullptr);
  const DMNumberFormat invalid;
  EXPECT_EQ(metadata.AddSharedFormat(invalid), -1);
  const DMNumberFormat unnamed(DMNumberFormat::Standard, 8, 2);
  EXPECT_EQ(metadata.AddSharedFormat(unnamed), -1);
  EXPECT_EQ(metadata.GetSharedFormat(0), nullptr);
}

TEST(DMMetaDataTest, AddSharedFormatAppendsNewNamesAndReplacesASameNameInPlace) {
  DMMetaData metadata(nullptr);
  auto number = NumberFormat("n");
  EXPECT_EQ(metadata.AddSharedFormat(*number), 0);
  number.reset();
  EXPECT_EQ(metadata.AddSharedFormat(*StringFormat("s")), 1);
  EXPECT_EQ(metadata.AddSharedFormat(*DateFormat("n")), 0);
  ASSERT_NE(metadata.GetSharedFormat(0), nullptr);
  EXPECT_EQ(metadata.GetSharedFormat(0)->GetFormatClass(), DMFormat::Date);
  EXPECT_EQ(metadata.GetSharedFormat("s"), metadata.GetSharedFormat(1));
  EXPECT_EQ(metadata.GetSharedFormat("N"), nullptr);
  EXPECT_EQ(metadata.GetSharedFormat(2), nullptr);
}

struct DefaultSlotCase {
  Storage storage;
  const char* formatName;
  Storage sharesSlotWith;
};

TEST(DMMetaDataTest, SetDefaultFormatFillsTheSlotOfItsStorage) {
  const DefaultSlotCase cases[] = {
      {Storage::Integer, "number", Storage::Real},  {Storage::Real, "number", Storage::Integer},
      {Storage::String, "string", Storage::String}, {Storage::Date, "date", Storage::Timestamp},
      {Storage::Timestamp, "date", Storage::Date},  {Storage::Time, "time", Storage::Time},
  };
  for (const DefaultSlotCase& row : cases) {
    SCOPED_TRACE(row.formatName);
    DMMetaData metadata(nullptr);
    metadata.AddSharedFormat(*NumberFormat("number"));
    metadata.AddSharedFormat(*StringFormat("string"));
    metadata.AddSharedFormat(*DateFormat("date"));
    metadata.AddSharedFormat(*TimeFormat("time"));
    const int index = metadata.SetDefaultFormat(row.storage, row.formatName);
    ASSERT_GE(index, 0);
    EXPECT_EQ(metadata.GetDefaultFormat(row.storage), metadata.GetSharedFormat(row.formatName));
    EXPECT_EQ(metadata.GetDefaultFormat(row.sharesSlotWith), metadata.GetSharedFormat(index));
  }
}

TEST(DMMetaDataTest, SetDefaultFormatForATimestampUsesTheDateSlot) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("n"));
  EXPECT_EQ(metadata.AddSharedFormat(*DateFormat("d")), 1);
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::Timestamp, "d"), 1);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Date), metadata.GetSharedFormat(1));
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Time), nullptr);
}

TEST(DMMetaDataTest, SetDefaultFormatRefusesUnknownNamesUnsuitableFormatsAndUnknownStorage) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("n"));
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::Real, "missing"), -1);
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::String, "n"), -1);
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::Unknown, "n"), -1);
  for (Storage storage :
       {Storage::Unknown, Storage::Integer, Storage::String, Storage::Date, Storage::Time}) {
    EXPECT_EQ(metadata.GetDefaultFormat(storage), nullptr);
  }
}

TEST(DMMetaDataTest, AddingADateFormatUnderTheNumberDefaultsNameUnsetsSlot0) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("n"));
  ASSERT_EQ(metadata.SetDefaultFormat(Storage::Real, "n"), 0);
  EXPECT_EQ(metadata.AddSharedFormat(*DateFormat("n")), 0);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Real), nullptr);
  // The slot is unset, not moved to the storage the new format suits.
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Date), nullptr);
}

TEST(DMMetaDataTest, AddingAFormatOfTheSameKindUnderADefaultsNameKeepsTheSlot) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("n"));
  ASSERT_EQ(metadata.SetDefaultFormat(Storage::Integer, "n"), 0);
  const DMNumberFormat wider = [] {
    DMNumberFormat format(DMNumberFormat::Scientific, 12, 3);
    format.SetName("n");
    return format;
  }();
  EXPECT_EQ(metadata.AddSharedFormat(wider), 0);
  ASSERT_NE(metadata.GetDefaultFormat(Storage::Real), nullptr);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Real)->GetWidth(), 12);
}

TEST(DMMetaDataTest, DroppingFormat1OfThreeMovesASlotAt2To1AndUnsetsASlotAt1) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("n"));
  metadata.AddSharedFormat(*StringFormat("s"));
  metadata.AddSharedFormat(*DateFormat("d"));
  metadata.SetDefaultFormat(Storage::Real, "n");
  metadata.SetDefaultFormat(Storage::String, "s");
  metadata.SetDefaultFormat(Storage::Date, "d");
  EXPECT_EQ(metadata.DropSharedFormat(1), 1);
  EXPECT_EQ(metadata.GetSharedFormat(1)->GetName(), "d");
  EXPECT_EQ(metadata.GetSharedFormat(2), nullptr);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Real), metadata.GetSharedFormat(0));
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::String), nullptr);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Date), metadata.GetSharedFormat(1));
  // The slot now holds 1: dropping format 1 unsets it.
  EXPECT_EQ(metadata.DropSharedFormat(1), 1);
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Date), nullptr);
}

TEST(DMMetaDataTest, DropSharedFormatRefusesAnIndexOutOfRangeAndLeavesFieldReferences) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("n"));
  DMField field = ContinuousReal("a");
  field.SetFormatReference("n");
  metadata.AppendField(field);
  EXPECT_EQ(metadata.DropSharedFormat(1), -1);
  EXPECT_EQ(metadata.DropSharedFormat(0), 0);
  EXPECT_EQ(metadata.GetSharedFormat("n"), nullptr);
  EXPECT_EQ(metadata.GetField(0u)->GetFormatReference(), "n");
}

// Record counts.

struct RecordCountsCase {
  double unweighted;
  double weighted;
  double expectedUnweighted;
  double expectedWeighted;
};

TEST(DMMetaDataTest, SetRecordCountsStoresBothOnlyWhenTheUnweightedCountIsWhole) {
  const RecordCountsCase cases[] = {
      {10.5, 3, -1, -1}, {10, -5, 10, -1}, {10, 2.5, 10, 2.5},
      {-3, 7, -1, 7},    {0, 0, 0, 0},     {-0.5, 7, -1, -1},
  };
  for (const RecordCountsCase& row : cases) {
    SCOPED_TRACE(std::to_string(row.unweighted) + ", " + std::to_string(row.weighted));
    DMMetaData metadata(nullptr);
    metadata.SetRecordCounts(row.unweighted, row.weighted);
    EXPECT_EQ(metadata.GetRecordCount(false), row.expectedUnweighted);
    EXPECT_EQ(metadata.GetRecordCount(true), row.expectedWeighted);
  }
}

TEST(DMMetaDataTest, SetRecordCountsWithAFractionLeavesEarlierCountsUnchanged) {
  DMMetaData metadata(nullptr);
  metadata.SetRecordCounts(4, 4.5);
  metadata.SetRecordCounts(10.5, 3);
  EXPECT_EQ(metadata.GetRecordCount(false), 4);
  EXPECT_EQ(metadata.GetRecordCount(true), 4.5);
}

TEST(DMMetaDataTest, SetDroppedCountStoresOnlyWholeNumbersAndNegativesAsUnknown) {
  DMMetaData metadata(nullptr);
  metadata.SetDroppedCount(4);
  EXPECT_EQ(metadata.GetDroppedCount(), 4);
  metadata.SetDroppedCount(4.5);
  EXPECT_EQ(metadata.GetDroppedCount(), 4);
  metadata.SetDroppedCount(-2);
  EXPECT_EQ(metadata.GetDroppedCount(), -1);
}

TEST(DMMetaDataTest, SetDroppedDetailsNeedsAWholeBadWeightCountButTakesAnyWeightedCount) {
  DMMetaData metadata(nullptr);
  double badWeight = 0;
  double weightedDropped = 0;
  metadata.SetDroppedDetails(3, 7.25);
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, 3);
  EXPECT_EQ(weightedDropped, 7.25);
  metadata.SetDroppedDetails(2.5, 1.5);
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, 3);
  EXPECT_EQ(weightedDropped, 1.5);
  metadata.SetDroppedDetails(-3, -0.5);
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, -1);
  EXPECT_EQ(weightedDropped, -1);
}

// Field groups.

TEST(DMMetaDataTest, SetFieldGroupRefusesNoMembersAndASecondGroupOfTheSameTypeAndName) {
  DMMetaData metadata(nullptr);
  EXPECT_FALSE(metadata.SetFieldGroup(GroupType::FieldGroup, "g", {}, "", ""));
  EXPECT_TRUE(metadata.SetFieldGroup(GroupType::FieldGroup, "g", {"a"}, "", ""));
  EXPECT_FALSE(metadata.SetFieldGroup(GroupType::FieldGroup, "g", {"b"}, "", ""));
  EXPECT_TRUE(metadata.SetFieldGroup(GroupType::MultiCategorySet, "g", {"b"}, "", ""));
  EXPECT_TRUE(metadata.SetFieldGroup(GroupType::FieldGroup, "G", {"c"}, "", ""));
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::FieldGroup, -1, "G"), 2);
}

TEST(DMMetaDataTest, FindFieldGroupByNameOrByOrdinalWithinItsType) {
  DMMetaData metadata(nullptr);
  metadata.SetFieldGroup(GroupType::MultiCategorySet, "m1", {"a"}, "", "");
  metadata.SetFieldGroup(GroupType::FieldGroup, "f1", {"a"}, "", "");
  metadata.SetFieldGroup(GroupType::MultiCategorySet, "m2", {"a"}, "", "");
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::MultiCategorySet, -1, "m2"), 2);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::FieldGroup, -1, "m2"), -1);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::MultiCategorySet, 0, "ignored"), 0);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::MultiCategorySet, 1, ""), 2);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::MultiCategorySet, 2, ""), -1);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::FieldGroup, 0, ""), 1);
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::SplitGroup, 0, ""), -1);
}

TEST(DMMetaDataTest, GetFieldGroupCopiesTheGroupOrClearsTheOutputs) {
  DMMetaData metadata(nullptr);
  metadata.SetFieldGroup(GroupType::MultiDichotomySet, "likes", {"tea", "coffee"}, "Liked", "1");
  std::string name = "old";
  std::vector<std::string> members = {"old"};
  std::string label = "old";
  std::string counted = "old";
  EXPECT_TRUE(
      metadata.GetFieldGroup(GroupType::MultiDichotomySet, "likes", members, label, counted));
  EXPECT_EQ(members, (std::vector<std::string>{"tea", "coffee"}));
  EXPECT_EQ(label, "Liked");
  EXPECT_EQ(counted, "1");
  EXPECT_TRUE(
      metadata.GetFieldGroup(GroupType::MultiDichotomySet, 0u, name, members, label, counted));
  EXPECT_EQ(name, "likes");
  EXPECT_FALSE(metadata.GetFieldGroup(GroupType::FieldGroup, "likes", members, label, counted));
  EXPECT_TRUE(members.empty());
  EXPECT_EQ(label, "");
  EXPECT_EQ(counted, "");
  members = {"old"};
  EXPECT_FALSE(
      metadata.GetFieldGroup(GroupType::MultiDichotomySet, 1u, name, members, label, counted));
  EXPECT_EQ(name, "");
  EXPECT_TRUE(members.empty());
}

TEST(DMMetaDataTest, DropFieldGroupRemovesOnlyTheGroupOfThatTypeAndName) {
  DMMetaData metadata(nullptr);
  metadata.SetFieldGroup(GroupType::FieldGroup, "g", {"a"}, "", "");
  metadata.SetFieldGroup(GroupType::SplitGroup, "g", {"a"}, "", "");
  EXPECT_FALSE(metadata.DropFieldGroup(GroupType::MultiCategorySet, "g"));
  EXPECT_TRUE(metadata.DropFieldGroup(GroupType::FieldGroup, "g"));
  EXPECT_FALSE(metadata.DropFieldGroup(GroupType::FieldGroup, "g"));
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::SplitGroup, -1, "g"), 0);
}

// Case sensitivity, summaries, copies.

TEST(DMMetaDataTest, IsCaseSensitiveExactlyWithoutACallback) {
  UpperCaser upper;
  EXPECT_TRUE(DMMetaData(nullptr).IsCaseSensitive());
  EXPECT_FALSE(DMMetaData(&upper).IsCaseSensitive());
}

TEST(DMMetaDataTest, SetDatasetSummariesFromTextReplacesOnlyWhenTheTextParses) {
  DMMetaData metadata(nullptr);
  EXPECT_FALSE(metadata.setDatasetSummaries(std::string()));
  EXPECT_EQ(metadata.getDatasetSummaries(), nullptr);
  EXPECT_TRUE(metadata.setDatasetSummaries(std::string(kSummaries)));
  const DMDatasetSummaries* first = metadata.getDatasetSummaries();
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first->getOverallSummaries(), nullptr);
  EXPECT_FALSE(metadata.setDatasetSummaries(std::string("not xml")));
  EXPECT_EQ(metadata.getDatasetSummaries(), first);
}

TEST(DMMetaDataTest, SetDatasetSummariesTakesThePointerAndNullClears) {
  DMMetaData metadata(nullptr);
  auto* summaries = new DMDatasetSummaries();
  metadata.setDatasetSummaries(summaries);
  EXPECT_EQ(metadata.getDatasetSummaries(), summaries);
  metadata.setDatasetSummaries(nullptr);
  EXPECT_EQ(metadata.getDatasetSummaries(), nullptr);
}

DMMetaData FilledContainer(DMUpperFunc* upper) {
  DMMetaData metadata(upper);
  metadata.AppendField(NominalText("a"));
  metadata.AppendField(ContinuousReal("b"));
  metadata.AddSharedFormat(*NumberFormat("n"));
  metadata.AddSharedFormat(*DateFormat("d"));
  metadata.SetDefaultFormat(Storage::Timestamp, "d");
  metadata.SetFieldGroup(GroupType::MultiCategorySet, "set", {"a", "b"}, "Set", "");
  metadata.SetRecordCounts(10, 9.5);
  metadata.SetDroppedCount(2);
  metadata.SetDroppedDetails(1, 0.5);
  metadata.setDatasetSummaries(std::string(kSummaries));
  return metadata;
}

void ExpectFilledContents(const DMMetaData& metadata, const DMMetaData& original) {
  ASSERT_EQ(metadata.FieldCount(), 2u);
  EXPECT_NE(metadata.GetField(0u), original.GetField(0u));
  EXPECT_EQ(metadata.GetField(1u)->GetName(), "b");
  EXPECT_EQ(metadata.GetFieldIndex("A"), original.GetFieldIndex("A"));
  EXPECT_NE(metadata.GetSharedFormat(0), original.GetSharedFormat(0));
  EXPECT_EQ(metadata.GetSharedFormat(1)->GetName(), "d");
  EXPECT_EQ(metadata.GetDefaultFormat(Storage::Date), metadata.GetSharedFormat(1));
  EXPECT_EQ(metadata.FindFieldGroup(GroupType::MultiCategorySet, -1, "set"), 0);
  EXPECT_EQ(metadata.GetRecordCount(false), 10);
  EXPECT_EQ(metadata.GetRecordCount(true), 9.5);
  EXPECT_EQ(metadata.GetDroppedCount(), 2);
  double badWeight = 0;
  double weightedDropped = 0;
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, 1);
  EXPECT_EQ(weightedDropped, 0.5);
  ASSERT_NE(metadata.getDatasetSummaries(), nullptr);
  EXPECT_NE(metadata.getDatasetSummaries(), original.getDatasetSummaries());
  EXPECT_EQ(metadata.IsCaseSensitive(), original.IsCaseSensitive());
}

TEST(DMMetaDataTest, CopyIsDeepAndSharesTheCallback) {
  UpperCaser upper;
  auto original = std::make_unique<DMMetaData>(FilledContainer(&upper));
  const DMMetaData copy(*original);
  ExpectFilledContents(copy, *original);
  EXPECT_EQ(copy.GetFieldIndex("A"), 0);
  original.reset();
  EXPECT_EQ(copy.GetField("B")->GetName(), "b");
  EXPECT_EQ(copy.GetSharedFormat("n")->GetWidth(), 8);
}

TEST(DMMetaDataTest, AssignmentReplacesEverythingAndChangesToTheCopyStayInIt) {
  const DMMetaData original = FilledContainer(nullptr);
  DMMetaData assigned(nullptr);
  assigned.AppendField(NominalText("z"));
  assigned = original;
  ExpectFilledContents(assigned, original);
  EXPECT_EQ(assigned.GetFieldIndex("z"), -1);
  assigned.ReplaceField(0, nullptr);
  assigned.DropSharedFormat(0);
  assigned.DropFieldGroup(GroupType::MultiCategorySet, "set");
  EXPECT_EQ(original.FieldCount(), 2u);
  EXPECT_EQ(original.GetSharedFormat(0)->GetName(), "n");
  EXPECT_EQ(original.GetDefaultFormat(Storage::Date), original.GetSharedFormat(1));
  EXPECT_EQ(original.FindFieldGroup(GroupType::MultiCategorySet, -1, "set"), 0);
}

TEST(DMMetaDataTest, SelfAssignmentKeepsTheContents) {
  DMMetaData metadata = FilledContainer(nullptr);
  const DMMetaData reference(metadata);
  DMMetaData& alias = metadata;
  metadata = alias;
  ExpectFilledContents(metadata, reference);
}

}  // namespace
