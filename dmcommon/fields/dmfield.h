#ifndef DMCOMMON_FIELDS_DMFIELD_H
#define DMCOMMON_FIELDS_DMFIELD_H

#include <memory>
#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

class DMCatStats;
class DMContStats;
class DMFormat;
class DMGeo;
class DMModelField;

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// One field (variable) of a dataset: its name, measurement level, storage,
/// role, list structure, label, valid range, category values, user-missing
/// values, value labels, display format (a private one or the name of a shared
/// one) and its optional components: model-field and geospatial information,
/// categorical or continuous statistics, and the base field it was derived
/// from.
///
/// The setters keep the field consistent: a value is taken only when it suits
/// the storage and measurement level, and a field without a name refuses
/// every change but `SetMaxStringLength` and `SetLabel`. A refused change
/// leaves the field as it was and shows only as a false result, where the
/// setter has one. Every component is the field's own copy.
class DMCOMMON_EXPORT DMField {
 public:
  // The enumerations are scoped because they share enumerator names (Unknown
  // is a storage and a measurement level). Their numbers are part of the
  // interface and of the XML mapping.

  /// How the field's data are stored.
  enum class StorageType : unsigned {
    Unknown = 0,
    Integer = 1,
    Real = 2,
    String = 3,
    Date = 4,
    Time = 5,
    Timestamp = 6,
  };

  /// The measurement level. Nominal, Ordinal, Flag and Discrete are the
  /// categorical levels, the only ones with category values and categorical
  /// statistics; Continuous alone has a range and continuous statistics.
  enum class FieldType : unsigned {
    Continuous = 0,
    Nominal = 1,
    Ordinal = 2,
    Flag = 3,
    Discrete = 4,
    Typeless = 5,
    Unknown = 6,
  };

  /// The modelling role.
  enum class RoleType : unsigned {
    Input = 0,
    Target = 1,
    Both = 2,
    Partition = 3,
    Split = 4,
    FreqWeight = 5,
    RecordId = 6,
    None = 7,
  };

  /// Whether each value of the field is a list.
  enum class StructureType : unsigned {
    List = 0,
    Primitive = 1,
  };

  /// A field without a name: measurement Unknown, storage Unknown, role None,
  /// structure Primitive, structure storage Unknown, no declared maximum
  /// string length (0), depth and element count -1, the empty range, default
  /// missing values and nothing else. It refuses most setters until assigned.
  DMField();
  /// A field with the given name, measurement level, storage and role, the
  /// rest as the default constructor leaves it. The name is not checked: an
  /// empty one gives an unusable field.
  DMField(const std::string& name, FieldType type, StorageType storage, RoleType role);
  /// Reads a `Field` element, or a `BaseField` element when `isBase` (whose
  /// own `BaseField` children are then ignored). All or nothing: an element
  /// that breaks any rule of the form (no name, an enumerated text that is no
  /// entity, a negative or malformed count, a malformed value, a format or
  /// statistics that do not suit the field, statistics of zero weight, an
  /// invalid model field or base field) gives the default field, whose empty
  /// name marks the failure. Values the setters would refuse (a range on a
  /// field that is not Continuous, category values on one that is not
  /// categorical, values that do not suit the storage) are dropped, not
  /// failed.
  DMField(const DmExtension::DMXMLWrapper& element, bool isBase);
  /// A deep copy: every component of `other` is copied into a new object of
  /// the same class; null components stay null.
  DMField(const DMField& other);
  /// Makes this field a deep copy of `other`, releasing the components it
  /// held. Assigning a field to itself, or to one of its own components (its
  /// base field), is safe.
  DMField& operator=(const DMField& other);
  /// Destroys the field and every component it owns.
  ~DMField();

