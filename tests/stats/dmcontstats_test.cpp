#include "dmcommon/stats/dmcontstats.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlelement.h"
#include "tests/support/xmltest.h"

namespace {

using DmCppHelperV1::XMLElement;
using DmExtension::DMXMLWrapper;

using DMContStatsXmlTest = dmtest::XmlTest;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr long long kTwoTo53PlusOne = 9007199254740993LL;

// What a real becomes after it is written with "%.15g" and read back.
double Through15Digits(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.15g", value);
  return std::strtod(text, nullptr);
}

// Every getter of continuous statistics, so that one comparison covers them.
struct Snapshot {
  double min;
  double max;
  double sumFreqWts;
  double sumCompWts;
  double mean;
  double variance;
};

template <typename Stats>
Snapshot SnapshotOf(const Stats& stats) {
  const auto extrema = stats.GetExtrema();
  return {extrema.first,   extrema.second,     stats.GetSumFreqWeights(), stats.GetSumCompWeights(),
          stats.GetMean(), stats.GetVariance()};
}

// Reals compared bit for bit, so that -0.0 differs from 0.0 and NaN equals
// NaN.
bool SameReal(double left, double right) {
  if (std::isnan(left) || std::isnan(right)) return std::isnan(left) && std::isnan(right);
  return left == right && std::signbit(left) == std::signbit(right);
}

::testing::AssertionResult Same(const Snapshot& actual, const Snapshot& expected) {
  const std::pair<const char*, std::pair<double, double>> fields[] = {
      {"minimum", {actual.min, expected.min}},
      {"maximum", {actual.max, expected.max}},
      {"sumFreqWts", {actual.sumFreqWts, expected.sumFreqWts}},
      {"sumCompWts", {actual.sumCompWts, expected.sumCompWts}},
      {"mean", {actual.mean, expected.mean}},
      {"variance", {actual.variance, expected.variance}},
  };
  for (const auto& [name, values] : fields) {
    if (!SameReal(values.first, values.second)) {
      return ::testing::AssertionFailure()
             << name << " is " << values.first << ", expected " << values.second;
    }
  }
  return ::testing::AssertionSuccess();
}

constexpr Snapshot kEmpty = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

struct Observation {
  double value;
  double freqWeight;
  double caseWeight;
};

// The text that `stats` writes under a new root element; `created` must be the
// element written.
template <typename Stats>
std::string Written(const Stats& stats) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  stats.AddToTree(document, created);
  EXPECT_NE(created, nullptr);
  if (created != nullptr) {
    EXPECT_EQ(dmtest::XmlTest::NameOf(*created), "ContinuousStatistics");
  }
  return dmtest::XmlTest::WithoutDeclaration(document);
}

template <typename Stats>
Stats Unweighted(std::initializer_list<double> values) {
  Stats stats;
  for (const double value : values) stats.Update(value);
  return stats;
}

DMContStatsInt UnweightedIntegers(std::initializer_list<long long> values) {
  DMContStatsInt stats;
  for (const long long value : values) stats.Update(value);
  return stats;
}

// ---------------------------------------------------------------------------
// Updates

TEST(DMContStatsTest, UnweightedOneTwoThreeHaveMeanTwoAndVarianceOne) {
  const auto stats = Unweighted<DMContStatsDbl>({1.0, 2.0, 3.0});
  EXPECT_TRUE(Same(SnapshotOf(stats), {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}));
}

TEST(DMContStatsTest, IntegerStatisticsOfOneTwoThreeMatchTheRealOnes) {
  const auto stats = UnweightedIntegers({1, 2, 3});
  EXPECT_TRUE(Same(SnapshotOf(stats), {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(1LL, 3LL));
}

TEST(DMContStatsTest, DefaultIsEmpty) {
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsDbl()), kEmpty));
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsInt()), kEmpty));
  EXPECT_EQ(DMContStatsInt().GetExactExtrema(), std::make_pair(0LL, 0LL));
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsImp()), kEmpty));
}

TEST(DMContStatsTest, SingleUpdateHasVarianceZero) {
  const auto stats = Unweighted<DMContStatsDbl>({5.0});
  EXPECT_TRUE(Same(SnapshotOf(stats), {5.0, 5.0, 1.0, 1.0, 5.0, 0.0}));
}

TEST(DMContStatsTest, UnweightedUpdateAlwaysReturnsTrue) {
  DMContStatsDbl real;
  DMContStatsInt integer;
  DMContStatsImp accumulator;
  EXPECT_TRUE(real.Update(-3.5));
  EXPECT_TRUE(integer.Update(-3LL));
  EXPECT_TRUE(accumulator.Update(kNaN));
}

struct RejectedWeights {
  const char* name;
  double freqWeight;
  double caseWeight;
};

TEST(DMContStatsTest, WeightedUpdateRefusesWeightsNotAboveZeroAndChangesNothing) {
  const RejectedWeights kRows[] = {
      {"zero frequency weight", 0.0, 1.0},      {"negative zero frequency weight", -0.0, 1.0},
      {"negative case weight", 1.0, -2.0},      {"zero case weight", 1.0, 0.0},
      {"negative frequency weight", -1.0, 1.0}, {"not-a-number frequency weight", kNaN, 1.0},
      {"not-a-number case weight", 1.0, kNaN},
  };
  for (const RejectedWeights& row : kRows) {
    SCOPED_TRACE(row.name);
    DMContStatsDbl real = Unweighted<DMContStatsDbl>({1.0, 2.0});
    const Snapshot before = SnapshotOf(real);
    EXPECT_FALSE(real.Update(5.0, row.freqWeight, row.caseWeight));
    EXPECT_TRUE(Same(SnapshotOf(real), before));

    DMContStatsInt integer = UnweightedIntegers({1, 2});
    EXPECT_FALSE(integer.Update(kTwoTo53PlusOne, row.freqWeight, row.caseWeight));
    EXPECT_TRUE(Same(SnapshotOf(integer), before));
    EXPECT_EQ(integer.GetExactExtrema(), std::make_pair(1LL, 2LL));
  }
}

