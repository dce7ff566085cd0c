#include "dmcommon/summaries/dmdatasetsummaries.h"

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/summaries/dmdistributionsummary.h"
#include "dmcommon/summaries/dmstatisticsext.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/summaries/summariestest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
using dmtest::ExpectParseResults;
using dmtest::ParseCase;
using dmtest::ReadSummary;
using dmtest::RoundTrip;
using dmtest::WrittenSummary;

constexpr char kDiscrete[] =
    R"(<DiscreteStatisticsExt><DistributionSummary><Category count="1" value="a"/>)"
    R"(</DistributionSummary></DiscreteStatisticsExt>)";

std::string FieldSummaryWith(const std::string& attributes, const std::string& content) {
  return "<FieldSummary " + attributes + ">" + content + "</FieldSummary>";
}

// ---------------------------------------------------------------------------
// DMRecordCountsExt

TEST(DMRecordCountsExtTest, DefaultParsesAndWritesAnEmptyElement) {
  const DMRecordCountsExt counts;
  EXPECT_TRUE(counts.parseSuccess());
  EXPECT_EQ(WrittenSummary(counts), "<RecordCountsExt/>");
}

TEST(DMRecordCountsExtTest, NothingOfTheElementIsReadOrWrittenBack) {
  const auto counts =
      ReadSummary<DMRecordCountsExt>(R"(<RecordCountsExt total="x"><Junk/></RecordCountsExt>)");
  EXPECT_TRUE(counts.parseSuccess());
  EXPECT_EQ(WrittenSummary(counts), "<RecordCountsExt/>");
  EXPECT_TRUE(DMRecordCountsExt(counts).parseSuccess());
}

// ---------------------------------------------------------------------------
// DMOverallSummaries

TEST(DMOverallSummariesTest, DefaultHasAllFlagsTrueAndNoRecordCounts) {
  const DMOverallSummaries overall;
  EXPECT_TRUE(overall.parseSuccess());
  EXPECT_EQ(overall.getRecordCountsExt(), nullptr);
  EXPECT_TRUE(overall.getCurrent());
  EXPECT_TRUE(overall.getIncludeUMissing());
  EXPECT_TRUE(overall.getIncludeNotValid());
}

TEST(DMOverallSummariesTest, ElementWithoutAttributesYieldsAllFlagsTrue) {
  const auto overall = ReadSummary<DMOverallSummaries>("<OverallSummaries/>");
  EXPECT_TRUE(overall.parseSuccess());
  EXPECT_EQ(overall.getRecordCountsExt(), nullptr);
  EXPECT_TRUE(overall.getCurrent());
  EXPECT_TRUE(overall.getIncludeUMissing());
  EXPECT_TRUE(overall.getIncludeNotValid());
}

TEST(DMOverallSummariesTest, CurrentOtherThanTheEntityTextsFails) {
  EXPECT_FALSE(
      ReadSummary<DMOverallSummaries>(R"(<OverallSummaries current="yes"/>)").parseSuccess());
}

TEST(DMOverallSummariesTest, EachFlagIsReadIntoItsOwnGetter) {
  struct Row {
    const char* xml;
    bool current;
    bool includeUMissing;
    bool includeNotValid;
  };
  const Row kRows[] = {
      {R"(<OverallSummaries current="false"/>)", false, true, true},
      {R"(<OverallSummaries includeUMissing="false"/>)", true, false, true},
      {R"(<OverallSummaries includeNotValid="false"/>)", true, true, false},
      {R"(<OverallSummaries current="true" includeUMissing="true" includeNotValid="true"/>)", true,
       true, true},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.xml);
    const auto overall = ReadSummary<DMOverallSummaries>(row.xml);
    EXPECT_TRUE(overall.parseSuccess());
    EXPECT_EQ(overall.getCurrent(), row.current);
    EXPECT_EQ(overall.getIncludeUMissing(), row.includeUMissing);
    EXPECT_EQ(overall.getIncludeNotValid(), row.includeNotValid);
  }
}

TEST(DMOverallSummariesTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"record counts", "<OverallSummaries><RecordCountsExt/></OverallSummaries>", true},
      {"current yes", R"(<OverallSummaries current="yes"/>)", false},
      {"current empty", R"(<OverallSummaries current=""/>)", false},
      {"current capitalised", R"(<OverallSummaries current="True"/>)", false},
      {"include user-missing 0", R"(<OverallSummaries includeUMissing="0"/>)", false},
      {"include not-valid with a blank", R"(<OverallSummaries includeNotValid="false "/>)", false},
  };
  ExpectParseResults<DMOverallSummaries>(kCases);
}

TEST(DMOverallSummariesTest, ReadingStopsAtTheFirstBadFlag) {
  const auto overall = ReadSummary<DMOverallSummaries>(
      R"(<OverallSummaries current="false" includeUMissing="no" includeNotValid="false"/>)");
  EXPECT_FALSE(overall.parseSuccess());
  EXPECT_FALSE(overall.getCurrent());
  EXPECT_TRUE(overall.getIncludeUMissing());
  EXPECT_TRUE(overall.getIncludeNotValid());
}

TEST(DMOverallSummariesTest, RecordCountsChildIsRecorded) {
  const auto overall = ReadSummary<DMOverallSummaries>(
      R"(<OverallSummaries><RecordCountsExt ignored="1"/></OverallSummaries>)");
  EXPECT_TRUE(overall.parseSuccess());
  ASSERT_NE(overall.getRecordCountsExt(), nullptr);
  EXPECT_TRUE(overall.getRecordCountsExt()->parseSuccess());
}

TEST(DMOverallSummariesTest, WritesTheThreeFlagsAlways) {
  EXPECT_EQ(WrittenSummary(DMOverallSummaries()),
            R"(<OverallSummaries current="true" includeNotValid="true" includeUMissing="true"/>)");
  EXPECT_EQ(WrittenSummary(ReadSummary<DMOverallSummaries>(
                R"(<OverallSummaries includeNotValid="false"><RecordCountsExt x="1"/>)"
                R"(</OverallSummaries>)")),
            R"(<OverallSummaries current="true" includeNotValid="false" includeUMissing="true">)"
            R"(<RecordCountsExt/></OverallSummaries>)");
}