  /// The name; empty for an unusable field.
  std::string GetName() const;
  /// The measurement level.
  FieldType GetType() const;
  /// The storage type.
  StorageType GetStorage() const;
  /// The modelling role.
  RoleType GetRole() const;
  /// The free-text refinement of the role; empty when there is none.
  std::string GetSubRole() const;
  /// The declared maximum string length; 0 when none is declared.
  unsigned int GetMaxStringLength() const;
  /// The valid range: the empty range `DMRange()` unless a Continuous field
  /// was given one.
  const DMRange& GetRange() const;
  /// The category values; empty unless the field is categorical.
  const std::vector<DMValue>& GetValues() const;
  /// The display label; empty when there is none.
  const std::string& GetLabel() const;
  /// The user-missing values.
  const DMMissingValues& GetMissingValues() const;
  /// The value labels.
  const std::vector<DMValue>& GetValueLabels() const;
  /// The field's own format, owned by the field; null when it has none.
  const DMFormat* GetPrivateFormat() const;
  /// The name of the shared format the field uses; empty when it uses none.
  std::string GetFormatReference() const;
  /// The model-field information, owned by the field; null when absent.
  const DMModelField* GetModelField() const;
  /// The geospatial information, owned by the field; null when absent.
  const DMGeo* GetGeo() const;
  /// The categorical statistics, owned by the field; null when absent.
  const DMCatStats* GetCatStats() const;
  /// The continuous statistics, owned by the field; null when absent.
  const DMContStats* GetContStats() const;
  /// The field this one was derived from, owned by the field; null when
  /// absent. A base field never has a base field of its own.
  const DMField* GetBaseField() const;
  /// Whether each value is a list.
  StructureType GetStructure() const;
  /// The storage type of a list's elements.
  StorageType GetStructureStorage() const;
  /// The list nesting depth; negative when not declared.
  int GetDepth() const;
  /// The number of list elements; negative when not declared.
  int GetElementCount() const;

  /// Replaces the name. Does nothing when the field has no name, so an unnamed
  /// field gets one only from a constructor or an assignment. An empty
  /// `name` is taken and makes the field unusable.
  void SetName(const std::string& name);
  /// Sets the role; does nothing when the field has no name.
  void SetRole(RoleType role);
  /// Sets the sub-role; does nothing when the field has no name.
  void SetSubRole(const std::string& subRole);
  /// Sets the declared maximum string length, whether or not the field has a
  /// name.
  void SetMaxStringLength(unsigned int length);
  /// Sets the display label, whether or not the field has a name.
  void SetLabel(const std::string& label);
  /// Sets the valid range of a named Continuous field; otherwise does nothing.
  /// A range with both limits null, or a reversed range (both limits set, of
  /// one type, the lower above the upper), is taken whatever the storage:
  /// both mean "no range". Any other range is taken only when its lower
  /// limit's type suits the storage (`StorageMatches`), else nothing changes.
  void SetRange(const DMRange& range);
  /// Sets the category values of a named categorical field. Nothing changes
  /// when the field is not categorical or when any value is null or does not
  /// suit the storage.
  void SetValues(const std::vector<DMValue>& values);
  /// Sets the user-missing values of a named field. Nothing changes when
  /// `missingValues` is not valid (`DMMissingValues::IsValid`) or its type
  /// does not suit the storage: the type of its range's lower limit when the
  /// range is set and in order, else the type of its first listed value (with
  /// no listed values, any storage will do).
  void SetMissingValues(const DMMissingValues& missingValues);
  /// Sets the value labels of a named field of any measurement level. Nothing
  /// changes when any value is null or does not suit the storage.
  void SetValueLabels(const std::vector<DMValue>& valueLabels);
  /// Stores a clone of `format` as the field's own format and clears the
  /// format reference; null only releases the current private format. Returns
  /// false, changing nothing, when the field has no name or the format's class
  /// does not suit the storage (`MatchesFormat`). The caller keeps `format`.
  bool SetPrivateFormat(const DMFormat* format);
  /// Makes the field use the shared format named `name`, releasing its
  /// private format; an empty `name` only clears the reference. Returns false,
  /// changing nothing, when the field has no name.
  bool SetFormatReference(const std::string& name);
  /// Stores a copy of `modelField`; null releases the current one. Returns
  /// false, changing nothing, when the field has no name or the model field's
  /// role is `DMModelField::Unset`. The caller keeps `modelField`.
  bool SetModelField(const DMModelField* modelField);
  /// Stores a copy of `geo`; null releases the current one. Returns false,
  /// changing nothing, when the field has no name. The caller keeps `geo`.
  bool SetGeo(const DMGeo* geo);
  /// Sets the measurement level and drops what the new level cannot carry:
  /// Continuous drops the category values and categorical statistics; a
  /// categorical level resets the range and drops the continuous statistics;
  /// Typeless and Unknown (and any other number) drop all of them. Returns
  /// false, changing nothing, when the field has no name.
  bool SetFieldType(FieldType type);
  /// Stores a clone of the categorical statistics `stats`; null releases the
  /// current ones. Returns false, changing nothing, when the field has no
  /// name, is not categorical, or the statistics' class does not suit the
  /// storage: `DMCatStatsInt` for Integer, `DMCatStatsDbl` for Real, Date,
  /// Time and Timestamp, `DMCatStatsStr` for String. The caller keeps `stats`.
  bool SetSumStats(const DMCatStats* stats);
  /// Stores a clone of the continuous statistics `stats`; null releases the
  /// current ones. Returns false, changing nothing, when the field has no
  /// name, is not Continuous, or the statistics' class does not suit the
  /// storage: `DMContStatsInt` for Integer, `DMContStatsDbl` for Real, Date,
  /// Time and Timestamp, nothing for the others. The caller keeps `stats`.
  bool SetSumStats(const DMContStats* stats);
  /// Stores a copy of `baseField` as the field this one was derived from.
  /// Nothing changes when this field has no name or `baseField` has a base
  /// field of its own (one level only).
  void SetBaseField(const DMField& baseField);
  /// Sets the structure; does nothing when the field has no name.
  void SetStructure(StructureType structure);
  /// Sets the storage of list elements; does nothing when the field has no
  /// name.
  void SetStructureStorage(StorageType storage);
  /// Sets the list depth (negative: not declared); does nothing when the
  /// field has no name.
  void SetDepth(int depth);
  /// Sets the element count (negative: not declared); does nothing when the
  /// field has no name.
  void SetElementCount(int count);