TEST(DMContStatsTest, RefusedFirstUpdateLeavesTheStatisticsEmpty) {
  DMContStatsInt stats;
  EXPECT_FALSE(stats.Update(7LL, 0.0, 1.0));
  EXPECT_TRUE(Same(SnapshotOf(stats), kEmpty));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(0LL, 0LL));
}

TEST(DMContStatsTest, WeightedUpdateAddsTheFrequencyWeightAndTheCombinedWeight) {
  DMContStatsDbl stats;
  EXPECT_TRUE(stats.Update(4.0, 2.0, 3.0));
  EXPECT_TRUE(Same(SnapshotOf(stats), {4.0, 4.0, 2.0, 6.0, 4.0, 0.0}));
  EXPECT_TRUE(stats.Update(4.0, 2.0, 3.0));
  EXPECT_EQ(stats.GetSumFreqWeights(), 4.0);
  EXPECT_EQ(stats.GetSumCompWeights(), 12.0);
}

TEST(DMContStatsTest, FrequencyWeightsCountCasesForTheVarianceDivisor) {
  // Two values each standing for two cases: n is 4, so the divisor is 3.
  DMContStatsDbl stats;
  stats.Update(1.0, 2.0, 1.0);
  stats.Update(3.0, 2.0, 1.0);
  EXPECT_TRUE(Same(SnapshotOf(stats), {1.0, 3.0, 4.0, 4.0, 2.0, 4.0 / 3.0}));
}

TEST(DMContStatsTest, CaseWeightsScaleTheDeviationsButNotTheDivisor) {
  // The same two values with case weight 2: the squared deviations double,
  // n stays 2, so the divisor is 1.
  DMContStatsDbl stats;
  stats.Update(1.0, 1.0, 2.0);
  stats.Update(3.0, 1.0, 2.0);
  EXPECT_TRUE(Same(SnapshotOf(stats), {1.0, 3.0, 2.0, 4.0, 2.0, 4.0}));
}

TEST(DMContStatsTest, CaseWeightsWeightTheMean) {
  DMContStatsDbl stats;
  stats.Update(0.0, 1.0, 3.0);
  stats.Update(4.0, 1.0, 1.0);
  EXPECT_EQ(stats.GetMean(), 1.0);
}

TEST(DMContStatsTest, VarianceIsZeroUntilTheFrequencyWeightsSumAboveOne) {
  DMContStatsDbl stats;
  stats.Update(1.0, 0.5, 1.0);
  stats.Update(3.0, 0.5, 1.0);
  EXPECT_EQ(stats.GetSumFreqWeights(), 1.0);
  EXPECT_EQ(stats.GetVariance(), 0.0);
  stats.Update(3.0, 0.25, 1.0);
  EXPECT_GT(stats.GetVariance(), 0.0);
}

TEST(DMContStatsTest, ExtremaFollowTheSmallestAndLargestValue) {
  const auto stats = Unweighted<DMContStatsDbl>({5.0, 3.0, 8.0, 1.0, 6.0});
  EXPECT_EQ(stats.GetExtrema(), std::make_pair(1.0, 8.0));
}

TEST(DMContStatsTest, NotANumberIsNotRefusedAndSpreadsIntoTheMean) {
  DMContStatsDbl stats;
  EXPECT_TRUE(stats.Update(1.0, 1.0, 1.0));
  EXPECT_TRUE(stats.Update(kNaN, 1.0, 1.0));
  EXPECT_TRUE(std::isnan(stats.GetMean()));
  EXPECT_EQ(stats.GetSumFreqWeights(), 2.0);
}

TEST(DMContStatsTest, IntegerStatisticsKeepExactExtremaBeyondTwoToThe53) {
  DMContStatsInt stats;
  stats.Update(kTwoTo53PlusOne + 2);
  stats.Update(kTwoTo53PlusOne);
  stats.Update(kTwoTo53PlusOne + 4, 1.0, 1.0);
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(kTwoTo53PlusOne, kTwoTo53PlusOne + 4));
  // The real extrema are the converted values, which round to even.
  EXPECT_EQ(stats.GetExtrema(), std::make_pair(9007199254740992.0, 9007199254740996.0));
}

TEST(DMContStatsTest, IntegerStatisticsKeepTheSixtyFourBitLimitsExactly) {
  const auto stats = UnweightedIntegers({0, LLONG_MAX, LLONG_MIN});
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(LLONG_MIN, LLONG_MAX));
}

// Awkward weights and values whose results, worked out independently with
// the operations in their defined order, differ in the last bits from those
// of a rearranged update (mean += d * (w / S), and so on).
const Observation kAwkward[] = {
    {0.1, 1.5, 0.7},       {1e3 / 7, 2.25, 1.3}, {-3.3, 0.4, 3.1},
    {2.0 / 3.0, 3.0, 0.9}, {1e-3, 1.1, 2.2},     {17.17, 0.6, 1.9},
};

TEST(DMContStatsTest, WeightedUpdatesGiveTheResultsOfTheDefinedOrderBitForBit) {
  DMContStatsDbl stats;
  for (const Observation& o : kAwkward) stats.Update(o.value, o.freqWeight, o.caseWeight);
  EXPECT_EQ(stats.GetMean(), 0x1.2f709226cf762p+5);
  EXPECT_EQ(stats.GetVariance(), 0x1.5a9f604da2ceap+12);
  EXPECT_EQ(stats.GetSumCompWeights(), 0x1.6f33333333334p+3);
  EXPECT_EQ(stats.GetSumFreqWeights(), 0x1.1b33333333333p+3);
}

