#include "dmcommon/summaries/dmdistributionsummary.h"

#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/summaries/summariestest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
using dmtest::ExpectParseResults;
using dmtest::ParseCase;
using dmtest::ReadSummary;
using dmtest::RoundTrip;
using dmtest::WrittenSummary;

// ---------------------------------------------------------------------------
// DMCluster

TEST(DMClusterTest, DefaultClusterParsesHoldsNothingAndWritesNothing) {
  const DMCluster cluster;
  EXPECT_TRUE(cluster.parseSuccess());
  EXPECT_FALSE(cluster.hasCount());
  EXPECT_EQ(cluster.getCount(), 0);
  EXPECT_FALSE(cluster.hasMean());
  EXPECT_EQ(cluster.getMean(), 0.0);
  EXPECT_FALSE(cluster.hasVariance());
  EXPECT_EQ(cluster.getVariance(), 0.0);
  EXPECT_FALSE(cluster.hasLower());
  EXPECT_EQ(cluster.getLower(), 0.0);
  EXPECT_FALSE(cluster.hasUpper());
  EXPECT_EQ(cluster.getUpper(), 0.0);
  EXPECT_EQ(WrittenSummary(cluster), "");
}

TEST(DMClusterTest, ReadsEveryAttribute) {
  const auto cluster = ReadSummary<DMCluster>(
      R"(<Cluster count="12" mean="3.25" variance="0.5" lower="-1.5" upper="7"/>)");
  EXPECT_TRUE(cluster.parseSuccess());
  EXPECT_TRUE(cluster.hasCount());
  EXPECT_EQ(cluster.getCount(), 12);
  EXPECT_TRUE(cluster.hasMean());
  EXPECT_EQ(cluster.getMean(), 3.25);
  EXPECT_TRUE(cluster.hasVariance());
  EXPECT_EQ(cluster.getVariance(), 0.5);
  EXPECT_TRUE(cluster.hasLower());
  EXPECT_EQ(cluster.getLower(), -1.5);
  EXPECT_TRUE(cluster.hasUpper());
  EXPECT_EQ(cluster.getUpper(), 7.0);
}

TEST(DMClusterTest, OptionalAttributesMayBeLeftOut) {
  const auto cluster = ReadSummary<DMCluster>(R"(<Cluster count="0" mean="-2"/>)");
  EXPECT_TRUE(cluster.parseSuccess());
  EXPECT_EQ(cluster.getCount(), 0);
  EXPECT_EQ(cluster.getMean(), -2.0);
  EXPECT_FALSE(cluster.hasVariance());
  EXPECT_FALSE(cluster.hasLower());
  EXPECT_FALSE(cluster.hasUpper());
}

TEST(DMClusterTest, CountOfMinusOneFailsAClusterButNotACategory) {
  EXPECT_FALSE(ReadSummary<DMCluster>(R"(<Cluster count="-1" mean="2"/>)").parseSuccess());
  const auto category = ReadSummary<DMCategory>(R"(<Category value="a" count="-1"/>)");
  EXPECT_TRUE(category.parseSuccess());
  EXPECT_EQ(category.getCount(), -1);
}

TEST(DMClusterTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"required only", R"(<Cluster count="1" mean="2"/>)", true},
      {"count zero", R"(<Cluster count="0" mean="2"/>)", true},
      {"count with leading blanks", R"(<Cluster count="  4" mean="2"/>)", true},
      {"count followed by other text", R"(<Cluster count="4x" mean="2"/>)", true},
      {"no count", R"(<Cluster mean="2"/>)", false},
      {"no mean", R"(<Cluster count="1"/>)", false},
      {"neither", R"(<Cluster/>)", false},
      {"count not a number", R"(<Cluster count="many" mean="2"/>)", false},
      {"count empty", R"(<Cluster count="" mean="2"/>)", false},
      {"negative count", R"(<Cluster count="-3" mean="2"/>)", false},
      {"mean INF", R"(<Cluster count="1" mean="INF"/>)", false},
      {"mean -INF", R"(<Cluster count="1" mean="-INF"/>)", false},
      {"mean NaN", R"(<Cluster count="1" mean="NaN"/>)", false},
      {"mean not a number", R"(<Cluster count="1" mean="middle"/>)", false},
      {"variance NaN", R"(<Cluster count="1" mean="2" variance="NaN"/>)", false},
      {"lower -INF", R"(<Cluster count="1" mean="2" lower="-INF"/>)", false},
      {"upper INF", R"(<Cluster count="1" mean="2" upper="INF"/>)", false},
      {"upper not a number", R"(<Cluster count="1" mean="2" upper="top"/>)", false},
  };
  ExpectParseResults<DMCluster>(kCases);
}