TEST(DMOverallSummariesTest, RoundTripKeepsEveryValue) {
  RoundTrip<DMOverallSummaries>(
      R"(<OverallSummaries current="false" includeNotValid="false" includeUMissing="false">)"
      R"(<RecordCountsExt/></OverallSummaries>)");
}

TEST(DMOverallSummariesTest, CopiesAreDeep) {
  auto original = std::make_unique<DMOverallSummaries>(ReadSummary<DMOverallSummaries>(
      R"(<OverallSummaries current="false"><RecordCountsExt/></OverallSummaries>)"));
  const DMOverallSummaries copy(*original);
  DMOverallSummaries assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_NE(copy.getRecordCountsExt(), nullptr);
  EXPECT_FALSE(assigned.getCurrent());
}

// ---------------------------------------------------------------------------
// DMFieldSummary

// One of the six counts: its attribute and its getter.
struct CountAttribute {
  const char* attribute;
  long long (DMFieldSummary::*get)() const;
};

const CountAttribute kCounts[] = {
    {"validCount", &DMFieldSummary::getValidCount},
    {"unweightedValid", &DMFieldSummary::getUnweightedValid},
    {"missingCount", &DMFieldSummary::getMissingCount},
    {"unweightedMissing", &DMFieldSummary::getUnweightedMissing},
    {"invalidCount", &DMFieldSummary::getInvalidCount},
    {"unweightedInvalid", &DMFieldSummary::getUnweightedInvalid},
};

TEST(DMFieldSummaryTest, DefaultSummaryHasNoStatisticsNoNameAndNoCounts) {
  const DMFieldSummary summary;
  EXPECT_TRUE(summary.parseSuccess());
  EXPECT_EQ(summary.getConStatistics(), nullptr);
  EXPECT_EQ(summary.getDisStatistics(), nullptr);
  EXPECT_EQ(summary.getCurrent(), "");
  EXPECT_EQ(summary.getIncludeUMissing(), "");
  EXPECT_EQ(summary.getIncludeNotValid(), "");
  EXPECT_EQ(summary.getFieldName(), "");
  for (const CountAttribute& count : kCounts) {
    EXPECT_EQ((summary.*count.get)(), -1) << count.attribute;
  }
  EXPECT_EQ(WrittenSummary(summary), "");
}

TEST(DMFieldSummaryTest, ReadsAContinuousSummary) {
  const auto summary = ReadSummary<DMFieldSummary>(FieldSummaryWith(
      R"(fieldName="age" current="true" includeUMissing="false" includeNotValid="true")",
      R"(<ContinuousStatisticsExt mean="40"/>)"));
  EXPECT_TRUE(summary.parseSuccess());
  ASSERT_NE(summary.getConStatistics(), nullptr);
  EXPECT_EQ(summary.getConStatistics()->getMean(), 40.0);
  EXPECT_EQ(summary.getDisStatistics(), nullptr);
  EXPECT_EQ(summary.getFieldName(), "age");
  EXPECT_EQ(summary.getCurrent(), "true");
  EXPECT_EQ(summary.getIncludeUMissing(), "false");
  EXPECT_EQ(summary.getIncludeNotValid(), "true");
}

TEST(DMFieldSummaryTest, ReadsADiscreteSummary) {
  const auto summary = ReadSummary<DMFieldSummary>(FieldSummaryWith(R"(fieldName="g")", kDiscrete));
  EXPECT_TRUE(summary.parseSuccess());
  EXPECT_EQ(summary.getConStatistics(), nullptr);
  ASSERT_NE(summary.getDisStatistics(), nullptr);
  EXPECT_EQ(summary.getDisStatistics()->getDistributionSummary()->getCategoryCount(), 1u);
}

TEST(DMFieldSummaryTest, BothStatisticsChildrenFailToParseAndRefuseToBeWritten) {
  const auto summary = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x")", std::string(kDiscrete) + "<ContinuousStatisticsExt/>"));
  EXPECT_FALSE(summary.parseSuccess());
  EXPECT_NE(summary.getConStatistics(), nullptr);
  EXPECT_NE(summary.getDisStatistics(), nullptr);
  EXPECT_EQ(WrittenSummary(summary), "");
}

TEST(DMFieldSummaryTest, NeitherStatisticsChildFailsToParseAndRefusesToBeWritten) {
  const auto summary = ReadSummary<DMFieldSummary>(R"(<FieldSummary fieldName="x"/>)");
  EXPECT_FALSE(summary.parseSuccess());
  EXPECT_EQ(WrittenSummary(summary), "");
}

TEST(DMFieldSummaryTest, EmptyFieldNameFails) {
  EXPECT_FALSE(
      ReadSummary<DMFieldSummary>(FieldSummaryWith(R"(fieldName="")", "<ContinuousStatisticsExt/>"))
          .parseSuccess());
}

TEST(DMFieldSummaryTest, ValidCountOfMinusFiveFails) {
  const auto summary = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x" validCount="-5")", "<ContinuousStatisticsExt/>"));
  EXPECT_FALSE(summary.parseSuccess());
  EXPECT_EQ(summary.getValidCount(), -5);
}

TEST(DMFieldSummaryTest, NegativeCountKeptFromAFailedReadingIsNotWritten) {
  const auto summary = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x" validCount="-5")", "<ContinuousStatisticsExt/>"));
  EXPECT_EQ(WrittenSummary(summary),
            R"(<FieldSummary fieldName="x"><ContinuousStatisticsExt/></FieldSummary>)");
}

