#ifndef DMCOMMON_SUMMARIES_DMDISTRIBUTIONSUMMARY_H
#define DMCOMMON_SUMMARIES_DMDISTRIBUTIONSUMMARY_H

// The pieces of a field's distribution in a dataset-summary document. Every
// class here is a read-only document object: built from its element, it
// records in `parseSuccess()` whether the element was valid and is never
// changed afterwards (assignment replaces it as a whole). An optional item is
// answered by a pair `getX()` / `hasX()`: `getX()` gives 0 (or the empty
// text) when `hasX()` is false.
//
// Reading stops at the first defect. Items read before it stay, and so does a
// value that was read but broke a rule (a negative cluster count, a flag that
// is neither "true" nor "false"); the writers refuse such values again. A
// child element that fails to parse is never kept.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// One cluster of a continuous field: its size, mean and optional spread and
/// bounds.
class DMCOMMON_EXPORT DMCluster {
 public:
  /// A cluster with nothing set; it parses, but does not write.
  DMCluster();
  /// Reads a `Cluster` element: the count (required, not negative), the mean
  /// (required), then variance, lower and upper (optional). A missing or
  /// unreadable value, an infinite or not-a-number real, or a negative count
  /// makes `parseSuccess()` false.
  explicit DMCluster(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`, parse result included.
  DMCluster(const DMCluster& other);
  /// Makes this cluster a copy of `other`.
  DMCluster& operator=(const DMCluster& other);
  /// Destroys the cluster.
  ~DMCluster() = default;

  /// False when the element this cluster was read from was invalid.
  bool parseSuccess() const;
  /// The number of records, as read (0 when absent).
  long long getCount() const;
  /// Whether a count was read.
  bool hasCount() const;
  /// The mean, or 0 when absent.
  double getMean() const;
  /// Whether a mean was read.
  bool hasMean() const;
  /// The variance, or 0 when absent.
  double getVariance() const;
  /// Whether a variance was read.
  bool hasVariance() const;
  /// The lower bound, or 0 when absent.
  double getLower() const;
  /// Whether a lower bound was read.
  bool hasLower() const;
  /// The upper bound, or 0 when absent.
  double getUpper() const;
  /// Whether an upper bound was read.
  bool hasUpper() const;

  /// Writes a `Cluster` element with count and mean, then variance, lower and
  /// upper where present, and appends it to `parent`; `created` receives it.
  /// Without a count and a mean, with a negative count, or when the XML layer
  /// refuses, nothing is written and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::optional<long long> count_;
  std::optional<double> mean_;
  std::optional<double> variance_;
  std::optional<double> lower_;
  std::optional<double> upper_;
};

/// One category of a discrete field: its value, count and optional
/// percentages.
class DMCOMMON_EXPORT DMCategory {
 public:
  /// A category with nothing set; it parses, but does not write.
  DMCategory();
  /// Reads a `Category` element: the value and the count (both required; a
  /// negative count is accepted), then percentage and cumulative percentage
  /// (optional). A missing or unreadable value, or an infinite or
  /// not-a-number real, makes `parseSuccess()` false.
  explicit DMCategory(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`, parse result included.
  DMCategory(const DMCategory& other);
  /// Makes this category a copy of `other`.
  DMCategory& operator=(const DMCategory& other);
  /// Destroys the category.
  ~DMCategory();

  /// False when the element this category was read from was invalid.
  bool parseSuccess() const;
  /// A copy of the category's value, or the empty text when absent.
  std::string getValue() const;
  /// Whether a value was read; a present empty value counts.
  bool hasValue() const;
  /// The number of records, possibly negative, or 0 when absent.
  long long getCount() const;
  /// Whether a count was read.
  bool hasCount() const;
  /// The percentage, or 0 when absent.
  double getPercentage() const;
  /// Whether a percentage was read.
  bool hasPercentage() const;
  /// The cumulative percentage, or 0 when absent.
  double getCumPercentage() const;
  /// Whether a cumulative percentage was read.
  bool hasCumPercentage() const;

  /// Writes a `Category` element with value and count, then percentage and
  /// cumulative percentage where present, and appends it to `parent`;
  /// `created` receives it. Without a value and a count, or when the XML
  /// layer refuses, nothing is written and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::optional<std::string> value_;
  std::optional<long long> count_;
  std::optional<double> percentage_;
  std::optional<double> cumPercentage_;
};

/// One percentile: its rank, its score and optional bounds of the score.
class DMCOMMON_EXPORT DMPercentile {
 public:
  /// A percentile with nothing set; it parses, but does not write.
  DMPercentile();
  /// Reads a `Percentile` element: rank and score (required), then lower and
  /// upper (optional). A missing or unreadable value, or an infinite or
  /// not-a-number real, makes `parseSuccess()` false.
  explicit DMPercentile(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`, parse result included.
  DMPercentile(const DMPercentile& other);
  /// Makes this percentile a copy of `other`.
  DMPercentile& operator=(const DMPercentile& other);
  /// Destroys the percentile.
  ~DMPercentile() = default;

  /// False when the element this percentile was read from was invalid.
  bool parseSuccess() const;
  /// The rank, or 0 when absent.
  double getRank() const;
  /// Whether a rank was read.
  bool hasRank() const;
  /// The score, or 0 when absent.
  double getScore() const;
  /// Whether a score was read.
  bool hasScore() const;
  /// The lower bound, or 0 when absent.
  double getLower() const;
  /// Whether a lower bound was read.
  bool hasLower() const;
  /// The upper bound, or 0 when absent.
  double getUpper() const;
  /// Whether an upper bound was read.
  bool hasUpper() const;

  /// Writes a `Percentile` element with rank and score, then lower and upper
  /// where present, and appends it to `parent`; `created` receives it.
  /// Without a rank and a score, or when the XML layer refuses, nothing is
  /// written and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::optional<double> rank_;
  std::optional<double> score_;
  std::optional<double> lower_;
  std::optional<double> upper_;
};

/// A list of percentiles with an optional interquartile range.
class DMCOMMON_EXPORT DMPercentiles {
 public:
  /// An empty list without interquartile range.
  DMPercentiles();
  /// Reads a `Percentiles` element: each direct `Percentile` child in
  /// document order, then the optional interquartile range. The first child
  /// that fails to parse is dropped and makes `parseSuccess()` false, as do an
  /// unreadable, infinite or not-a-number range and children that cannot be
  /// walked; the percentiles before it stay.
  explicit DMPercentiles(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: every percentile is copied.
  DMPercentiles(const DMPercentiles& other);
  /// Makes this list a deep copy of `other`. Pointers handed out before are
  /// invalid afterwards.
  DMPercentiles& operator=(const DMPercentiles& other);
  /// Takes `other`'s percentiles; `other` is left valid but unspecified.
  DMPercentiles(DMPercentiles&& other) noexcept;
  /// Takes `other`'s percentiles, dropping this list's own.
  DMPercentiles& operator=(DMPercentiles&& other) noexcept;
  /// Destroys the list and its percentiles.
  ~DMPercentiles();

  /// False when the element this list was read from was invalid.
  bool parseSuccess() const;
  /// The number of percentiles.
  std::size_t getPercentileCount() const;
  /// The percentile at `index`, owned by this list. `index` must be below
  /// `getPercentileCount()`: it is not checked.
  const DMPercentile* getPercentile(std::size_t index) const;
  /// The interquartile range, or 0 when absent.
  double getInterQuartileRange() const;
  /// Whether an interquartile range was read.
  bool hasInterQuartileRange() const;

  /// Writes a `Percentiles` element with each percentile as a child in order,
  /// then the interquartile range where present, and appends it to `parent`;
  /// `created` receives it. A percentile that writes nothing, or a refusal
  /// of the XML layer, writes nothing at all and leaves `created` null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::vector<std::unique_ptr<DMPercentile>> percentiles_;
  std::optional<double> interQuartileRange_;
};

/// The distribution of a field: either clusters or categories, never both,
/// with two flags kept as their entity texts, a real mode and a text median.
class DMCOMMON_EXPORT DMDistributionSummary {
 public:
  /// A summary with neither clusters nor categories; it parses, but does not
  /// write.
  DMDistributionSummary();
  /// Reads a `DistributionSummary` element: the direct `Cluster` children,
  /// then the direct `Category` children, in document order; then the
  /// attributes discrete, mode, max categories exceeded and median. Makes
  /// `parseSuccess()` false: a child that fails to parse (it is dropped, the
  /// reading stops), children that cannot be walked, both clusters and
  /// categories or neither, a discrete or max-categories-exceeded text other
  /// than "true" and "false" (kept as read), an unreadable, infinite or
  /// not-a-number mode, or an unreadable median.
  explicit DMDistributionSummary(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: every cluster and category is copied.
  DMDistributionSummary(const DMDistributionSummary& other);
  /// Makes this summary a deep copy of `other`. Pointers handed out before
  /// are invalid afterwards.
  DMDistributionSummary& operator=(const DMDistributionSummary& other);
  /// Takes `other`'s content; `other` is left valid but unspecified.
  DMDistributionSummary(DMDistributionSummary&& other) noexcept;
  /// Takes `other`'s content, dropping this summary's own.
  DMDistributionSummary& operator=(DMDistributionSummary&& other) noexcept;
  /// Destroys the summary, its clusters and its categories.
  ~DMDistributionSummary();

  /// False when the element this summary was read from was invalid.
  bool parseSuccess() const;
  /// The number of clusters.
  std::size_t getClusterCount() const;
  /// The cluster at `index`, owned by this summary. `index` must be below
  /// `getClusterCount()`: it is not checked.
  const DMCluster* getCluster(std::size_t index) const;
  /// The number of categories.
  std::size_t getCategoryCount() const;
  /// The category at `index`, owned by this summary. `index` must be below
  /// `getCategoryCount()`: it is not checked.
  const DMCategory* getCategory(std::size_t index) const;
  /// A copy of the discrete flag's text as read ("true", "false"), or the
  /// empty text when absent.
  std::string getDiscrete() const;
  /// The mode, or 0 when absent. A real here, unlike the text mode of
  /// `DMDiscreteStatisticsExt`.
  double getMode() const;
  /// Whether a mode was read.
  bool hasMode() const;
  /// A copy of the max-categories-exceeded flag's text as read, or the empty
  /// text when absent.
  std::string getMaxCatsExceeded() const;
  /// A copy of the median's text, or the empty text when absent.
  std::string getMedian() const;

  /// Writes a `DistributionSummary` element with the clusters, then the
  /// categories as children, then discrete and max categories exceeded when
  /// their texts are "true" or "false" (other texts are left out), the mode
  /// when present and the median when not empty; appends it to `parent` and
  /// hands it out through `created`. With both clusters and categories or
  /// neither, a child that writes nothing, or a refusal of the XML layer,
  /// nothing is written and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool ReadChildren(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool HasOneKindOfChild() const;
  [[nodiscard]] bool ReadAttributes(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::vector<std::unique_ptr<DMCluster>> clusters_;
  std::vector<std::unique_ptr<DMCategory>> categories_;
  std::string discrete_;
  std::optional<double> mode_;
  std::string maxCatsExceeded_;
  std::string median_;
};

#endif  // DMCOMMON_SUMMARIES_DMDISTRIBUTIONSUMMARY_H
