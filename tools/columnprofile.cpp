#include "columnprofile.h"

#include <algorithm>

#include "cellparse.h"

namespace dmtool {
namespace {

// The continuous statistics of integers carried over to reals when a column
// meets its first fraction. The library converts only through the XML form
// both classes share, which keeps 15 significant digits of the sums: this
// happens once per column at most.
DMContStatsDbl ToRealStats(const DMContStatsInt& stats) {
  if (stats.GetSumFreqWeights() == 0.0) return DMContStatsDbl();
  DmExtension::DMXMLWrapper document;
  document.createNew(DmCppHelperV1::XMLElements::DataModel);
  DmExtension::DMXMLWrapper* element = nullptr;
  stats.AddToTree(document, element);
  if (element == nullptr) return DMContStatsDbl();
  return DMContStatsDbl(*element);
}

}  // namespace

CategoryCounter::CategoryCounter(std::size_t capacity) : capacity_(capacity) {}

void CategoryCounter::Insert(std::string_view text) {
  if (counts_.size() >= capacity_) {
    overflowed_ = true;
    index_ = {};
    counts_ = {};
    texts_ = {};
    return;
  }
  const std::string& kept = texts_.emplace_back(text);
  index_.emplace(kept, counts_.size());
  counts_.push_back(1);
}

std::vector<std::pair<std::string_view, long long>> CategoryCounter::Sorted() const {
  std::vector<std::pair<std::string_view, long long>> sorted;
  sorted.reserve(counts_.size());
  for (std::size_t i = 0; i < counts_.size(); ++i) sorted.emplace_back(texts_[i], counts_[i]);
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

ColumnProfile::ColumnProfile(std::size_t maxCategories)
    : texts_(std::max<std::size_t>(maxCategories, 2)) {}

void ColumnProfile::Add(std::string_view cell) {
  if (cell.empty()) {
    ++missing_;
    return;
  }
  ++valid_;
  maxLength_ = std::max(maxLength_, cell.size());
  texts_.Add(cell);
  // The first value decides the kind; it is then read again below like every
  // later one, which costs one extra parse per column.
  if (kind_ == ColumnKind::kEmpty) kind_ = Classify(cell);
  switch (kind_) {
    case ColumnKind::kEmpty:
      return;
    case ColumnKind::kInteger:
      AddInteger(cell);
      return;
    case ColumnKind::kReal:
      AddReal(cell);
      return;
    case ColumnKind::kDate: {
      long long days = 0;
      if (!ParseDate(cell, days)) return BecomeString();
      realStats_.Update(static_cast<double>(days));
      AddNumber(static_cast<double>(days));
      return;
    }
    case ColumnKind::kTime: {
      long long seconds = 0;
      if (!ParseTime(cell, seconds)) return BecomeString();
      realStats_.Update(static_cast<double>(seconds));
      AddNumber(static_cast<double>(seconds));
      return;
    }
    case ColumnKind::kTimestamp: {
      double seconds = 0.0;
      if (!ParseTimestamp(cell, seconds)) return BecomeString();
      realStats_.Update(seconds);
      AddNumber(seconds);
      return;
    }
    case ColumnKind::kString:
      return;
  }
}

ColumnKind ColumnProfile::Classify(std::string_view cell) {
  long long whole = 0;
  double real = 0.0;
  unsigned decimals = 0;
  if (ParseInteger(cell, whole)) return ColumnKind::kInteger;
  if (ParseReal(cell, real, decimals)) return ColumnKind::kReal;
  if (ParseDate(cell, whole)) return ColumnKind::kDate;
  if (ParseTimestamp(cell, real)) return ColumnKind::kTimestamp;
  if (ParseTime(cell, whole)) return ColumnKind::kTime;
  return ColumnKind::kString;
}

void ColumnProfile::AddInteger(std::string_view cell) {
  long long value = 0;
  if (ParseInteger(cell, value)) {
    integerStats_.Update(value);
    AddNumber(static_cast<double>(value));
    return;
  }
  double real = 0.0;
  unsigned decimals = 0;
  if (!ParseReal(cell, real, decimals)) return BecomeString();
  realStats_ = ToRealStats(integerStats_);
  integerStats_ = DMContStatsInt();
  kind_ = ColumnKind::kReal;
  decimals_ = std::max(decimals_, decimals);
  realStats_.Update(real);
  AddNumber(real);
}

void ColumnProfile::AddReal(std::string_view cell) {
  double value = 0.0;
  unsigned decimals = 0;
  if (!ParseReal(cell, value, decimals)) return BecomeString();
  decimals_ = std::max(decimals_, decimals);
  realStats_.Update(value);
  AddNumber(value);
}

void ColumnProfile::AddNumber(double value) {
  if (distinct_ > 2) return;
  for (int i = 0; i < distinct_; ++i) {
    if (values_[i] == value) {
      ++valueCounts_[i];
      return;
    }
  }
  if (distinct_ < 2) {
    values_[distinct_] = value;
    valueCounts_[distinct_] = 1;
  }
  ++distinct_;
}

void ColumnProfile::BecomeString() {
  kind_ = ColumnKind::kString;
  integerStats_ = DMContStatsInt();
  realStats_ = DMContStatsDbl();
  distinct_ = 0;
}

}  // namespace dmtool