TEST(DMContStatsTest, UnweightedUpdatesGiveTheResultsOfTheDefinedOrderBitForBit) {
  DMContStatsDbl stats;
  for (const Observation& o : kAwkward) stats.Update(o.value);
  EXPECT_EQ(stats.GetMean(), 0x1.a3fc74e606b26p+4);
  EXPECT_EQ(stats.GetVariance(), 0x1.9e815ecaaca80p+11);
}

TEST(DMContStatsTest, PoolingGivesTheResultsOfTheDefinedOrderBitForBit) {
  DMContStatsDbl first;
  DMContStatsDbl second;
  for (std::size_t i = 0; i < 2; ++i) {
    first.Update(kAwkward[i].value, kAwkward[i].freqWeight, kAwkward[i].caseWeight);
  }
  for (std::size_t i = 2; i < std::size(kAwkward); ++i) {
    second.Update(kAwkward[i].value, kAwkward[i].freqWeight, kAwkward[i].caseWeight);
  }
  first.Pool(second);
  EXPECT_EQ(first.GetMean(), 0x1.2f709226cf764p+5);
  EXPECT_EQ(first.GetVariance(), 0x1.5a9f604da2ce9p+12);
}

// ---------------------------------------------------------------------------
// Pooling

TEST(DMContStatsTest, PoolingTwoHalvesGivesTheStatisticsOfTheWhole) {
  auto whole = Unweighted<DMContStatsDbl>({1.0, 2.0, 3.0, 4.0});
  auto first = Unweighted<DMContStatsDbl>({3.0, 4.0});
  const auto second = Unweighted<DMContStatsDbl>({1.0, 2.0});
  first.Pool(second);
  EXPECT_TRUE(Same(SnapshotOf(first), SnapshotOf(whole)));
  EXPECT_TRUE(Same(SnapshotOf(first), {1.0, 4.0, 4.0, 4.0, 2.5, 5.0 / 3.0}));
}

TEST(DMContStatsTest, PoolingWeightedPartsAddsBothWeightSums) {
  DMContStatsDbl first;
  first.Update(1.0, 2.0, 1.0);
  DMContStatsDbl second;
  second.Update(3.0, 2.0, 1.0);
  first.Pool(second);
  EXPECT_TRUE(Same(SnapshotOf(first), {1.0, 3.0, 4.0, 4.0, 2.0, 4.0 / 3.0}));
}

TEST(DMContStatsTest, PoolingIntoEmptyStatisticsCopiesTheOtherExactly) {
  DMContStatsDbl other;
  other.Update(0.1, 1.5, 0.7);
  other.Update(0.3, 2.5, 1.3);
  other.Update(-0.2, 0.5, 3.1);
  DMContStatsDbl empty;
  empty.Pool(other);
  EXPECT_TRUE(Same(SnapshotOf(empty), SnapshotOf(other)));
}

TEST(DMContStatsTest, PoolingEmptyStatisticsChangesNothing) {
  auto stats = Unweighted<DMContStatsDbl>({0.1, 0.7, 0.4});
  const Snapshot before = SnapshotOf(stats);
  stats.Pool(DMContStatsDbl());
  EXPECT_TRUE(Same(SnapshotOf(stats), before));

  DMContStatsDbl empty;
  empty.Pool(DMContStatsDbl());
  EXPECT_TRUE(Same(SnapshotOf(empty), kEmpty));
}

TEST(DMContStatsTest, PoolingTakesTheOuterExtrema) {
  auto stats = Unweighted<DMContStatsDbl>({5.0, 6.0});
  stats.Pool(Unweighted<DMContStatsDbl>({1.0, 9.0}));
  EXPECT_EQ(stats.GetExtrema(), std::make_pair(1.0, 9.0));
}

TEST(DMContStatsTest, PoolingIntegerStatisticsLeavesTheExactExtremaAsTheyWere) {
  auto stats = UnweightedIntegers({5, 6});
  stats.Pool(UnweightedIntegers({1, 9}));
  EXPECT_EQ(stats.GetExtrema(), std::make_pair(1.0, 9.0));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(5LL, 6LL));

  DMContStatsInt empty;
  empty.Pool(UnweightedIntegers({1, 9}));
  EXPECT_EQ(empty.GetExtrema(), std::make_pair(1.0, 9.0));
  EXPECT_EQ(empty.GetExactExtrema(), std::make_pair(0LL, 0LL));
  // The stale exact extrema differ from the real ones, so they are written.
  EXPECT_EQ(Written(empty),
            "<Root><ContinuousStatistics exactMaximum=\"0\" exactMinimum=\"0\" maximum=\"9\" "
            "mean=\"5\" minimum=\"1\" sumCompWts=\"2\" sumFreqWts=\"2\" variance=\"32\"/></Root>");
}

TEST(DMContStatsTest, AccumulatorPoolsLikeTheStatisticsClasses) {
  DMContStatsImp first;
  first.Update(3.0);
  first.Update(4.0);
  DMContStatsImp second;
  second.Update(1.0, 1.0, 1.0);
  second.Update(2.0, 1.0, 1.0);
  first.Pool(second);
  EXPECT_TRUE(Same(SnapshotOf(first), {1.0, 4.0, 4.0, 4.0, 2.5, 5.0 / 3.0}));
}

// ---------------------------------------------------------------------------
// Numerical quality

struct Reference {
  long double mean;
  long double variance;
};

