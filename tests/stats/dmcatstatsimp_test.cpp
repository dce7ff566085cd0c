#include "dmcommon/stats/dmcatstatsimp.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr unsigned int kUnknown = 0xFFFFFFFFU;

// How each class's values are made and shown, so that one typed test covers
// the three. `Of(n)` grows with n in each class's own order (for texts, byte
// order), for n from 0 to 9.
template <typename Stats>
struct CatTraits;

template <>
struct CatTraits<DMCatStatsInt> {
  using Value = long long;
  static constexpr DMDatum::DataType kType = DMDatum::IntegerType;
  static Value Of(int n) { return n; }
  // The attribute text that reads as `Of(n)`.
  static std::string Text(int n) { return std::to_string(n); }
  static Value OutOfRange() { return -1; }
};

template <>
struct CatTraits<DMCatStatsDbl> {
  using Value = double;
  static constexpr DMDatum::DataType kType = DMDatum::RealType;
  static Value Of(int n) { return n + 0.25; }
  static std::string Text(int n) { return std::to_string(n) + ".25"; }
  static Value OutOfRange() { return -1.0; }
};

template <>
struct CatTraits<DMCatStatsStr> {
  using Value = std::string;
  static constexpr DMDatum::DataType kType = DMDatum::StringType;
  static Value Of(int n) { return "c" + std::to_string(n); }
  static std::string Text(int n) { return Of(n); }
  static Value OutOfRange() { return ""; }
};

// The categories of `stats` in category-number order, with their weights.
template <typename Stats>
std::vector<std::pair<typename CatTraits<Stats>::Value, double>> Contents(const Stats& stats) {
  std::vector<std::pair<typename CatTraits<Stats>::Value, double>> contents;
  for (unsigned int i = 0; i < stats.GetNCats(); ++i) {
    contents.emplace_back(stats.GetCatVal(i), stats.GetCatWeight(i));
  }
  return contents;
}

// The expected contents: each row is (n, weight) for the category `Of(n)`.
template <typename Stats>
std::vector<std::pair<typename CatTraits<Stats>::Value, double>> Expected(
    std::initializer_list<std::pair<int, double>> rows) {
  std::vector<std::pair<typename CatTraits<Stats>::Value, double>> contents;
  for (const auto& [n, weight] : rows) contents.emplace_back(CatTraits<Stats>::Of(n), weight);
  return contents;
}

// Whether every category's number, value datum and weight agree with its
// position, as the three containers' invariants require.
template <typename Stats>
::testing::AssertionResult Consistent(const Stats& stats) {
  for (unsigned int i = 0; i < stats.GetNCats(); ++i) {
    if (stats.GetCatNum(stats.GetCatVal(i)) != i) {
      return ::testing::AssertionFailure()
             << "category " << i << " is found as number " << stats.GetCatNum(stats.GetCatVal(i));
    }
    const DMDatum datum = stats.GetCatValDatum(i);
    if (datum.IsNull() || datum.GetType() != CatTraits<Stats>::kType ||
        datum.Compare(DMDatum(stats.GetCatVal(i))) != 0) {
      return ::testing::AssertionFailure() << "the datum of category " << i << " differs";
    }
  }
  return ::testing::AssertionSuccess();
}

// Fills a table with `Of(n)` for each (n, weight) row, in order.
template <typename Stats>
Stats Filled(std::initializer_list<std::pair<int, double>> rows) {
  Stats stats;
  for (const auto& [n, weight] : rows) EXPECT_TRUE(stats.Update(CatTraits<Stats>::Of(n), weight));
  return stats;
}

// The text that `stats` writes under a new root element.
std::string Written(const DMCatStats& stats) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  stats.AddToTree(document, created);
  EXPECT_NE(created, nullptr);
  if (created != nullptr) {
    EXPECT_EQ(dmtest::XmlTest::NameOf(*created), "DiscreteStatistics");
  }
  return dmtest::XmlTest::WithoutDeclaration(document);
}

template <typename Stats>
void ExpectSameTable(const Stats& written, const Stats& read) {
  EXPECT_EQ(Contents(read), Contents(written));
  EXPECT_EQ(read.GetSumWeights(), written.GetSumWeights());
  EXPECT_TRUE(Consistent(read));
}

template <typename Stats>
class DMCatStatsTypedTest : public dmtest::XmlTest {};

struct ClassNames {
  template <typename Stats>
  static std::string GetName(int /*index*/) {
    if (std::is_same_v<Stats, DMCatStatsInt>) return "Int";
    if (std::is_same_v<Stats, DMCatStatsDbl>) return "Dbl";
    return "Str";
  }
};

using StatsClasses = ::testing::Types<DMCatStatsInt, DMCatStatsDbl, DMCatStatsStr>;
TYPED_TEST_SUITE(DMCatStatsTypedTest, StatsClasses, ClassNames);

// ---------------------------------------------------------------------------
// Updates

TYPED_TEST(DMCatStatsTypedTest, DefaultIsAnEmptyTable) {
  const TypeParam stats;
  EXPECT_EQ(stats.GetNCats(), 0U);
  EXPECT_EQ(stats.GetSumWeights(), 0.0);
  EXPECT_EQ(stats.GetCatNum(CatTraits<TypeParam>::Of(0)), kUnknown);
}

TYPED_TEST(DMCatStatsTypedTest, UpdateRefusesNegativeAndNotANumberWeightsAndCreatesNothing) {
  using T = CatTraits<TypeParam>;
  TypeParam stats;
  EXPECT_FALSE(stats.Update(T::Of(5), -1.0));
  EXPECT_FALSE(stats.Update(T::Of(5), kNaN));
  EXPECT_FALSE(stats.Update(T::Of(5), -std::numeric_limits<double>::infinity()));
  EXPECT_EQ(stats.GetNCats(), 0U);
  EXPECT_EQ(stats.GetCatNum(T::Of(5)), kUnknown);
}