TEST(DMFieldSummaryTest, SummaryWithoutCountsReportsMinusOneAndWritesNoCounts) {
  const auto summary = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x")", "<ContinuousStatisticsExt/>"));
  EXPECT_TRUE(summary.parseSuccess());
  for (const CountAttribute& count : kCounts) {
    EXPECT_EQ((summary.*count.get)(), -1) << count.attribute;
  }
  EXPECT_EQ(WrittenSummary(summary),
            R"(<FieldSummary fieldName="x"><ContinuousStatisticsExt/></FieldSummary>)");
}

TEST(DMFieldSummaryTest, EachCountIsReadIntoItsOwnGetterAndWrittenBack) {
  for (const CountAttribute& count : kCounts) {
    SCOPED_TRACE(count.attribute);
    const std::string attributes = std::string("fieldName=\"x\" ") + count.attribute + "=\"0\"";
    const auto summary =
        ReadSummary<DMFieldSummary>(FieldSummaryWith(attributes, "<ContinuousStatisticsExt/>"));
    EXPECT_TRUE(summary.parseSuccess());
    for (const CountAttribute& other : kCounts) {
      EXPECT_EQ((summary.*other.get)(), &other == &count ? 0 : -1) << other.attribute;
    }
    EXPECT_EQ(WrittenSummary(summary), "<FieldSummary fieldName=\"x\" " +
                                           std::string(count.attribute) +
                                           "=\"0\"><ContinuousStatisticsExt/></FieldSummary>");
  }
}

TEST(DMFieldSummaryTest, ReadingTable) {
  const std::string con = "<ContinuousStatisticsExt/>";
  const std::string rows[][2] = {
      {"name only", FieldSummaryWith(R"(fieldName="x")", con)},
      {"flags as entities",
       FieldSummaryWith(R"(fieldName="x" current="false" includeUMissing="true")", con)},
      {"large count", FieldSummaryWith(R"(fieldName="x" missingCount="9223372036854775807")", con)},
      {"count with trailing text",
       FieldSummaryWith(R"(fieldName="x" validCount="3 records")", con)},
  };
  const std::string failing[][2] = {
      {"no name", FieldSummaryWith(R"(current="true")", con)},
      {"current yes", FieldSummaryWith(R"(fieldName="x" current="yes")", con)},
      {"include user-missing empty", FieldSummaryWith(R"(fieldName="x" includeUMissing="")", con)},
      {"include not-valid capitalised",
       FieldSummaryWith(R"(fieldName="x" includeNotValid="FALSE")", con)},
      {"count not a number", FieldSummaryWith(R"(fieldName="x" invalidCount="none")", con)},
      {"negative unweighted count",
       FieldSummaryWith(R"(fieldName="x" unweightedMissing="-1")", con)},
      {"failing continuous child",
       FieldSummaryWith(R"(fieldName="x")", R"(<ContinuousStatisticsExt mean="NaN"/>)")},
      {"failing discrete child", FieldSummaryWith(R"(fieldName="x")", "<DiscreteStatisticsExt/>")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row[0]);
    EXPECT_TRUE(ReadSummary<DMFieldSummary>(row[1]).parseSuccess());
  }
  for (const auto& row : failing) {
    SCOPED_TRACE(row[0]);
    EXPECT_FALSE(ReadSummary<DMFieldSummary>(row[1]).parseSuccess());
  }
}

TEST(DMFieldSummaryTest, FailingStatisticsChildIsDropped) {
  const auto summary = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x")", R"(<ContinuousStatisticsExt mean="NaN"/>)"));
  EXPECT_EQ(summary.getConStatistics(), nullptr);
  EXPECT_EQ(summary.getFieldName(), "");
}

TEST(DMFieldSummaryTest, FlagTextOtherThanTheEntitiesIsKeptAsRead) {
  const auto summary = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x" includeUMissing="maybe")", "<ContinuousStatisticsExt/>"));
  EXPECT_FALSE(summary.parseSuccess());
  EXPECT_EQ(summary.getIncludeUMissing(), "maybe");
}

TEST(DMFieldSummaryTest, WritesStatisticsThenFlagsNameAndCounts) {
  EXPECT_EQ(RoundTrip<DMFieldSummary>(FieldSummaryWith(
                R"(unweightedInvalid="0" validCount="7" fieldName="Name &amp; &quot;x&quot;" )"
                R"(includeNotValid="false")",
                kDiscrete)),
            R"(<Root><FieldSummary fieldName="Name &amp; &quot;x&quot;" includeNotValid="false" )"
            R"(unweightedInvalid="0" validCount="7">)" +
                std::string(kDiscrete) + "</FieldSummary></Root>");
}

TEST(DMFieldSummaryTest, CopiesAreDeep) {
  auto original = std::make_unique<DMFieldSummary>(ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="x" missingCount="3")", kDiscrete)));
  const DMFieldSummary copy(*original);
  DMFieldSummary assigned = ReadSummary<DMFieldSummary>(
      FieldSummaryWith(R"(fieldName="old")", "<ContinuousStatisticsExt/>"));
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_EQ(copy.getDisStatistics()->getDistributionSummary()->getCategory(0)->getValue(), "a");
  EXPECT_EQ(assigned.getConStatistics(), nullptr);
  EXPECT_EQ(assigned.getFieldName(), "x");
}

// ---------------------------------------------------------------------------
// DMFieldSummaries

TEST(DMFieldSummariesTest, DefaultListIsEmptyAndWritesAnEmptyElement) {
  const DMFieldSummaries summaries;
  EXPECT_TRUE(summaries.parseSuccess());
  EXPECT_EQ(summaries.getFieldSummaryCount(), 0u);
  EXPECT_EQ(summaries.getFieldSummary(0), nullptr);
  EXPECT_EQ(WrittenSummary(summaries), "<FieldSummaries/>");
}