TEST(DMClusterTest, LenientCountReadsItsLeadingNumber) {
  EXPECT_EQ(ReadSummary<DMCluster>(R"(<Cluster count="  4" mean="2"/>)").getCount(), 4);
  EXPECT_EQ(ReadSummary<DMCluster>(R"(<Cluster count="4x" mean="2"/>)").getCount(), 4);
}

TEST(DMClusterTest, ReadingStopsAtTheFirstDefectKeepingWhatCameBefore) {
  const auto cluster =
      ReadSummary<DMCluster>(R"(<Cluster count="3" mean="2" variance="INF" lower="1"/>)");
  EXPECT_FALSE(cluster.parseSuccess());
  EXPECT_EQ(cluster.getCount(), 3);
  EXPECT_EQ(cluster.getMean(), 2.0);
  // The infinite variance is not kept, and the lower bound after it is not
  // read.
  EXPECT_FALSE(cluster.hasVariance());
  EXPECT_FALSE(cluster.hasLower());
}

TEST(DMClusterTest, NegativeCountIsKeptAsReadAndRefusedByTheWriter) {
  const auto cluster = ReadSummary<DMCluster>(R"(<Cluster count="-1" mean="2"/>)");
  EXPECT_TRUE(cluster.hasCount());
  EXPECT_EQ(cluster.getCount(), -1);
  EXPECT_FALSE(cluster.hasMean());
  EXPECT_EQ(WrittenSummary(cluster), "");
}

TEST(DMClusterTest, WriterRefusesAClusterWithoutMean) {
  // The mean's defect stops the reading after the count was kept.
  const auto cluster = ReadSummary<DMCluster>(R"(<Cluster count="5" mean="NaN"/>)");
  ASSERT_TRUE(cluster.hasCount());
  ASSERT_FALSE(cluster.hasMean());
  EXPECT_EQ(WrittenSummary(cluster), "");
}

TEST(DMClusterTest, WritesRequiredThenPresentOptionalAttributes) {
  EXPECT_EQ(WrittenSummary(ReadSummary<DMCluster>(R"(<Cluster count="3" mean="0.1"/>)")),
            R"(<Cluster count="3" mean="0.1"/>)");
  EXPECT_EQ(WrittenSummary(ReadSummary<DMCluster>(
                R"(<Cluster upper="4" lower="-1.5" variance="1e+20" mean="2.25" count="3"/>)")),
            R"(<Cluster count="3" lower="-1.5" mean="2.25" upper="4" variance="1e+20"/>)");
}

TEST(DMClusterTest, RoundTripKeepsEveryValue) {
  EXPECT_EQ(
      RoundTrip<DMCluster>(R"(<Cluster count="9007199254740993" lower="-0.001" mean="123456.789" )"
                           R"(upper="1e-05" variance="2.5"/>)"),
      "<Root><Cluster count=\"9007199254740993\" lower=\"-0.001\" mean=\"123456.789\" "
      "upper=\"1e-05\" variance=\"2.5\"/></Root>");
}

TEST(DMClusterTest, CopiesAndAssignmentsKeepEveryValue) {
  auto original = std::make_unique<DMCluster>(
      ReadSummary<DMCluster>(R"(<Cluster count="3" mean="2" upper="9"/>)"));
  const DMCluster copy(*original);
  DMCluster assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_EQ(copy.getUpper(), 9.0);
  EXPECT_EQ(assigned.getCount(), 3);
}

