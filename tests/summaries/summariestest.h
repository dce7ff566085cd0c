#ifndef DMCOMMON_TESTS_SUMMARIES_SUMMARIESTEST_H
#define DMCOMMON_TESTS_SUMMARIES_SUMMARIESTEST_H

#include <cstddef>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "dmcommon/summaries/dmdistributionsummary.h"
#include "dmcommon/summaries/dmstatisticsext.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace dmtest {

// A summary object read from `text`, a document whose root is the object's
// element. A snippet that does not parse fails the test.
template <typename Summary>
Summary ReadSummary(const std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  EXPECT_NE(document.getElement(), nullptr) << "snippet did not parse: " << text;
  return Summary(document);
}

// What a summary object's AddToTree wrote under a fresh root: the element's
// text, or the empty text when nothing was written. Checks that `created` is
// null exactly when nothing was written and, otherwise, is the root's only
// child.
template <typename Summary>
std::string WrittenSummary(const Summary& summary) {
  DmExtension::DMXMLWrapper document;
  document.createNew("Root");
  // Anything but null, to show that AddToTree sets it either way.
  DmExtension::DMXMLWrapper* created = &document;
  summary.AddToTree(document, created);
  const std::string whole = XmlTest::WithoutDeclaration(document);
  if (created == nullptr) {
    EXPECT_EQ(whole, "<Root/>") << "no element was handed out, yet something was written";
    return "";
  }
  std::string element = XmlTest::WithoutDeclaration(*created);
  EXPECT_EQ(whole, "<Root>" + element + "</Root>");
  return element;
}

// One element of a class and whether it parses, as a row of a reading table.
struct ParseCase {
  const char* what;
  const char* xml;
  bool parses;
};

inline std::ostream& operator<<(std::ostream& out, const ParseCase& row) { return out << row.what; }

// Runs a reading table: each row's element read as a `Summary`.
template <typename Summary, std::size_t N>
void ExpectParseResults(const ParseCase (&table)[N]) {
  for (const ParseCase& row : table) {
    SCOPED_TRACE(row);
    EXPECT_EQ(ReadSummary<Summary>(row.xml).parseSuccess(), row.parses);
  }
}

// ---------------------------------------------------------------------------
// Every getter of two objects compared; reals exactly, since the values the
// tests use survive "%.15g" unchanged. Declared first so that the child
// comparison below finds every overload.

inline void ExpectSameSummary(const DMCluster& expected, const DMCluster& actual);
inline void ExpectSameSummary(const DMCategory& expected, const DMCategory& actual);
inline void ExpectSameSummary(const DMPercentile& expected, const DMPercentile& actual);
inline void ExpectSameSummary(const DMPercentiles& expected, const DMPercentiles& actual);
inline void ExpectSameSummary(const DMDistributionSummary& expected,
                              const DMDistributionSummary& actual);
inline void ExpectSameSummary(const DMContinuousStatisticsExt& expected,
                              const DMContinuousStatisticsExt& actual);
inline void ExpectSameSummary(const DMDiscreteStatisticsExt& expected,
                              const DMDiscreteStatisticsExt& actual);
inline void ExpectSameSummary(const DMRecordCountsExt& expected, const DMRecordCountsExt& actual);
inline void ExpectSameSummary(const DMOverallSummaries& expected, const DMOverallSummaries& actual);
inline void ExpectSameSummary(const DMFieldSummary& expected, const DMFieldSummary& actual);
inline void ExpectSameSummary(const DMFieldSummaries& expected, const DMFieldSummaries& actual);
inline void ExpectSameSummary(const DMDatasetSummaries& expected, const DMDatasetSummaries& actual);

// Two owned children: both null, or both set, distinct objects and equal.
template <typename T>
void ExpectSameChild(const T* expected, const T* actual) {
  ASSERT_EQ(actual == nullptr, expected == nullptr);
  if (expected == nullptr) return;
  EXPECT_NE(actual, expected) << "a child is shared instead of copied";
  ExpectSameSummary(*expected, *actual);
}

inline void ExpectSameSummary(const DMCluster& expected, const DMCluster& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getCount(), expected.getCount());
  EXPECT_EQ(actual.hasCount(), expected.hasCount());
  EXPECT_EQ(actual.getMean(), expected.getMean());
  EXPECT_EQ(actual.hasMean(), expected.hasMean());
  EXPECT_EQ(actual.getVariance(), expected.getVariance());
  EXPECT_EQ(actual.hasVariance(), expected.hasVariance());
  EXPECT_EQ(actual.getLower(), expected.getLower());
  EXPECT_EQ(actual.hasLower(), expected.hasLower());
  EXPECT_EQ(actual.getUpper(), expected.getUpper());
  EXPECT_EQ(actual.hasUpper(), expected.hasUpper());
}

