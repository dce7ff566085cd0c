#include "dmcommon/summaries/dmstatisticsext.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/summaries/dmdistributionsummary.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/summaries/summariestest.h"
#include "tests/support/xmltest.h"

namespace {

using dmtest::ExpectParseResults;
using dmtest::ParseCase;
using dmtest::ReadSummary;
using dmtest::RoundTrip;
using dmtest::WrittenSummary;

constexpr char kCategories[] =
    R"(<DistributionSummary discrete="true"><Category count="3" value="a"/>)"
    R"(</DistributionSummary>)";

// ---------------------------------------------------------------------------
// DMContinuousStatisticsExt

// One of the eleven reals: its attribute and its getter pair.
struct RealAttribute {
  const char* attribute;
  double (DMContinuousStatisticsExt::*get)() const;
  bool (DMContinuousStatisticsExt::*has)() const;
};

const RealAttribute kReals[] = {
    {"minimum", &DMContinuousStatisticsExt::getMinimum, &DMContinuousStatisticsExt::hasMinimum},
    {"maximum", &DMContinuousStatisticsExt::getMaximum, &DMContinuousStatisticsExt::hasMaximum},
    {"mean", &DMContinuousStatisticsExt::getMean, &DMContinuousStatisticsExt::hasMean},
    {"variance", &DMContinuousStatisticsExt::getVariance, &DMContinuousStatisticsExt::hasVariance},
    {"stdDev", &DMContinuousStatisticsExt::getStdDev, &DMContinuousStatisticsExt::hasStdDev},
    {"skewness", &DMContinuousStatisticsExt::getSkewness, &DMContinuousStatisticsExt::hasSkewness},
    {"stdErrSkewness", &DMContinuousStatisticsExt::getStdErrSkewness,
     &DMContinuousStatisticsExt::hasStdErrSkewness},
    {"kurtosis", &DMContinuousStatisticsExt::getKurtosis, &DMContinuousStatisticsExt::hasKurtosis},
    {"stdErrKurtosis", &DMContinuousStatisticsExt::getStdErrKurtosis,
     &DMContinuousStatisticsExt::hasStdErrKurtosis},
    {"outlierLowerBound", &DMContinuousStatisticsExt::getOutlierLowerBound,
     &DMContinuousStatisticsExt::hasOutlierLowerBound},
    {"outlierUpperBound", &DMContinuousStatisticsExt::getOutlierUpperBound,
     &DMContinuousStatisticsExt::hasOutlierUpperBound},
};

std::string WithAttribute(const char* attribute, const char* value) {
  return std::string("<ContinuousStatisticsExt ") + attribute + "=\"" + value + "\"/>";
}

TEST(DMContinuousStatisticsExtTest, DefaultStatisticsHoldNothingAndWriteAnEmptyElement) {
  const DMContinuousStatisticsExt statistics;
  EXPECT_TRUE(statistics.parseSuccess());
  EXPECT_EQ(statistics.getPercentiles(), nullptr);
  EXPECT_EQ(statistics.getDistributionSummary(), nullptr);
  for (const RealAttribute& real : kReals) {
    SCOPED_TRACE(real.attribute);
    EXPECT_FALSE((statistics.*real.has)());
    EXPECT_EQ((statistics.*real.get)(), 0.0);
  }
  EXPECT_EQ(WrittenSummary(statistics), "<ContinuousStatisticsExt/>");
}

TEST(DMContinuousStatisticsExtTest, ElementWithoutChildrenAndAttributesParsesAndWritesBackEmpty) {
  const auto statistics = ReadSummary<DMContinuousStatisticsExt>("<ContinuousStatisticsExt/>");
  EXPECT_TRUE(statistics.parseSuccess());
  EXPECT_EQ(statistics.getPercentiles(), nullptr);
  EXPECT_EQ(statistics.getDistributionSummary(), nullptr);
  EXPECT_EQ(WrittenSummary(statistics), "<ContinuousStatisticsExt/>");
}

TEST(DMContinuousStatisticsExtTest, EachRealIsReadIntoItsOwnGetter) {
  for (const RealAttribute& real : kReals) {
    SCOPED_TRACE(real.attribute);
    const auto statistics =
        ReadSummary<DMContinuousStatisticsExt>(WithAttribute(real.attribute, "-12.5"));
    EXPECT_TRUE(statistics.parseSuccess());
    for (const RealAttribute& other : kReals) {
      const bool same = &other == &real;
      EXPECT_EQ((statistics.*other.has)(), same) << other.attribute;
      EXPECT_EQ((statistics.*other.get)(), same ? -12.5 : 0.0) << other.attribute;
    }
    EXPECT_EQ(WrittenSummary(statistics), WithAttribute(real.attribute, "-12.5"));
  }
}

TEST(DMContinuousStatisticsExtTest, InfiniteNotANumberOrUnreadableRealFailsTheStatistics) {
  for (const RealAttribute& real : kReals) {
    for (const char* value : {"INF", "-INF", "NaN", "large", ""}) {
      SCOPED_TRACE(std::string(real.attribute) + "=\"" + value + "\"");
      EXPECT_FALSE(ReadSummary<DMContinuousStatisticsExt>(WithAttribute(real.attribute, value))
                       .parseSuccess());
    }
  }
}

TEST(DMContinuousStatisticsExtTest, ReadsBothChildren) {
  const auto statistics = ReadSummary<DMContinuousStatisticsExt>(
      R"(<ContinuousStatisticsExt mean="2"><DistributionSummary median="2">)"
      R"(<Cluster count="4" mean="2"/></DistributionSummary>)"
      R"(<Percentiles interQuartileRange="1"><Percentile rank="50" score="2"/></Percentiles>)"
      R"(</ContinuousStatisticsExt>)");
  EXPECT_TRUE(statistics.parseSuccess());
  ASSERT_NE(statistics.getPercentiles(), nullptr);
  EXPECT_EQ(statistics.getPercentiles()->getPercentileCount(), 1u);
  EXPECT_EQ(statistics.getPercentiles()->getInterQuartileRange(), 1.0);
  ASSERT_NE(statistics.getDistributionSummary(), nullptr);
  EXPECT_EQ(statistics.getDistributionSummary()->getMedian(), "2");
  EXPECT_EQ(statistics.getDistributionSummary()->getClusterCount(), 1u);
  EXPECT_EQ(statistics.getMean(), 2.0);
}

TEST(DMContinuousStatisticsExtTest, OnlyTheFirstChildOfEachKindIsRead) {
  // The second percentiles element would fail; it is never looked at.
  const auto statistics = ReadSummary<DMContinuousStatisticsExt>(
      R"(<ContinuousStatisticsExt><Percentiles interQuartileRange="1"/>)"
      R"(<Percentiles interQuartileRange="INF"/></ContinuousStatisticsExt>)");
  EXPECT_TRUE(statistics.parseSuccess());
  ASSERT_NE(statistics.getPercentiles(), nullptr);
  EXPECT_EQ(statistics.getPercentiles()->getInterQuartileRange(), 1.0);
}

TEST(DMContinuousStatisticsExtTest, PercentileWithInfiniteScoreFailsTheStatisticsAndIsDropped) {
  const auto statistics = ReadSummary<DMContinuousStatisticsExt>(
      R"(<ContinuousStatisticsExt mean="1"><Percentiles><Percentile rank="50" score="INF"/>)"
      R"(</Percentiles></ContinuousStatisticsExt>)");
  EXPECT_FALSE(statistics.parseSuccess());
  EXPECT_EQ(statistics.getPercentiles(), nullptr);
  EXPECT_FALSE(statistics.hasMean());
}

TEST(DMContinuousStatisticsExtTest, FailingDistributionSummaryFailsTheStatisticsAndIsDropped) {
  const auto statistics = ReadSummary<DMContinuousStatisticsExt>(
      R"(<ContinuousStatisticsExt><Percentiles/><DistributionSummary/></ContinuousStatisticsExt>)");
  EXPECT_FALSE(statistics.parseSuccess());
  EXPECT_NE(statistics.getPercentiles(), nullptr);
  EXPECT_EQ(statistics.getDistributionSummary(), nullptr);
}

TEST(DMContinuousStatisticsExtTest, WritesChildrenThenPresentReals) {
  EXPECT_EQ(RoundTrip<DMContinuousStatisticsExt>(
                R"(<ContinuousStatisticsExt kurtosis="-1.2" maximum="10" minimum="0">)"
                R"(<DistributionSummary><Cluster count="4" mean="2"/></DistributionSummary>)"
                R"(<Percentiles><Percentile rank="50" score="2"/></Percentiles>)"
                R"(</ContinuousStatisticsExt>)"),
            R"(<Root><ContinuousStatisticsExt kurtosis="-1.2" maximum="10" minimum="0">)"
            R"(<Percentiles><Percentile rank="50" score="2"/></Percentiles>)"
            R"(<DistributionSummary><Cluster count="4" mean="2"/></DistributionSummary>)"
            R"(</ContinuousStatisticsExt></Root>)");
}

TEST(DMContinuousStatisticsExtTest, RoundTripWithEveryReal) {
  RoundTrip<DMContinuousStatisticsExt>(
      R"(<ContinuousStatisticsExt kurtosis="3.1" maximum="99" mean="50.5" minimum="1" )"
      R"(outlierLowerBound="-20" outlierUpperBound="120" skewness="0.01" stdDev="28.8" )"
      R"(stdErrKurtosis="0.4" stdErrSkewness="0.2" variance="829.44"/>)");
}

TEST(DMContinuousStatisticsExtTest, CopiesAreDeep) {
  auto original =
      std::make_unique<DMContinuousStatisticsExt>(ReadSummary<DMContinuousStatisticsExt>(
          R"(<ContinuousStatisticsExt stdDev="2"><Percentiles><Percentile rank="1" score="2"/>)"
          R"(</Percentiles>)" +
          std::string(R"(<DistributionSummary><Cluster count="4" mean="2"/>)"
                      R"(</DistributionSummary></ContinuousStatisticsExt>)")));
  ASSERT_TRUE(original->parseSuccess());
  const DMContinuousStatisticsExt copy(*original);
  DMContinuousStatisticsExt assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_EQ(copy.getPercentiles()->getPercentile(0)->getScore(), 2.0);
  EXPECT_EQ(assigned.getDistributionSummary()->getCluster(0)->getCount(), 4);
}

TEST(DMContinuousStatisticsExtTest, CopyOfStatisticsWithoutChildrenKeepsThemNull) {
  auto original = std::make_unique<DMContinuousStatisticsExt>(
      ReadSummary<DMContinuousStatisticsExt>(R"(<ContinuousStatisticsExt mean="1"/>)"));
  const DMContinuousStatisticsExt copy(*original);
  original.reset();
  EXPECT_EQ(copy.getPercentiles(), nullptr);
  EXPECT_EQ(copy.getDistributionSummary(), nullptr);
  EXPECT_EQ(copy.getMean(), 1.0);
}

// ---------------------------------------------------------------------------
// DMDiscreteStatisticsExt

TEST(DMDiscreteStatisticsExtTest, DefaultStatisticsHoldNothingAndWriteNothing) {
  const DMDiscreteStatisticsExt statistics;
  EXPECT_TRUE(statistics.parseSuccess());
  EXPECT_EQ(statistics.getDistributionSummary(), nullptr);
  EXPECT_EQ(statistics.getMode(), "");
  EXPECT_EQ(statistics.getMedian(), "");
  EXPECT_EQ(WrittenSummary(statistics), "");
}

TEST(DMDiscreteStatisticsExtTest, ReadsTheSummaryAndTheTexts) {
  const auto statistics = ReadSummary<DMDiscreteStatisticsExt>(
      std::string(R"(<DiscreteStatisticsExt mode="a" median="b">)") + kCategories +
      "</DiscreteStatisticsExt>");
  EXPECT_TRUE(statistics.parseSuccess());
  ASSERT_NE(statistics.getDistributionSummary(), nullptr);
  EXPECT_EQ(statistics.getDistributionSummary()->getCategoryCount(), 1u);
  EXPECT_EQ(statistics.getMode(), "a");
  EXPECT_EQ(statistics.getMedian(), "b");
}

TEST(DMDiscreteStatisticsExtTest, ReadingTable) {
  const std::string withSummary = std::string("<DiscreteStatisticsExt>") + kCategories;
  const std::string texts = std::string(R"(<DiscreteStatisticsExt mode="" median="12">)") +
                            kCategories + "</DiscreteStatisticsExt>";
  const std::string plain = withSummary + "</DiscreteStatisticsExt>";
  const ParseCase kCases[] = {
      {"summary only", plain.c_str(), true},
      {"empty mode and numeric median", texts.c_str(), true},
      {"no summary", R"(<DiscreteStatisticsExt mode="a"/>)", false},
      {"failing summary",
       R"(<DiscreteStatisticsExt><DistributionSummary/></DiscreteStatisticsExt>)", false},
      {"summary nested deeper",
       R"(<DiscreteStatisticsExt><X><DistributionSummary><Category count="1" value="a"/>)"
       R"(</DistributionSummary></X></DiscreteStatisticsExt>)",
       false},
  };
  ExpectParseResults<DMDiscreteStatisticsExt>(kCases);
}

TEST(DMDiscreteStatisticsExtTest, FailingSummaryIsNotKept) {
  const auto statistics = ReadSummary<DMDiscreteStatisticsExt>(
      R"(<DiscreteStatisticsExt mode="a"><DistributionSummary/></DiscreteStatisticsExt>)");
  EXPECT_FALSE(statistics.parseSuccess());
  EXPECT_EQ(statistics.getDistributionSummary(), nullptr);
  EXPECT_EQ(WrittenSummary(statistics), "");
}

TEST(DMDiscreteStatisticsExtTest, ModeIsTextUnlikeTheModeOfADistributionSummary) {
  const auto statistics =
      ReadSummary<DMDiscreteStatisticsExt>(std::string(R"(<DiscreteStatisticsExt mode="INF">)") +
                                           kCategories + "</DiscreteStatisticsExt>");
  EXPECT_TRUE(statistics.parseSuccess());
  EXPECT_EQ(statistics.getMode(), "INF");
}

TEST(DMDiscreteStatisticsExtTest, WritesTheSummaryThenNonEmptyTexts) {
  EXPECT_EQ(WrittenSummary(ReadSummary<DMDiscreteStatisticsExt>(
                std::string(R"(<DiscreteStatisticsExt median="" mode="a">)") + kCategories +
                "</DiscreteStatisticsExt>")),
            std::string(R"(<DiscreteStatisticsExt mode="a">)") + kCategories +
                "</DiscreteStatisticsExt>");
}

TEST(DMDiscreteStatisticsExtTest, RoundTripKeepsEveryValue) {
  EXPECT_EQ(RoundTrip<DMDiscreteStatisticsExt>(
                std::string(R"(<DiscreteStatisticsExt median="b" mode="a">)") + kCategories +
                "</DiscreteStatisticsExt>"),
            std::string(R"(<Root><DiscreteStatisticsExt median="b" mode="a">)") + kCategories +
                "</DiscreteStatisticsExt></Root>");
}

TEST(DMDiscreteStatisticsExtTest, CopiesAreDeep) {
  auto original = std::make_unique<DMDiscreteStatisticsExt>(
      ReadSummary<DMDiscreteStatisticsExt>(std::string(R"(<DiscreteStatisticsExt mode="a">)") +
                                           kCategories + "</DiscreteStatisticsExt>"));
  const DMDiscreteStatisticsExt copy(*original);
  DMDiscreteStatisticsExt assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_EQ(copy.getDistributionSummary()->getCategory(0)->getValue(), "a");
  EXPECT_EQ(assigned.getDistributionSummary()->getCategory(0)->getValue(), "a");
}

TEST(DMDiscreteStatisticsExtTest, CopyOfStatisticsWithoutSummaryKeepsItNull) {
  const DMDiscreteStatisticsExt original;
  EXPECT_EQ(DMDiscreteStatisticsExt(original).getDistributionSummary(), nullptr);
  EXPECT_TRUE(DMDiscreteStatisticsExt(original).parseSuccess());
}

}  // namespace