TYPED_TEST(DMCatStatsTypedTest, UpdateWithWeightZeroCreatesTheCategory) {
  using T = CatTraits<TypeParam>;
  TypeParam stats;
  EXPECT_TRUE(stats.Update(T::Of(5), 0.0));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{5, 0.0}}));
  EXPECT_EQ(stats.GetCatNum(T::Of(5)), 0U);
}

TYPED_TEST(DMCatStatsTypedTest, RefusedUpdateOfAKnownCategoryChangesNothing) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{5, 2.0}});
  EXPECT_FALSE(stats.Update(T::Of(5), -1.0));
  EXPECT_FALSE(stats.Update(T::Of(5), kNaN));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{5, 2.0}}));
}

TYPED_TEST(DMCatStatsTypedTest, UpdateNumbersCategoriesInOrderOfFirstAppearanceAndAddsWeights) {
  using T = CatTraits<TypeParam>;
  TypeParam stats;
  EXPECT_TRUE(stats.Update(T::Of(3), 1.0));
  EXPECT_TRUE(stats.Update(T::Of(1), 2.0));
  EXPECT_TRUE(stats.Update(T::Of(3), 4.0));
  EXPECT_EQ(stats.GetNCats(), 2U);
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{3, 5.0}, {1, 2.0}}));
  EXPECT_EQ(stats.GetCatNum(T::Of(3)), 0U);
  EXPECT_EQ(stats.GetCatNum(T::Of(1)), 1U);
  EXPECT_EQ(stats.GetCatNum(T::Of(7)), kUnknown);
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, UpdateIfKnownAddsOnlyToExistingCategories) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{3, 1.0}});
  EXPECT_FALSE(stats.UpdateIfKnown(T::Of(4), 1.0));
  EXPECT_TRUE(stats.UpdateIfKnown(T::Of(3), 2.5));
  EXPECT_TRUE(stats.UpdateIfKnown(T::Of(3), 0.0));
  EXPECT_FALSE(stats.UpdateIfKnown(T::Of(3), -1.0));
  EXPECT_FALSE(stats.UpdateIfKnown(T::Of(3), kNaN));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{3, 3.5}}));
  EXPECT_FALSE(TypeParam().UpdateIfKnown(T::Of(3), 1.0));
}

TYPED_TEST(DMCatStatsTypedTest, SumOfWeightsAddsEveryCategory) {
  const auto stats = Filled<TypeParam>({{1, 0.5}, {2, 0.25}, {3, 2.0}});
  EXPECT_EQ(stats.GetSumWeights(), 2.75);
}

TYPED_TEST(DMCatStatsTypedTest, ClearSumsKeepsTheCategoriesWithWeightZero) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{2, 1.0}, {1, 3.0}});
  stats.ClearSums();
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{2, 0.0}, {1, 0.0}}));
  EXPECT_EQ(stats.GetSumWeights(), 0.0);
  EXPECT_EQ(stats.GetCatNum(T::Of(1)), 1U);
}

TYPED_TEST(DMCatStatsTypedTest, IndexesOutOfRangeGiveTheSentinels) {
  using T = CatTraits<TypeParam>;
  const auto stats = Filled<TypeParam>({{1, 1.0}, {2, 1.0}});
  EXPECT_EQ(stats.GetCatWeight(stats.GetNCats()), -1.0);
  EXPECT_EQ(stats.GetCatWeight(kUnknown), -1.0);
  EXPECT_EQ(stats.GetCatVal(stats.GetNCats()), T::OutOfRange());
  const DMDatum datum = stats.GetCatValDatum(stats.GetNCats());
  EXPECT_TRUE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), T::kType);
  EXPECT_TRUE(TypeParam().GetCatValDatum(0).IsNull());
  EXPECT_EQ(TypeParam().GetCatValDatum(0).GetType(), T::kType);
}

TYPED_TEST(DMCatStatsTypedTest, CategoryValuesComeBackAsDatumsOfTheClassType) {
  using T = CatTraits<TypeParam>;
  const auto stats = Filled<TypeParam>({{4, 1.0}, {2, 1.0}});
  const DMDatum datum = stats.GetCatValDatum(1);
  EXPECT_FALSE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), T::kType);
  EXPECT_EQ(datum.Compare(DMDatum(T::Of(2))), 0);
}

// ---------------------------------------------------------------------------
// Pooling

TYPED_TEST(DMCatStatsTypedTest, PoolingIntoAnEmptyTableAddsCategoriesInAscendingOrder) {
  const auto other = Filled<TypeParam>({{9, 1.0}, {2, 3.0}});
  TypeParam stats;
  stats.Pool(other);
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{2, 3.0}, {9, 1.0}}));
  EXPECT_TRUE(Consistent(stats));
  EXPECT_EQ(Contents(other), Expected<TypeParam>({{9, 1.0}, {2, 3.0}}));
}

TYPED_TEST(DMCatStatsTypedTest, PoolingAddsUpKnownCategoriesAndAppendsNewOnesInAscendingOrder) {
  auto stats = Filled<TypeParam>({{5, 1.0}, {3, 1.0}});
  const auto other = Filled<TypeParam>({{8, 1.0}, {3, 2.0}, {1, 4.0}, {6, 0.5}});
  stats.Pool(other);
  EXPECT_EQ(Contents(stats),
            Expected<TypeParam>({{5, 1.0}, {3, 3.0}, {1, 4.0}, {6, 0.5}, {8, 1.0}}));
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, PoolingAnEmptyTableChangesNothing) {
  auto stats = Filled<TypeParam>({{5, 1.0}, {3, 1.0}});
  stats.Pool(TypeParam());
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{5, 1.0}, {3, 1.0}}));
}

