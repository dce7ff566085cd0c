#include "dmcommon/fields/dmmodelfield.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlelement.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"
#include "tests/fields/fieldtest.h"
#include "tests/support/xmltest.h"

namespace {

using DmCppHelperV1::XMLElement;
using DmExtension::DMXMLWrapper;
using Feature = DMModelField::MFRuleFeatureType;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

using DMModelFieldXmlTest = dmtest::XmlTest;

DMDatum NullOf(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

using dmtest::SameDatum;

// The four target properties of a model field, read through GetTargetProps.
struct TargetProps {
  std::string targetField;
  DMDatum targetValue;
  std::string group;
  std::string tag;
};

TargetProps PropsOf(const DMModelField& field) {
  TargetProps props;
  field.GetTargetProps(props.targetField, props.targetValue, props.group, props.tag);
  return props;
}

// Whether every member of `actual` equals the one of `expected`.
::testing::AssertionResult SameModelField(const DMModelField& actual,
                                          const DMModelField& expected) {
  if (actual.GetMFRole() != expected.GetMFRole()) {
    return ::testing::AssertionFailure()
           << "role " << actual.GetMFRole() << ", expected " << expected.GetMFRole();
  }
  if (actual.GetMFExtendedRole() != expected.GetMFExtendedRole()) {
    return ::testing::AssertionFailure()
           << "extended role \"" << actual.GetMFExtendedRole() << "\", expected \""
           << expected.GetMFExtendedRole() << "\"";
  }
  if (actual.GetMFRuleFeature() != expected.GetMFRuleFeature()) {
    return ::testing::AssertionFailure()
           << "rule feature " << static_cast<unsigned>(actual.GetMFRuleFeature()) << ", expected "
           << static_cast<unsigned>(expected.GetMFRuleFeature());
  }
  const TargetProps got = PropsOf(actual);
  const TargetProps want = PropsOf(expected);
  if (got.targetField != want.targetField) {
    return ::testing::AssertionFailure()
           << "target field \"" << got.targetField << "\", expected \"" << want.targetField << "\"";
  }
  if (auto same = SameDatum(got.targetValue, want.targetValue); !same) {
    return ::testing::AssertionFailure() << "target value: " << same.message();
  }
  if (got.group != want.group) {
    return ::testing::AssertionFailure()
           << "group \"" << got.group << "\", expected \"" << want.group << "\"";
  }
  if (got.tag != want.tag) {
    return ::testing::AssertionFailure()
           << "tag \"" << got.tag << "\", expected \"" << want.tag << "\"";
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult IsDefault(const DMModelField& field) {
  return SameModelField(field, DMModelField());
}

// A model field with the given role, extended role, rule feature and target
// properties.
DMModelField Make(DMModelField::MFRoleType role, const std::string& extendedRole, Feature feature,
                  const std::string& targetField, const DMDatum& targetValue,
                  const std::string& group, const std::string& tag) {
  DMModelField field(role, extendedRole, feature);
  EXPECT_TRUE(field.SetTargetProps(targetField, targetValue, group, tag));
  return field;
}

// The text that `field` writes under a new root element, or "" when it writes
// nothing (then `created` must be null and the root empty).
std::string Written(const DMModelField& field) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  field.AddToTree(document, created);
  std::string text = dmtest::XmlTest::WithoutDeclaration(document);
  if (text == "<Root/>") {
    EXPECT_EQ(created, nullptr);
    return "";
  }
  EXPECT_NE(created, nullptr);
  if (created != nullptr) {
    EXPECT_EQ(dmtest::XmlTest::NameOf(*created), "ModelField");
  }
  return text;
}

void ExpectSameModelField(const DMModelField& written, const DMModelField& read) {
  EXPECT_TRUE(SameModelField(read, written));
}

// ---------------------------------------------------------------------------
// Tables

struct RoleRow {
  DMModelField::MFRoleType role;
  const char* text;
};

TEST(DMModelFieldTest, RoleTableHoldsTheNineteenRolesInOrderWithTheirTexts) {
  const RoleRow kRows[] = {
      {DMModelField::Unknown, XMLEntities::Unknown},
      {DMModelField::PredictedValue, XMLEntities::PredictedValue},
      {DMModelField::Probability, XMLEntities::Probability},
      {DMModelField::Confidence, "confidence"},
      {DMModelField::Residual, XMLEntities::Residual},
      {DMModelField::StandardError, XMLEntities::StandardError},
      {DMModelField::ClusterId, XMLEntities::ClusterId},
      {DMModelField::ClusterAffinity, XMLEntities::ClusterAffinity},
      {DMModelField::EntityId, XMLEntities::EntityId},
      {DMModelField::EntityAffinity, XMLEntities::EntityAffinity},
      {DMModelField::UpperConfidenceLimit, XMLEntities::UpperConfidenceLimit},
      {DMModelField::LowerConfidenceLimit, XMLEntities::LowerConfidenceLimit},
      {DMModelField::Propensity, XMLEntities::Propensity},
      {DMModelField::RecordId, "recordId"},
      {DMModelField::CumulativeHazard, "cumulativeHazard"},
      {DMModelField::Warning, XMLEntities::Warning},
      {DMModelField::RuleValue, XMLEntities::RuleValue},
      {DMModelField::Extended, "extended"},
      {DMModelField::Derived, XMLEntities::Derived},
  };
  ASSERT_EQ(DMEnumDict::Size(gMFRoleDict), 19);
  for (int i = 0; i < 19; ++i) {
    SCOPED_TRACE(kRows[i].text);
    EXPECT_EQ(static_cast<int>(kRows[i].role), i);
    EXPECT_EQ(gMFRoleDict[i].value, static_cast<unsigned>(kRows[i].role));
    EXPECT_STREQ(gMFRoleDict[i].text, kRows[i].text);
  }
}

TEST(DMModelFieldTest, RoleTableMapsEveryRoleBothWaysWithoutRepeatedTexts) {
  std::set<std::string> texts;
  for (int i = 0; gMFRoleDict[i].text != nullptr; ++i) {
    const char* text = gMFRoleDict[i].text;
    EXPECT_TRUE(texts.insert(text).second) << "repeated text " << text;
    EXPECT_EQ(DMEnumDict::IndexOfText(gMFRoleDict, text), i);
    EXPECT_STREQ(DMEnumDict::TextOfValue(gMFRoleDict, gMFRoleDict[i].value), text);
  }
}

TEST(DMModelFieldTest, UnsetIsNumberNineteenAndHasNoText) {
  EXPECT_EQ(static_cast<unsigned>(DMModelField::Unset), 19U);
  EXPECT_EQ(DMEnumDict::TextOfValue(gMFRoleDict, DMModelField::Unset), nullptr);
}

TEST(DMModelFieldTest, RuleFeatureTableStartsWithNoneAsTheEmptyTextThenTheSevenFeatures) {
  struct Row {
    Feature feature;
    const char* text;
  };
  const Row kRows[] = {
      {Feature::None, ""},
      {Feature::Antecedent, XMLEntities::Antecedent},
      {Feature::Consequent, XMLEntities::Consequent},
      {Feature::Rule, XMLEntities::Rule},
      {Feature::RuleId, XMLEntities::RuleId},
      {Feature::Confidence, XMLEntities::Confidence},
      {Feature::Support, XMLEntities::Support},
      {Feature::Lift, XMLEntities::Lift},
  };
  ASSERT_EQ(DMEnumDict::Size(gMFRuleFeatureDict), 8);
  std::set<std::string> texts;
  for (int i = 0; i < 8; ++i) {
    SCOPED_TRACE(kRows[i].text);
    EXPECT_EQ(gMFRuleFeatureDict[i].value, static_cast<unsigned>(kRows[i].feature));
    EXPECT_STREQ(gMFRuleFeatureDict[i].text, kRows[i].text);
    EXPECT_TRUE(texts.insert(kRows[i].text).second);
    EXPECT_EQ(DMEnumDict::IndexOfText(gMFRuleFeatureDict, kRows[i].text), i);
    EXPECT_STREQ(DMEnumDict::TextOfValue(gMFRuleFeatureDict, gMFRuleFeatureDict[i].value),
                 kRows[i].text);
  }
  EXPECT_EQ(static_cast<unsigned>(Feature::Antecedent), 0U);
  EXPECT_EQ(static_cast<unsigned>(Feature::Lift), 6U);
  EXPECT_EQ(static_cast<unsigned>(Feature::None), 7U);
}

// ---------------------------------------------------------------------------
// Construction and target properties

TEST(DMModelFieldTest, DefaultHasRoleUnsetRuleFeatureNoneAndEmptyTargetProps) {
  const DMModelField field;
  EXPECT_EQ(field.GetMFRole(), DMModelField::Unset);
  EXPECT_EQ(field.GetMFExtendedRole(), "");
  EXPECT_EQ(field.GetMFRuleFeature(), Feature::None);
  const TargetProps props = PropsOf(field);
  EXPECT_EQ(props.targetField, "");
  EXPECT_TRUE(SameDatum(props.targetValue, DMDatum()));
  EXPECT_EQ(props.group, "");
  EXPECT_EQ(props.tag, "");
}

TEST(DMModelFieldTest, DefaultWritesNothingAndRefusesTargetProps) {
  DMModelField field;
  EXPECT_EQ(Written(field), "");
  EXPECT_FALSE(field.SetTargetProps("Churn", DMDatum("yes"), "g", "t"));
  EXPECT_TRUE(IsDefault(field));
}

TEST(DMModelFieldTest, ConstructorTakesRoleExtendedRoleAndRuleFeatureWithDefaultTargetProps) {
  const DMModelField field(DMModelField::Extended, "lift chart", Feature::Support);
  EXPECT_EQ(field.GetMFRole(), DMModelField::Extended);
  EXPECT_EQ(field.GetMFExtendedRole(), "lift chart");
  EXPECT_EQ(field.GetMFRuleFeature(), Feature::Support);
  const TargetProps props = PropsOf(field);
  EXPECT_EQ(props.targetField, "");
  EXPECT_TRUE(SameDatum(props.targetValue, DMDatum()));
  EXPECT_EQ(props.group, "");
  EXPECT_EQ(props.tag, "");
}

TEST(DMModelFieldTest, ConstructorWithRoleUnsetGivesAnInvalidModelField) {
  DMModelField field(DMModelField::Unset, "x", Feature::Lift);
  EXPECT_FALSE(field.SetTargetProps("Churn", DMDatum(1LL), "", ""));
  EXPECT_EQ(Written(field), "");
}

TEST(DMModelFieldTest, SetTargetPropsStoresAllFourAndGetTargetPropsCopiesThemOut) {
  DMModelField field(DMModelField::Probability, "", Feature::None);
  EXPECT_TRUE(field.SetTargetProps("Churn", DMDatum("yes"), "churn model", "p1"));
  const TargetProps props = PropsOf(field);
  EXPECT_EQ(props.targetField, "Churn");
  EXPECT_TRUE(SameDatum(props.targetValue, DMDatum("yes")));
  EXPECT_EQ(props.group, "churn model");
  EXPECT_EQ(props.tag, "p1");
}

TEST(DMModelFieldTest, SetTargetPropsReplacesEveryPropertyIncludingWithEmptyOnes) {
  DMModelField field(DMModelField::Probability, "", Feature::None);
  ASSERT_TRUE(field.SetTargetProps("Churn", DMDatum("yes"), "g", "t"));
  EXPECT_TRUE(field.SetTargetProps("", DMDatum(), "", ""));
  EXPECT_TRUE(SameModelField(field, DMModelField(DMModelField::Probability, "", Feature::None)));
}

TEST(DMModelFieldTest, GetTargetPropsReplacesWhatTheArgumentsHeld) {
  const DMModelField field(DMModelField::Residual, "", Feature::None);
  std::string targetField = "old";
  DMDatum targetValue(3.5);
  std::string group = "old group";
  std::string tag = "old tag";
  field.GetTargetProps(targetField, targetValue, group, tag);
  EXPECT_EQ(targetField, "");
  EXPECT_TRUE(SameDatum(targetValue, DMDatum()));
  EXPECT_EQ(group, "");
  EXPECT_EQ(tag, "");
}

TEST(DMModelFieldTest, CopyTakesEveryMemberWithItsOwnTargetText) {
  DMModelField original =
      Make(DMModelField::Probability, "ext", Feature::Rule, "Churn", DMDatum("yes"), "g", "t");
  const DMModelField copy(original);
  EXPECT_TRUE(SameModelField(copy, original));
  EXPECT_NE(PropsOf(copy).targetValue.GetString(), PropsOf(original).targetValue.GetString());
  ASSERT_TRUE(original.SetTargetProps("Other", DMDatum("no"), "", ""));
  EXPECT_STREQ(PropsOf(copy).targetValue.GetString(), "yes");
  EXPECT_EQ(PropsOf(copy).targetField, "Churn");
}

TEST(DMModelFieldTest, AssignmentReplacesEveryMemberAndSelfAssignmentChangesNothing) {
  const DMModelField source = Make(DMModelField::ClusterId, "ext", Feature::Lift, "Segment",
                                   DMDatum(4LL), "clusters", "k4");
  DMModelField target(DMModelField::Residual, "other", Feature::Antecedent);
  target = source;
  EXPECT_TRUE(SameModelField(target, source));
  DMModelField& alias = target;
  target = alias;
  EXPECT_TRUE(SameModelField(target, source));
}

// ---------------------------------------------------------------------------
// Reading

// Reads `root` through the handle and through the element view and checks
// that both give `expected`.
void ExpectBothReadersGive(const DMXMLWrapper& root, const DMModelField& expected) {
  EXPECT_TRUE(SameModelField(DMModelField(root), expected)) << "through the handle";
  const XMLElement view(root);
  EXPECT_TRUE(SameModelField(DMModelField(view), expected)) << "through the element view";
}

TEST_F(DMModelFieldXmlTest, ReadsEveryRoleTextAsItsRole) {
  for (int i = 0; gMFRoleDict[i].text != nullptr; ++i) {
    SCOPED_TRACE(gMFRoleDict[i].text);
    const std::string document = std::string("<ModelField role=\"") + gMFRoleDict[i].text + "\"/>";
    DMXMLWrapper& root = Parse(document.c_str());
    const auto role = static_cast<DMModelField::MFRoleType>(gMFRoleDict[i].value);
    ExpectBothReadersGive(root, DMModelField(role, "", Feature::None));
  }
}

TEST_F(DMModelFieldXmlTest, ReadsRoleConfidenceFromTheLiteralText) {
  DMXMLWrapper& root = Parse("<ModelField role=\"confidence\"/>");
  EXPECT_EQ(DMModelField(root).GetMFRole(), DMModelField::Confidence);
  EXPECT_EQ(static_cast<unsigned>(DMModelField(root).GetMFRole()), 3U);
}

TEST_F(DMModelFieldXmlTest, ReadsTheConfidenceEntityAsARuleFeatureNotARole) {
  const std::string document = std::string("<ModelField role=\"ruleValue\" ruleFeature=\"") +
                               XMLEntities::Confidence + "\"/>";
  DMXMLWrapper& root = Parse(document.c_str());
  const DMModelField field(root);
  EXPECT_EQ(field.GetMFRole(), DMModelField::RuleValue);
  EXPECT_EQ(field.GetMFRuleFeature(), Feature::Confidence);
  EXPECT_EQ(static_cast<unsigned>(field.GetMFRuleFeature()), 4U);
}

TEST_F(DMModelFieldXmlTest, ReadsEveryRuleFeatureText) {
  for (int i = 1; gMFRuleFeatureDict[i].text != nullptr; ++i) {
    SCOPED_TRACE(gMFRuleFeatureDict[i].text);
    const std::string document = std::string("<ModelField role=\"ruleValue\" ruleFeature=\"") +
                                 gMFRuleFeatureDict[i].text + "\"/>";
    DMXMLWrapper& root = Parse(document.c_str());
    const auto feature = static_cast<Feature>(gMFRuleFeatureDict[i].value);
    ExpectBothReadersGive(root, DMModelField(DMModelField::RuleValue, "", feature));
  }
}

TEST_F(DMModelFieldXmlTest, ReadsAnElementWithoutRuleFeatureAsNone) {
  DMXMLWrapper& root = Parse("<ModelField role=\"residual\"/>");
  ExpectBothReadersGive(root, DMModelField(DMModelField::Residual, "", Feature::None));
}

TEST_F(DMModelFieldXmlTest, ReadsAnEmptyRuleFeatureAsNone) {
  DMXMLWrapper& root = Parse("<ModelField role=\"residual\" ruleFeature=\"\"/>");
  ExpectBothReadersGive(root, DMModelField(DMModelField::Residual, "", Feature::None));
}

TEST_F(DMModelFieldXmlTest, ReadsEveryAttribute) {
  DMXMLWrapper& root = Parse(
      "<ModelField role=\"probability\" extendedRole=\"calibrated\" ruleFeature=\"support\""
      " targetField=\"Churn\" value=\"yes\" targetFieldStorage=\"string\" group=\"churn model\""
      " tag=\"p1\"/>");
  ExpectBothReadersGive(root, Make(DMModelField::Probability, "calibrated", Feature::Support,
                                   "Churn", DMDatum("yes"), "churn model", "p1"));
}

struct TargetCase {
  const char* document;
  DMDatum expected;
};

TEST_F(DMModelFieldXmlTest, ReadsTheTargetValueAsItsStorageSays) {
  const TargetCase kCases[] = {
      {R"(<ModelField role="probability" value="42" targetFieldStorage="integer"/>)",
       DMDatum(42LL)},
      {R"(<ModelField role="probability" value="-7" targetFieldStorage="integer"/>)",
       DMDatum(-7LL)},
      {R"(<ModelField role="probability" value="2.5" targetFieldStorage="real"/>)", DMDatum(2.5)},
      {R"(<ModelField role="probability" value="42" targetFieldStorage="real"/>)", DMDatum(42.0)},
      {R"(<ModelField role="probability" value="42" targetFieldStorage="string"/>)", DMDatum("42")},
      {R"(<ModelField role="probability" value="" targetFieldStorage="string"/>)", DMDatum("")},
      {R"(<ModelField role="probability" value="15000" targetFieldStorage="date"/>)",
       DMDatum(15000.0)},
      {R"(<ModelField role="probability" value="3600.5" targetFieldStorage="time"/>)",
       DMDatum(3600.5)},
      {R"(<ModelField role="probability" value="1.3e9" targetFieldStorage="timestamp"/>)",
       DMDatum(1.3e9)},
      // The integer reader takes the leading number, as the handle's "%lld" does.
      {R"(<ModelField role="probability" value=" 12kg" targetFieldStorage="integer"/>)",
       DMDatum(12LL)},
      // Infinities and not-a-number are no failure of the datum reader: they
      // leave the target value null.
      {R"(<ModelField role="probability" value="INF" targetFieldStorage="real"/>)", DMDatum()},
      {R"(<ModelField role="probability" value="-INF" targetFieldStorage="date"/>)", DMDatum()},
      {R"(<ModelField role="probability" value="NaN" targetFieldStorage="real"/>)", DMDatum()},
      // The storage alone is not read.
      {R"(<ModelField role="probability" targetFieldStorage="bogus"/>)", DMDatum()},
  };
  for (const TargetCase& c : kCases) {
    SCOPED_TRACE(c.document);
    DMXMLWrapper& root = Parse(c.document);
    DMModelField expected(DMModelField::Probability, "", Feature::None);
    ASSERT_TRUE(expected.SetTargetProps("", c.expected, "", ""));
    ExpectBothReadersGive(root, expected);
  }
}

TEST_F(DMModelFieldXmlTest, ReadsAnElementOfAnyName) {
  DMXMLWrapper& root = Parse("<Other role=\"derived\"/>");
  ExpectBothReadersGive(root, DMModelField(DMModelField::Derived, "", Feature::None));
}

TEST(DMModelFieldTest, ReadsAnEmptyHandleAsTheDefault) {
  const DMXMLWrapper empty;
  EXPECT_TRUE(IsDefault(DMModelField(empty)));
  const XMLElement view(empty);
  EXPECT_TRUE(IsDefault(DMModelField(view)));
}

TEST_F(DMModelFieldXmlTest, ReadsAValueWithoutTargetFieldStorageAsRoleUnset) {
  DMXMLWrapper& root = Parse("<ModelField role=\"probability\" value=\"yes\"/>");
  EXPECT_EQ(DMModelField(root).GetMFRole(), DMModelField::Unset);
  const XMLElement view(root);
  EXPECT_EQ(DMModelField(view).GetMFRole(), DMModelField::Unset);
}

struct MalformedCase {
  const char* why;
  const char* document;
};

TEST_F(DMModelFieldXmlTest, ReadsMalformedElementsAsTheDefaultWithRoleUnset) {
  const MalformedCase kCases[] = {
      {"no role", R"(<ModelField extendedRole="x" targetField="Churn"/>)"},
      {"empty role", R"(<ModelField role=""/>)"},
      {"role of another case", R"(<ModelField role="Confidence"/>)"},
      {"role with blanks", R"(<ModelField role=" residual"/>)"},
      {"role that is no role", R"(<ModelField role="bogus"/>)"},
      {"rule feature entity as role", R"(<ModelField role="antecedent"/>)"},
      {"role unset has no text", R"(<ModelField role="unset"/>)"},
      {"rule feature that is none", R"(<ModelField role="ruleValue" ruleFeature="none"/>)"},
      {"rule feature of another case", R"(<ModelField role="ruleValue" ruleFeature="Lift"/>)"},
      {"value without storage",
       R"(<ModelField role="probability" extendedRole="x" targetField="Churn" value="yes"
           group="g" tag="t"/>)"},
      {"storage unknown",
       R"(<ModelField role="probability" value="1" targetFieldStorage="unknown"/>)"},
      {"storage that is none",
       R"(<ModelField role="probability" value="1" targetFieldStorage="bogus"/>)"},
      {"storage empty", R"(<ModelField role="probability" value="1" targetFieldStorage=""/>)"},
      {"storage of another case",
       R"(<ModelField role="probability" value="1" targetFieldStorage="Integer"/>)"},
      {"integer that is no number",
       R"(<ModelField role="probability" value="abc" targetFieldStorage="integer"/>)"},
      {"empty integer",
       R"(<ModelField role="probability" value="" targetFieldStorage="integer"/>)"},
      {"real that is no number",
       R"(<ModelField role="probability" value="2.5x" targetFieldStorage="real"/>)"},
      {"empty real", R"(<ModelField role="probability" value="" targetFieldStorage="time"/>)"},
  };
  for (const MalformedCase& c : kCases) {
    SCOPED_TRACE(c.why);
    DMXMLWrapper& root = Parse(c.document);
    ExpectBothReadersGive(root, DMModelField());
    EXPECT_EQ(Written(DMModelField(root)), "");
  }
}

// ---------------------------------------------------------------------------
// Writing

TEST(DMModelFieldTest, WritesTheRoleAlone) {
  EXPECT_EQ(Written(DMModelField(DMModelField::PredictedValue, "", Feature::None)),
            "<Root><ModelField role=\"predictedValue\"/></Root>");
}

TEST(DMModelFieldTest, WritesTheLiteralRoleTexts) {
  EXPECT_EQ(Written(DMModelField(DMModelField::Confidence, "", Feature::None)),
            "<Root><ModelField role=\"confidence\"/></Root>");
  EXPECT_EQ(Written(DMModelField(DMModelField::RecordId, "", Feature::None)),
            "<Root><ModelField role=\"recordId\"/></Root>");
  EXPECT_EQ(Written(DMModelField(DMModelField::CumulativeHazard, "", Feature::None)),
            "<Root><ModelField role=\"cumulativeHazard\"/></Root>");
  EXPECT_EQ(Written(DMModelField(DMModelField::Extended, "", Feature::None)),
            "<Root><ModelField role=\"extended\"/></Root>");
}

TEST(DMModelFieldTest, WritesEveryAttributeThatIsSet) {
  const DMModelField field = Make(DMModelField::Probability, "calibrated", Feature::Support,
                                  "Churn", DMDatum("yes"), "churn model", "p1");
  EXPECT_EQ(Written(field),
            "<Root><ModelField extendedRole=\"calibrated\" group=\"churn model\""
            " role=\"probability\" ruleFeature=\"support\" tag=\"p1\" targetField=\"Churn\""
            " targetFieldStorage=\"string\" value=\"yes\"/></Root>");
}

TEST(DMModelFieldTest, NeverWritesRuleFeatureNone) {
  const DMModelField field =
      Make(DMModelField::Residual, "", Feature::None, "Sales", DMDatum(), "", "");
  EXPECT_EQ(Written(field), "<Root><ModelField role=\"residual\" targetField=\"Sales\"/></Root>");
}

TEST(DMModelFieldTest, WritesTheTargetValueWithItsStorage) {
  struct Case {
    DMDatum value;
    const char* expected;
  };
  const Case kCases[] = {
      {DMDatum(42LL),
       R"(<Root><ModelField role="probability" targetFieldStorage="integer" value="42"/></Root>)"},
      {DMDatum(-9223372036854775807LL - 1),
       R"(<Root><ModelField role="probability" targetFieldStorage="integer")"
       R"( value="-9223372036854775808"/></Root>)"},
      {DMDatum(2.5),
       R"(<Root><ModelField role="probability" targetFieldStorage="real" value="2.5"/></Root>)"},
      {DMDatum(0.1),
       R"(<Root><ModelField role="probability" targetFieldStorage="real" value="0.1"/></Root>)"},
      {DMDatum(1e300),
       R"(<Root><ModelField role="probability" targetFieldStorage="real" value="1e+300"/></Root>)"},
      {DMDatum("yes"),
       R"(<Root><ModelField role="probability" targetFieldStorage="string" value="yes"/></Root>)"},
      {DMDatum(""),
       R"(<Root><ModelField role="probability" targetFieldStorage="string" value=""/></Root>)"},
      {NullOf(DMDatum::RealType), R"(<Root><ModelField role="probability"/></Root>)"},
      {NullOf(DMDatum::StringType), R"(<Root><ModelField role="probability"/></Root>)"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.expected);
    EXPECT_EQ(Written(Make(DMModelField::Probability, "", Feature::None, "", c.value, "", "")),
              c.expected);
  }
}

TEST(DMModelFieldTest, AppendsItsElementAfterTheParentsChildren) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* first = nullptr;
  ASSERT_EQ(document.addElement("First", &first), DmExtension::DM_XML_OK);
  DMXMLWrapper* created = nullptr;
  DMModelField(DMModelField::Warning, "", Feature::None).AddToTree(document, created);
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document),
            "<Root><First/><ModelField role=\"warning\"/></Root>");
}