TEST(DMFieldSummariesTest, ReadsFieldSummariesInDocumentOrder) {
  const auto summaries = ReadSummary<DMFieldSummaries>(
      "<FieldSummaries>" + FieldSummaryWith(R"(fieldName="b")", kDiscrete) +
      FieldSummaryWith(R"(fieldName="a")", "<ContinuousStatisticsExt/>") + "</FieldSummaries>");
  EXPECT_TRUE(summaries.parseSuccess());
  ASSERT_EQ(summaries.getFieldSummaryCount(), 2u);
  EXPECT_EQ(summaries.getFieldSummary(0)->getFieldName(), "b");
  EXPECT_EQ(summaries.getFieldSummary(1)->getFieldName(), "a");
}

TEST(DMFieldSummariesTest, FieldSummaryAtTheCountIsNull) {
  const auto summaries = ReadSummary<DMFieldSummaries>(
      "<FieldSummaries>" + FieldSummaryWith(R"(fieldName="b")", kDiscrete) + "</FieldSummaries>");
  ASSERT_EQ(summaries.getFieldSummaryCount(), 1u);
  EXPECT_NE(summaries.getFieldSummary(0), nullptr);
  EXPECT_EQ(summaries.getFieldSummary(summaries.getFieldSummaryCount()), nullptr);
  EXPECT_EQ(summaries.getFieldSummary(static_cast<std::size_t>(-1)), nullptr);
}

TEST(DMFieldSummariesTest, FailingFieldSummaryIsDroppedAndStopsTheReading) {
  const auto summaries = ReadSummary<DMFieldSummaries>(
      "<FieldSummaries>" + FieldSummaryWith(R"(fieldName="a")", kDiscrete) +
      FieldSummaryWith(R"(fieldName="")", kDiscrete) +
      FieldSummaryWith(R"(fieldName="c")", kDiscrete) + "</FieldSummaries>");
  EXPECT_FALSE(summaries.parseSuccess());
  ASSERT_EQ(summaries.getFieldSummaryCount(), 1u);
  EXPECT_EQ(summaries.getFieldSummary(0)->getFieldName(), "a");
}

TEST(DMFieldSummariesTest, CopiesAreDeep) {
  auto original = std::make_unique<DMFieldSummaries>(ReadSummary<DMFieldSummaries>(
      "<FieldSummaries>" + FieldSummaryWith(R"(fieldName="a")", kDiscrete) + "</FieldSummaries>"));
  const DMFieldSummaries copy(*original);
  DMFieldSummaries assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_EQ(copy.getFieldSummary(0)->getFieldName(), "a");
  EXPECT_EQ(assigned.getFieldSummary(0)->getFieldName(), "a");
}

// ---------------------------------------------------------------------------
// DMDatasetSummaries

TEST(DMDatasetSummariesTest, ElementWithoutChildrenParsesAndBothGettersAreNull) {
  const auto document = ReadSummary<DMDatasetSummaries>("<DatasetSummaries/>");
  EXPECT_TRUE(document.parseSuccess());
  EXPECT_EQ(document.getOverallSummaries(), nullptr);
  EXPECT_EQ(document.getFieldSummaries(), nullptr);
  EXPECT_EQ(WrittenSummary(document), "<DatasetSummaries/>");
}

TEST(DMDatasetSummariesTest, DefaultDocumentIsEmptyAndParses) {
  const DMDatasetSummaries document;
  EXPECT_TRUE(document.parseSuccess());
  EXPECT_EQ(document.getOverallSummaries(), nullptr);
  EXPECT_EQ(document.getFieldSummaries(), nullptr);
  EXPECT_EQ(WrittenSummary(document), "<DatasetSummaries/>");
}

constexpr char kSmallDocument[] =
    R"(<DatasetSummaries><OverallSummaries current="false"/><FieldSummaries>)"
    R"(<FieldSummary fieldName="a"><ContinuousStatisticsExt/></FieldSummary>)"
    R"(</FieldSummaries></DatasetSummaries>)";

TEST(DMDatasetSummariesTest, AfterReleasingFieldSummariesTheyAreNullAndOverallIsUntouched) {
  auto document = ReadSummary<DMDatasetSummaries>(kSmallDocument);
  ASSERT_NE(document.getFieldSummaries(), nullptr);
  const DMOverallSummaries* overall = document.getOverallSummaries();
  ASSERT_NE(overall, nullptr);
  document.releaseFieldSummaries();
  EXPECT_EQ(document.getFieldSummaries(), nullptr);
  EXPECT_EQ(document.getOverallSummaries(), overall);
  EXPECT_FALSE(document.getOverallSummaries()->getCurrent());
  EXPECT_TRUE(document.parseSuccess());
  EXPECT_EQ(WrittenSummary(document),
            R"(<DatasetSummaries><OverallSummaries current="false" includeNotValid="true" )"
            R"(includeUMissing="true"/></DatasetSummaries>)");
}

TEST(DMDatasetSummariesTest, AfterReleasingOverallSummariesFieldSummariesAreUntouched) {
  auto document = ReadSummary<DMDatasetSummaries>(kSmallDocument);
  const DMFieldSummaries* fields = document.getFieldSummaries();
  ASSERT_NE(fields, nullptr);
  document.releaseOverallSummaries();
  EXPECT_EQ(document.getOverallSummaries(), nullptr);
  EXPECT_EQ(document.getFieldSummaries(), fields);
  EXPECT_EQ(document.getFieldSummaries()->getFieldSummary(0)->getFieldName(), "a");
  document.releaseOverallSummaries();
  document.releaseFieldSummaries();
  EXPECT_EQ(WrittenSummary(document), "<DatasetSummaries/>");
}

TEST(DMDatasetSummariesTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"overall only", "<DatasetSummaries><OverallSummaries/></DatasetSummaries>", true},
      {"field summaries only", "<DatasetSummaries><FieldSummaries/></DatasetSummaries>", true},
      {"other children", "<DatasetSummaries><Other/></DatasetSummaries>", true},
      {"second overall ignored",
       R"(<DatasetSummaries><OverallSummaries/><OverallSummaries current="x"/>)"
       R"(</DatasetSummaries>)",
       true},
      {"failing overall", R"(<DatasetSummaries><OverallSummaries current="x"/></DatasetSummaries>)",
       false},
      {"failing field summaries",
       "<DatasetSummaries><FieldSummaries><FieldSummary/></FieldSummaries></DatasetSummaries>",
       false},
  };
  ExpectParseResults<DMDatasetSummaries>(kCases);
}