TYPED_TEST(DMCatStatsTypedTest, PoolingATableIntoItselfDoublesEveryWeight) {
  auto stats = Filled<TypeParam>({{5, 1.0}, {3, 2.0}});
  stats.Pool(stats);
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{5, 2.0}, {3, 4.0}}));
}

// ---------------------------------------------------------------------------
// Reordering

TYPED_TEST(DMCatStatsTypedTest, ReorderDescendingSortsTheValuesAndMovesTheWeights) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{1, 10.0}, {3, 30.0}, {2, 20.0}});
  stats.ReorderCats(false);
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{3, 30.0}, {2, 20.0}, {1, 10.0}}));
  EXPECT_EQ(stats.GetCatNum(T::Of(3)), 0U);
  EXPECT_EQ(stats.GetCatNum(T::Of(1)), 2U);
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, ReorderAscendingSortsTheValuesAndMovesTheWeights) {
  auto stats = Filled<TypeParam>({{4, 40.0}, {0, 0.5}, {9, 90.0}, {2, 20.0}});
  stats.ReorderCats(true);
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{0, 0.5}, {2, 20.0}, {4, 40.0}, {9, 90.0}}));
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, ReorderingAnEmptyTableDoesNothing) {
  TypeParam stats;
  stats.ReorderCats(true);
  stats.ReorderCats(false);
  EXPECT_EQ(stats.GetNCats(), 0U);
}

TYPED_TEST(DMCatStatsTypedTest, NewCategoriesAfterReorderingGetTheNextNumber) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{3, 1.0}, {1, 1.0}});
  stats.ReorderCats(true);
  EXPECT_TRUE(stats.Update(T::Of(2), 5.0));
  EXPECT_TRUE(stats.Update(T::Of(3), 1.0));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{1, 1.0}, {3, 2.0}, {2, 5.0}}));
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, SetLastCategoryWithAnUnknownValueChangesNothing) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{1, 1.0}, {2, 2.0}, {3, 3.0}});
  stats.SetLastCategory(T::Of(7));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{1, 1.0}, {2, 2.0}, {3, 3.0}}));
  TypeParam empty;
  empty.SetLastCategory(T::Of(7));
  EXPECT_EQ(empty.GetNCats(), 0U);
}

TYPED_TEST(DMCatStatsTypedTest, SetLastCategoryMovesTheFirstCategoryToTheEnd) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{1, 1.0}, {2, 2.0}, {3, 3.0}});
  stats.SetLastCategory(T::Of(1));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{2, 2.0}, {3, 3.0}, {1, 1.0}}));
  EXPECT_EQ(stats.GetCatNum(T::Of(1)), 2U);
  EXPECT_EQ(stats.GetCatNum(T::Of(2)), 0U);
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, SetLastCategoryKeepsTheOrderOfTheOthers) {
  using T = CatTraits<TypeParam>;
  auto stats = Filled<TypeParam>({{5, 5.0}, {2, 2.0}, {8, 8.0}, {1, 1.0}});
  stats.SetLastCategory(T::Of(2));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{5, 5.0}, {8, 8.0}, {1, 1.0}, {2, 2.0}}));
  stats.SetLastCategory(T::Of(2));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{5, 5.0}, {8, 8.0}, {1, 1.0}, {2, 2.0}}));
  EXPECT_TRUE(Consistent(stats));
}

// ---------------------------------------------------------------------------
// Category-number version, copies

TYPED_TEST(DMCatStatsTypedTest, CatNumVersionHasTheCategoryNumbersAsRealCategories) {
  const auto stats = Filled<TypeParam>({{7, 1.5}, {2, 0.0}, {4, 3.0}});
  const DMCatStats& base = stats;
  const std::unique_ptr<DMCatStatsDbl> numbers(base.CatNumVersion());
  ASSERT_NE(numbers, nullptr);
  EXPECT_EQ(Contents(*numbers),
            (std::vector<std::pair<double, double>>{{0.0, 1.5}, {1.0, 0.0}, {2.0, 3.0}}));
  const std::unique_ptr<DMCatStatsDbl> none(TypeParam().CatNumVersion());
  EXPECT_EQ(none->GetNCats(), 0U);
}

TYPED_TEST(DMCatStatsTypedTest, CopiesClonesAndAssignmentsAreDeep) {
  using T = CatTraits<TypeParam>;
  auto original = Filled<TypeParam>({{3, 1.0}, {1, 2.0}});
  const TypeParam copy(original);
  const DMCatStats& base = original;
  const std::unique_ptr<DMCatStats> clone(base.Clone());
  TypeParam assigned;
  assigned = original;
  original.Update(T::Of(3), 10.0);
  original.Update(T::Of(9), 1.0);
  original.ReorderCats(true);
  const auto* cloned = dynamic_cast<const TypeParam*>(clone.get());
  ASSERT_NE(cloned, nullptr);
  for (const TypeParam* stats : {&copy, cloned, static_cast<const TypeParam*>(&assigned)}) {
    EXPECT_EQ(Contents(*stats), Expected<TypeParam>({{3, 1.0}, {1, 2.0}}));
    EXPECT_EQ(stats->GetCatNum(T::Of(9)), kUnknown);
    EXPECT_TRUE(Consistent(*stats));
  }
}

TYPED_TEST(DMCatStatsTypedTest, SelfAssignmentChangesNothing) {
  auto stats = Filled<TypeParam>({{3, 1.0}, {1, 2.0}});
  const TypeParam& alias = stats;
  stats = alias;
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{3, 1.0}, {1, 2.0}}));
}