TEST(DMClusterTest, CopyOfAFailedClusterKeepsItsParseResult) {
  const auto failed = ReadSummary<DMCluster>(R"(<Cluster mean="2"/>)");
  EXPECT_FALSE(DMCluster(failed).parseSuccess());
}

// ---------------------------------------------------------------------------
// DMCategory

TEST(DMCategoryTest, DefaultCategoryParsesHoldsNothingAndWritesNothing) {
  const DMCategory category;
  EXPECT_TRUE(category.parseSuccess());
  EXPECT_FALSE(category.hasValue());
  EXPECT_EQ(category.getValue(), "");
  EXPECT_FALSE(category.hasCount());
  EXPECT_EQ(category.getCount(), 0);
  EXPECT_FALSE(category.hasPercentage());
  EXPECT_EQ(category.getPercentage(), 0.0);
  EXPECT_FALSE(category.hasCumPercentage());
  EXPECT_EQ(category.getCumPercentage(), 0.0);
  EXPECT_EQ(WrittenSummary(category), "");
}

TEST(DMCategoryTest, ReadsEveryAttribute) {
  const auto category = ReadSummary<DMCategory>(
      R"(<Category value="North &amp; East" count="40" percentage="25.5" cumPercentage="75"/>)");
  EXPECT_TRUE(category.parseSuccess());
  EXPECT_TRUE(category.hasValue());
  EXPECT_EQ(category.getValue(), "North & East");
  EXPECT_TRUE(category.hasCount());
  EXPECT_EQ(category.getCount(), 40);
  EXPECT_TRUE(category.hasPercentage());
  EXPECT_EQ(category.getPercentage(), 25.5);
  EXPECT_TRUE(category.hasCumPercentage());
  EXPECT_EQ(category.getCumPercentage(), 75.0);
}

TEST(DMCategoryTest, EmptyValueIsPresent) {
  const auto category = ReadSummary<DMCategory>(R"(<Category value="" count="2"/>)");
  EXPECT_TRUE(category.parseSuccess());
  EXPECT_TRUE(category.hasValue());
  EXPECT_EQ(category.getValue(), "");
  EXPECT_EQ(WrittenSummary(category), R"(<Category count="2" value=""/>)");
}

TEST(DMCategoryTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"required only", R"(<Category value="a" count="1"/>)", true},
      {"negative count", R"(<Category value="a" count="-7"/>)", true},
      {"no value", R"(<Category count="1"/>)", false},
      {"no count", R"(<Category value="a"/>)", false},
      {"count not a number", R"(<Category value="a" count="few"/>)", false},
      {"percentage INF", R"(<Category value="a" count="1" percentage="INF"/>)", false},
      {"percentage NaN", R"(<Category value="a" count="1" percentage="NaN"/>)", false},
      {"percentage not a number", R"(<Category value="a" count="1" percentage="half"/>)", false},
      {"cumulative -INF", R"(<Category value="a" count="1" cumPercentage="-INF"/>)", false},
  };
  ExpectParseResults<DMCategory>(kCases);
}

TEST(DMCategoryTest, WritesValueAndCountThenPresentPercentages) {
  EXPECT_EQ(WrittenSummary(ReadSummary<DMCategory>(
                R"(<Category cumPercentage="100" percentage="12.5" count="-2" value="x"/>)")),
            R"(<Category count="-2" cumPercentage="100" percentage="12.5" value="x"/>)");
}

TEST(DMCategoryTest, WriterRefusesACategoryWithoutCount) {
  const auto category = ReadSummary<DMCategory>(R"(<Category value="x"/>)");
  ASSERT_TRUE(category.hasValue());
  EXPECT_EQ(WrittenSummary(category), "");
}