TEST(DMDatasetSummariesTest, FailingPartIsDropped) {
  const auto badOverall = ReadSummary<DMDatasetSummaries>(
      R"(<DatasetSummaries><OverallSummaries current="x"/><FieldSummaries/></DatasetSummaries>)");
  EXPECT_FALSE(badOverall.parseSuccess());
  EXPECT_EQ(badOverall.getOverallSummaries(), nullptr);
  const auto badFields = ReadSummary<DMDatasetSummaries>(
      "<DatasetSummaries><OverallSummaries/><FieldSummaries><FieldSummary/></FieldSummaries>"
      "</DatasetSummaries>");
  EXPECT_FALSE(badFields.parseSuccess());
  EXPECT_NE(badFields.getOverallSummaries(), nullptr);
  EXPECT_EQ(badFields.getFieldSummaries(), nullptr);
}

TEST(DMDatasetSummariesTest, ReadsFromText) {
  const auto document = DMDatasetSummaries::fromText(kSmallDocument);
  EXPECT_TRUE(document.parseSuccess());
  ASSERT_NE(document.getFieldSummaries(), nullptr);
  EXPECT_EQ(document.getFieldSummaries()->getFieldSummaryCount(), 1u);
}

TEST(DMDatasetSummariesTest, TextThatIsNoDocumentFails) {
  for (const char* text : {"", "<DatasetSummaries>", "not xml"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(DMDatasetSummaries::fromText(text).parseSuccess());
  }
  EXPECT_FALSE(DMDatasetSummaries::fromText(nullptr).parseSuccess());
}

TEST(DMDatasetSummariesTest, CopiesAreDeep) {
  auto original =
      std::make_unique<DMDatasetSummaries>(ReadSummary<DMDatasetSummaries>(kSmallDocument));
  const DMDatasetSummaries copy(*original);
  DMDatasetSummaries assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_FALSE(copy.getOverallSummaries()->getCurrent());
  EXPECT_EQ(assigned.getFieldSummaries()->getFieldSummary(0)->getFieldName(), "a");
}

TEST(DMDatasetSummariesTest, ReleasingPartsOfACopyLeavesTheOriginalAlone) {
  const auto original = ReadSummary<DMDatasetSummaries>(kSmallDocument);
  DMDatasetSummaries copy(original);
  copy.releaseFieldSummaries();
  copy.releaseOverallSummaries();
  EXPECT_NE(original.getFieldSummaries(), nullptr);
  EXPECT_NE(original.getOverallSummaries(), nullptr);
}

TEST(DMDatasetSummariesTest, MovedDocumentKeepsItsParts) {
  auto original = ReadSummary<DMDatasetSummaries>(kSmallDocument);
  const DMFieldSummaries* fields = original.getFieldSummaries();
  const DMDatasetSummaries moved(std::move(original));
  EXPECT_EQ(moved.getFieldSummaries(), fields);
  DMDatasetSummaries assigned;
  assigned = DMDatasetSummaries::fromText(kSmallDocument);
  EXPECT_NE(assigned.getOverallSummaries(), nullptr);
}

// ---------------------------------------------------------------------------
// Every class: bad handles never crash

TEST(SummariesTest, EveryReaderRefusesAnEmptyHandleExceptTheRecordCounts) {
  const DMXMLWrapper empty;
  EXPECT_FALSE(DMCluster(empty).parseSuccess());
  EXPECT_FALSE(DMCategory(empty).parseSuccess());
  EXPECT_FALSE(DMPercentile(empty).parseSuccess());
  EXPECT_FALSE(DMPercentiles(empty).parseSuccess());
  EXPECT_FALSE(DMDistributionSummary(empty).parseSuccess());
  EXPECT_FALSE(DMContinuousStatisticsExt(empty).parseSuccess());
  EXPECT_FALSE(DMDiscreteStatisticsExt(empty).parseSuccess());
  EXPECT_TRUE(DMRecordCountsExt(empty).parseSuccess());
  EXPECT_FALSE(DMOverallSummaries(empty).parseSuccess());
  EXPECT_FALSE(DMFieldSummary(empty).parseSuccess());
  EXPECT_FALSE(DMFieldSummaries(empty).parseSuccess());
  EXPECT_FALSE(DMDatasetSummaries(empty).parseSuccess());
}

// Writes `summary` under a parent handle without an element.
template <typename Summary>
bool WritesUnderAnEmptyParent(const Summary& summary) {
  DMXMLWrapper parent;
  DMXMLWrapper* created = &parent;
  summary.AddToTree(parent, created);
  return created != nullptr;
}

TEST(SummariesTest, NothingIsWrittenUnderAParentWithoutElement) {
  EXPECT_FALSE(WritesUnderAnEmptyParent(DMPercentiles()));
  EXPECT_FALSE(WritesUnderAnEmptyParent(DMContinuousStatisticsExt()));
  EXPECT_FALSE(WritesUnderAnEmptyParent(DMRecordCountsExt()));
  EXPECT_FALSE(WritesUnderAnEmptyParent(DMOverallSummaries()));
  EXPECT_FALSE(WritesUnderAnEmptyParent(DMFieldSummaries()));
  EXPECT_FALSE(WritesUnderAnEmptyParent(DMDatasetSummaries()));
  EXPECT_FALSE(
      WritesUnderAnEmptyParent(ReadSummary<DMCluster>(R"(<Cluster count="1" mean="2"/>)")));
}

// ---------------------------------------------------------------------------
// A complete document

// Pieces of a complete document in the form the writer produces: attributes
// in alphabetical order, children in writing order, no white space.
constexpr char kOverall[] =
    R"(<OverallSummaries current="false" includeNotValid="true" includeUMissing="false">)"
    R"(<RecordCountsExt/></OverallSummaries>)";
constexpr char kPercentiles[] =
    R"(<Percentiles interQuartileRange="21.5">)"
    R"(<Percentile lower="23" rank="25" score="24.5" upper="26"/>)"
    R"(<Percentile lower="33.5" rank="50" score="35" upper="36.5"/>)"
    R"(<Percentile lower="44" rank="75" score="46" upper="48"/></Percentiles>)";
constexpr char kClusters[] =
    R"(<DistributionSummary discrete="false" maxCatsExceeded="false" median="35" mode="31">)"
    R"(<Cluster count="412" lower="18" mean="27.25" upper="39" variance="14.0625"/>)"
    R"(<Cluster count="588" lower="39" mean="51.5" upper="90" variance="96.04"/>)"
    R"(</DistributionSummary>)";
constexpr char kContinuousAttributes[] =
    R"(kurtosis="-0.35" maximum="90" mean="41.51" minimum="18" outlierLowerBound="-8.25" )"
    R"(outlierUpperBound="78.25" skewness="0.42" stdDev="15.3" stdErrKurtosis="0.155" )"
    R"(stdErrSkewness="0.077" variance="234.09")";
constexpr char kCategories[] =
    R"(<DistributionSummary discrete="true" maxCatsExceeded="true" median="north" mode="2">)"
    R"(<Category count="510" cumPercentage="51" percentage="51" value="north"/>)"
    R"(<Category count="300" cumPercentage="81" percentage="30" value="south"/>)"
    R"(<Category count="-1" cumPercentage="80.9" percentage="-0.1" value="&lt;none>"/>)"
    R"(<Category count="191" cumPercentage="100" percentage="19.1" value="west"/>)"
    R"(</DistributionSummary>)";

constexpr char kIncomeStatistics[] =
    R"(<ContinuousStatisticsExt maximum="250000.5" minimum="0"><Percentiles>)"
    R"(<Percentile rank="50" score="41000"/></Percentiles></ContinuousStatisticsExt>)";

std::string CompleteDocument() {
  return std::string("<DatasetSummaries>") + kOverall + "<FieldSummaries>" +
         R"(<FieldSummary current="true" fieldName="age" includeNotValid="false" )"
         R"(includeUMissing="true" invalidCount="2" missingCount="5" unweightedInvalid="2" )"
         R"(unweightedMissing="4" unweightedValid="993" validCount="1000">)" +
         "<ContinuousStatisticsExt " + kContinuousAttributes + ">" + kPercentiles + kClusters +
         "</ContinuousStatisticsExt></FieldSummary>" +
         R"(<FieldSummary current="false" fieldName="region" includeNotValid="true" )"
         R"(includeUMissing="false" missingCount="0" validCount="1001">)" +
         R"(<DiscreteStatisticsExt median="north" mode="north">)" + kCategories +
         "</DiscreteStatisticsExt></FieldSummary>" + R"(<FieldSummary fieldName="income">)" +
         kIncomeStatistics + "</FieldSummary>" + "</FieldSummaries></DatasetSummaries>";
}

TEST(DMDatasetSummariesTest, CompleteDocumentReadsWritesAndReadsAgainUnchanged) {
  const std::string text = CompleteDocument();
  const auto document = ReadSummary<DMDatasetSummaries>(text);
  ASSERT_TRUE(document.parseSuccess());
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(document, dmtest::SameSummary()),
            "<Root>" + text + "</Root>");
}