TEST(DMModelFieldTest, WritesNothingForARoleOutsideTheTable) {
  EXPECT_EQ(Written(DMModelField(static_cast<DMModelField::MFRoleType>(42), "", Feature::None)),
            "");
}

TEST(DMModelFieldTest, ARuleFeatureOutsideTheTableFailsTheWriteAndLeavesTheParentUnchanged) {
  EXPECT_EQ(Written(DMModelField(DMModelField::RuleValue, "ext", static_cast<Feature>(42))), "");
}

TEST(DMModelFieldTest, WritesNothingUnderAParentWithoutElement) {
  DMXMLWrapper parent;
  DMXMLWrapper* created = &parent;
  DMModelField(DMModelField::Warning, "", Feature::None).AddToTree(parent, created);
  EXPECT_EQ(created, nullptr);
}

// ---------------------------------------------------------------------------
// Round trips

TEST(DMModelFieldTest, RoundTripsATargetValueOfEachType) {
  const DMDatum kValues[] = {DMDatum(42LL),       DMDatum(-1LL),  DMDatum(2.5),   DMDatum(0.1),
                             DMDatum(-1234.5678), DMDatum(1e300), DMDatum("yes"), DMDatum("")};
  for (const DMDatum& value : kValues) {
    const DMModelField field = Make(DMModelField::Probability, "calibrated", Feature::Consequent,
                                    "Churn", value, "g", "t");
    const std::string text = dmtest::ExpectXmlRoundTrip(field, ExpectSameModelField);
    SCOPED_TRACE(text);
    EXPECT_NE(text, "");
  }
}