inline void ExpectSameSummary(const DMCategory& expected, const DMCategory& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getValue(), expected.getValue());
  EXPECT_EQ(actual.hasValue(), expected.hasValue());
  EXPECT_EQ(actual.getCount(), expected.getCount());
  EXPECT_EQ(actual.hasCount(), expected.hasCount());
  EXPECT_EQ(actual.getPercentage(), expected.getPercentage());
  EXPECT_EQ(actual.hasPercentage(), expected.hasPercentage());
  EXPECT_EQ(actual.getCumPercentage(), expected.getCumPercentage());
  EXPECT_EQ(actual.hasCumPercentage(), expected.hasCumPercentage());
}

inline void ExpectSameSummary(const DMPercentile& expected, const DMPercentile& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getRank(), expected.getRank());
  EXPECT_EQ(actual.hasRank(), expected.hasRank());
  EXPECT_EQ(actual.getScore(), expected.getScore());
  EXPECT_EQ(actual.hasScore(), expected.hasScore());
  EXPECT_EQ(actual.getLower(), expected.getLower());
  EXPECT_EQ(actual.hasLower(), expected.hasLower());
  EXPECT_EQ(actual.getUpper(), expected.getUpper());
  EXPECT_EQ(actual.hasUpper(), expected.hasUpper());
}

inline void ExpectSameSummary(const DMPercentiles& expected, const DMPercentiles& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getInterQuartileRange(), expected.getInterQuartileRange());
  EXPECT_EQ(actual.hasInterQuartileRange(), expected.hasInterQuartileRange());
  ASSERT_EQ(actual.getPercentileCount(), expected.getPercentileCount());
  for (std::size_t i = 0; i < expected.getPercentileCount(); ++i) {
    SCOPED_TRACE("percentile " + std::to_string(i));
    ExpectSameChild(expected.getPercentile(i), actual.getPercentile(i));
  }
}

inline void ExpectSameSummary(const DMDistributionSummary& expected,
                              const DMDistributionSummary& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getDiscrete(), expected.getDiscrete());
  EXPECT_EQ(actual.getMode(), expected.getMode());
  EXPECT_EQ(actual.hasMode(), expected.hasMode());
  EXPECT_EQ(actual.getMaxCatsExceeded(), expected.getMaxCatsExceeded());
  EXPECT_EQ(actual.getMedian(), expected.getMedian());
  ASSERT_EQ(actual.getClusterCount(), expected.getClusterCount());
  for (std::size_t i = 0; i < expected.getClusterCount(); ++i) {
    SCOPED_TRACE("cluster " + std::to_string(i));
    ExpectSameChild(expected.getCluster(i), actual.getCluster(i));
  }
  ASSERT_EQ(actual.getCategoryCount(), expected.getCategoryCount());
  for (std::size_t i = 0; i < expected.getCategoryCount(); ++i) {
    SCOPED_TRACE("category " + std::to_string(i));
    ExpectSameChild(expected.getCategory(i), actual.getCategory(i));
  }
}

inline void ExpectSameSummary(const DMContinuousStatisticsExt& expected,
                              const DMContinuousStatisticsExt& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getMinimum(), expected.getMinimum());
  EXPECT_EQ(actual.hasMinimum(), expected.hasMinimum());
  EXPECT_EQ(actual.getMaximum(), expected.getMaximum());
  EXPECT_EQ(actual.hasMaximum(), expected.hasMaximum());
  EXPECT_EQ(actual.getMean(), expected.getMean());
  EXPECT_EQ(actual.hasMean(), expected.hasMean());
  EXPECT_EQ(actual.getVariance(), expected.getVariance());
  EXPECT_EQ(actual.hasVariance(), expected.hasVariance());
  EXPECT_EQ(actual.getStdDev(), expected.getStdDev());
  EXPECT_EQ(actual.hasStdDev(), expected.hasStdDev());
  EXPECT_EQ(actual.getSkewness(), expected.getSkewness());
  EXPECT_EQ(actual.hasSkewness(), expected.hasSkewness());
  EXPECT_EQ(actual.getStdErrSkewness(), expected.getStdErrSkewness());
  EXPECT_EQ(actual.hasStdErrSkewness(), expected.hasStdErrSkewness());
  EXPECT_EQ(actual.getKurtosis(), expected.getKurtosis());
  EXPECT_EQ(actual.hasKurtosis(), expected.hasKurtosis());
  EXPECT_EQ(actual.getStdErrKurtosis(), expected.getStdErrKurtosis());
  EXPECT_EQ(actual.hasStdErrKurtosis(), expected.hasStdErrKurtosis());
  EXPECT_EQ(actual.getOutlierLowerBound(), expected.getOutlierLowerBound());
  EXPECT_EQ(actual.hasOutlierLowerBound(), expected.hasOutlierLowerBound());
  EXPECT_EQ(actual.getOutlierUpperBound(), expected.getOutlierUpperBound());
  EXPECT_EQ(actual.hasOutlierUpperBound(), expected.hasOutlierUpperBound());
  {
    SCOPED_TRACE("percentiles");
    ExpectSameChild(expected.getPercentiles(), actual.getPercentiles());
  }
  SCOPED_TRACE("distribution summary");
  ExpectSameChild(expected.getDistributionSummary(), actual.getDistributionSummary());
}