// ---------------------------------------------------------------------------
// XML

TYPED_TEST(DMCatStatsTypedTest, EmptyTableWritesAnEmptyElement) {
  EXPECT_EQ(Written(TypeParam()), "<Root><DiscreteStatistics/></Root>");
}

TYPED_TEST(DMCatStatsTypedTest, WritesOneCategoryChildPerCategoryInNumberOrder) {
  using T = CatTraits<TypeParam>;
  const auto stats = Filled<TypeParam>({{3, 2.5}, {1, 0.0}});
  EXPECT_EQ(Written(stats), "<Root><DiscreteStatistics><Category category=\"" + T::Text(3) +
                                "\" sumFreqWts=\"2.5\"/><Category category=\"" + T::Text(1) +
                                "\" sumFreqWts=\"0\"/></DiscreteStatistics></Root>");
}

TYPED_TEST(DMCatStatsTypedTest, WritingUnderAHandleWithoutElementLeavesCreatedNull) {
  const auto stats = Filled<TypeParam>({{3, 2.5}});
  DMXMLWrapper nothing;
  DMXMLWrapper* created = &nothing;
  stats.AddToTree(nothing, created);
  EXPECT_EQ(created, nullptr);
}

TYPED_TEST(DMCatStatsTypedTest, RoundTripsThroughXml) {
  dmtest::ExpectXmlRoundTrip(TypeParam(), ExpectSameTable<TypeParam>);
  dmtest::ExpectXmlRoundTrip(Filled<TypeParam>({{3, 2.5}, {1, 0.0}, {9, 1e-3}, {0, 123456.0}}),
                             ExpectSameTable<TypeParam>);
}

TYPED_TEST(DMCatStatsTypedTest, ReadsCategoriesInDocumentOrder) {
  using T = CatTraits<TypeParam>;
  const std::string document = "<DiscreteStatistics><Category category=\"" + T::Text(7) +
                               "\" sumFreqWts=\"1.5\"/><Category category=\"" + T::Text(2) +
                               "\" sumFreqWts=\"3\"/></DiscreteStatistics>";
  const TypeParam stats(this->Parse(document.c_str()));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{7, 1.5}, {2, 3.0}}));
  EXPECT_TRUE(Consistent(stats));
}

TYPED_TEST(DMCatStatsTypedTest, AbsentWeightReadsAsZero) {
  using T = CatTraits<TypeParam>;
  const std::string document =
      "<DiscreteStatistics><Category category=\"" + T::Text(4) + "\"/></DiscreteStatistics>";
  const TypeParam stats(this->Parse(document.c_str()));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{4, 0.0}}));
}

TYPED_TEST(DMCatStatsTypedTest, ReadsOnlyDirectCategoryChildren) {
  using T = CatTraits<TypeParam>;
  const std::string document = "<DiscreteStatistics><Other/><Category category=\"" + T::Text(4) +
                               "\" sumFreqWts=\"1\"><Category category=\"" + T::Text(5) +
                               "\"/></Category><Group><Category category=\"" + T::Text(6) +
                               "\"/></Group></DiscreteStatistics>";
  const TypeParam stats(this->Parse(document.c_str()));
  EXPECT_EQ(Contents(stats), Expected<TypeParam>({{4, 1.0}}));
}

struct BadChild {
  const char* name;
  // The second child, after a valid first one; "%" stands for the attribute
  // text of category 2.
  const char* child;
};