// Two passes in long double over the combined weights, n from the frequency
// weights: the definition the streamed and pooled results must approach.
Reference TwoPass(const std::vector<Observation>& sample) {
  long double sumWeights = 0.0L;
  long double sumWeighted = 0.0L;
  long double sumFreq = 0.0L;
  for (const Observation& o : sample) {
    const long double w = static_cast<long double>(o.caseWeight) * o.freqWeight;
    sumWeights += w;
    sumWeighted += w * o.value;
    sumFreq += o.freqWeight;
  }
  const long double mean = sumWeighted / sumWeights;
  long double sumSquares = 0.0L;
  for (const Observation& o : sample) {
    const long double w = static_cast<long double>(o.caseWeight) * o.freqWeight;
    const long double d = o.value - mean;
    sumSquares += w * d * d;
  }
  return {mean, sumSquares / (sumFreq - 1.0L)};
}

double RelativeError(long double actual, long double expected) {
  return static_cast<double>(std::fabs((actual - expected) / expected));
}

TEST(DMContStatsTest, PoolingRandomPartsMatchesOnePassAndTwoPassesWithinOnePartInTenToTheTwelve) {
  constexpr double kTolerance = 1e-12;
  const std::size_t kSizes[] = {10, 57, 1000, 12345, 100000};
  for (const std::size_t size : kSizes) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
      SCOPED_TRACE("size " + std::to_string(size) + ", seed " + std::to_string(seed));
      std::mt19937_64 random(std::uint64_t{seed} * 7919 + size);
      std::normal_distribution<double> values(250.0, 40.0);
      std::uniform_real_distribution<double> freqWeights(0.5, 4.0);
      std::uniform_real_distribution<double> caseWeights(0.1, 10.0);
      std::vector<Observation> sample(size);
      for (Observation& o : sample) {
        o = {values(random), freqWeights(random), caseWeights(random)};
      }

      DMContStatsDbl onePass;
      for (const Observation& o : sample) {
        ASSERT_TRUE(onePass.Update(o.value, o.freqWeight, o.caseWeight));
      }

      // k parts at random cut points; some parts may be empty.
      const std::size_t parts = std::uniform_int_distribution<std::size_t>(2, 16)(random);
      std::vector<std::size_t> cuts = {0, size};
      for (std::size_t p = 1; p < parts; ++p) {
        cuts.push_back(std::uniform_int_distribution<std::size_t>(0, size)(random));
      }
      std::sort(cuts.begin(), cuts.end());
      DMContStatsDbl pooled;
      for (std::size_t p = 0; p + 1 < cuts.size(); ++p) {
        DMContStatsDbl part;
        for (std::size_t i = cuts[p]; i < cuts[p + 1]; ++i) {
          part.Update(sample[i].value, sample[i].freqWeight, sample[i].caseWeight);
        }
        pooled.Pool(part);
      }

      const Reference reference = TwoPass(sample);
      EXPECT_LT(RelativeError(pooled.GetMean(), onePass.GetMean()), kTolerance);
      EXPECT_LT(RelativeError(pooled.GetVariance(), onePass.GetVariance()), kTolerance);
      EXPECT_LT(RelativeError(onePass.GetMean(), reference.mean), kTolerance);
      EXPECT_LT(RelativeError(onePass.GetVariance(), reference.variance), kTolerance);
      EXPECT_LT(RelativeError(pooled.GetMean(), reference.mean), kTolerance);
      EXPECT_LT(RelativeError(pooled.GetVariance(), reference.variance), kTolerance);
      EXPECT_LT(RelativeError(pooled.GetSumFreqWeights(), onePass.GetSumFreqWeights()), kTolerance);
    }
  }
}

TEST(DMContStatsTest, ValuesNearTenToTheNineWithSpreadOneKeepSixDigitsOfTheVariance) {
  // The running mean is rounded to the spacing of reals near 1e9 (about
  // 1.2e-7) at every update, and each squared deviation inherits that error
  // relative to a spread of 1: the update as defined keeps seven to eight
  // digits here, where a plain sum of squares keeps none.
  for (const std::size_t size : {10, 1000, 100000}) {
    for (unsigned seed = 1; seed <= 3; ++seed) {
      SCOPED_TRACE("size " + std::to_string(size) + ", seed " + std::to_string(seed));
      std::mt19937_64 random(seed);
      std::uniform_real_distribution<double> spread(0.0, 1.0);
      std::vector<Observation> sample(size);
      double sum = 0.0;
      double sumSquares = 0.0;
      DMContStatsDbl stats;
      for (Observation& o : sample) {
        o = {1e9 + spread(random), 1.0, 1.0};
        stats.Update(o.value);
        sum += o.value;
        sumSquares += o.value * o.value;
      }
      const Reference reference = TwoPass(sample);
      EXPECT_LT(RelativeError(stats.GetVariance(), reference.variance), 1e-6);
      const double n = static_cast<double>(size);
      const double naive = (sumSquares - sum * sum / n) / (n - 1.0);
      EXPECT_GT(RelativeError(naive, reference.variance), 1e-3) << "the sample is too easy";
    }
  }
}

// ---------------------------------------------------------------------------
// Copies

TEST(DMContStatsTest, CopiesAndClonesAreDeep) {
  DMContStatsDbl original = Unweighted<DMContStatsDbl>({1.0, 2.0, 3.0});
  DMContStatsDbl copy(original);
  const std::unique_ptr<DMContStatsDbl> clone(original.Clone());
  DMContStatsDbl assigned;
  assigned = original;
  original.Update(100.0);
  for (const DMContStatsDbl* stats : {&copy, clone.get(), &assigned}) {
    EXPECT_TRUE(Same(SnapshotOf(*stats), {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}));
  }
  EXPECT_EQ(original.GetSumFreqWeights(), 4.0);
}