inline void ExpectSameSummary(const DMDiscreteStatisticsExt& expected,
                              const DMDiscreteStatisticsExt& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getMode(), expected.getMode());
  EXPECT_EQ(actual.getMedian(), expected.getMedian());
  SCOPED_TRACE("distribution summary");
  ExpectSameChild(expected.getDistributionSummary(), actual.getDistributionSummary());
}

inline void ExpectSameSummary(const DMRecordCountsExt& expected, const DMRecordCountsExt& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
}

inline void ExpectSameSummary(const DMOverallSummaries& expected,
                              const DMOverallSummaries& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getCurrent(), expected.getCurrent());
  EXPECT_EQ(actual.getIncludeUMissing(), expected.getIncludeUMissing());
  EXPECT_EQ(actual.getIncludeNotValid(), expected.getIncludeNotValid());
  SCOPED_TRACE("record counts");
  ExpectSameChild(expected.getRecordCountsExt(), actual.getRecordCountsExt());
}

inline void ExpectSameSummary(const DMFieldSummary& expected, const DMFieldSummary& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  EXPECT_EQ(actual.getCurrent(), expected.getCurrent());
  EXPECT_EQ(actual.getIncludeUMissing(), expected.getIncludeUMissing());
  EXPECT_EQ(actual.getIncludeNotValid(), expected.getIncludeNotValid());
  EXPECT_EQ(actual.getFieldName(), expected.getFieldName());
  EXPECT_EQ(actual.getValidCount(), expected.getValidCount());
  EXPECT_EQ(actual.getUnweightedValid(), expected.getUnweightedValid());
  EXPECT_EQ(actual.getMissingCount(), expected.getMissingCount());
  EXPECT_EQ(actual.getUnweightedMissing(), expected.getUnweightedMissing());
  EXPECT_EQ(actual.getInvalidCount(), expected.getInvalidCount());
  EXPECT_EQ(actual.getUnweightedInvalid(), expected.getUnweightedInvalid());
  {
    SCOPED_TRACE("continuous statistics");
    ExpectSameChild(expected.getConStatistics(), actual.getConStatistics());
  }
  SCOPED_TRACE("discrete statistics");
  ExpectSameChild(expected.getDisStatistics(), actual.getDisStatistics());
}

inline void ExpectSameSummary(const DMFieldSummaries& expected, const DMFieldSummaries& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  ASSERT_EQ(actual.getFieldSummaryCount(), expected.getFieldSummaryCount());
  for (std::size_t i = 0; i < expected.getFieldSummaryCount(); ++i) {
    SCOPED_TRACE("field summary " + std::to_string(i));
    ExpectSameChild(expected.getFieldSummary(i), actual.getFieldSummary(i));
  }
}

inline void ExpectSameSummary(const DMDatasetSummaries& expected,
                              const DMDatasetSummaries& actual) {
  EXPECT_EQ(actual.parseSuccess(), expected.parseSuccess());
  {
    SCOPED_TRACE("overall summaries");
    ExpectSameChild(expected.getOverallSummaries(), actual.getOverallSummaries());
  }
  SCOPED_TRACE("field summaries");
  ExpectSameChild(expected.getFieldSummaries(), actual.getFieldSummaries());
}

// For ExpectXmlRoundTrip, which wants a callable.
struct SameSummary {
  template <typename Summary>
  void operator()(const Summary& expected, const Summary& actual) const {
    ExpectSameSummary(expected, actual);
  }
};

// Reads `text` as a `Summary`, checks that it parses, writes it back and
// reads it again with every getter equal, and returns the written text.
template <typename Summary>
std::string RoundTrip(const std::string& text) {
  const Summary read = ReadSummary<Summary>(text);
  EXPECT_TRUE(read.parseSuccess()) << text;
  return ExpectXmlRoundTrip(read, SameSummary());
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_SUMMARIES_SUMMARIESTEST_H
