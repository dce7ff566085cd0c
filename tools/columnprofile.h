#ifndef DMCOMMON_TOOLS_COLUMNPROFILE_H
#define DMCOMMON_TOOLS_COLUMNPROFILE_H

// What one pass learns about a CSV column: the narrowest type that every
// non-empty cell fits, running statistics in that type, and the distinct
// texts up to a cap. Memory is bounded by the cap, not by the row count.

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "dmcommon/dmcommon.h"

namespace dmtool {

/// Counts distinct texts in order of first appearance until there are more
/// than `capacity` of them; then it forgets them all and only remembers that
/// it overflowed, so that a column of unique values costs no memory.
class CategoryCounter {
 public:
  explicit CategoryCounter(std::size_t capacity);
  // The index points into the texts, so a copy would point into the
  // original; moving keeps the deque's blocks and with them the texts.
  CategoryCounter(const CategoryCounter&) = delete;
  CategoryCounter& operator=(const CategoryCounter&) = delete;
  CategoryCounter(CategoryCounter&&) = default;
  CategoryCounter& operator=(CategoryCounter&&) = default;

  /// Counts one occurrence of `text`.
  void Add(std::string_view text) {
    if (overflowed_) return;
    if (const auto it = index_.find(text); it != index_.end()) {
      ++counts_[it->second];
      return;
    }
    Insert(text);
  }
  /// Whether more than `capacity` distinct texts were seen.
  bool Overflowed() const { return overflowed_; }
  /// The number of distinct texts; meaningless after an overflow.
  std::size_t Size() const { return counts_.size(); }
  /// The texts with their counts, in byte-wise ascending order of the texts.
  std::vector<std::pair<std::string_view, long long>> Sorted() const;
  /// Adds the counts of `other`, as if its texts had been added here: the
  /// result overflows when either did or when together they have more than
  /// `capacity` distinct texts.
  void Merge(const CategoryCounter& other);

 private:
  void Insert(std::string_view text);

  std::size_t capacity_;
  bool overflowed_ = false;
  // A deque keeps each text in place as it grows, so the views in `index_`
  // stay valid.
  std::deque<std::string> texts_;
  std::vector<long long> counts_;
  std::unordered_map<std::string_view, std::size_t> index_;
};

/// The type a column's cells share so far. The order is that of narrowing:
/// an integer column becomes real on its first fraction, and any column
/// becomes text on a cell that fits none of the others.
enum class ColumnKind {
  kEmpty,      ///< no non-empty cell yet
  kInteger,    ///< 64-bit integers
  kReal,       ///< decimal numbers (integers included)
  kDate,       ///< yyyy-mm-dd, kept as days since 1970-01-01
  kTime,       ///< hh:mm:ss, kept as seconds since midnight
  kTimestamp,  ///< yyyy-mm-dd hh:mm:ss, kept as seconds since 1970-01-01
  kString,     ///< anything else
};

/// The running profile of one column.
class ColumnProfile {
 public:
  /// `maxCategories` bounds the distinct texts remembered (at least two are,
  /// so that a two-valued column is always recognised).
  explicit ColumnProfile(std::size_t maxCategories);

  /// Takes one cell; the empty cell counts as missing.
  void Add(std::string_view cell);
  /// Takes the profile of the cells that follow this profile's in the same
  /// column, as if they had been added here one by one: counts, kind, lengths
  /// and categories come out the same; the statistics are pooled with `Pool`,
  /// which equals adding the values one by one up to the rounding of means
  /// and variances. Both must have the same category cap.
  void Merge(ColumnProfile&& later);

  ColumnKind Kind() const { return kind_; }
  long long Valid() const { return valid_; }
  long long Missing() const { return missing_; }
  /// The most digits after the decimal point of any real cell.
  unsigned Decimals() const { return decimals_; }
  /// The longest non-empty cell in bytes.
  std::size_t MaxLength() const { return maxLength_; }
  /// The statistics of an integer column.
  const DMContStatsInt& IntegerStats() const { return integerStats_; }
  /// The statistics of a real, date, time or timestamp column, in the units
  /// of `ColumnKind`.
  const DMContStatsDbl& RealStats() const { return realStats_; }
  /// The number of distinct values of a numeric, date or time column: 0, 1,
  /// 2, or 3 standing for "more than two".
  int DistinctValues() const { return distinct_; }
  /// Distinct value `i` (below `DistinctValues()`, at most 2) and its count.
  std::pair<double, long long> Value(int i) const { return {values_[i], valueCounts_[i]}; }
  /// The distinct texts of the column.
  const CategoryCounter& Texts() const { return texts_; }

 private:
  static ColumnKind Classify(std::string_view cell);
  void AddInteger(std::string_view cell);
  void AddReal(std::string_view cell);
  void AddNumber(double value);
  void BecomeString();

  ColumnKind kind_ = ColumnKind::kEmpty;
  long long valid_ = 0;
  long long missing_ = 0;
  unsigned decimals_ = 0;
  std::size_t maxLength_ = 0;
  DMContStatsInt integerStats_;
  DMContStatsDbl realStats_;
  int distinct_ = 0;
  double values_[2] = {0.0, 0.0};
  long long valueCounts_[2] = {0, 0};
  CategoryCounter texts_;
};

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_COLUMNPROFILE_H
