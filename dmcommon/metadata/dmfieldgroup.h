#ifndef DMCOMMON_METADATA_DMFIELDGROUP_H
#define DMCOMMON_METADATA_DMFIELDGROUP_H

#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// A named set of fields of a dataset that belong together: a plain group,
/// a multiple-category or multiple-dichotomy response set, or a split group.
/// The member names are kept as given; nothing checks them against the
/// fields of a container.
class DMCOMMON_EXPORT DMFieldGroup {
 public:
  /// The kind of group. The numbers are part of the interface and of the XML
  /// mapping (`gGroupTypeDict`).
  enum class GroupType : unsigned {
    FieldGroup = 0,
    MultiCategorySet = 1,
    MultiDichotomySet = 2,
    SplitGroup = 3,
  };

  /// A plain `FieldGroup` with an empty name, no members, no label and no
  /// counted value.
  DMFieldGroup();
  /// A group of `type` named `name` with the members `fieldNames` in order,
  /// the display label `label` and `countedValue`, the value counted as a
  /// positive answer in a dichotomy set. Nothing is checked: an empty member
  /// list is taken as it is.
  DMFieldGroup(GroupType type, const std::string& name, const std::vector<std::string>& fieldNames,
               const std::string& label, const std::string& countedValue);
  /// A copy of `other`.
  DMFieldGroup(const DMFieldGroup& other);
  /// Makes this group a copy of `other`.
  DMFieldGroup& operator=(const DMFieldGroup& other);
  /// Destroys the group.
  ~DMFieldGroup();

  /// The kind of group.
  GroupType GetType() const;
  /// The group's name; may be empty.
  const std::string& GetName() const;
  /// The names of the member fields in order.
  const std::vector<std::string>& GetFieldNames() const;
  /// The display label; empty when there is none.
  const std::string& GetLabel() const;
  /// The value counted as a positive answer; empty when there is none.
  const std::string& GetCountedValue() const;

  /// Writes the group as a free `FieldGroup` element of `parent`'s document:
  /// its type entity and name, the display label and counted value only when
  /// not empty, then one `FieldName` child per member. The element is
  /// appended to `parent` and handed out through `created`, owned by
  /// `parent`. A group without members, or of a type outside the
  /// enumeration, writes nothing; so does a refusal of the XML layer. Then
  /// `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  GroupType type_;
  std::string name_;
  std::vector<std::string> fieldNames_;
  std::string label_;
  std::string countedValue_;
};

/// Group types with their XML entities.
inline constexpr DMEnumDictEntry gGroupTypeDict[] = {
    {static_cast<unsigned>(DMFieldGroup::GroupType::FieldGroup),
     DmCppHelperV1::XMLEntities::FieldGroup},
    {static_cast<unsigned>(DMFieldGroup::GroupType::MultiCategorySet),
     DmCppHelperV1::XMLEntities::MultiCategorySet},
    {static_cast<unsigned>(DMFieldGroup::GroupType::MultiDichotomySet),
     DmCppHelperV1::XMLEntities::MultiDichotomySet},
    {static_cast<unsigned>(DMFieldGroup::GroupType::SplitGroup),
     DmCppHelperV1::XMLEntities::SplitGroup},
    {0, nullptr},
};

#endif  // DMCOMMON_METADATA_DMFIELDGROUP_H