  /// Whether `datum`'s type, null or not, suits the storage: integers suit
  /// Integer; reals suit Real, Date, Time and Timestamp; texts suit String.
  bool StorageMatches(const DMDatum& datum) const;
  /// Whether a format of `format`'s class may display data of `storage`:
  /// Integer and Real take `Number` and `Decorated`, String takes `String`,
  /// Date and Timestamp take `Date`, Time takes `Time`, Unknown nothing.
  static bool MatchesFormat(StorageType storage, const DMFormat& format);

  /// Writes the field as a free element of `parent`'s document, named
  /// `BaseField` when `isBase` and `Field` otherwise, with its attributes and
  /// components, and appends it to `parent`; `created` receives it, owned by
  /// `parent`. The base field is written only when `isBase` is false. When any
  /// part fails to write nothing is appended and `created` keeps the value the
  /// caller gave it.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created,
                 bool isBase = false) const;

  /// Writes `values` as one `Values` element with a `Value` child per value,
  /// in order, and appends it to `parent`; `created` receives it, owned by
  /// `parent`. `isFlagField` writes the flag of values that have one. An empty
  /// `values` writes nothing. `created` is null when nothing was written: an
  /// empty list, a partition above 3, or a failed add, which leaves `parent`
  /// untouched.
  static void AddValuesToTree(const std::vector<DMValue>& values, DmExtension::DMXMLWrapper& parent,
                              DmExtension::DMXMLWrapper*& created, bool isFlagField);
  /// A new format read from a `NumberFormat`, `DecoratedFormat`,
  /// `StringFormat`, `DateFormat` or `TimeFormat` element; the caller owns it.
  /// Null for an element of any other name or one whose read failed (a
  /// format of width 0).
  static DMFormat* FormatFromDOMNode(const DmExtension::DMXMLWrapper& element);
  /// Numbers the categories of `stats` for callers outside the library: one
  /// value per category whose datum is the category number as a real, whose
  /// label is the category's value as text, and whose flag and partition are
  /// those of the equal value in `values` (0 when there is none). Categories
  /// with a null value are left out. `out` is cleared first.
  static void MakeCategoryMap(const DMCatStats& stats, const std::vector<DMValue>& values,
                              std::vector<DMValue>& out);
  /// One value per category of `stats` that has a label in `valueLabels`:
  /// its datum is the category number as a real, its label that label.
  /// `out` is cleared first, and left empty when a category cannot be looked
  /// up (`DMValue::GetIndex` gives -2).
  static void MakeCategoryValueLabels(const DMCatStats& stats,
                                      const std::vector<DMValue>& valueLabels,
                                      std::vector<DMValue>& out);

 private:
  std::string name_;
  FieldType type_;
  StorageType storage_;
  RoleType role_;
  StructureType structure_;
  StorageType structureStorage_;
  std::string subRole_;
  unsigned int maxStringLength_;
  int depth_;
  int elementCount_;
  std::string label_;
  DMRange range_;
  std::vector<DMValue> values_;
  DMMissingValues missingValues_;
  std::vector<DMValue> valueLabels_;
  std::string formatReference_;
  std::unique_ptr<DMFormat> privateFormat_;
  std::unique_ptr<DMModelField> modelField_;
  std::unique_ptr<DMGeo> geo_;
  std::unique_ptr<DMCatStats> catStats_;
  std::unique_ptr<DMContStats> contStats_;
  std::unique_ptr<DMField> baseField_;
};