TYPED_TEST(DMCatStatsTypedTest, AnyInvalidChildGivesAnEmptyTable) {
  using T = CatTraits<TypeParam>;
  const BadChild kRows[] = {
      {"repeated category", R"(<Category category="%" sumFreqWts="1"/>)"},
      {"repeated category without weight", R"(<Category category="%"/>)"},
      {"negative weight", R"(<Category category="#" sumFreqWts="-1"/>)"},
      {"non-numeric weight", R"(<Category category="#" sumFreqWts="many"/>)"},
      {"infinite weight", R"(<Category category="#" sumFreqWts="INF"/>)"},
      {"not-a-number weight", R"(<Category category="#" sumFreqWts="NaN"/>)"},
      {"missing category", R"(<Category sumFreqWts="1"/>)"},
  };
  for (const BadChild& row : kRows) {
    SCOPED_TRACE(row.name);
    std::string child = row.child;
    if (const auto at = child.find('%'); at != std::string::npos) child.replace(at, 1, T::Text(2));
    if (const auto at = child.find('#'); at != std::string::npos) child.replace(at, 1, T::Text(3));
    const std::string document = "<DiscreteStatistics><Category category=\"" + T::Text(2) +
                                 "\" sumFreqWts=\"1\"/>" + child + "</DiscreteStatistics>";
    const TypeParam stats(this->Parse(document.c_str()));
    EXPECT_EQ(stats.GetNCats(), 0U);
    EXPECT_EQ(stats.GetCatNum(T::Of(2)), kUnknown);
  }
}

TYPED_TEST(DMCatStatsTypedTest, AHandleWithoutElementReadsAsAnEmptyTable) {
  const DMXMLWrapper nothing;
  EXPECT_EQ(TypeParam(nothing).GetNCats(), 0U);
}

// ---------------------------------------------------------------------------
// Many categories: the index against a plain ordered model

// The table as the ordered map of value to number, the values and the weights,
// operated on step by step as the operations are defined.
template <typename Value>
struct OrderedModel {
  std::map<Value, unsigned int> index;
  std::vector<Value> values;
  std::vector<double> weights;

  bool Update(const Value& value, double weight) {
    if (!(weight >= 0.0)) return false;
    if (const auto found = index.find(value); found != index.end()) {
      weights[found->second] += weight;
      return true;
    }
    index.emplace(value, static_cast<unsigned int>(values.size()));
    values.push_back(value);
    weights.push_back(weight);
    return true;
  }
  bool UpdateIfKnown(const Value& value, double weight) {
    if (!(weight >= 0.0) || index.count(value) == 0) return false;
    weights[index[value]] += weight;
    return true;
  }
  void Pool(const OrderedModel& other) {
    for (const auto& [value, number] : other.index) Update(value, other.weights[number]);
  }
  void Reorder(bool ascending) {
    std::sort(values.begin(), values.end());
    if (!ascending) std::reverse(values.begin(), values.end());
    Renumber();
  }
  void SetLast(const Value& value) {
    const auto found = std::find(values.begin(), values.end(), value);
    if (found == values.end()) return;
    std::rotate(found, found + 1, values.end());
    Renumber();
  }
  void Renumber() {
    std::vector<double> renumbered(values.size());
    for (std::size_t k = 0; k < values.size(); ++k) {
      renumbered[k] = weights[index[values[k]]];
      index[values[k]] = static_cast<unsigned int>(k);
    }
    weights.swap(renumbered);
  }
};

template <typename Stats, typename Value>
::testing::AssertionResult Matches(const Stats& stats, const OrderedModel<Value>& model) {
  if (stats.GetNCats() != model.values.size()) {
    return ::testing::AssertionFailure()
           << stats.GetNCats() << " categories, expected " << model.values.size();
  }
  for (unsigned int i = 0; i < stats.GetNCats(); ++i) {
    if (!(stats.GetCatVal(i) == model.values[i]) || stats.GetCatWeight(i) != model.weights[i]) {
      return ::testing::AssertionFailure() << "category " << i << " differs";
    }
    if (stats.GetCatNum(model.values[i]) != i) {
      return ::testing::AssertionFailure() << "category " << i << " is not found by value";
    }
  }
  return ::testing::AssertionSuccess();
}

// Random operations on a table and on the model, compared after each step.
template <typename Stats, typename Make>
void ExpectSameAsOrderedModel(Make make, int range, int steps, unsigned seed) {
  using Value = decltype(make(0));
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> values(0, range - 1);
  std::uniform_int_distribution<int> operations(0, 99);
  std::uniform_real_distribution<double> weights(0.0, 4.0);
  Stats stats;
  OrderedModel<Value> model;
  for (int step = 0; step < steps; ++step) {
    const int operation = operations(random);
    const Value value = make(values(random));
    const double weight = operation % 7 == 0 ? -1.0 : weights(random);
    if (operation < 70) {
      ASSERT_EQ(stats.Update(value, weight), model.Update(value, weight));
    } else if (operation < 85) {
      ASSERT_EQ(stats.UpdateIfKnown(value, weight), model.UpdateIfKnown(value, weight));
    } else if (operation < 90) {
      Stats other;
      OrderedModel<Value> otherModel;
      for (int k = 0; k < 20; ++k) {
        const Value added = make(values(random));
        other.Update(added, 1.0 + k);
        otherModel.Update(added, 1.0 + k);
      }
      stats.Pool(other);
      model.Pool(otherModel);
    } else if (operation < 93) {
      stats.ReorderCats(operation % 2 == 0);
      model.Reorder(operation % 2 == 0);
    } else if (operation < 96) {
      stats.SetLastCategory(value);
      model.SetLast(value);
    } else if (operation < 97) {
      stats.ClearSums();
      std::fill(model.weights.begin(), model.weights.end(), 0.0);
    } else {
      ASSERT_EQ(stats.GetCatNum(value),
                model.index.count(value) == 0 ? kUnknown : model.index[value]);
    }
    if (step % 97 == 0 || step == steps - 1) {
      ASSERT_TRUE(Matches(stats, model)) << "after step " << step;
      const Value probe = make(values(random));
      const auto found = model.index.find(probe);
      ASSERT_EQ(stats.GetCatNum(probe), found == model.index.end() ? kUnknown : found->second);
    }
  }
}

TEST(DMCatStatsTest, IntegerTablesBehaveAsTheOrderedModel) {
  const auto spread = [](int n) { return (static_cast<long long>(n) - 500) * 1000003LL; };
  ExpectSameAsOrderedModel<DMCatStatsInt>(spread, 40, 3000, 1);
  ExpectSameAsOrderedModel<DMCatStatsInt>(spread, 3000, 8000, 2);
  ExpectSameAsOrderedModel<DMCatStatsInt>([](int n) { return static_cast<long long>(n) << 40; },
                                          2000, 8000, 3);
}

TEST(DMCatStatsTest, RealTablesBehaveAsTheOrderedModel) {
  const auto spread = [](int n) { return n == 0 ? -0.0 : (n - 700) * 0.37; };
  ExpectSameAsOrderedModel<DMCatStatsDbl>(spread, 40, 3000, 4);
  ExpectSameAsOrderedModel<DMCatStatsDbl>(spread, 3000, 8000, 5);
}

TEST(DMCatStatsTest, TextTablesBehaveAsTheOrderedModel) {
  const auto text = [](int n) {
    static const char* const kPrefixes[] = {"", "a", "A", "\xC3\xA9", "zz", "a\xE2\x82\xAC"};
    return std::string(kPrefixes[n % 6]) + std::to_string(n / 6);
  };
  ExpectSameAsOrderedModel<DMCatStatsStr>(text, 40, 3000, 6);
  ExpectSameAsOrderedModel<DMCatStatsStr>(text, 3000, 8000, 7);
}

TEST(DMCatStatsTest, AHundredThousandCategoriesKeepTheirNumbersAndPoolInAscendingOrder) {
  constexpr int kCount = 100000;
  std::vector<long long> values(kCount);
  std::mt19937_64 random(11);
  for (long long& value : values) value = static_cast<long long>(random());
  DMCatStatsInt stats;
  for (int i = 0; i < kCount; ++i) ASSERT_TRUE(stats.Update(values[i], i));
  ASSERT_EQ(stats.GetNCats(), static_cast<unsigned int>(kCount));
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(stats.GetCatNum(values[i]), static_cast<unsigned int>(i));
    ASSERT_EQ(stats.GetCatWeight(i), static_cast<double>(i));
  }
  DMCatStatsInt pooled;
  pooled.Pool(stats);
  std::vector<long long> sorted = values;
  std::sort(sorted.begin(), sorted.end());
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(pooled.GetCatVal(i), sorted[i]);
    ASSERT_EQ(pooled.GetCatWeight(i), stats.GetCatWeight(stats.GetCatNum(sorted[i])));
  }
}

TEST(DMCatStatsTest, AHundredThousandTextCategoriesKeepTheirNumbers) {
  constexpr int kCount = 100000;
  DMCatStatsStr stats;
  const auto text = [](int n) {
    // Every fifth text is too long for the string's own buffer.
    return "t" + std::to_string(n * 7919 % 1000003) + (n % 5 == 0 ? "-with-a-longer-tail" : "");
  };
  for (int i = 0; i < kCount; ++i) ASSERT_TRUE(stats.Update(text(i), 1.0));
  for (int i = 0; i < kCount; i += 2) ASSERT_TRUE(stats.Update(text(i), 1.0));
  ASSERT_EQ(stats.GetNCats(), static_cast<unsigned int>(kCount));
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(stats.GetCatNum(text(i)), static_cast<unsigned int>(i));
    ASSERT_EQ(stats.GetCatWeight(i), i % 2 == 0 ? 2.0 : 1.0);
  }
  EXPECT_EQ(stats.GetCatNum("t-unknown"), kUnknown);
}

TEST(DMCatStatsTest, TextsOfSixteenMebibytesAndMoreAreCategoriesLikeAnyOther) {
  // Sizes from 2^24 - 1 bytes up are kept apart from the index's slots.
  const std::string huge(std::size_t{1} << 24, 'x');
  std::string hugeToo = huge;
  hugeToo.back() = 'y';
  const std::string almost((std::size_t{1} << 24) - 2, 'x');
  DMCatStatsStr stats;
  stats.Update(huge, 1.0);
  stats.Update(almost, 2.0);
  stats.Update(hugeToo, 3.0);
  stats.Update(huge, 4.0);
  stats.Update(std::string(huge.size() - 1, 'x'), 5.0);
  ASSERT_EQ(stats.GetNCats(), 4U);
  EXPECT_EQ(stats.GetCatNum(huge), 0U);
  EXPECT_EQ(stats.GetCatNum(almost), 1U);
  EXPECT_EQ(stats.GetCatNum(hugeToo), 2U);
  EXPECT_EQ(stats.GetCatWeight(0), 5.0);
  EXPECT_EQ(stats.GetCatVal(3).size(), (std::size_t{1} << 24) - 1);
  EXPECT_EQ(stats.GetCatNum(huge + "x"), kUnknown);
}

// ---------------------------------------------------------------------------
// Integers

TEST(DMCatStatsIntTest, OutOfRangeValueIsMinusOne) { EXPECT_EQ(DMCatStatsInt().GetCatVal(0), -1); }

TEST(DMCatStatsIntTest, IntegersBeyondTwoToThe53StayDistinctAndRoundTrip) {
  DMCatStatsInt stats;
  stats.Update(9007199254740993LL, 1.0);
  stats.Update(9007199254740992LL, 2.0);
  stats.Update(LLONG_MIN, 3.0);
  stats.Update(LLONG_MAX, 4.0);
  EXPECT_EQ(stats.GetNCats(), 4U);
  const std::string text = dmtest::ExpectXmlRoundTrip(stats, ExpectSameTable<DMCatStatsInt>);
  EXPECT_EQ(text,
            "<Root><DiscreteStatistics>"
            "<Category category=\"9007199254740993\" sumFreqWts=\"1\"/>"
            "<Category category=\"9007199254740992\" sumFreqWts=\"2\"/>"
            "<Category category=\"-9223372036854775808\" sumFreqWts=\"3\"/>"
            "<Category category=\"9223372036854775807\" sumFreqWts=\"4\"/>"
            "</DiscreteStatistics></Root>");
  EXPECT_EQ(stats.GetCatValDatum(0).GetInteger(), 9007199254740993LL);
}

class DMCatStatsIntXmlTest : public dmtest::XmlTest {};

TEST_F(DMCatStatsIntXmlTest, NonNumericCategoryGivesAnEmptyTable) {
  const DMCatStatsInt stats(Parse(
      R"(<DiscreteStatistics><Category category="1"/><Category category="one"/></DiscreteStatistics>)"));
  EXPECT_EQ(stats.GetNCats(), 0U);
}

TEST_F(DMCatStatsIntXmlTest, IntegerCategoriesAreReadAsTheHandleReadsIntegers) {
  // The handle's integer reader takes a leading number; "7.9" is 7.
  const DMCatStatsInt stats(Parse(
      R"(<DiscreteStatistics><Category category=" 12"/><Category category="7.9"/></DiscreteStatistics>)"));
  EXPECT_EQ(Contents(stats), (std::vector<std::pair<long long, double>>{{12, 0.0}, {7, 0.0}}));
}

// ---------------------------------------------------------------------------
// Reals

TEST(DMCatStatsDblTest, OutOfRangeValueIsMinusOne) {
  EXPECT_EQ(DMCatStatsDbl().GetCatVal(0), -1.0);
}

TEST(DMCatStatsDblTest, BothZerosAreOneCategoryThatKeepsItsFirstSign) {
  DMCatStatsDbl stats;
  stats.Update(-0.0, 1.0);
  stats.Update(0.0, 2.0);
  EXPECT_EQ(stats.GetNCats(), 1U);
  EXPECT_TRUE(std::signbit(stats.GetCatVal(0)));
  EXPECT_EQ(stats.GetCatWeight(0), 3.0);
  EXPECT_EQ(stats.GetCatNum(0.0), 0U);
  EXPECT_EQ(stats.GetCatNum(-0.0), 0U);
  EXPECT_TRUE(stats.UpdateIfKnown(0.0, 1.0));
}

TEST(DMCatStatsDblTest, SetLastCategoryFindsAZeroOfEitherSign) {
  DMCatStatsDbl stats;
  stats.Update(0.0, 1.0);
  stats.Update(1.0, 1.0);
  stats.SetLastCategory(-0.0);
  EXPECT_EQ(stats.GetCatVal(0), 1.0);
  EXPECT_FALSE(std::signbit(stats.GetCatVal(1)));
}

TEST(DMCatStatsDblTest, NegativeZeroRoundTripsThroughXml) {
  DMCatStatsDbl stats;
  stats.Update(-0.0, 1.0);
  stats.Update(-1.5, 2.0);
  const std::string text = dmtest::ExpectXmlRoundTrip(
      stats, [](const DMCatStatsDbl& written, const DMCatStatsDbl& read) {
        ExpectSameTable(written, read);
        EXPECT_TRUE(std::signbit(read.GetCatVal(0)));
      });
  EXPECT_EQ(text,
            "<Root><DiscreteStatistics><Category category=\"-0\" sumFreqWts=\"1\"/>"
            "<Category category=\"-1.5\" sumFreqWts=\"2\"/></DiscreteStatistics></Root>");
}

TEST(DMCatStatsDblTest, NotANumberValuesFormOneCategorySortedAboveEveryNumber) {
  DMCatStatsDbl stats;
  stats.Update(kNaN, 1.0);
  stats.Update(std::numeric_limits<double>::infinity(), 1.0);
  stats.Update(-kNaN, 2.0);
  stats.Update(1.0, 1.0);
  EXPECT_EQ(stats.GetNCats(), 3U);
  EXPECT_EQ(stats.GetCatWeight(0), 3.0);
  EXPECT_EQ(stats.GetCatNum(kNaN), 0U);
  stats.ReorderCats(true);
  EXPECT_EQ(stats.GetCatVal(0), 1.0);
  EXPECT_EQ(stats.GetCatVal(1), std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(stats.GetCatVal(2)));
  // Found by the index, but never by the plain equality of SetLastCategory.
  stats.SetLastCategory(kNaN);
  EXPECT_TRUE(std::isnan(stats.GetCatVal(2)));
}

TEST(DMCatStatsDblTest, CategoriesAreWrittenWithFifteenSignificantDigits) {
  DMCatStatsDbl stats;
  stats.Update(0.1 + 0.2, 1.0);
  EXPECT_EQ(Written(stats),
            "<Root><DiscreteStatistics><Category category=\"0.3\" sumFreqWts=\"1\"/>"
            "</DiscreteStatistics></Root>");
}

TEST(DMCatStatsDblTest, CategoriesThatAgreeInFifteenDigitsReadBackAsARepeatedCategory) {
  DMCatStatsDbl stats;
  stats.Update(0.1 + 0.2, 1.0);
  stats.Update(0.3, 1.0);
  EXPECT_EQ(stats.GetNCats(), 2U);
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  stats.AddToTree(document, created);
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(DMCatStatsDbl(*created).GetNCats(), 0U);
}

class DMCatStatsDblXmlTest : public dmtest::XmlTest {};

TEST_F(DMCatStatsDblXmlTest, SpecialOrUnreadableCategoriesGiveAnEmptyTable) {
  for (const char* category : {"INF", "-INF", "NaN", "x", ""}) {
    SCOPED_TRACE(category);
    const std::string document =
        std::string(R"(<DiscreteStatistics><Category category="1"/><Category category=")") +
        category + R"("/></DiscreteStatistics>)";
    EXPECT_EQ(DMCatStatsDbl(Parse(document.c_str())).GetNCats(), 0U);
  }
}