TEST(DMDatasetSummariesTest, CompleteDocumentIsReadIntoTheRightGetters) {
  const auto document = ReadSummary<DMDatasetSummaries>(CompleteDocument());
  ASSERT_TRUE(document.parseSuccess());
  const DMOverallSummaries* overall = document.getOverallSummaries();
  ASSERT_NE(overall, nullptr);
  EXPECT_NE(overall->getRecordCountsExt(), nullptr);
  EXPECT_FALSE(overall->getCurrent());
  EXPECT_FALSE(overall->getIncludeUMissing());
  EXPECT_TRUE(overall->getIncludeNotValid());

  const DMFieldSummaries* fields = document.getFieldSummaries();
  ASSERT_NE(fields, nullptr);
  ASSERT_EQ(fields->getFieldSummaryCount(), 3u);

  const DMFieldSummary& age = *fields->getFieldSummary(0);
  EXPECT_EQ(age.getFieldName(), "age");
  EXPECT_EQ(age.getCurrent(), "true");
  EXPECT_EQ(age.getIncludeUMissing(), "true");
  EXPECT_EQ(age.getIncludeNotValid(), "false");
  EXPECT_EQ(age.getValidCount(), 1000);
  EXPECT_EQ(age.getUnweightedValid(), 993);
  EXPECT_EQ(age.getMissingCount(), 5);
  EXPECT_EQ(age.getUnweightedMissing(), 4);
  EXPECT_EQ(age.getInvalidCount(), 2);
  EXPECT_EQ(age.getUnweightedInvalid(), 2);
  ASSERT_NE(age.getConStatistics(), nullptr);
  const DMContinuousStatisticsExt& ageStats = *age.getConStatistics();
  EXPECT_EQ(ageStats.getMean(), 41.51);
  EXPECT_EQ(ageStats.getStdErrSkewness(), 0.077);
  EXPECT_EQ(ageStats.getOutlierLowerBound(), -8.25);
  ASSERT_NE(ageStats.getPercentiles(), nullptr);
  EXPECT_EQ(ageStats.getPercentiles()->getPercentileCount(), 3u);
  EXPECT_EQ(ageStats.getPercentiles()->getPercentile(1)->getScore(), 35.0);
  ASSERT_NE(ageStats.getDistributionSummary(), nullptr);
  EXPECT_EQ(ageStats.getDistributionSummary()->getClusterCount(), 2u);
  EXPECT_EQ(ageStats.getDistributionSummary()->getCluster(1)->getVariance(), 96.04);
  EXPECT_EQ(ageStats.getDistributionSummary()->getMedian(), "35");

  const DMFieldSummary& region = *fields->getFieldSummary(1);
  EXPECT_EQ(region.getFieldName(), "region");
  EXPECT_EQ(region.getMissingCount(), 0);
  EXPECT_EQ(region.getInvalidCount(), -1);
  ASSERT_NE(region.getDisStatistics(), nullptr);
  EXPECT_EQ(region.getDisStatistics()->getMode(), "north");
  const DMDistributionSummary* categories = region.getDisStatistics()->getDistributionSummary();
  ASSERT_NE(categories, nullptr);
  ASSERT_EQ(categories->getCategoryCount(), 4u);
  EXPECT_EQ(categories->getCategory(2)->getValue(), "<none>");
  EXPECT_EQ(categories->getCategory(2)->getCount(), -1);
  EXPECT_EQ(categories->getMode(), 2.0);
  EXPECT_EQ(categories->getMaxCatsExceeded(), "true");

  const DMFieldSummary& income = *fields->getFieldSummary(2);
  EXPECT_EQ(income.getCurrent(), "");
  ASSERT_NE(income.getConStatistics(), nullptr);
  EXPECT_EQ(income.getConStatistics()->getMaximum(), 250000.5);
  EXPECT_EQ(income.getConStatistics()->getDistributionSummary(), nullptr);
}

