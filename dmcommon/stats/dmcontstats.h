#ifndef DMCOMMON_STATS_DMCONTSTATS_H
#define DMCOMMON_STATS_DMCONTSTATS_H

#include <memory>
#include <utility>

#include "dmcommon/dmcommon_export.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

namespace DmCppHelperV1 {
class XMLElement;
}  // namespace DmCppHelperV1

/// The plain accumulator behind the continuous statistics: extrema, the sum of
/// frequency weights, the sum of combined (frequency times case) weights, the
/// mean weighted by the combined weights and the sum of combined-weighted
/// squared deviations from it. Empty exactly when the sum of frequency weights
/// is 0.0; extrema and mean mean nothing then.
class DMCOMMON_EXPORT DMContStatsImp {
 public:
  /// Empty: every field 0.0.
  DMContStatsImp();
  /// Reads the sums, extrema, mean and variance of a `ContinuousStatistics`
  /// element. Every attribute must be an ordinary number (not "INF", "-INF",
  /// "NaN" or unreadable), the sums and the variance not negative and the
  /// minimum not above the maximum; extrema and mean are required only when
  /// the frequency weights sum above 0, the variance only when they sum above
  /// 1. Any failure gives the empty accumulator; nothing is reported.
  explicit DMContStatsImp(const DmExtension::DMXMLWrapper& element);
  /// The same reading through the element view, whose reader reports presence
  /// only: an infinite or not-a-number value is refused by its value, with the
  /// same outcome as above.
  explicit DMContStatsImp(const DmCppHelperV1::XMLElement& element);

  /// Adds `x` with frequency weight `freqWeight` and case weight `caseWeight`
  /// by the incremental weighted update. Returns false, changing nothing, when
  /// either weight is not above 0.0 (zero, negative or not a number). A value
  /// that is not a number is not refused and spreads into the mean.
  bool Update(double x, double freqWeight, double caseWeight);
  /// Adds `x` with both weights 1. Always returns true.
  bool Update(double x);
  /// Merges `other` into this accumulator: the result is the accumulator of
  /// both samples, up to rounding. An empty side contributes nothing; merging
  /// into an empty accumulator copies `other` exactly.
  void Pool(const DMContStatsImp& other);

  /// The smallest and the largest value seen, in that order; (0, 0) when
  /// empty.
  std::pair<double, double> GetExtrema() const;
  /// The mean weighted by the combined weights; 0.0 when empty.
  double GetMean() const;
  /// The sum of combined-weighted squared deviations divided by the sum of
  /// frequency weights less one; 0.0 unless the frequency weights sum above
  /// 1.0.
  double GetVariance() const;
  /// The sum of frequency weights, the effective number of cases.
  double GetSumFreqWeights() const { return sumFreqWts; }
  /// The sum of combined weights.
  double GetSumCompWeights() const;
  /// Builds a free `ContinuousStatistics` element in the document of `parent`
  /// with the two sums; the extrema and the mean when the frequency weights
  /// sum above 0; the variance when they sum above 1. Returns the element,
  /// owned by the caller until it is added to a parent, or null (nothing
  /// left behind) when `parent` has no element or an attribute fails.
  DmExtension::DMXMLWrapper* MakeContStatsElmt(DmExtension::DMXMLWrapper& parent) const;

 private:
  void UpdateExtrema(double x);

  double min;
  double max;
  double sumFreqWts;
  double sumCompWts;
  double mean;
  double sumSqDev;
};

/// Running summary statistics of a numeric field.
class DMCOMMON_EXPORT DMContStats {
 public:
  virtual ~DMContStats();
  /// A deep copy of the same concrete class, owned by the caller.
  virtual DMContStats* Clone() const = 0;
  /// The smallest and the largest value seen, as reals, in that order.
  virtual std::pair<double, double> GetExtrema() const = 0;
  /// The mean weighted by the combined weights.
  virtual double GetMean() const = 0;
  /// The variance; 0.0 unless the frequency weights sum above 1.0.
  virtual double GetVariance() const = 0;
  /// The sum of frequency weights.
  virtual double GetSumFreqWeights() const = 0;
  /// Writes a `ContinuousStatistics` element and appends it to `parent`;
  /// `created` receives it. On failure `created` is null and `parent` is
  /// untouched.
  virtual void AddToTree(DmExtension::DMXMLWrapper& parent,
                         DmExtension::DMXMLWrapper*& created) const = 0;

 protected:
  DMContStats() = default;
  DMContStats(const DMContStats&) = default;
  DMContStats& operator=(const DMContStats&) = default;
};

/// Continuous statistics of a real-valued field.
class DMCOMMON_EXPORT DMContStatsDbl : public DMContStats {
 public:
  /// Empty statistics.
  DMContStatsDbl();
  /// Reads a `ContinuousStatistics` element as `DMContStatsImp` does; invalid
  /// XML gives empty statistics.
  explicit DMContStatsDbl(const DmExtension::DMXMLWrapper& element);
  /// Reads through the element view as `DMContStatsImp` does.
  explicit DMContStatsDbl(const DmCppHelperV1::XMLElement& element);
  DMContStatsDbl(const DMContStatsDbl& other);
  /// A deep copy; assigning an object to itself changes nothing.
  DMContStatsDbl& operator=(const DMContStatsDbl& other);
  ~DMContStatsDbl() override;