TEST(DMContStatsTest, IntegerCopiesAndClonesCarryTheExactExtrema) {
  DMContStatsInt original = UnweightedIntegers({kTwoTo53PlusOne, 3});
  const DMContStatsInt copy(original);
  const std::unique_ptr<DMContStats> clone(original.Clone());
  DMContStatsInt assigned;
  assigned = original;
  original.Update(LLONG_MAX);
  const DMContStatsInt& assignedView = assigned;
  for (const DMContStatsInt* stats :
       {&copy, dynamic_cast<const DMContStatsInt*>(clone.get()), &assignedView}) {
    ASSERT_NE(stats, nullptr);
    EXPECT_EQ(stats->GetExactExtrema(), std::make_pair(3LL, kTwoTo53PlusOne));
    EXPECT_EQ(stats->GetSumFreqWeights(), 2.0);
  }
}

TEST(DMContStatsTest, SelfAssignmentChangesNothing) {
  DMContStatsDbl real = Unweighted<DMContStatsDbl>({1.0, 2.0, 3.0});
  DMContStatsDbl& realAlias = real;
  real = realAlias;
  EXPECT_TRUE(Same(SnapshotOf(real), {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}));

  DMContStatsInt integer = UnweightedIntegers({1, 2, 3});
  DMContStatsInt& integerAlias = integer;
  integer = integerAlias;
  EXPECT_TRUE(Same(SnapshotOf(integer), {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}));
  EXPECT_EQ(integer.GetExactExtrema(), std::make_pair(1LL, 3LL));
}

TEST(DMContStatsTest, CloneThroughTheBaseKeepsTheClass) {
  const std::unique_ptr<DMContStats> real(DMContStatsDbl().Clone());
  const std::unique_ptr<DMContStats> integer(DMContStatsInt().Clone());
  EXPECT_NE(dynamic_cast<DMContStatsDbl*>(real.get()), nullptr);
  EXPECT_NE(dynamic_cast<DMContStatsInt*>(integer.get()), nullptr);
}

// ---------------------------------------------------------------------------
// Writing

TEST(DMContStatsTest, EmptyStatisticsWriteTheTwoSumsOnly) {
  EXPECT_EQ(Written(DMContStatsDbl()),
            "<Root><ContinuousStatistics sumCompWts=\"0\" sumFreqWts=\"0\"/></Root>");
  EXPECT_EQ(Written(DMContStatsInt()),
            "<Root><ContinuousStatistics sumCompWts=\"0\" sumFreqWts=\"0\"/></Root>");
}

TEST(DMContStatsTest, SingleUpdateWritesNoVariance) {
  EXPECT_EQ(Written(Unweighted<DMContStatsDbl>({5.0})),
            "<Root><ContinuousStatistics maximum=\"5\" mean=\"5\" minimum=\"5\" "
            "sumCompWts=\"1\" sumFreqWts=\"1\"/></Root>");
}

TEST(DMContStatsTest, SeveralUpdatesWriteTheVariance) {
  EXPECT_EQ(Written(Unweighted<DMContStatsDbl>({1.0, 2.0, 3.0})),
            "<Root><ContinuousStatistics maximum=\"3\" mean=\"2\" minimum=\"1\" "
            "sumCompWts=\"3\" sumFreqWts=\"3\" variance=\"1\"/></Root>");
}

TEST(DMContStatsTest, FrequencyWeightsOfOneOrLessWriteNoVariance) {
  DMContStatsDbl stats;
  stats.Update(2.0, 0.5, 4.0);
  stats.Update(4.0, 0.5, 4.0);
  EXPECT_EQ(Written(stats),
            "<Root><ContinuousStatistics maximum=\"4\" mean=\"3\" minimum=\"2\" "
            "sumCompWts=\"4\" sumFreqWts=\"1\"/></Root>");
}

TEST(DMContStatsTest, RealsAreWrittenWithFifteenSignificantDigits) {
  DMContStatsDbl stats;
  stats.Update(0.1 + 0.2);
  EXPECT_EQ(Written(stats),
            "<Root><ContinuousStatistics maximum=\"0.3\" mean=\"0.3\" minimum=\"0.3\" "
            "sumCompWts=\"1\" sumFreqWts=\"1\"/></Root>");
}

TEST(DMContStatsTest, IntegerBeyondTwoToThe53WritesBothExactExtrema) {
  const auto stats = UnweightedIntegers({kTwoTo53PlusOne});
  EXPECT_EQ(Written(stats),
            "<Root><ContinuousStatistics exactMaximum=\"9007199254740993\" "
            "exactMinimum=\"9007199254740993\" maximum=\"9.00719925474099e+15\" "
            "mean=\"9.00719925474099e+15\" minimum=\"9.00719925474099e+15\" sumCompWts=\"1\" "
            "sumFreqWts=\"1\"/></Root>");
}

TEST(DMContStatsTest, SmallIntegersWriteNoExactExtrema) {
  EXPECT_EQ(Written(UnweightedIntegers({-7, 12})),
            "<Root><ContinuousStatistics maximum=\"12\" mean=\"2.5\" minimum=\"-7\" "
            "sumCompWts=\"2\" sumFreqWts=\"2\" variance=\"180.5\"/></Root>");
}

TEST(DMContStatsTest, OnlyTheExtremumThatLosesPrecisionIsWrittenExactly) {
  // The real image of 2^53 + 1 is 2^53; the deviation 2^53 + 5 rounds to
  // 2^53 + 4, so the mean is 2^52 - 3 and the variance (2^53 + 4)^2 / 2.
  EXPECT_EQ(Written(UnweightedIntegers({-5, kTwoTo53PlusOne})),
            "<Root><ContinuousStatistics exactMaximum=\"9007199254740993\" "
            "maximum=\"9.00719925474099e+15\" mean=\"4.50359962737049e+15\" minimum=\"-5\" "
            "sumCompWts=\"2\" sumFreqWts=\"2\" variance=\"4.05648192073034e+31\"/></Root>");
}