// ---------------------------------------------------------------------------
// Defective documents

// Whether `element`, read as the summary class its name stands for, parses.
bool ParsesAsItsClass(const DMXMLWrapper& element) {
  const std::string name = dmtest::XmlTest::NameOf(element);
  if (name == "DatasetSummaries") return DMDatasetSummaries(element).parseSuccess();
  if (name == "OverallSummaries") return DMOverallSummaries(element).parseSuccess();
  if (name == "RecordCountsExt") return DMRecordCountsExt(element).parseSuccess();
  if (name == "FieldSummaries") return DMFieldSummaries(element).parseSuccess();
  if (name == "FieldSummary") return DMFieldSummary(element).parseSuccess();
  if (name == "ContinuousStatisticsExt") return DMContinuousStatisticsExt(element).parseSuccess();
  if (name == "DiscreteStatisticsExt") return DMDiscreteStatisticsExt(element).parseSuccess();
  if (name == "DistributionSummary") return DMDistributionSummary(element).parseSuccess();
  if (name == "Percentiles") return DMPercentiles(element).parseSuccess();
  if (name == "Percentile") return DMPercentile(element).parseSuccess();
  if (name == "Cluster") return DMCluster(element).parseSuccess();
  if (name == "Category") return DMCategory(element).parseSuccess();
  ADD_FAILURE() << "no summary class for " << name;
  return false;
}

// The `index`th direct child of `parent` named `name`, or null.
DMXMLWrapper* Child(DMXMLWrapper& parent, const std::string& name, int index) {
  DMXMLIteratorWrapper* children = nullptr;
  if (parent.getElementDirectIterator(name.c_str(), &children) != DM_XML_OK) return nullptr;
  void* item = nullptr;
  for (int i = 0; i <= index; ++i) {
    if (children->nextItem(&item) != DM_XML_OK) return nullptr;
  }
  return static_cast<DMXMLWrapper*>(item);
}

// The element that `path` leads to from `root`: steps "Name" or "Name[i]"
// separated by '/', each one the first (or `i`th) direct child of that name.
DMXMLWrapper* Follow(DMXMLWrapper& root, const std::string& path, std::vector<DMXMLWrapper*>& way) {
  DMXMLWrapper* current = &root;
  way.push_back(current);
  std::size_t start = 0;
  while (current != nullptr && start < path.size()) {
    std::size_t end = path.find('/', start);
    if (end == std::string::npos) end = path.size();
    std::string step = path.substr(start, end - start);
    int index = 0;
    if (const std::size_t bracket = step.find('['); bracket != std::string::npos) {
      index = std::stoi(step.substr(bracket + 1));
      step.erase(bracket);
    }
    current = Child(*current, step, index);
    if (current != nullptr) way.push_back(current);
    start = end + 1;
  }
  return current;
}

// One defect put into the complete document: `find` (which occurs once) is
// replaced by `replace`, which makes the element at `path` fail by itself.
struct Defect {
  const char* what;
  const char* find;
  const char* replace;
  const char* path;
};

std::ostream& operator<<(std::ostream& out, const Defect& defect) { return out << defect.what; }

