#ifndef DMCOMMON_SUMMARIES_DMSTATISTICSEXT_H
#define DMCOMMON_SUMMARIES_DMSTATISTICSEXT_H

// The statistics of one field in a dataset-summary document, continuous or
// discrete. Read-only document objects with the reading and writing rules of
// dmdistributionsummary.h.

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/summaries/dmdistributionsummary.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// The statistics of a continuous field: optional percentiles, an optional
/// distribution summary and eleven optional reals.
class DMCOMMON_EXPORT DMContinuousStatisticsExt {
 public:
  /// Statistics with nothing set; they parse and write an empty element.
  DMContinuousStatisticsExt();
  /// Reads a `ContinuousStatisticsExt` element: the first direct
  /// `Percentiles` child and the first direct `DistributionSummary` child,
  /// each if present, then the eleven reals in the order of the getters.
  /// Makes `parseSuccess()` false: a child that fails to parse (it is
  /// dropped), children that cannot be walked, or an unreadable, infinite or
  /// not-a-number real; the reading stops there.
  explicit DMContinuousStatisticsExt(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: the children are copied, null ones stay null.
  DMContinuousStatisticsExt(const DMContinuousStatisticsExt& other);
  /// Makes these statistics a deep copy of `other`. Pointers handed out
  /// before are invalid afterwards.
  DMContinuousStatisticsExt& operator=(const DMContinuousStatisticsExt& other);
  /// Takes `other`'s content; `other` is left valid but unspecified.
  DMContinuousStatisticsExt(DMContinuousStatisticsExt&& other) noexcept;
  /// Takes `other`'s content, dropping these statistics' own.
  DMContinuousStatisticsExt& operator=(DMContinuousStatisticsExt&& other) noexcept;
  /// Destroys the statistics and their children.
  ~DMContinuousStatisticsExt();

  /// False when the element these statistics were read from was invalid.
  bool parseSuccess() const;
  /// The percentiles, owned by these statistics, or null when absent.
  const DMPercentiles* getPercentiles() const;
  /// The distribution summary, owned by these statistics, or null when
  /// absent.
  const DMDistributionSummary* getDistributionSummary() const;
  /// The minimum, or 0 when absent.
  double getMinimum() const;
  /// Whether a minimum was read.
  bool hasMinimum() const;
  /// The maximum, or 0 when absent.
  double getMaximum() const;
  /// Whether a maximum was read.
  bool hasMaximum() const;
  /// The mean, or 0 when absent.
  double getMean() const;
  /// Whether a mean was read.
  bool hasMean() const;
  /// The variance, or 0 when absent.
  double getVariance() const;
  /// Whether a variance was read.
  bool hasVariance() const;
  /// The standard deviation, or 0 when absent.
  double getStdDev() const;
  /// Whether a standard deviation was read.
  bool hasStdDev() const;
  /// The skewness, or 0 when absent.
  double getSkewness() const;
  /// Whether a skewness was read.
  bool hasSkewness() const;
  /// The standard error of the skewness, or 0 when absent.
  double getStdErrSkewness() const;
  /// Whether a standard error of the skewness was read.
  bool hasStdErrSkewness() const;
  /// The kurtosis, or 0 when absent.
  double getKurtosis() const;
  /// Whether a kurtosis was read.
  bool hasKurtosis() const;
  /// The standard error of the kurtosis, or 0 when absent.
  double getStdErrKurtosis() const;
  /// Whether a standard error of the kurtosis was read.
  bool hasStdErrKurtosis() const;
  /// The lower bound below which values count as outliers, or 0 when absent.
  double getOutlierLowerBound() const;
  /// Whether an outlier lower bound was read.
  bool hasOutlierLowerBound() const;
  /// The upper bound above which values count as outliers, or 0 when absent.
  double getOutlierUpperBound() const;
  /// Whether an outlier upper bound was read.
  bool hasOutlierUpperBound() const;

  /// Writes a `ContinuousStatisticsExt` element with the percentiles and the
  /// distribution summary as children where present, then each real that is
  /// present; appends it to `parent` and hands it out through `created`. A
  /// child that writes nothing, or a refusal of the XML layer, writes
  /// nothing at all and leaves `created` null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  // One real attribute and the member it fills.
  struct RealItem {
    const char* attribute;
    std::optional<double> DMContinuousStatisticsExt::*member;
  };
  // The eleven real attributes in document order; one table for reading and
  // writing.
  static const std::array<RealItem, 11>& RealItems();

  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::unique_ptr<DMPercentiles> percentiles_;
  std::unique_ptr<DMDistributionSummary> distributionSummary_;
  std::optional<double> minimum_;
  std::optional<double> maximum_;
  std::optional<double> mean_;
  std::optional<double> variance_;
  std::optional<double> stdDev_;
  std::optional<double> skewness_;
  std::optional<double> stdErrSkewness_;
  std::optional<double> kurtosis_;
  std::optional<double> stdErrKurtosis_;
  std::optional<double> outlierLowerBound_;
  std::optional<double> outlierUpperBound_;
};

/// The statistics of a discrete field: a required distribution summary, and
/// a mode and a median kept as texts.
class DMCOMMON_EXPORT DMDiscreteStatisticsExt {
 public:
  /// Statistics without a distribution summary; they parse, but do not
  /// write.
  DMDiscreteStatisticsExt();
  /// Reads a `DiscreteStatisticsExt` element: the first direct
  /// `DistributionSummary` child (required), then the optional mode and
  /// median texts. A missing child, one that fails to parse (it is dropped),
  /// children that cannot be walked or an unreadable attribute make
  /// `parseSuccess()` false and stop the reading.
  explicit DMDiscreteStatisticsExt(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: the summary is copied, a null one stays null.
  DMDiscreteStatisticsExt(const DMDiscreteStatisticsExt& other);
  /// Makes these statistics a deep copy of `other`. Pointers handed out
  /// before are invalid afterwards.
  DMDiscreteStatisticsExt& operator=(const DMDiscreteStatisticsExt& other);
  /// Takes `other`'s content; `other` is left valid but unspecified.
  DMDiscreteStatisticsExt(DMDiscreteStatisticsExt&& other) noexcept;
  /// Takes `other`'s content, dropping these statistics' own.
  DMDiscreteStatisticsExt& operator=(DMDiscreteStatisticsExt&& other) noexcept;
  /// Destroys the statistics and their summary.
  ~DMDiscreteStatisticsExt();

  /// False when the element these statistics were read from was invalid.
  bool parseSuccess() const;
  /// The distribution summary, owned by these statistics; null only in
  /// default-constructed statistics and in ones that failed to parse.
  const DMDistributionSummary* getDistributionSummary() const;
  /// A copy of the mode's text, or the empty text when absent. A text here,
  /// unlike the real mode of `DMDistributionSummary`.
  std::string getMode() const;
  /// A copy of the median's text, or the empty text when absent.
  std::string getMedian() const;

  /// Writes a `DiscreteStatisticsExt` element with the distribution summary
  /// as its child, then the mode and the median when not empty; appends it
  /// to `parent` and hands it out through `created`. Without a summary, when
  /// the summary writes nothing or when the XML layer refuses, nothing is
  /// written and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::unique_ptr<DMDistributionSummary> distributionSummary_;
  std::string mode_;
  std::string median_;
};

#endif  // DMCOMMON_SUMMARIES_DMSTATISTICSEXT_H