TEST_F(DMCatStatsDblXmlTest, NegativeZeroWeightIsNotNegative) {
  const DMCatStatsDbl stats(Parse(
      R"(<DiscreteStatistics><Category category="1" sumFreqWts="-0"/></DiscreteStatistics>)"));
  EXPECT_EQ(stats.GetNCats(), 1U);
  EXPECT_EQ(stats.GetCatWeight(0), 0.0);
}

TEST_F(DMCatStatsDblXmlTest, ZerosOfBothSignsAreARepeatedCategory) {
  const DMCatStatsDbl stats(Parse(
      R"(<DiscreteStatistics><Category category="0"/><Category category="-0"/></DiscreteStatistics>)"));
  EXPECT_EQ(stats.GetNCats(), 0U);
}

// ---------------------------------------------------------------------------
// Texts

// Orders texts by length, then byte-wise.
class ShorterFirst : public DMCatStrLess {
 public:
  bool operator()(const std::string& left, const std::string& right) const override {
    if (left.size() != right.size()) return left.size() < right.size();
    return left < right;
  }
};

// Orders texts by their first byte only, so texts with the same first byte
// are equivalent.
class FirstByteOnly : public DMCatStrLess {
 public:
  bool operator()(const std::string& left, const std::string& right) const override {
    const unsigned char l = left.empty() ? 0 : static_cast<unsigned char>(left[0]);
    const unsigned char r = right.empty() ? 0 : static_cast<unsigned char>(right[0]);
    return l < r;
  }
};