TEST(DMCategoryTest, RoundTripKeepsEveryValue) {
  EXPECT_EQ(RoundTrip<DMCategory>(
                R"(<Category count="3" cumPercentage="99.9" percentage="0.3" value="&lt;b&gt;"/>)"),
            R"(<Root><Category count="3" cumPercentage="99.9" percentage="0.3" )"
            R"(value="&lt;b>"/></Root>)");
}

TEST(DMCategoryTest, CopiesAndAssignmentsKeepEveryValue) {
  const auto category =
      ReadSummary<DMCategory>(R"(<Category value="v" count="3" percentage="1"/>)");
  dmtest::ExpectSameSummary(category, DMCategory(category));
  DMCategory assigned;
  assigned = category;
  dmtest::ExpectSameSummary(category, assigned);
}

// ---------------------------------------------------------------------------
// DMPercentile

TEST(DMPercentileTest, DefaultPercentileParsesHoldsNothingAndWritesNothing) {
  const DMPercentile percentile;
  EXPECT_TRUE(percentile.parseSuccess());
  EXPECT_FALSE(percentile.hasRank());
  EXPECT_EQ(percentile.getRank(), 0.0);
  EXPECT_FALSE(percentile.hasScore());
  EXPECT_EQ(percentile.getScore(), 0.0);
  EXPECT_FALSE(percentile.hasLower());
  EXPECT_EQ(percentile.getLower(), 0.0);
  EXPECT_FALSE(percentile.hasUpper());
  EXPECT_EQ(percentile.getUpper(), 0.0);
  EXPECT_EQ(WrittenSummary(percentile), "");
}

TEST(DMPercentileTest, ReadsEveryAttribute) {
  const auto percentile =
      ReadSummary<DMPercentile>(R"(<Percentile rank="25" score="3.5" lower="3" upper="4"/>)");
  EXPECT_TRUE(percentile.parseSuccess());
  EXPECT_TRUE(percentile.hasRank());
  EXPECT_EQ(percentile.getRank(), 25.0);
  EXPECT_TRUE(percentile.hasScore());
  EXPECT_EQ(percentile.getScore(), 3.5);
  EXPECT_TRUE(percentile.hasLower());
  EXPECT_EQ(percentile.getLower(), 3.0);
  EXPECT_TRUE(percentile.hasUpper());
  EXPECT_EQ(percentile.getUpper(), 4.0);
}

TEST(DMPercentileTest, InfiniteScoreFailsThePercentile) {
  const auto percentile = ReadSummary<DMPercentile>(R"(<Percentile rank="50" score="INF"/>)");
  EXPECT_FALSE(percentile.parseSuccess());
  EXPECT_EQ(percentile.getRank(), 50.0);
  EXPECT_FALSE(percentile.hasScore());
  EXPECT_EQ(WrittenSummary(percentile), "");
}

TEST(DMPercentileTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"required only", R"(<Percentile rank="1" score="2"/>)", true},
      {"no rank", R"(<Percentile score="2"/>)", false},
      {"no score", R"(<Percentile rank="1"/>)", false},
      {"rank NaN", R"(<Percentile rank="NaN" score="2"/>)", false},
      {"score -INF", R"(<Percentile rank="1" score="-INF"/>)", false},
      {"score not a number", R"(<Percentile rank="1" score="high"/>)", false},
      {"lower INF", R"(<Percentile rank="1" score="2" lower="INF"/>)", false},
      {"upper NaN", R"(<Percentile rank="1" score="2" upper="NaN"/>)", false},
  };
  ExpectParseResults<DMPercentile>(kCases);
}

TEST(DMPercentileTest, WritesRankAndScoreThenPresentBounds) {
  EXPECT_EQ(WrittenSummary(ReadSummary<DMPercentile>(R"(<Percentile score="-2" rank="5"/>)")),
            R"(<Percentile rank="5" score="-2"/>)");
  EXPECT_EQ(WrittenSummary(ReadSummary<DMPercentile>(
                R"(<Percentile upper="0.75" score="0.5" rank="50" lower="0.25"/>)")),
            R"(<Percentile lower="0.25" rank="50" score="0.5" upper="0.75"/>)");
}