const Defect kDefects[] = {
    {"overall flag not an entity", R"(<OverallSummaries current="false")",
     R"(<OverallSummaries current="no")", "OverallSummaries"},
    {"overall flag empty", R"(includeUMissing="false"><RecordCountsExt/>)",
     R"(includeUMissing=""><RecordCountsExt/>)", "OverallSummaries"},
    {"field name empty", R"(fieldName="age")", R"(fieldName="")", "FieldSummaries/FieldSummary"},
    {"field name missing", R"(fieldName="region" )", "", "FieldSummaries/FieldSummary[1]"},
    {"negative valid count", R"(validCount="1000")", R"(validCount="-5")",
     "FieldSummaries/FieldSummary"},
    {"unreadable count", R"(missingCount="0")", R"(missingCount="none")",
     "FieldSummaries/FieldSummary[1]"},
    {"field flag not an entity", R"(current="false" fieldName="region")",
     R"(current="False" fieldName="region")", "FieldSummaries/FieldSummary[1]"},
    {"both statistics", R"(<ContinuousStatisticsExt maximum="250000.5")",
     R"(<DiscreteStatisticsExt><DistributionSummary><Category count="1" value="a"/>)"
     R"(</DistributionSummary></DiscreteStatisticsExt><ContinuousStatisticsExt maximum="250000.5")",
     "FieldSummaries/FieldSummary[2]"},
    {"no statistics", kIncomeStatistics, "", "FieldSummaries/FieldSummary[2]"},
    {"continuous real NaN", R"(stdDev="15.3")", R"(stdDev="NaN")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt"},
    {"continuous real unreadable", R"(minimum="0">)", R"(minimum="zero">)",
     "FieldSummaries/FieldSummary[2]/ContinuousStatisticsExt"},
    {"interquartile range infinite", R"(interQuartileRange="21.5")", R"(interQuartileRange="INF")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/Percentiles"},
    {"percentile score infinite", R"(score="35")", R"(score="INF")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/Percentiles/Percentile[1]"},
    {"percentile rank missing", R"(<Percentile rank="50" score="41000"/>)",
     R"(<Percentile score="41000"/>)",
     "FieldSummaries/FieldSummary[2]/ContinuousStatisticsExt/Percentiles/Percentile"},
    {"percentile bound not a number", R"(upper="48")", R"(upper="NaN")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/Percentiles/Percentile[2]"},
    {"clusters and categories", R"(variance="96.04"/>)",
     R"(variance="96.04"/><Category count="1" value="a"/>)",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary"},
    {"discrete flag not an entity", R"(discrete="false")", R"(discrete="no")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary"},
    {"max categories flag not an entity", R"(maxCatsExceeded="true")", R"(maxCatsExceeded="yes")",
     "FieldSummaries/FieldSummary[1]/DiscreteStatisticsExt/DistributionSummary"},
    {"summary mode not a number", R"(median="35" mode="31")", R"(median="35" mode="NaN")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary"},
    {"neither clusters nor categories", kClusters, R"(<DistributionSummary discrete="false"/>)",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary"},
    {"negative cluster count", R"(count="588")", R"(count="-1")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary/Cluster[1]"},
    {"cluster mean missing", R"(mean="27.25" )", "",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary/Cluster"},
    {"cluster variance infinite", R"(variance="14.0625")", R"(variance="-INF")",
     "FieldSummaries/FieldSummary/ContinuousStatisticsExt/DistributionSummary/Cluster"},
    {"category value missing", R"( value="north"/>)", "/>",
     "FieldSummaries/FieldSummary[1]/DiscreteStatisticsExt/DistributionSummary/Category"},
    {"category count unreadable", R"(count="300")", R"(count="many")",
     "FieldSummaries/FieldSummary[1]/DiscreteStatisticsExt/DistributionSummary/Category[1]"},
    {"category percentage infinite", R"(percentage="19.1")", R"(percentage="-INF")",
     "FieldSummaries/FieldSummary[1]/DiscreteStatisticsExt/DistributionSummary/Category[3]"},
    {"discrete statistics without summary", kCategories, "",
     "FieldSummaries/FieldSummary[1]/DiscreteStatisticsExt"},
};

// Replaces the one occurrence of `find` in `text`; fails when there is not
// exactly one.
::testing::AssertionResult ReplaceOnce(std::string& text, const std::string& find,
                                       const std::string& replace) {
  const std::size_t at = text.find(find);
  if (at == std::string::npos) return ::testing::AssertionFailure() << "not found: " << find;
  if (text.find(find, at + 1) != std::string::npos) {
    return ::testing::AssertionFailure() << "found more than once: " << find;
  }
  text.replace(at, find.size(), replace);
  return ::testing::AssertionSuccess();
}

TEST(DMDatasetSummariesTest, EveryElementOfTheCompleteDocumentParsesOnItsOwn) {
  DMXMLWrapper document;
  document.loadFromContents(CompleteDocument().c_str());
  ASSERT_NE(document.getElement(), nullptr);
  // The paths of the defect table all exist and parse while there is no
  // defect, so a failure below can only come from the defect.
  for (const Defect& defect : kDefects) {
    SCOPED_TRACE(defect);
    std::vector<DMXMLWrapper*> way;
    ASSERT_NE(Follow(document, defect.path, way), nullptr);
    for (const DMXMLWrapper* element : way) {
      EXPECT_TRUE(ParsesAsItsClass(*element)) << dmtest::XmlTest::NameOf(*element);
    }
  }
}

TEST(DMDatasetSummariesTest, DefectiveDocumentsFailAtTheLevelOfTheDefect) {
  for (const Defect& defect : kDefects) {
    SCOPED_TRACE(defect);
    std::string text = CompleteDocument();
    ASSERT_TRUE(ReplaceOnce(text, defect.find, defect.replace));
    DMXMLWrapper document;
    document.loadFromContents(text.c_str());
    ASSERT_NE(document.getElement(), nullptr) << text;

    const DMDatasetSummaries summaries(document);
    EXPECT_FALSE(summaries.parseSuccess());
    // The failing part is dropped; the overall summaries come first, so a
    // defect there also keeps the field summaries from being read.
    EXPECT_EQ(summaries.getFieldSummaries(), nullptr);

    std::vector<DMXMLWrapper*> way;
    DMXMLWrapper* defective = Follow(document, defect.path, way);
    ASSERT_NE(defective, nullptr);
    // Every element from the root down to the defect fails ...
    for (const DMXMLWrapper* element : way) {
      EXPECT_FALSE(ParsesAsItsClass(*element)) << dmtest::XmlTest::NameOf(*element);
    }
    // ... while the defective element's own children are sound.
    DMXMLIteratorWrapper* children = nullptr;
    ASSERT_EQ(defective->getElementDirectIterator("", &children), DM_XML_OK);
    void* item = nullptr;
    while (children->nextItem(&item) == DM_XML_OK) {
      const auto* child = static_cast<const DMXMLWrapper*>(item);
      EXPECT_TRUE(ParsesAsItsClass(*child)) << dmtest::XmlTest::NameOf(*child);
    }
  }
}

}  // namespace