TEST(DMCatStatsStrTest, OutOfRangeValueIsOneSharedEmptyText) {
  const DMCatStatsStr empty;
  DMCatStatsStr filled;
  filled.Update("a", 1.0);
  const std::string& first = empty.GetCatVal(0);
  const std::string& second = filled.GetCatVal(1);
  EXPECT_EQ(first, "");
  EXPECT_EQ(&first, &second);
  EXPECT_EQ(&first, &filled.GetCatVal(kUnknown));
}

TEST(DMCatStatsStrTest, TheEmptyTextIsACategoryOfItsOwn) {
  DMCatStatsStr stats;
  stats.Update("", 2.0);
  EXPECT_EQ(stats.GetNCats(), 1U);
  EXPECT_EQ(stats.GetCatNum(""), 0U);
  EXPECT_NE(&stats.GetCatVal(0), &stats.GetCatVal(1));
  EXPECT_STREQ(stats.GetCatValDatum(0).GetString(), "");
}

TEST(DMCatStatsStrTest, TextsOrderByteWiseWithAShorterPrefixFirst) {
  DMCatStatsStr stats;
  for (const char* text : {"\xC3\xA9t\xC3\xA9", "b", "Zebra", "ab", "a", "\xC3\x84pfel", ""}) {
    stats.Update(text, 1.0);
  }
  stats.ReorderCats(true);
  const std::vector<std::string> expected = {
      "", "Zebra", "a", "ab", "b", "\xC3\x84pfel", "\xC3\xA9t\xC3\xA9"};
  for (unsigned int i = 0; i < stats.GetNCats(); ++i) EXPECT_EQ(stats.GetCatVal(i), expected[i]);
  EXPECT_EQ(stats.GetNCats(), expected.size());
}

