#ifndef DMCOMMON_FIELDS_DMMODELFIELD_H
#define DMCOMMON_FIELDS_DMMODELFIELD_H

#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

namespace DmCppHelperV1 {
class XMLElement;
}  // namespace DmCppHelperV1

/// What a field means to a predictive model that produced or consumes it: the
/// kind of model output it holds, an optional free-text refinement of that
/// role, the rule feature it stands for in a rule model, the target field and
/// target value the output refers to, and a group and a tag text. A model
/// field whose role is `Unset` is invalid: it writes nothing and refuses
/// target properties, and a field refuses to own one.
class DMCOMMON_EXPORT DMModelField {
 public:
  /// The kind of model output. The numbers and the texts of `gMFRoleDict` are
  /// the XML form; `Unset` has no text and is never read or written.
  enum MFRoleType : unsigned {
    Unknown = 0,
    PredictedValue = 1,
    Probability = 2,
    Confidence = 3,
    Residual = 4,
    StandardError = 5,
    ClusterId = 6,
    ClusterAffinity = 7,
    EntityId = 8,
    EntityAffinity = 9,
    UpperConfidenceLimit = 10,
    LowerConfidenceLimit = 11,
    Propensity = 12,
    RecordId = 13,
    CumulativeHazard = 14,
    Warning = 15,
    RuleValue = 16,
    Extended = 17,
    Derived = 18,
    Unset = 19,
  };

  /// The feature of a rule model a field stands for. Scoped because
  /// `Confidence` names both a role and a rule feature.
  enum class MFRuleFeatureType : unsigned {
    Antecedent = 0,
    Consequent = 1,
    Rule = 2,
    RuleId = 3,
    Confidence = 4,
    Support = 5,
    Lift = 6,
    None = 7,
  };

  /// Role `Unset`, rule feature `None`, a null target value and empty texts.
  DMModelField();
  /// The given role, extended role and rule feature; target field, target
  /// value, group and tag at their defaults. The role is taken as given, so
  /// `Unset` gives an invalid model field.
  DMModelField(MFRoleType role, const std::string& extendedRole, MFRuleFeatureType ruleFeature);
  /// Reads a `ModelField` element. The role is required; a target value
  /// requires its storage. An element that cannot be read in full leaves
  /// every member at its default, so the role is `Unset`; nothing is thrown
  /// and the element's name is not checked.
  explicit DMModelField(const DmExtension::DMXMLWrapper& element);
  /// Reads through the element view with the same rules and outcomes as the
  /// constructor from a handle.
  explicit DMModelField(const DmCppHelperV1::XMLElement& element);
  /// A member-wise copy; the target value's text is copied.
  DMModelField(const DMModelField& other);
  /// A member-wise copy; assigning an object to itself changes nothing.
  DMModelField& operator=(const DMModelField& other);
  ~DMModelField();

  /// The kind of model output; `Unset` for an invalid model field.
  MFRoleType GetMFRole() const;
  /// A copy of the free-text role refinement; empty when there is none.
  std::string GetMFExtendedRole() const;
  /// The rule feature; `None` when the field stands for none.
  MFRuleFeatureType GetMFRuleFeature() const;

  /// Stores the target field, target value (copied), group and tag. Returns
  /// false, changing nothing, when the role is `Unset`; true otherwise.
  bool SetTargetProps(const std::string& targetField, const DMDatum& targetValue,
                      const std::string& group, const std::string& tag);
  /// Copies the target field, target value, group and tag into the
  /// arguments, replacing what they held.
  void GetTargetProps(std::string& targetField, DMDatum& targetValue, std::string& group,
                      std::string& tag) const;

  /// Writes a `ModelField` element and appends it to `parent`; `created`
  /// receives it, owned by `parent`. `created` is null and `parent` untouched
  /// when the role is `Unset` (or has no text), when `parent` has no element,
  /// or when an attribute cannot be written.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  MFRoleType role;
  std::string extendedRole;
  MFRuleFeatureType ruleFeature;
  std::string targetField;
  DMDatum targetValue;
  std::string group;
  std::string tag;
};

/// Roles and their XML texts, in the order in which reading matches them.
/// Four rows are literal texts of this library rather than vocabulary
/// entities: other components write exactly these texts, and
/// `XMLEntities::Confidence` is a rule feature, not a role.
inline constexpr DMEnumDictEntry gMFRoleDict[] = {
    {DMModelField::Unknown, DmCppHelperV1::XMLEntities::Unknown},
    {DMModelField::PredictedValue, DmCppHelperV1::XMLEntities::PredictedValue},
    {DMModelField::Probability, DmCppHelperV1::XMLEntities::Probability},
    {DMModelField::Confidence, "confidence"},
    {DMModelField::Residual, DmCppHelperV1::XMLEntities::Residual},
    {DMModelField::StandardError, DmCppHelperV1::XMLEntities::StandardError},
    {DMModelField::ClusterId, DmCppHelperV1::XMLEntities::ClusterId},
    {DMModelField::ClusterAffinity, DmCppHelperV1::XMLEntities::ClusterAffinity},
    {DMModelField::EntityId, DmCppHelperV1::XMLEntities::EntityId},
    {DMModelField::EntityAffinity, DmCppHelperV1::XMLEntities::EntityAffinity},
    {DMModelField::UpperConfidenceLimit, DmCppHelperV1::XMLEntities::UpperConfidenceLimit},
    {DMModelField::LowerConfidenceLimit, DmCppHelperV1::XMLEntities::LowerConfidenceLimit},
    {DMModelField::Propensity, DmCppHelperV1::XMLEntities::Propensity},
    {DMModelField::RecordId, "recordId"},
    {DMModelField::CumulativeHazard, "cumulativeHazard"},
    {DMModelField::Warning, DmCppHelperV1::XMLEntities::Warning},
    {DMModelField::RuleValue, DmCppHelperV1::XMLEntities::RuleValue},
    {DMModelField::Extended, "extended"},
    {DMModelField::Derived, DmCppHelperV1::XMLEntities::Derived},
    {0, nullptr},
};

/// Rule features and their XML texts. The first row maps the empty text to
/// `None`, so that an empty attribute reads as no rule feature; `None` itself
/// is never written.
inline constexpr DMEnumDictEntry gMFRuleFeatureDict[] = {
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::None), ""},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::Antecedent),
     DmCppHelperV1::XMLEntities::Antecedent},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::Consequent),
     DmCppHelperV1::XMLEntities::Consequent},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::Rule),
     DmCppHelperV1::XMLEntities::Rule},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::RuleId),
     DmCppHelperV1::XMLEntities::RuleId},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::Confidence),
     DmCppHelperV1::XMLEntities::Confidence},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::Support),
     DmCppHelperV1::XMLEntities::Support},
    {static_cast<unsigned>(DMModelField::MFRuleFeatureType::Lift),
     DmCppHelperV1::XMLEntities::Lift},
    {0, nullptr},
};

#endif  // DMCOMMON_FIELDS_DMMODELFIELD_H