  DMContStatsDbl* Clone() const override;
  std::pair<double, double> GetExtrema() const override;
  double GetMean() const override;
  double GetVariance() const override;
  double GetSumFreqWeights() const override;
  /// The sum of combined weights.
  double GetSumCompWeights() const;
  /// Writes the element of `DMContStatsImp::MakeContStatsElmt` and appends it
  /// to `parent`; `created` receives it, or null with `parent` untouched on
  /// failure.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;

  /// Adds a weighted value; see `DMContStatsImp::Update`.
  bool Update(double x, double freqWeight, double caseWeight) {
    return imp_->Update(x, freqWeight, caseWeight);
  }
  /// Adds a value with both weights 1. Always returns true.
  bool Update(double x) { return imp_->Update(x); }
  /// Merges `other` into this object; `other` is unchanged.
  void Pool(const DMContStatsDbl& other);

 private:
  // Never null: every constructor allocates it, and no move leaves it empty.
  std::unique_ptr<DMContStatsImp> imp_;
};

/// Continuous statistics of an integer-valued field. Beside the real extrema
/// it keeps the exact 64-bit ones, since integers beyond 2^53 have no exact
/// real image.
class DMCOMMON_EXPORT DMContStatsInt : public DMContStats {
 public:
  /// Empty statistics, exact extrema 0.
  DMContStatsInt();
  /// Reads a `ContinuousStatistics` element as `DMContStatsImp` does, then,
  /// when the frequency weights sum above 0, the exact extrema: an absent one
  /// defaults to the real extremum truncated toward zero (saturated at the
  /// 64-bit limits), an unreadable one empties the whole object.
  explicit DMContStatsInt(const DmExtension::DMXMLWrapper& element);
  /// As the other reader, except that both exact extrema are required when the
  /// frequency weights sum above 0: a missing or unreadable one empties the
  /// whole object. Statistics whose exact extrema were not written because the
  /// real ones were exact therefore read as empty here.
  explicit DMContStatsInt(const DmCppHelperV1::XMLElement& element);
  DMContStatsInt(const DMContStatsInt& other);
  /// A deep copy; assigning an object to itself changes nothing.
  DMContStatsInt& operator=(const DMContStatsInt& other);
  ~DMContStatsInt() override;

  DMContStatsInt* Clone() const override;
  std::pair<double, double> GetExtrema() const override;
  double GetMean() const override;
  double GetVariance() const override;
  double GetSumFreqWeights() const override;
  /// The sum of combined weights.
  double GetSumCompWeights() const;
  /// The exact smallest and largest value, in that order; (0, 0) when empty.
  std::pair<long long, long long> GetExactExtrema() const;
  /// Writes the element of `DMContStatsImp::MakeContStatsElmt`, plus each
  /// exact extremum that differs from its real one truncated toward zero, and
  /// appends it to `parent`; `created` receives it, or null with `parent`
  /// untouched on failure.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;

  /// Adds a weighted value; see `DMContStatsImp::Update`. The exact extrema
  /// follow every accepted value.
  bool Update(long long value, double freqWeight, double caseWeight) {
    const bool first = imp_->GetSumFreqWeights() == 0.0;
    if (!imp_->Update(static_cast<double>(value), freqWeight, caseWeight)) return false;
    UpdateExactExtrema(value, first);
    return true;
  }
  /// Adds a value with both weights 1. Always returns true.
  bool Update(long long value) {
    const bool first = imp_->GetSumFreqWeights() == 0.0;
    imp_->Update(static_cast<double>(value));
    UpdateExactExtrema(value, first);
    return true;
  }
  /// Merges the accumulator of `other` into this one. The exact extrema are
  /// left as they were, even when this object was empty: a deliberate limit
  /// that readers of the written XML live with.
  void Pool(const DMContStatsInt& other);

 private:
  void UpdateExactExtrema(long long value, bool first) {
    if (first) {
      exactMin = value;
      exactMax = value;
    } else if (exactMin > value) {
      exactMin = value;
    } else if (exactMax < value) {
      exactMax = value;
    }
  }
  void MakeEmpty();

  // Never null: every constructor allocates it, and no move leaves it empty.
  std::unique_ptr<DMContStatsImp> imp_;
  long long exactMin;
  long long exactMax;
};

// The per-value updates are inline so that a loop over many values pays no
// call per value: the divide chain of the mean is the only real cost.

inline void DMContStatsImp::UpdateExtrema(double x) {
  if (sumFreqWts == 0.0) {
    min = x;
    max = x;
  } else if (min > x) {
    min = x;
  } else if (x > max) {
    max = x;
  }
}

inline bool DMContStatsImp::Update(double x, double freqWeight, double caseWeight) {
  if (!(freqWeight > 0.0) || !(caseWeight > 0.0)) return false;
  UpdateExtrema(x);
  // The operations stay in this order on purpose: each rounding step is part
  // of the expected result, and any reordering moves results in their last
  // bits.
  const double w = caseWeight * freqWeight;
  sumFreqWts += freqWeight;
  const double s0 = sumCompWts;
  const double s = w + s0;
  sumCompWts = s;
  const double d = x - mean;
  mean = w * d / s + mean;
  sumSqDev = (w * s0 / s) * (d * d) + sumSqDev;
  return true;
}

inline bool DMContStatsImp::Update(double x) {
  UpdateExtrema(x);
  sumFreqWts += 1.0;
  const double s0 = sumCompWts;
  const double s = s0 + 1.0;
  sumCompWts = s;
  const double d = x - mean;
  mean = d / s + mean;
  sumSqDev = (s0 / s) * (d * d) + sumSqDev;
  return true;
}

#endif  // DMCOMMON_STATS_DMCONTSTATS_H
