#ifndef DMCOMMON_METADATA_DMMETADATA_H
#define DMCOMMON_METADATA_DMMETADATA_H

#include <memory>
#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmfieldgroup.h"

class DMCatStats;
class DMContStats;
class DMDatasetSummaries;
class DMFormat;
class DMValue;

/// A caller's case-folding rule for field names. A container given one
/// compares names by their folded forms; the container never owns it, so it
/// must outlive every container (and copy) that uses it.
class DMCOMMON_EXPORT DMUpperFunc {
 public:
  /// Destroys the callback.
  virtual ~DMUpperFunc();
  /// The folded form of `name` (for example in upper case), used as its
  /// lookup key. Must give the same key for the same name every time.
  virtual std::string operator()(const std::string& name) const = 0;
};

/// The dataset dictionary: the fields of a dataset in order, display formats
/// shared by name with one default format per kind of storage, field groups,
/// record counts and an optional dataset-summary object. The container owns
/// everything it holds and copies deeply. Refusals show as -1, false or null;
/// nothing throws for bad input. Pointers handed out stay valid until the
/// object they point at is replaced or removed, or the container is destroyed
/// or assigned to.
class DMCOMMON_EXPORT DMMetaData {
 public:
  /// The kind of a field group.
  using GroupType = DMFieldGroup::GroupType;

  /// An empty container: no fields, formats, groups or summaries, every
  /// default-format slot unset and every count -1 (unknown). With `upper`,
  /// names are compared by their folded forms (case-insensitive); with null,
  /// exactly. `upper` is not owned.
  explicit DMMetaData(DMUpperFunc* upper);
  /// A container read from the metadata XML document `xml`: shared formats
  /// and default slots, field groups, record counts, fields (required) and
  /// dataset summaries. Any defect, including text that does not parse (the
  /// XML layer then prints its one line), gives the empty container instead;
  /// nothing is reported otherwise. `upper` is kept as the case-folding
  /// callback whatever the document says, and is not owned. Needs the XML
  /// layer started.
  DMMetaData(const std::string& xml, DMUpperFunc* upper);
  /// A deep copy of `other`: fields, shared formats (by their `Clone`),
  /// groups and summaries are copied; the case-folding callback is shared.
  DMMetaData(const DMMetaData& other);
  /// Makes this container a deep copy of `other`, destroying what it held.
  /// Assigning a container to itself is safe.
  DMMetaData& operator=(const DMMetaData& other);
  /// Destroys the container with its fields, formats, groups and summaries.
  ~DMMetaData();

  /// The number of fields.
  unsigned FieldCount() const;
  /// The field at `index`, owned by the container; null when out of range.
  const DMField* GetField(unsigned index) const;
  /// The first field whose key equals the key of `name`, owned by the
  /// container; null when there is none.
  const DMField* GetField(const std::string& name) const;
  /// The index of the first field whose key equals the key of `name`, or -1.
  /// The key of a name is the name itself, or its folded form when the
  /// container has a case-folding callback.
  int GetFieldIndex(const std::string& name) const;
  /// Appends a copy of `field` and returns its index. Returns -1, changing
  /// nothing, when the field has no name or a field with the same key exists.
  int AppendField(const DMField& field);
  /// Replaces the field at `index` by a copy of `field` and returns `index`.
  /// A null `field` removes the field at `index` (later fields move up) and
  /// returns `index`. Returns -1, changing nothing, when `index` is out of
  /// range, `field` has no name, or another field has its key. The caller
  /// keeps `field`.
  int ReplaceField(unsigned index, const DMField* field);

  /// Forwards to `DMField::SetSumStats` of the field at `index` and returns
  /// its result; false, changing nothing, when `index` is out of range. The
  /// caller keeps `stats`.
  bool SetSumStats(unsigned index, const DMCatStats* stats);
  /// Forwards to `DMField::SetSumStats` of the field at `index` and returns
  /// its result; false, changing nothing, when `index` is out of range. The
  /// caller keeps `stats`.
  bool SetSumStats(unsigned index, const DMContStats* stats);
  /// Forwards to `DMField::SetFieldType` of the field at `index` and returns
  /// its result; false, changing nothing, when `index` is out of range.
  bool SetFieldType(unsigned index, DMField::FieldType type);
  /// Forwards to `DMField::SetValues` of the field at `index`. That setter
  /// reports nothing, so the result only tells whether a field was reached:
  /// true when `index` is in range (the field may still refuse the values),
  /// false, changing nothing, when it is not.
  bool SetValues(unsigned index, const std::vector<DMValue>& values);
  /// Forwards to `DMField::SetValueLabels` of the field at `index`. The
  /// result is true when `index` is in range (the field may still refuse the
  /// labels) and false, changing nothing, when it is not.
  bool SetValueLabels(unsigned index, const std::vector<DMValue>& valueLabels);

