#ifndef DMCOMMON_SUMMARIES_DMDATASETSUMMARIES_H
#define DMCOMMON_SUMMARIES_DMDATASETSUMMARIES_H

// A dataset-summary document: which records were counted, and per field the
// valid, missing and invalid counts with a continuous or discrete
// distribution. Read-only document objects with the reading and writing
// rules of dmdistributionsummary.h; only `DMDatasetSummaries` can drop parts.

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/summaries/dmstatisticsext.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// Records that the overall summaries carry record counts. The element holds
/// nothing; its presence is what counts.
class DMCOMMON_EXPORT DMRecordCountsExt {
 public:
  /// Record counts; they parse.
  DMRecordCountsExt();
  /// Stands for a `RecordCountsExt` element; nothing of it is read, so the
  /// result always parses.
  explicit DMRecordCountsExt(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`.
  DMRecordCountsExt(const DMRecordCountsExt& other);
  /// Makes this object a copy of `other`.
  DMRecordCountsExt& operator=(const DMRecordCountsExt& other);
  /// Destroys the object.
  ~DMRecordCountsExt() = default;

  /// Always true.
  bool parseSuccess() const;

  /// Writes an empty `RecordCountsExt` element and appends it to `parent`;
  /// `created` receives it, or is null when the XML layer refuses.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  bool parseSuccess_ = true;
};

/// Which records the dataset's summaries counted. The three flags are
/// booleans here, unlike the texts of `DMFieldSummary`.
class DMCOMMON_EXPORT DMOverallSummaries {
 public:
  /// Overall summaries without record counts, all three flags true.
  DMOverallSummaries();
  /// Reads an `OverallSummaries` element: record counts when it has a direct
  /// `RecordCountsExt` child, then the flags current, include user-missing
  /// and include not-valid, each true when absent. A flag text other than
  /// "true" and "false", an unreadable attribute or children that cannot be
  /// walked make `parseSuccess()` false and stop the reading.
  explicit DMOverallSummaries(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: record counts are copied, null stays null.
  DMOverallSummaries(const DMOverallSummaries& other);
  /// Makes this object a deep copy of `other`. Pointers handed out before
  /// are invalid afterwards.
  DMOverallSummaries& operator=(const DMOverallSummaries& other);
  /// Takes `other`'s content; `other` is left valid but unspecified.
  DMOverallSummaries(DMOverallSummaries&& other) noexcept;
  /// Takes `other`'s content, dropping this object's own.
  DMOverallSummaries& operator=(DMOverallSummaries&& other) noexcept;
  /// Destroys the object and its record counts.
  ~DMOverallSummaries();

  /// False when the element this object was read from was invalid.
  bool parseSuccess() const;
  /// The record counts, owned by this object, or null when absent.
  const DMRecordCountsExt* getRecordCountsExt() const;
  /// Whether the summaries are current; true when absent.
  bool getCurrent() const;
  /// Whether user-missing values were included; true when absent.
  bool getIncludeUMissing() const;
  /// Whether values that are not valid were included; true when absent.
  bool getIncludeNotValid() const;

  /// Writes an `OverallSummaries` element with an empty `RecordCountsExt`
  /// child when there are record counts, and the three flags always, as
  /// "true" or "false"; appends it to `parent` and hands it out through
  /// `created`. When the XML layer refuses, nothing is written and `created`
  /// is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  std::unique_ptr<DMRecordCountsExt> recordCounts_;
  bool current_ = true;
  bool includeUMissing_ = true;
  bool includeNotValid_ = true;
  bool parseSuccess_ = true;
};

/// The summary of one field: exactly one of continuous or discrete
/// statistics, three flags kept as their entity texts, the field's name and
/// six counts, each -1 when not given.
class DMCOMMON_EXPORT DMFieldSummary {
 public:
  /// A summary with no statistics, no name and every count -1; it parses,
  /// but does not write.
  DMFieldSummary();
  /// Reads a `FieldSummary` element: the first direct
  /// `ContinuousStatisticsExt` child and the first direct
  /// `DiscreteStatisticsExt` child (exactly one of the two must be there),
  /// the flags current, include user-missing and include not-valid as texts,
  /// the field name (required, not empty) and the six counts (optional, not
  /// negative). Makes `parseSuccess()` false and stops the reading at the
  /// first defect: a child that fails to parse (it is dropped), both
  /// children or neither (both are kept), children that cannot be walked, a
  /// flag text other than "true" and "false" (kept as read), a missing or
  /// empty name, an unreadable attribute, or a negative count (kept as read).
  explicit DMFieldSummary(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: the statistics are copied, null ones stay null.
  DMFieldSummary(const DMFieldSummary& other);
  /// Makes this summary a deep copy of `other`. Pointers handed out before
  /// are invalid afterwards.
  DMFieldSummary& operator=(const DMFieldSummary& other);
  /// Takes `other`'s content; `other` is left valid but unspecified.
  DMFieldSummary(DMFieldSummary&& other) noexcept;
  /// Takes `other`'s content, dropping this summary's own.
  DMFieldSummary& operator=(DMFieldSummary&& other) noexcept;
  /// Destroys the summary and its statistics.
  ~DMFieldSummary();

  /// False when the element this summary was read from was invalid.
  bool parseSuccess() const;
  /// The continuous statistics, owned by this summary, or null.
  const DMContinuousStatisticsExt* getConStatistics() const;
  /// The discrete statistics, owned by this summary, or null.
  const DMDiscreteStatisticsExt* getDisStatistics() const;
  /// A copy of the current flag's text as read, or the empty text when
  /// absent.
  std::string getCurrent() const;
  /// A copy of the include-user-missing flag's text as read, or the empty
  /// text when absent.
  std::string getIncludeUMissing() const;
  /// A copy of the include-not-valid flag's text as read, or the empty text
  /// when absent.
  std::string getIncludeNotValid() const;
  /// A copy of the field's name.
  std::string getFieldName() const;
  /// The weighted number of valid values, or -1 when not given.
  long long getValidCount() const;
  /// The unweighted number of valid values, or -1 when not given.
  long long getUnweightedValid() const;
  /// The weighted number of missing values, or -1 when not given.
  long long getMissingCount() const;
  /// The unweighted number of missing values, or -1 when not given.
  long long getUnweightedMissing() const;
  /// The weighted number of invalid values, or -1 when not given.
  long long getInvalidCount() const;
  /// The unweighted number of invalid values, or -1 when not given.
  long long getUnweightedInvalid() const;

  /// Writes a `FieldSummary` element with its one statistics child, then
  /// each flag text that is not empty, the field name and each count that is
  /// 0 or more; appends it to `parent` and hands it out through `created`.
  /// Nothing is written, and `created` is null, with both statistics or
  /// neither, a statistics child that writes nothing, a flag text other than
  /// "true" and "false", an empty name, or a refusal of the XML layer.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  // One attribute and the member it fills.
  template <typename T>
  struct Item {
    const char* attribute;
    T DMFieldSummary::*member;
  };
  // The six count attributes in document order; one table for reading and
  // writing.
  static const std::array<Item<long long>, 6>& CountItems();
  // The three flag attributes in document order.
  static const std::array<Item<std::string>, 3>& FlagItems();

  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool ReadStatistics(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool HasOneKindOfStatistics() const;
  [[nodiscard]] bool ReadFlags(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool ReadFieldName(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool ReadCounts(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::unique_ptr<DMContinuousStatisticsExt> conStatistics_;
  std::unique_ptr<DMDiscreteStatisticsExt> disStatistics_;
  std::string current_;
  std::string includeUMissing_;
  std::string includeNotValid_;
  std::string fieldName_;
  long long validCount_ = -1;
  long long unweightedValid_ = -1;
  long long missingCount_ = -1;
  long long unweightedMissing_ = -1;
  long long invalidCount_ = -1;
  long long unweightedInvalid_ = -1;
};

/// The list of field summaries of a dataset.
class DMCOMMON_EXPORT DMFieldSummaries {
 public:
  /// An empty list.
  DMFieldSummaries();
  /// Reads a `FieldSummaries` element: each direct `FieldSummary` child in
  /// document order. The first child that fails to parse is dropped, makes
  /// `parseSuccess()` false and stops the reading, as do children that
  /// cannot be walked; the summaries before it stay.
  explicit DMFieldSummaries(const DmExtension::DMXMLWrapper& element);
  /// A deep copy of `other`: every field summary is copied.
  DMFieldSummaries(const DMFieldSummaries& other);
  /// Makes this list a deep copy of `other`. Pointers handed out before are
  /// invalid afterwards.
  DMFieldSummaries& operator=(const DMFieldSummaries& other);
  /// Takes `other`'s summaries; `other` is left valid but unspecified.
  DMFieldSummaries(DMFieldSummaries&& other) noexcept;
  /// Takes `other`'s summaries, dropping this list's own.
  DMFieldSummaries& operator=(DMFieldSummaries&& other) noexcept;
  /// Destroys the list and its summaries.
  ~DMFieldSummaries();

  /// False when the element this list was read from was invalid.
  bool parseSuccess() const;
  /// The number of field summaries.
  std::size_t getFieldSummaryCount() const;
  /// The field summary at `index`, owned by this list, or null when `index`
  /// is not below `getFieldSummaryCount()`.
  const DMFieldSummary* getFieldSummary(std::size_t index) const;

  /// Writes a `FieldSummaries` element with each field summary as a child in
  /// order, appends it to `parent` and hands it out through `created`. A
  /// summary that writes nothing, or a refusal of the XML layer, writes
  /// nothing at all and leaves `created` null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::vector<std::unique_ptr<DMFieldSummary>> fieldSummaries_;
};

/// A dataset-summary document: optional overall summaries and optional field
/// summaries. The metadata container keeps one and drops parts of it with
/// the release operations.
class DMCOMMON_EXPORT DMDatasetSummaries {
 public:
  /// A document without overall and field summaries; it parses and writes
  /// an empty element.
  DMDatasetSummaries();
  /// Reads a dataset-summary element, normally the root of a document, whose
  /// name is not checked: the first direct `OverallSummaries` child and the
  /// first direct `FieldSummaries` child, each if present. A child that fails
  /// to parse is dropped and makes `parseSuccess()` false, as do children
  /// that cannot be walked (an empty handle, for one); the reading stops
  /// there.
  explicit DMDatasetSummaries(const DmExtension::DMXMLWrapper& element);
  /// Parses `text` as an XML document and reads its root element as the
  /// element constructor does. Text that does not parse gives a document
  /// whose `parseSuccess()` is false; the XML layer then prints its one line
  /// to standard output. Needs the XML layer started.
  static DMDatasetSummaries fromText(const char* text);
  /// A deep copy of `other`: both parts are copied, null ones stay null.
  DMDatasetSummaries(const DMDatasetSummaries& other);
  /// Makes this document a deep copy of `other`. Pointers handed out before
  /// are invalid afterwards.
  DMDatasetSummaries& operator=(const DMDatasetSummaries& other);
  /// Takes `other`'s parts; `other` is left valid but unspecified.
  DMDatasetSummaries(DMDatasetSummaries&& other) noexcept;
  /// Takes `other`'s parts, dropping this document's own.
  DMDatasetSummaries& operator=(DMDatasetSummaries&& other) noexcept;
  /// Destroys the document and its parts.
  ~DMDatasetSummaries();

  /// False when the element this document was read from was invalid.
  bool parseSuccess() const;
  /// The overall summaries, owned by this document, or null.
  const DMOverallSummaries* getOverallSummaries() const;
  /// The field summaries, owned by this document, or null.
  const DMFieldSummaries* getFieldSummaries() const;
  /// Destroys the overall summaries; `getOverallSummaries()` is null
  /// afterwards and pointers into them are invalid. The rest stays.
  void releaseOverallSummaries();
  /// Destroys the field summaries, list and entries; `getFieldSummaries()`
  /// is null afterwards and pointers into them are invalid. The rest stays.
  void releaseFieldSummaries();

  /// Writes a `DatasetSummaries` element with the overall summaries, then
  /// the field summaries as children where present; appends it to `parent`
  /// and hands it out through `created`. A part that writes nothing, or a
  /// refusal of the XML layer, writes nothing at all and leaves `created`
  /// null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  [[nodiscard]] bool Read(const DmExtension::DMXMLWrapper& element);
  [[nodiscard]] bool Write(DmExtension::DMXMLWrapper& element) const;

  bool parseSuccess_ = true;
  std::unique_ptr<DMOverallSummaries> overallSummaries_;
  std::unique_ptr<DMFieldSummaries> fieldSummaries_;
};

#endif  // DMCOMMON_SUMMARIES_DMDATASETSUMMARIES_H