TEST(DMPercentileTest, RoundTripKeepsEveryValue) {
  RoundTrip<DMPercentile>(R"(<Percentile lower="1.1" rank="10" score="1.2" upper="1.3"/>)");
}

// ---------------------------------------------------------------------------
// DMPercentiles

TEST(DMPercentilesTest, DefaultListIsEmptyAndWritesAnEmptyElement) {
  const DMPercentiles percentiles;
  EXPECT_TRUE(percentiles.parseSuccess());
  EXPECT_EQ(percentiles.getPercentileCount(), 0u);
  EXPECT_FALSE(percentiles.hasInterQuartileRange());
  EXPECT_EQ(percentiles.getInterQuartileRange(), 0.0);
  EXPECT_EQ(WrittenSummary(percentiles), "<Percentiles/>");
}

TEST(DMPercentilesTest, ReadsPercentilesInDocumentOrderAndTheRange) {
  const auto percentiles = ReadSummary<DMPercentiles>(
      R"(<Percentiles interQuartileRange="4.5">)"
      R"(<Percentile rank="25" score="1"/><Other rank="1" score="1"/>)"
      R"(<Percentile rank="50" score="3"/><Percentile rank="75" score="5.5"/></Percentiles>)");
  EXPECT_TRUE(percentiles.parseSuccess());
  EXPECT_TRUE(percentiles.hasInterQuartileRange());
  EXPECT_EQ(percentiles.getInterQuartileRange(), 4.5);
  ASSERT_EQ(percentiles.getPercentileCount(), 3u);
  EXPECT_EQ(percentiles.getPercentile(0)->getRank(), 25.0);
  EXPECT_EQ(percentiles.getPercentile(1)->getRank(), 50.0);
  EXPECT_EQ(percentiles.getPercentile(2)->getRank(), 75.0);
  EXPECT_EQ(percentiles.getPercentile(2)->getScore(), 5.5);
}

TEST(DMPercentilesTest, NestedPercentilesAreNotDirectChildrenAndAreIgnored) {
  const auto percentiles = ReadSummary<DMPercentiles>(
      R"(<Percentiles><Group><Percentile rank="1" score="1"/></Group></Percentiles>)");
  EXPECT_TRUE(percentiles.parseSuccess());
  EXPECT_EQ(percentiles.getPercentileCount(), 0u);
}

TEST(DMPercentilesTest, PercentileWithInfiniteScoreFailsTheList) {
  const auto percentiles = ReadSummary<DMPercentiles>(
      R"(<Percentiles interQuartileRange="2"><Percentile rank="25" score="1"/>)"
      R"(<Percentile rank="50" score="INF"/><Percentile rank="75" score="3"/></Percentiles>)");
  EXPECT_FALSE(percentiles.parseSuccess());
  // The failed percentile is dropped and the reading stops there.
  ASSERT_EQ(percentiles.getPercentileCount(), 1u);
  EXPECT_EQ(percentiles.getPercentile(0)->getRank(), 25.0);
  EXPECT_FALSE(percentiles.hasInterQuartileRange());
}

TEST(DMPercentilesTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"empty", "<Percentiles/>", true},
      {"range only", R"(<Percentiles interQuartileRange="0"/>)", true},
      {"range INF", R"(<Percentiles interQuartileRange="INF"/>)", false},
      {"range not a number", R"(<Percentiles interQuartileRange="wide"/>)", false},
      {"percentile without score", R"(<Percentiles><Percentile rank="1"/></Percentiles>)", false},
  };
  ExpectParseResults<DMPercentiles>(kCases);
}

TEST(DMPercentilesTest, WritesPercentilesInOrderThenTheRange) {
  EXPECT_EQ(RoundTrip<DMPercentiles>(
                R"(<Percentiles interQuartileRange="2"><Percentile rank="75" score="3"/>)"
                R"(<Percentile rank="25" score="1"/></Percentiles>)"),
            R"(<Root><Percentiles interQuartileRange="2"><Percentile rank="75" score="3"/>)"
            R"(<Percentile rank="25" score="1"/></Percentiles></Root>)");
}

