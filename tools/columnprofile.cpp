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

// `stats` with the exact extrema `min` and `max`. Pooling keeps the exact
// extrema of the receiving side by contract; the only way to give the pooled
// statistics the extrema of both is through their XML form, which keeps 15
// significant digits of the sums, as the written document does.
DMContStatsInt WithExactExtrema(const DMContStatsInt& stats, long long min, long long max) {
  namespace Attributes = DmCppHelperV1::XMLAttributes;
  DmExtension::DMXMLWrapper document;
  document.createNew(DmCppHelperV1::XMLElements::DataModel);
  DmExtension::DMXMLWrapper* element = nullptr;
  stats.AddToTree(document, element);
  if (element == nullptr) return stats;
  // Either attribute may be absent; removing a missing one changes nothing.
  static_cast<void>(element->removeAttribute(Attributes::ExactMinimum));
  static_cast<void>(element->removeAttribute(Attributes::ExactMaximum));
  if (element->addAttribute(Attributes::ExactMinimum, min) != DmExtension::DM_XML_OK ||
      element->addAttribute(Attributes::ExactMaximum, max) != DmExtension::DM_XML_OK) {
    return stats;
  }
  return DMContStatsInt(*element);
}

// Integer statistics pooled from `earlier` and `later`.
DMContStatsInt PoolIntegers(const DMContStatsInt& earlier, const DMContStatsInt& later) {
  if (later.GetSumFreqWeights() == 0.0) return earlier;
  if (earlier.GetSumFreqWeights() == 0.0) return later;
  DMContStatsInt pooled(earlier);
  pooled.Pool(later);
  const auto [earlierMin, earlierMax] = earlier.GetExactExtrema();
  const auto [laterMin, laterMax] = later.GetExactExtrema();
  const long long min = std::min(earlierMin, laterMin);
  const long long max = std::max(earlierMax, laterMax);
  if (min == earlierMin && max == earlierMax) return pooled;
  return WithExactExtrema(pooled, min, max);
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

void CategoryCounter::Merge(const CategoryCounter& other) {
  if (overflowed_) return;
  if (other.overflowed_) {
    overflowed_ = true;
    index_ = {};
    counts_ = {};
    texts_ = {};
    return;
  }
  for (std::size_t i = 0; i < other.counts_.size() && !overflowed_; ++i) {
    const std::string& text = other.texts_[i];
    if (const auto it = index_.find(text); it != index_.end()) {
      counts_[it->second] += other.counts_[i];
      continue;
    }
    Insert(text);
    if (!overflowed_) counts_.back() = other.counts_[i];
  }
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

void ColumnProfile::Merge(ColumnProfile&& later) {
  valid_ += later.valid_;
  missing_ += later.missing_;
  maxLength_ = std::max(maxLength_, later.maxLength_);
  decimals_ = std::max(decimals_, later.decimals_);
  texts_.Merge(later.texts_);
  if (later.kind_ == ColumnKind::kEmpty) return;
  if (kind_ == ColumnKind::kEmpty) {
    kind_ = later.kind_;
    integerStats_ = std::move(later.integerStats_);
    realStats_ = std::move(later.realStats_);
    distinct_ = later.distinct_;
    std::copy(std::begin(later.values_), std::end(later.values_), std::begin(values_));
    std::copy(std::begin(later.valueCounts_), std::end(later.valueCounts_),
              std::begin(valueCounts_));
    return;
  }
  // Read one by one, a cell of another kind turns the column into text,
  // except that integers and reals meet in reals.
  const auto numeric = [](ColumnKind kind) {
    return kind == ColumnKind::kInteger || kind == ColumnKind::kReal;
  };
  if (kind_ == ColumnKind::kString || later.kind_ == ColumnKind::kString ||
      (kind_ != later.kind_ && !(numeric(kind_) && numeric(later.kind_)))) {
    return BecomeString();
  }
  if (kind_ == ColumnKind::kInteger && later.kind_ == ColumnKind::kInteger) {
    integerStats_ = PoolIntegers(integerStats_, later.integerStats_);
  } else {
    if (kind_ == ColumnKind::kInteger) {
      realStats_ = ToRealStats(integerStats_);
      integerStats_ = DMContStatsInt();
      kind_ = ColumnKind::kReal;
    }
    realStats_.Pool(later.kind_ == ColumnKind::kInteger ? ToRealStats(later.integerStats_)
                                                        : later.realStats_);
  }
  // The distinct values of the later part, in the order they were met.
  for (int i = 0; i < later.distinct_ && i < 2 && distinct_ <= 2; ++i) {
    int at = 0;
    while (at < distinct_ && values_[at] != later.values_[i]) ++at;
    if (at < distinct_) {
      valueCounts_[at] += later.valueCounts_[i];
    } else {
      if (distinct_ < 2) {
        values_[distinct_] = later.values_[i];
        valueCounts_[distinct_] = later.valueCounts_[i];
      }
      ++distinct_;
    }
  }
  if (later.distinct_ > 2) distinct_ = 3;
}

void ColumnProfile::BecomeString() {
  kind_ = ColumnKind::kString;
  integerStats_ = DMContStatsInt();
  realStats_ = DMContStatsDbl();
  distinct_ = 0;
}

}  // namespace dmtool