TEST(DMContStatsTest, TheSixtyFourBitLimitsNeedNoExactExtrema) {
  // The real images of the limits saturate back to the limits.
  EXPECT_EQ(Written(UnweightedIntegers({LLONG_MIN, LLONG_MAX})),
            "<Root><ContinuousStatistics maximum=\"9.22337203685478e+18\" mean=\"0\" "
            "minimum=\"-9.22337203685478e+18\" sumCompWts=\"2\" sumFreqWts=\"2\" "
            "variance=\"1.70141183460469e+38\"/></Root>");
}

TEST(DMContStatsTest, WritingUnderAHandleWithoutElementLeavesCreatedNull) {
  DMXMLWrapper nothing;
  DMXMLWrapper* created = &nothing;
  Unweighted<DMContStatsDbl>({1.0}).AddToTree(nothing, created);
  EXPECT_EQ(created, nullptr);
  created = &nothing;
  UnweightedIntegers({kTwoTo53PlusOne}).AddToTree(nothing, created);
  EXPECT_EQ(created, nullptr);
}

TEST(DMContStatsTest, MakeContStatsElmtHandsOverAFreeElement) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMContStatsImp accumulator;
  accumulator.Update(1.0);
  accumulator.Update(3.0);
  std::unique_ptr<DMXMLWrapper> element(accumulator.MakeContStatsElmt(document));
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(dmtest::XmlTest::NameOf(*element), "ContinuousStatistics");
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document), "<Root/>");
  ASSERT_EQ(document.addElement(element.get()), DmExtension::DM_XML_OK);
  // The document's handle owns the element now.
  static_cast<void>(element.release());
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document),
            "<Root><ContinuousStatistics maximum=\"3\" mean=\"2\" minimum=\"1\" "
            "sumCompWts=\"2\" sumFreqWts=\"2\" variance=\"2\"/></Root>");
}

TEST(DMContStatsTest, MakeContStatsElmtWithoutDocumentReturnsNull) {
  DMXMLWrapper nothing;
  EXPECT_EQ(DMContStatsImp().MakeContStatsElmt(nothing), nullptr);
}

// ---------------------------------------------------------------------------
// Round trips

void ExpectSameReal(const DMContStatsDbl& written, const DMContStatsDbl& read) {
  EXPECT_TRUE(Same(SnapshotOf(read), SnapshotOf(written)));
}

void ExpectSameInteger(const DMContStatsInt& written, const DMContStatsInt& read) {
  EXPECT_TRUE(Same(SnapshotOf(read), SnapshotOf(written)));
  EXPECT_EQ(read.GetExactExtrema(), written.GetExactExtrema());
}

// What reading back gives: every real through 15 digits. The variance comes
// back through the sum of squared deviations, so it is compared after the
// same multiplication and division.
Snapshot Through15Digits(const Snapshot& written) {
  const double variance = Through15Digits(written.variance);
  const double divisor = written.sumFreqWts - 1.0;
  return {Through15Digits(written.min),        Through15Digits(written.max),
          Through15Digits(written.sumFreqWts), Through15Digits(written.sumCompWts),
          Through15Digits(written.mean),       divisor > 0.0 ? variance * divisor / divisor : 0.0};
}

TEST(DMContStatsTest, RealStatisticsRoundTripThroughXml) {
  dmtest::ExpectXmlRoundTrip(DMContStatsDbl(), ExpectSameReal);
  dmtest::ExpectXmlRoundTrip(Unweighted<DMContStatsDbl>({1.0, 2.0, 3.0}), ExpectSameReal);
  dmtest::ExpectXmlRoundTrip(Unweighted<DMContStatsDbl>({-2.5}), ExpectSameReal);
  DMContStatsDbl weighted;
  weighted.Update(1.0, 0.5, 4.0);
  weighted.Update(3.0, 0.25, 8.0);
  dmtest::ExpectXmlRoundTrip(weighted, ExpectSameReal);
}

TEST(DMContStatsTest, InexactRealsRoundTripThroughFifteenDigits) {
  DMContStatsDbl stats;
  stats.Update(0.1, 1.0, 0.3);
  stats.Update(0.7, 1.0, 0.9);
  stats.Update(1.0 / 3.0, 1.0, 1.7);
  dmtest::ExpectXmlRoundTrip(stats, [](const DMContStatsDbl& written, const DMContStatsDbl& read) {
    EXPECT_TRUE(Same(SnapshotOf(read), Through15Digits(SnapshotOf(written))));
  });
}

TEST(DMContStatsTest, NegativeZeroExtremaRoundTripThroughXml) {
  const auto stats = Unweighted<DMContStatsDbl>({-0.0});
  EXPECT_TRUE(std::signbit(stats.GetExtrema().first));
  const std::string text = dmtest::ExpectXmlRoundTrip(stats, ExpectSameReal);
  EXPECT_EQ(text,
            "<Root><ContinuousStatistics maximum=\"-0\" mean=\"0\" minimum=\"-0\" "
            "sumCompWts=\"1\" sumFreqWts=\"1\"/></Root>");
}

TEST(DMContStatsTest, IntegerStatisticsRoundTripThroughXml) {
  dmtest::ExpectXmlRoundTrip(DMContStatsInt(), ExpectSameInteger);
  dmtest::ExpectXmlRoundTrip(UnweightedIntegers({-7, 12}), ExpectSameInteger);
}

TEST(DMContStatsTest, IntegersBeyondTwoToThe53RoundTripExactly) {
  const auto compare = [](const DMContStatsInt& written, const DMContStatsInt& read) {
    EXPECT_TRUE(Same(SnapshotOf(read), Through15Digits(SnapshotOf(written))));
    EXPECT_EQ(read.GetExactExtrema(), written.GetExactExtrema());
  };
  dmtest::ExpectXmlRoundTrip(UnweightedIntegers({kTwoTo53PlusOne}), compare);
  dmtest::ExpectXmlRoundTrip(UnweightedIntegers({-kTwoTo53PlusOne, kTwoTo53PlusOne + 2}), compare);
  dmtest::ExpectXmlRoundTrip(UnweightedIntegers({LLONG_MIN, LLONG_MAX}), compare);
}