TEST(DMPercentilesTest, CopiesAreDeep) {
  auto original = std::make_unique<DMPercentiles>(ReadSummary<DMPercentiles>(
      R"(<Percentiles interQuartileRange="1"><Percentile rank="5" score="6"/></Percentiles>)"));
  const DMPercentiles copy(*original);
  DMPercentiles assigned;
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  // Still readable once the original is gone; the sanitizer build would
  // catch a shared child.
  EXPECT_EQ(copy.getPercentile(0)->getScore(), 6.0);
  EXPECT_EQ(assigned.getPercentile(0)->getScore(), 6.0);
}

TEST(DMPercentilesTest, SelfAssignmentKeepsTheList) {
  DMPercentiles percentiles =
      ReadSummary<DMPercentiles>(R"(<Percentiles><Percentile rank="5" score="6"/></Percentiles>)");
  const DMPercentiles& alias = percentiles;
  percentiles = alias;
  ASSERT_EQ(percentiles.getPercentileCount(), 1u);
  EXPECT_EQ(percentiles.getPercentile(0)->getRank(), 5.0);
}

// ---------------------------------------------------------------------------
// DMDistributionSummary

constexpr char kClusterSummary[] =
    R"(<DistributionSummary discrete="false" maxCatsExceeded="true" median="4.5" mode="3">)"
    R"(<Cluster count="10" mean="1"/><Cluster count="20" mean="5" variance="2"/>)"
    R"(</DistributionSummary>)";

TEST(DMDistributionSummaryTest, DefaultSummaryHasNeitherListAndWritesNothing) {
  const DMDistributionSummary summary;
  EXPECT_TRUE(summary.parseSuccess());
  EXPECT_EQ(summary.getClusterCount(), 0u);
  EXPECT_EQ(summary.getCategoryCount(), 0u);
  EXPECT_EQ(summary.getDiscrete(), "");
  EXPECT_FALSE(summary.hasMode());
  EXPECT_EQ(summary.getMode(), 0.0);
  EXPECT_EQ(summary.getMaxCatsExceeded(), "");
  EXPECT_EQ(summary.getMedian(), "");
  EXPECT_EQ(WrittenSummary(summary), "");
}

TEST(DMDistributionSummaryTest, ReadsClustersAndAttributes) {
  const auto summary = ReadSummary<DMDistributionSummary>(kClusterSummary);
  EXPECT_TRUE(summary.parseSuccess());
  ASSERT_EQ(summary.getClusterCount(), 2u);
  EXPECT_EQ(summary.getCluster(0)->getCount(), 10);
  EXPECT_EQ(summary.getCluster(1)->getCount(), 20);
  EXPECT_EQ(summary.getCluster(1)->getVariance(), 2.0);
  EXPECT_EQ(summary.getCategoryCount(), 0u);
  EXPECT_EQ(summary.getDiscrete(), "false");
  EXPECT_TRUE(summary.hasMode());
  EXPECT_EQ(summary.getMode(), 3.0);
  EXPECT_EQ(summary.getMaxCatsExceeded(), "true");
  EXPECT_EQ(summary.getMedian(), "4.5");
}

TEST(DMDistributionSummaryTest, ReadsCategoriesInDocumentOrder) {
  const auto summary = ReadSummary<DMDistributionSummary>(
      R"(<DistributionSummary discrete="true" median="b"><Category value="b" count="2"/>)"
      R"(<Category value="a" count="1"/></DistributionSummary>)");
  EXPECT_TRUE(summary.parseSuccess());
  EXPECT_EQ(summary.getClusterCount(), 0u);
  ASSERT_EQ(summary.getCategoryCount(), 2u);
  EXPECT_EQ(summary.getCategory(0)->getValue(), "b");
  EXPECT_EQ(summary.getCategory(1)->getValue(), "a");
  EXPECT_EQ(summary.getMedian(), "b");
  EXPECT_FALSE(summary.hasMode());
}