TEST(DMCatStatsStrTest, ReorderWithTheCallersOrder) {
  DMCatStatsStr stats;
  stats.Update("ccc", 3.0);
  stats.Update("a", 1.0);
  stats.Update("bb", 2.0);
  stats.Update("d", 4.0);
  ShorterFirst less;
  stats.ReorderCats(less);
  EXPECT_EQ(Contents(stats), (std::vector<std::pair<std::string, double>>{
                                 {"a", 1.0}, {"d", 4.0}, {"bb", 2.0}, {"ccc", 3.0}}));
  EXPECT_TRUE(Consistent(stats));
}

TEST(DMCatStatsStrTest, ReorderWithAnOrderThatTreatsTextsAsEquivalentKeepsEveryCategory) {
  DMCatStatsStr stats;
  stats.Update("b2", 1.0);
  stats.Update("a1", 2.0);
  stats.Update("b1", 3.0);
  stats.Update("a2", 4.0);
  FirstByteOnly less;
  stats.ReorderCats(less);
  ASSERT_EQ(stats.GetNCats(), 4U);
  EXPECT_EQ(stats.GetCatVal(0)[0], 'a');
  EXPECT_EQ(stats.GetCatVal(1)[0], 'a');
  EXPECT_EQ(stats.GetCatVal(2)[0], 'b');
  EXPECT_EQ(stats.GetCatVal(3)[0], 'b');
  EXPECT_EQ(stats.GetSumWeights(), 10.0);
  EXPECT_TRUE(Consistent(stats));
}

TEST(DMCatStatsStrTest, NonAsciiTextsAndMarkupCharactersRoundTripThroughXml) {
  DMCatStatsStr stats;
  stats.Update("\xC3\xA9t\xC3\xA9", 1.0);
  stats.Update("\xE6\x97\xA5\xE6\x9C\xAC", 2.0);
  stats.Update("\xF0\x9F\x98\x80", 3.0);
  stats.Update("<a & \"b\" 'c'>", 4.0);
  stats.Update("", 5.0);
  stats.Update("  spaced  ", 6.0);
  const std::string text = dmtest::ExpectXmlRoundTrip(stats, ExpectSameTable<DMCatStatsStr>);
  EXPECT_EQ(text,
            "<Root><DiscreteStatistics>"
            "<Category category=\"\xC3\xA9t\xC3\xA9\" sumFreqWts=\"1\"/>"
            "<Category category=\"\xE6\x97\xA5\xE6\x9C\xAC\" sumFreqWts=\"2\"/>"
            "<Category category=\"\xF0\x9F\x98\x80\" sumFreqWts=\"3\"/>"
            // The serialiser escapes '<', '&' and '"' in attributes, not '>'.
            "<Category category=\"&lt;a &amp; &quot;b&quot; 'c'>\" sumFreqWts=\"4\"/>"
            "<Category category=\"\" sumFreqWts=\"5\"/>"
            "<Category category=\"  spaced  \" sumFreqWts=\"6\"/>"
            "</DiscreteStatistics></Root>");
}

TEST(DMCatStatsStrTest, CategoryDatumHoldsACopyOfTheText) {
  DMCatStatsStr stats;
  stats.Update("\xC3\xA9t\xC3\xA9", 1.0);
  const DMDatum datum = stats.GetCatValDatum(0);
  stats.Update("other", 1.0);
  stats.ReorderCats(false);
  EXPECT_STREQ(datum.GetString(), "\xC3\xA9t\xC3\xA9");
}

}  // namespace