// ---------------------------------------------------------------------------
// Reading

// Reads `attributes` of a `ContinuousStatistics` element with each reader of
// each class, which must agree.
class ContinuousReaders : public dmtest::XmlTest {
 protected:
  const DMXMLWrapper& Element(const std::string& attributes) {
    return Parse(("<ContinuousStatistics " + attributes + "/>").c_str());
  }
};

struct ReadCase {
  const char* name;
  const char* attributes;
  Snapshot expected;
};

TEST_F(ContinuousReaders, ReadEveryRuleOfTheElementAlike) {
  const ReadCase kRows[] = {
      {"complete",
       R"(sumFreqWts="3" sumCompWts="6" minimum="1" maximum="3" mean="2" variance="1")",
       {1.0, 3.0, 3.0, 6.0, 2.0, 1.0}},
      {"minimum equal to maximum",
       R"(sumFreqWts="2" sumCompWts="2" minimum="4" maximum="4" mean="4" variance="0")",
       {4.0, 4.0, 2.0, 2.0, 4.0, 0.0}},
      {"blanks around numbers",
       R"(sumFreqWts=" 3 " sumCompWts="3" minimum="1" maximum="3" mean="2" variance="1")",
       {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}},
      {"no weights stops after the sums",
       R"(sumFreqWts="0" sumCompWts="5" minimum="abc")",
       {0.0, 0.0, 0.0, 5.0, 0.0, 0.0}},
      {"one case needs no variance",
       R"(sumFreqWts="1" sumCompWts="2" minimum="7" maximum="7" mean="7")",
       {7.0, 7.0, 1.0, 2.0, 7.0, 0.0}},
      {"the variance of one case is not read",
       R"(sumFreqWts="1" sumCompWts="1" minimum="7" maximum="7" mean="7" variance="INF")",
       {7.0, 7.0, 1.0, 1.0, 7.0, 0.0}},
      {"half a case needs no variance",
       R"(sumFreqWts="0.5" sumCompWts="1" minimum="1" maximum="2" mean="1.5")",
       {1.0, 2.0, 0.5, 1.0, 1.5, 0.0}},
      {"negative zero sums are not negative",
       R"(sumFreqWts="-0" sumCompWts="-0")",
       {0.0, 0.0, -0.0, -0.0, 0.0, 0.0}},
      {"missing frequency weights",
       R"(sumCompWts="3" minimum="1" maximum="3" mean="2" variance="1")", kEmpty},
      {"negative frequency weights",
       R"(sumFreqWts="-1" sumCompWts="3" minimum="1" maximum="3" mean="2" variance="1")", kEmpty},
      {"non-numeric frequency weights",
       R"(sumFreqWts="three" sumCompWts="3" minimum="1" maximum="3" mean="2" variance="1")",
       kEmpty},
      {"infinite frequency weights",
       R"(sumFreqWts="INF" sumCompWts="3" minimum="1" maximum="3" mean="2" variance="1")", kEmpty},
      {"missing combined weights",
       R"(sumFreqWts="3" minimum="1" maximum="3" mean="2" variance="1")", kEmpty},
      {"not-a-number combined weights",
       R"(sumFreqWts="3" sumCompWts="NaN" minimum="1" maximum="3" mean="2" variance="1")", kEmpty},
      {"negative combined weights",
       R"(sumFreqWts="3" sumCompWts="-3" minimum="1" maximum="3" mean="2" variance="1")", kEmpty},
      {"missing minimum", R"(sumFreqWts="3" sumCompWts="3" maximum="3" mean="2" variance="1")",
       kEmpty},
      {"minus infinity as minimum",
       R"(sumFreqWts="3" sumCompWts="3" minimum="-INF" maximum="3" mean="2" variance="1")", kEmpty},
      {"missing maximum", R"(sumFreqWts="3" sumCompWts="3" minimum="1" mean="2" variance="1")",
       kEmpty},
      {"minimum above maximum",
       R"(sumFreqWts="3" sumCompWts="3" minimum="3" maximum="1" mean="2" variance="1")", kEmpty},
      {"missing mean", R"(sumFreqWts="3" sumCompWts="3" minimum="1" maximum="3" variance="1")",
       kEmpty},
      {"non-numeric mean",
       R"(sumFreqWts="3" sumCompWts="3" minimum="1" maximum="3" mean="x" variance="1")", kEmpty},
      {"missing variance", R"(sumFreqWts="3" sumCompWts="3" minimum="1" maximum="3" mean="2")",
       kEmpty},
      {"negative variance",
       R"(sumFreqWts="3" sumCompWts="3" minimum="1" maximum="3" mean="2" variance="-1")", kEmpty},
      {"infinite variance",
       R"(sumFreqWts="3" sumCompWts="3" minimum="1" maximum="3" mean="2" variance="INF")", kEmpty},
  };
  for (const ReadCase& row : kRows) {
    SCOPED_TRACE(row.name);
    const DMXMLWrapper& element = Element(row.attributes);
    const XMLElement view(element);
    EXPECT_TRUE(Same(SnapshotOf(DMContStatsImp(element)), row.expected)) << "handle, accumulator";
    EXPECT_TRUE(Same(SnapshotOf(DMContStatsImp(view)), row.expected)) << "view, accumulator";
    EXPECT_TRUE(Same(SnapshotOf(DMContStatsDbl(element)), row.expected)) << "handle, real";
    EXPECT_TRUE(Same(SnapshotOf(DMContStatsDbl(view)), row.expected)) << "view, real";
    // The integer class additionally reads exact extrema when there are
    // weights; the handle's reader fills absent ones in from the real ones.
    const DMContStatsInt integer(element);
    EXPECT_TRUE(Same(SnapshotOf(integer), row.expected)) << "handle, integer";
    const long long exactMin = row.expected.sumFreqWts > 0.0 ? std::llround(row.expected.min) : 0;
    const long long exactMax = row.expected.sumFreqWts > 0.0 ? std::llround(row.expected.max) : 0;
    EXPECT_EQ(integer.GetExactExtrema(), std::make_pair(exactMin, exactMax));
  }
}