TEST(DMDistributionSummaryTest, BothClustersAndCategoriesFailToParseAndRefuseToBeWritten) {
  const auto summary = ReadSummary<DMDistributionSummary>(
      R"(<DistributionSummary><Category value="a" count="1"/><Cluster count="1" mean="2"/>)"
      R"(</DistributionSummary>)");
  EXPECT_FALSE(summary.parseSuccess());
  EXPECT_EQ(summary.getClusterCount(), 1u);
  EXPECT_EQ(summary.getCategoryCount(), 1u);
  EXPECT_EQ(WrittenSummary(summary), "");
}

TEST(DMDistributionSummaryTest, NeitherClustersNorCategoriesFailToParseAndRefuseToBeWritten) {
  const auto summary =
      ReadSummary<DMDistributionSummary>(R"(<DistributionSummary discrete="true" mode="1"/>)");
  EXPECT_FALSE(summary.parseSuccess());
  EXPECT_EQ(WrittenSummary(summary), "");
  EXPECT_EQ(WrittenSummary(DMDistributionSummary()), "");
}

TEST(DMDistributionSummaryTest, FlagTextOtherThanTheEntitiesFailsTheSummary) {
  const char* const kTexts[] = {"yes", "TRUE", "False", "1", "", " true", "true "};
  for (const char* attribute : {"discrete", "maxCatsExceeded"}) {
    for (const char* text : kTexts) {
      SCOPED_TRACE(std::string(attribute) + "=\"" + text + "\"");
      const std::string xml = std::string("<DistributionSummary ") + attribute + "=\"" + text +
                              "\"><Cluster count=\"1\" mean=\"2\"/></DistributionSummary>";
      EXPECT_FALSE(ReadSummary<DMDistributionSummary>(xml).parseSuccess());
    }
  }
}

TEST(DMDistributionSummaryTest, SummaryHoldingAnotherDiscreteTextWritesNoDiscreteAttribute) {
  // Reading keeps the text that failed it, which is how such a summary
  // comes to exist.
  const auto summary = ReadSummary<DMDistributionSummary>(
      R"(<DistributionSummary discrete="yes"><Cluster count="1" mean="2"/></DistributionSummary>)");
  ASSERT_FALSE(summary.parseSuccess());
  EXPECT_EQ(summary.getDiscrete(), "yes");
  EXPECT_EQ(WrittenSummary(summary),
            R"(<DistributionSummary><Cluster count="1" mean="2"/></DistributionSummary>)");
}

TEST(DMDistributionSummaryTest, SummaryHoldingAnotherMaxCatsTextWritesNoSuchAttribute) {
  const auto summary = ReadSummary<DMDistributionSummary>(
      R"(<DistributionSummary discrete="true" mode="2" maxCatsExceeded="no">)"
      R"(<Category value="a" count="1"/></DistributionSummary>)");
  ASSERT_FALSE(summary.parseSuccess());
  EXPECT_EQ(summary.getMaxCatsExceeded(), "no");
  EXPECT_EQ(WrittenSummary(summary), R"(<DistributionSummary discrete="true" mode="2">)"
                                     R"(<Category count="1" value="a"/></DistributionSummary>)");
}

TEST(DMDistributionSummaryTest, ReadingTable) {
  const ParseCase kCases[] = {
      {"one cluster", R"(<DistributionSummary><Cluster count="1" mean="2"/></DistributionSummary>)",
       true},
      {"one category",
       R"(<DistributionSummary><Category value="a" count="1"/></DistributionSummary>)", true},
      {"flags as entities",
       R"(<DistributionSummary discrete="false" maxCatsExceeded="false">)"
       R"(<Category value="a" count="1"/></DistributionSummary>)",
       true},
      {"median of any text",
       R"(<DistributionSummary median="not a number"><Category value="a" count="1"/>)"
       R"(</DistributionSummary>)",
       true},
      {"empty median",
       R"(<DistributionSummary median=""><Category value="a" count="1"/></DistributionSummary>)",
       true},
      {"failing cluster",
       R"(<DistributionSummary><Cluster count="-1" mean="2"/></DistributionSummary>)", false},
      {"failing category", R"(<DistributionSummary><Category count="1"/></DistributionSummary>)",
       false},
      {"mode INF",
       R"(<DistributionSummary mode="INF"><Category value="a" count="1"/></DistributionSummary>)",
       false},
      {"mode NaN",
       R"(<DistributionSummary mode="NaN"><Category value="a" count="1"/></DistributionSummary>)",
       false},
      {"mode as text",
       R"(<DistributionSummary mode="a"><Category value="a" count="1"/></DistributionSummary>)",
       false},
  };
  ExpectParseResults<DMDistributionSummary>(kCases);
}