  /// Stores a clone of `format` as a shared format and returns its index: a
  /// shared format of the same name (exact comparison) is replaced in place,
  /// otherwise the clone is appended. Every default-format slot at that index
  /// is checked again and unset when the new format no longer suits its
  /// storage. Returns -1, changing nothing, for a format of width 0 or
  /// without a name. The caller keeps `format`.
  int AddSharedFormat(const DMFormat& format);
  /// The shared format at `index`, owned by the container; null when out of
  /// range.
  const DMFormat* GetSharedFormat(unsigned index) const;
  /// The first shared format named exactly `name`, owned by the container;
  /// null when there is none.
  const DMFormat* GetSharedFormat(const std::string& name) const;
  /// Destroys the shared format at `index` (later formats move up) and
  /// returns `index`: default slots at `index` are unset, slots above it
  /// follow their formats down by one. Fields that name the format keep the
  /// name. Returns -1, changing nothing, when `index` is out of range.
  int DropSharedFormat(unsigned index);
  /// Makes the shared format named `name` the default for `storage`'s slot
  /// (Integer and Real: number; String: string; Date and Timestamp: date;
  /// Time: time) and returns its index. Returns -1, changing nothing, when no
  /// shared format has that name, the format does not suit `storage`
  /// (`DMField::MatchesFormat`), or `storage` has no slot (Unknown).
  int SetDefaultFormat(DMField::StorageType storage, const std::string& name);
  /// The default format of `storage`'s slot, owned by the container; null
  /// when the slot is unset or `storage` has no slot.
  const DMFormat* GetDefaultFormat(DMField::StorageType storage) const;

  /// Stores both counts, each as -1 when negative, only when `unweighted` is
  /// a whole number; otherwise nothing changes. The weighted count need not
  /// be whole.
  void SetRecordCounts(double unweighted, double weighted);
  /// The weighted record count when `weighted`, else the unweighted one; -1
  /// when unknown.
  double GetRecordCount(bool weighted) const;
  /// Stores the number of dropped records (-1 when negative) only when it is
  /// a whole number; otherwise nothing changes.
  void SetDroppedCount(double dropped);
  /// The number of dropped records; -1 when unknown.
  double GetDroppedCount() const;
  /// Stores `badWeight` (-1 when negative) only when it is a whole number,
  /// and `weightedDropped` (-1 when negative) always.
  void SetDroppedDetails(double badWeight, double weightedDropped);
  /// Writes the number of records dropped for a bad weight and the weighted
  /// count of dropped records into the out-parameters; -1 when unknown.
  void GetDroppedDetails(double& badWeight, double& weightedDropped) const;

  /// Appends a group of `type` named `name` with the members `fieldNames`,
  /// `label` and `countedValue`, and returns true. Returns false, changing
  /// nothing, when `fieldNames` is empty or a group of the same type and name
  /// (exact comparison) exists. Member names are not checked against the
  /// fields.
  bool SetFieldGroup(GroupType type, const std::string& name,
                     const std::vector<std::string>& fieldNames, const std::string& label,
                     const std::string& countedValue);
  /// With a negative `ordinal`, the index of the group of `type` named
  /// exactly `name`; otherwise the index of the `ordinal`-th group of `type`
  /// counting from 0, `name` unused. -1 when there is none.
  int FindFieldGroup(GroupType type, int ordinal, const std::string& name) const;
  /// Copies the members, label and counted value of the group of `type`
  /// named `name` into the out-parameters and returns true. When there is no
  /// such group, clears all three and returns false.
  bool GetFieldGroup(GroupType type, const std::string& name, std::vector<std::string>& fieldNames,
                     std::string& label, std::string& countedValue) const;
  /// Copies the name, members, label and counted value of the `ordinal`-th
  /// group of `type` (from 0) into the out-parameters and returns true. When
  /// there is no such group, clears all four and returns false.
  bool GetFieldGroup(GroupType type, unsigned ordinal, std::string& name,
                     std::vector<std::string>& fieldNames, std::string& label,
                     std::string& countedValue) const;
  /// Destroys the group of `type` named exactly `name` and returns true;
  /// false when there is none.
  bool DropFieldGroup(GroupType type, const std::string& name);

  /// True when the container has no case-folding callback.
  bool IsCaseSensitive() const;
  /// Parses `xml` as a dataset-summary document and, when it parses, makes
  /// it the container's summaries and returns true. Returns false, keeping
  /// the old summaries, for the empty text or one that does not parse (the
  /// XML layer then prints its message). Needs the XML layer started.
  bool setDatasetSummaries(const std::string& xml);
  /// Makes `summaries` the container's summaries, destroying the old ones;
  /// the container takes ownership. Null leaves the container without
  /// summaries.
  void setDatasetSummaries(DMDatasetSummaries* summaries);
  /// The dataset summaries, owned by the container; null when there are
  /// none.
  const DMDatasetSummaries* getDatasetSummaries() const;

  /// Writes the container as a metadata XML document (root `DataModel`:
  /// record counts when one of the first three is known, shared formats with
  /// the default slots, groups up to the first one without members, fields,
  /// summaries) into `xml` and returns true. Returns false, leaving `xml`
  /// untouched, when the container has no fields or a part writes nothing.
  /// Needs the XML layer started.
  bool ExportXMLDoc(std::string& xml) const;
  /// False when `text` holds a control byte XML cannot carry (1 to 8, 11, 12,
  /// 14 to 31); true otherwise, also for the empty text, TAB, LF, CR and,
  /// deliberately, the zero byte.
  static bool ValidateXMLChars(const std::string& text);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

#endif  // DMCOMMON_METADATA_DMMETADATA_H