TEST_F(ContinuousReaders, HandleReaderFillsAbsentExactExtremaByTruncationTowardZero) {
  const DMContStatsInt stats(
      Element(R"(sumFreqWts="2" sumCompWts="2" minimum="-2.7" maximum="3.9" mean="0.6" )"
              R"(variance="22.445")"));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(-2LL, 3LL));
  EXPECT_EQ(stats.GetExtrema(), std::make_pair(-2.7, 3.9));
}

TEST_F(ContinuousReaders, HandleReaderSaturatesExtremaBeyondTheSixtyFourBitRange) {
  const DMContStatsInt stats(
      Element(R"(sumFreqWts="1" sumCompWts="1" minimum="-1e300" maximum="1e300" mean="0")"));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(LLONG_MIN, LLONG_MAX));
}

TEST_F(ContinuousReaders, HandleReaderTakesPresentExactExtrema) {
  const DMContStatsInt stats(
      Element(R"(sumFreqWts="1" sumCompWts="1" minimum="9.00719925474099e+15" )"
              R"(maximum="9.00719925474099e+15" mean="9.00719925474099e+15" )"
              R"(exactMinimum="9007199254740993" exactMaximum="9007199254740993")"));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(kTwoTo53PlusOne, kTwoTo53PlusOne));
}

TEST_F(ContinuousReaders, HandleReaderEmptiesEverythingOnAnUnreadableExactExtremum) {
  const DMContStatsInt stats(
      Element(R"(sumFreqWts="1" sumCompWts="1" minimum="5" maximum="5" mean="5" )"
              R"(exactMinimum="five")"));
  EXPECT_TRUE(Same(SnapshotOf(stats), kEmpty));
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(0LL, 0LL));
}

TEST_F(ContinuousReaders, HandleReaderTakesTheLeadingNumberOfAnExactExtremum) {
  // The handle reads integers as "%lld" does; the view refuses the same text.
  const DMXMLWrapper& element =
      Element(R"(sumFreqWts="1" sumCompWts="1" minimum="5" maximum="5" mean="5" )"
              R"(exactMinimum="4units" exactMaximum="6")");
  EXPECT_EQ(DMContStatsInt(element).GetExactExtrema(), std::make_pair(4LL, 6LL));
  const XMLElement view(element);
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsInt(view)), kEmpty));
}

TEST_F(ContinuousReaders, ViewReaderRequiresBothExactExtrema) {
  const std::string common = R"(sumFreqWts="1" sumCompWts="1" minimum="5" maximum="5" mean="5" )";
  {
    const XMLElement view(Element(common + R"(exactMinimum="5" exactMaximum="5")"));
    const DMContStatsInt stats(view);
    EXPECT_TRUE(Same(SnapshotOf(stats), {5.0, 5.0, 1.0, 1.0, 5.0, 0.0}));
    EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(5LL, 5LL));
  }
  for (const char* exact : {R"(exactMinimum="5")", R"(exactMaximum="5")", ""}) {
    SCOPED_TRACE(exact);
    const XMLElement view(Element(common + exact));
    const DMContStatsInt stats(view);
    EXPECT_TRUE(Same(SnapshotOf(stats), kEmpty));
    EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(0LL, 0LL));
  }
}

TEST_F(ContinuousReaders, NeitherReaderLooksForExactExtremaWithoutWeights) {
  const DMXMLWrapper& element =
      Element(R"(sumFreqWts="0" sumCompWts="0" exactMinimum="x" exactMaximum="9")");
  const XMLElement view(element);
  EXPECT_EQ(DMContStatsInt(element).GetExactExtrema(), std::make_pair(0LL, 0LL));
  EXPECT_EQ(DMContStatsInt(view).GetExactExtrema(), std::make_pair(0LL, 0LL));
}

TEST_F(ContinuousReaders, ViewReaderReadsSmallIntegerStatisticsAsEmpty) {
  // Written without exact extrema, which the view's reader requires: the two
  // readers differ on purpose here.
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  UnweightedIntegers({1, 2, 3}).AddToTree(document, created);
  ASSERT_NE(created, nullptr);
  const XMLElement view(*created);
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsInt(view)), kEmpty));
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsInt(*created)), {1.0, 3.0, 3.0, 3.0, 2.0, 1.0}));
}

TEST_F(ContinuousReaders, ViewReaderReadsBackIntegersBeyondTwoToThe53) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  UnweightedIntegers({kTwoTo53PlusOne, -kTwoTo53PlusOne}).AddToTree(document, created);
  ASSERT_NE(created, nullptr);
  const XMLElement view(*created);
  const DMContStatsInt stats(view);
  EXPECT_EQ(stats.GetExactExtrema(), std::make_pair(-kTwoTo53PlusOne, kTwoTo53PlusOne));
  EXPECT_EQ(stats.GetSumFreqWeights(), 2.0);
}

TEST_F(ContinuousReaders, ViewReaderOfAnEmptyHandleGivesEmptyStatistics) {
  const DMXMLWrapper nothing;
  const XMLElement view(nothing);
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsDbl(view)), kEmpty));
  EXPECT_TRUE(Same(SnapshotOf(DMContStatsDbl(nothing)), kEmpty));
}

}  // namespace