TEST(DMDistributionSummaryTest, FailingClusterIsDroppedAndStopsTheReading) {
  const auto summary = ReadSummary<DMDistributionSummary>(
      R"(<DistributionSummary median="m"><Cluster count="1" mean="2"/>)"
      R"(<Cluster count="2"/><Cluster count="3" mean="4"/></DistributionSummary>)");
  EXPECT_FALSE(summary.parseSuccess());
  ASSERT_EQ(summary.getClusterCount(), 1u);
  EXPECT_EQ(summary.getCluster(0)->getCount(), 1);
  EXPECT_EQ(summary.getMedian(), "");
}

TEST(DMDistributionSummaryTest, WritesChildrenThenAttributes) {
  EXPECT_EQ(WrittenSummary(ReadSummary<DMDistributionSummary>(kClusterSummary)),
            R"(<DistributionSummary discrete="false" maxCatsExceeded="true" median="4.5" )"
            R"(mode="3"><Cluster count="10" mean="1"/><Cluster count="20" mean="5" )"
            R"(variance="2"/></DistributionSummary>)");
}

TEST(DMDistributionSummaryTest, EmptyMedianAndAbsentFlagsAreNotWritten) {
  EXPECT_EQ(WrittenSummary(ReadSummary<DMDistributionSummary>(
                R"(<DistributionSummary median=""><Category value="a" count="1"/>)"
                R"(</DistributionSummary>)")),
            R"(<DistributionSummary><Category count="1" value="a"/></DistributionSummary>)");
}

TEST(DMDistributionSummaryTest, RoundTripsOfClustersAndOfCategories) {
  RoundTrip<DMDistributionSummary>(kClusterSummary);
  RoundTrip<DMDistributionSummary>(
      R"(<DistributionSummary discrete="true" maxCatsExceeded="false" median="b" mode="0.5">)"
      R"(<Category count="4" cumPercentage="40" percentage="40" value="a"/>)"
      R"(<Category count="6" cumPercentage="100" percentage="60" value="b"/>)"
      R"(</DistributionSummary>)");
}

TEST(DMDistributionSummaryTest, CopiesAreDeep) {
  auto original =
      std::make_unique<DMDistributionSummary>(ReadSummary<DMDistributionSummary>(kClusterSummary));
  const DMDistributionSummary copy(*original);
  DMDistributionSummary assigned = ReadSummary<DMDistributionSummary>(
      R"(<DistributionSummary><Category value="old" count="1"/></DistributionSummary>)");
  assigned = *original;
  dmtest::ExpectSameSummary(*original, copy);
  dmtest::ExpectSameSummary(*original, assigned);
  original.reset();
  EXPECT_EQ(copy.getCluster(1)->getMean(), 5.0);
  EXPECT_EQ(assigned.getCluster(1)->getMean(), 5.0);
  EXPECT_EQ(assigned.getCategoryCount(), 0u);
}

TEST(DMDistributionSummaryTest, CopyOfAFailedSummaryKeepsItsParseResult) {
  const auto failed =
      ReadSummary<DMDistributionSummary>(R"(<DistributionSummary discrete="maybe"/>)");
  EXPECT_FALSE(DMDistributionSummary(failed).parseSuccess());
}

}  // namespace