TEST(DMModelFieldTest, RoundTripsEveryRoleAndRuleFeature) {
  for (int i = 0; gMFRoleDict[i].text != nullptr; ++i) {
    const auto role = static_cast<DMModelField::MFRoleType>(gMFRoleDict[i].value);
    for (int j = 0; gMFRuleFeatureDict[j].text != nullptr; ++j) {
      const auto feature = static_cast<Feature>(gMFRuleFeatureDict[j].value);
      SCOPED_TRACE(std::string(gMFRoleDict[i].text) + " " + gMFRuleFeatureDict[j].text);
      dmtest::ExpectXmlRoundTrip(DMModelField(role, "", feature), ExpectSameModelField);
    }
  }
}

TEST(DMModelFieldTest, ReadsARealTargetValueBackEqualThroughTheElementView) {
  const DMModelField field =
      Make(DMModelField::Probability, "", Feature::None, "Churn", DMDatum(-1234.5678), "", "");
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  field.AddToTree(document, created);
  ASSERT_NE(created, nullptr);
  const XMLElement view(*created);
  EXPECT_TRUE(SameModelField(DMModelField(view), field));
}

TEST(DMModelFieldTest, KeepsFifteenSignificantDigitsOfARealTargetValue) {
  const DMModelField field =
      Make(DMModelField::Probability, "", Feature::None, "", DMDatum(1.0 / 3.0), "", "");
  EXPECT_EQ(Written(field), R"(<Root><ModelField role="probability" targetFieldStorage="real")"
                            R"( value="0.333333333333333"/></Root>)");
}

}  // namespace