/// Storage types with their XML entities.
inline constexpr DMEnumDictEntry gStorageDict[] = {
    {static_cast<unsigned>(DMField::StorageType::Unknown), DmCppHelperV1::XMLEntities::Unknown},
    {static_cast<unsigned>(DMField::StorageType::Integer), DmCppHelperV1::XMLEntities::Integer},
    {static_cast<unsigned>(DMField::StorageType::Real), DmCppHelperV1::XMLEntities::Real},
    {static_cast<unsigned>(DMField::StorageType::String), DmCppHelperV1::XMLEntities::String},
    {static_cast<unsigned>(DMField::StorageType::Date), DmCppHelperV1::XMLEntities::Date},
    {static_cast<unsigned>(DMField::StorageType::Time), DmCppHelperV1::XMLEntities::Time},
    {static_cast<unsigned>(DMField::StorageType::Timestamp), DmCppHelperV1::XMLEntities::Timestamp},
    {0, nullptr},
};

/// Measurement levels with their XML entities.
inline constexpr DMEnumDictEntry gMeasureDict[] = {
    {static_cast<unsigned>(DMField::FieldType::Continuous), DmCppHelperV1::XMLEntities::Continuous},
    {static_cast<unsigned>(DMField::FieldType::Nominal), DmCppHelperV1::XMLEntities::Nominal},
    {static_cast<unsigned>(DMField::FieldType::Ordinal), DmCppHelperV1::XMLEntities::Ordinal},
    {static_cast<unsigned>(DMField::FieldType::Flag), DmCppHelperV1::XMLEntities::Flag},
    {static_cast<unsigned>(DMField::FieldType::Discrete), DmCppHelperV1::XMLEntities::Discrete},
    {static_cast<unsigned>(DMField::FieldType::Typeless), DmCppHelperV1::XMLEntities::Typeless},
    {static_cast<unsigned>(DMField::FieldType::Unknown), DmCppHelperV1::XMLEntities::Unknown},
    {0, nullptr},
};

/// Modelling roles with their XML entities.
inline constexpr DMEnumDictEntry gRoleDict[] = {
    {static_cast<unsigned>(DMField::RoleType::Input), DmCppHelperV1::XMLEntities::Input},
    {static_cast<unsigned>(DMField::RoleType::Target), DmCppHelperV1::XMLEntities::Target},
    {static_cast<unsigned>(DMField::RoleType::Both), DmCppHelperV1::XMLEntities::Both},
    {static_cast<unsigned>(DMField::RoleType::Partition), DmCppHelperV1::XMLEntities::Partition},
    {static_cast<unsigned>(DMField::RoleType::Split), DmCppHelperV1::XMLEntities::Split},
    {static_cast<unsigned>(DMField::RoleType::FreqWeight), DmCppHelperV1::XMLEntities::FreqWeight},
    {static_cast<unsigned>(DMField::RoleType::RecordId), DmCppHelperV1::XMLEntities::RecordId},
    {static_cast<unsigned>(DMField::RoleType::None), DmCppHelperV1::XMLEntities::None},
    {0, nullptr},
};

/// List structures with their XML entities.
inline constexpr DMEnumDictEntry gStructureDict[] = {
    {static_cast<unsigned>(DMField::StructureType::List), DmCppHelperV1::XMLEntities::List},
    {static_cast<unsigned>(DMField::StructureType::Primitive),
     DmCppHelperV1::XMLEntities::Primitive},
    {0, nullptr},
};

#endif  // DMCOMMON_FIELDS_DMFIELD_H
