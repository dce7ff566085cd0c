#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/fields/dmgeo.h"
#include "dmcommon/fields/dmmodelfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/fields/fieldtest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
using Storage = DMField::StorageType;
using Type = DMField::FieldType;
using Role = DMField::RoleType;
using Structure = DMField::StructureType;

using DMFieldXmlTest = dmtest::XmlTest;

DMDatum Int(long long value) { return DMDatum(value); }
DMDatum Real(double value) { return DMDatum(value); }
DMDatum Text(const char* text) { return DMDatum(text); }

// Writes `values` with AddValuesToTree under the root of a new document and
// gives the document's text, or "<nothing>" when no element was created.
std::string ValuesText(const std::vector<DMValue>& values, bool isFlagField) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  DMField::AddValuesToTree(values, document, created, isFlagField);
  if (created == nullptr) return "<nothing>";
  return DMFieldXmlTest::WithoutDeclaration(document);
}

// The label, flag and partition of every value, as "label/flag/partition"
// items, with the datum as text in front.
std::vector<std::string> Describe(const std::vector<DMValue>& values) {
  std::vector<std::string> items;
  for (const DMValue& value : values) {
    std::string datum;
    value.GetDatum().ToString(datum, 0);
    items.push_back(datum + "=" + value.GetLabel() + "/" + std::to_string(value.GetFlag()) + "/" +
                    std::to_string(value.GetPartition()));
  }
  return items;
}

using dmtest::ExpectSameField;
using dmtest::SameDatum;
using dmtest::SameMissingValues;
using dmtest::SameRange;
using dmtest::SameValues;

// ---------------------------------------------------------------------------
// Value lists

TEST(DMFieldXmlValuesTest, AnEmptyListWritesNothingAndNullsTheOutParameter) {
  EXPECT_EQ(ValuesText({}, false), "<nothing>");
}

TEST(DMFieldXmlValuesTest, WritesEachKindOfDatumAsText) {
  EXPECT_EQ(ValuesText({DMValue(Int(-3)), DMValue(Real(2.5)), DMValue(Text("a b"))}, false),
            "<Root><Values><Value value=\"-3\"/><Value value=\"2.5\"/>"
            "<Value value=\"a b\"/></Values></Root>");
}

TEST(DMFieldXmlValuesTest, WritesFlagsOnlyForAFlagField) {
  const std::vector<DMValue> values = {DMValue(Int(1), "", 1), DMValue(Int(0), "", 2),
                                       DMValue(Int(7), "", 0)};
  EXPECT_EQ(ValuesText(values, true),
            "<Root><Values><Value flagValue=\"true\" value=\"1\"/>"
            "<Value flagValue=\"false\" value=\"0\"/><Value value=\"7\"/></Values></Root>");
  EXPECT_EQ(ValuesText(values, false),
            "<Root><Values><Value value=\"1\"/><Value value=\"0\"/><Value value=\"7\"/>"
            "</Values></Root>");
}

TEST(DMFieldXmlValuesTest, WritesAnyNonZeroFlagOtherThanOneAsFalse) {
  EXPECT_EQ(ValuesText({DMValue(Int(1), "", 5)}, true),
            "<Root><Values><Value flagValue=\"false\" value=\"1\"/></Values></Root>");
}

TEST(DMFieldXmlValuesTest, WritesPartitionsAndLabels) {
  const std::vector<DMValue> values = {DMValue(Text("a"), "Alpha", 0, 1),
                                       DMValue(Text("b"), "", 0, 2),
                                       DMValue(Text("c"), "Gamma", 0, 3)};
  EXPECT_EQ(ValuesText(values, false),
            "<Root><Values><Value definePartition=\"training\" displayLabel=\"Alpha\" value=\"a\"/>"
            "<Value definePartition=\"testing\" value=\"b\"/>"
            "<Value definePartition=\"validation\" displayLabel=\"Gamma\" value=\"c\"/>"
            "</Values></Root>");
}

TEST(DMFieldXmlValuesTest, APartitionAboveThreeWritesNothing) {
  EXPECT_EQ(ValuesText({DMValue(Int(1)), DMValue(Int(2), "", 0, 4)}, false), "<nothing>");
}

TEST(DMFieldXmlValuesTest, ANullDatumWritesTheEmptyText) {
  DMDatum null;
  null.SetNull(DMDatum::StringType);
  EXPECT_EQ(ValuesText({DMValue(null)}, false),
            "<Root><Values><Value value=\"\"/></Values></Root>");
}

TEST_F(DMFieldXmlTest, ARealReadFromADocumentWritesBackTheTextItWasReadFrom) {
  DMXMLWrapper& root = Parse("<Values><Value value=\"2.50\"/><Value value=\"1e3\"/></Values>");
  std::vector<DMValue> values;
  DmExtension::DMXMLIteratorWrapper* children = nullptr;
  ASSERT_EQ(root.getElementDirectIterator("Value", &children), DmExtension::DM_XML_OK);
  void* item = nullptr;
  while (children->nextItem(&item) == DmExtension::DM_XML_OK) {
    values.emplace_back(*static_cast<DMXMLWrapper*>(item), DMDatum::RealType);
  }
  ASSERT_EQ(values.size(), 2U);
  EXPECT_EQ(ValuesText(values, false),
            "<Root><Values><Value value=\"2.50\"/><Value value=\"1e3\"/></Values></Root>");
  EXPECT_EQ(ValuesText({DMValue(Real(1000.0))}, false),
            "<Root><Values><Value value=\"1000\"/></Values></Root>");
}

// ---------------------------------------------------------------------------
// Formats from elements

// Writes `format` under a new document's root and reads the written element
// back with FormatFromDOMNode.
std::unique_ptr<DMFormat> WrittenAndRead(const DMFormat& format) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  format.AddToTree(document, created);
  EXPECT_NE(created, nullptr);
  if (created == nullptr) return nullptr;
  return std::unique_ptr<DMFormat>(DMField::FormatFromDOMNode(*created));
}

TEST(DMFieldXmlFormatTest, FormatFromDOMNodeReadsEachFormatElementAsItsClass) {
  const DMNumberFormat number(DMNumberFormat::Standard, 8, 2);
  const DMDecoratedFormat decorated(DMDecoratedFormat::Currency, 10, 2);
  const DMStringFormat string(12, false);
  const DMDateFormat date(DMDateFormat::D_M_Y, 10, 0, DMFormat::UnitsSeparator::Slash, false,
                          false);
  const DMTimeFormat time(DMTimeFormat::H_M_S, 8, 0, DMFormat::UnitsSeparator::Colon, true);
  for (const DMFormat* format :
       std::initializer_list<const DMFormat*>{&number, &decorated, &string, &date, &time}) {
    SCOPED_TRACE(format->GetFormatClass());
    const std::unique_ptr<DMFormat> read = WrittenAndRead(*format);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->GetFormatClass(), format->GetFormatClass());
    EXPECT_EQ(read->GetWidth(), format->GetWidth());
  }
}

TEST_F(DMFieldXmlTest, FormatFromDOMNodeGivesNullForAnElementOfAnotherName) {
  EXPECT_EQ(DMField::FormatFromDOMNode(Parse("<Range minValue=\"1\"/>")), nullptr);
}

TEST_F(DMFieldXmlTest, FormatFromDOMNodeGivesNullForAFormatThatFailedToRead) {
  EXPECT_EQ(DMField::FormatFromDOMNode(Parse("<NumberFormat width=\"0\"/>")), nullptr);
  EXPECT_EQ(DMField::FormatFromDOMNode(Parse("<StringFormat width=\"x\"/>")), nullptr);
}

// ---------------------------------------------------------------------------
// Category maps

TEST(DMFieldXmlCategoryTest, MakeCategoryMapNumbersTheCategoriesWithTheirTextsAsLabels) {
  DMCatStatsInt stats;
  ASSERT_TRUE(stats.Update(10, 1.0));
  ASSERT_TRUE(stats.Update(-4, 2.0));
  ASSERT_TRUE(stats.Update(7, 1.0));
  const std::vector<DMValue> values = {DMValue(Int(7), "seven", 1, 2),
                                       DMValue(Int(10), "ten", 2, 0)};
  std::vector<DMValue> out = {DMValue(Int(99))};
  DMField::MakeCategoryMap(stats, values, out);
  EXPECT_EQ(Describe(out), (std::vector<std::string>{"0=10/2/0", "1=-4/0/0", "2=7/1/2"}));
  for (const DMValue& value : out) EXPECT_EQ(value.GetDatum().GetType(), DMDatum::RealType);
}

TEST(DMFieldXmlCategoryTest, MakeCategoryMapWritesRealAndTextCategories) {
  DMCatStatsDbl reals;
  ASSERT_TRUE(reals.Update(2.5, 1.0));
  std::vector<DMValue> out;
  DMField::MakeCategoryMap(reals, {}, out);
  EXPECT_EQ(Describe(out), (std::vector<std::string>{"0=2.5/0/0"}));
  DMCatStatsStr texts;
  ASSERT_TRUE(texts.Update("red", 1.0));
  ASSERT_TRUE(texts.Update("", 1.0));
  DMField::MakeCategoryMap(texts, {DMValue(Text("red"), "Red", 0, 3)}, out);
  EXPECT_EQ(Describe(out), (std::vector<std::string>{"0=red/0/3", "1=/0/0"}));
}

TEST(DMFieldXmlCategoryTest, MakeCategoryMapOfEmptyStatisticsClearsTheOutput) {
  std::vector<DMValue> out = {DMValue(Int(1))};
  DMField::MakeCategoryMap(DMCatStatsInt(), {}, out);
  EXPECT_TRUE(out.empty());
}

TEST(DMFieldXmlCategoryTest, MakeCategoryValueLabelsKeepsOnlyLabelledCategories) {
  DMCatStatsStr stats;
  ASSERT_TRUE(stats.Update("a", 1.0));
  ASSERT_TRUE(stats.Update("b", 1.0));
  ASSERT_TRUE(stats.Update("c", 1.0));
  std::vector<DMValue> out = {DMValue(Int(1))};
  DMField::MakeCategoryValueLabels(
      stats, {DMValue(Text("c"), "Cee", 1, 1), DMValue(Text("a"), "Ay")}, out);
  EXPECT_EQ(Describe(out), (std::vector<std::string>{"0=Ay/0/0", "2=Cee/0/0"}));
}

TEST(DMFieldXmlCategoryTest, MakeCategoryValueLabelsGivesNothingForLabelsOfAnotherType) {
  DMCatStatsInt stats;
  ASSERT_TRUE(stats.Update(1, 1.0));
  ASSERT_TRUE(stats.Update(2, 1.0));
  std::vector<DMValue> out = {DMValue(Int(1))};
  DMField::MakeCategoryValueLabels(stats, {DMValue(Text("1"), "one")}, out);
  EXPECT_TRUE(out.empty());
}

// ---------------------------------------------------------------------------
// Writing

// `field` written under the root of a new document, as a base field when
// `isBase`; "<nothing>" when no element was created.
std::string Written(const DMField& field, bool isBase = false) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  field.AddToTree(document, created, isBase);
  if (created == nullptr) return "<nothing>";
  return DMFieldXmlTest::WithoutDeclaration(document);
}

DMField Named(Type type, Storage storage) { return DMField("age", type, storage, Role::Input); }

TEST(DMFieldXmlWriteTest, AFieldWithOnlyANameWritesNameStorageMeasureAndRole) {
  EXPECT_EQ(Written(DMField("age", Type::Unknown, Storage::Unknown, Role::None)),
            "<Root><Field measure=\"unknown\" name=\"age\" role=\"none\" "
            "storage=\"unknown\"/></Root>");
}

TEST(DMFieldXmlWriteTest, WritesTheOptionalAttributesThatAreSet) {
  DMField field = Named(Type::Nominal, Storage::String);
  field.SetSubRole("key");
  field.SetMaxStringLength(40);
  field.SetLabel("Age in years");
  field.SetDepth(0);
  EXPECT_EQ(Written(field),
            "<Root><Field depth=\"0\" displayLabel=\"Age in years\" maxStringLength=\"40\" "
            "measure=\"nominal\" name=\"age\" role=\"input\" storage=\"string\" "
            "subRole=\"key\"/></Root>");
}

TEST(DMFieldXmlWriteTest, AListFieldWritesStructureStructureStorageDepthAndElementCount) {
  DMField field = Named(Type::Typeless, Storage::String);
  field.SetStructure(Structure::List);
  field.SetStructureStorage(Storage::String);
  field.SetDepth(0);
  field.SetElementCount(3);
  EXPECT_EQ(Written(field),
            "<Root><Field depth=\"0\" elementCount=\"3\" measure=\"typeless\" name=\"age\" "
            "role=\"input\" storage=\"string\" structure=\"list\" "
            "structureStorage=\"string\"/></Root>");
}

TEST(DMFieldXmlWriteTest, APrimitiveFieldNeverWritesStructure) {
  DMField field = Named(Type::Typeless, Storage::String);
  field.SetStructure(Structure::Primitive);
  EXPECT_EQ(Written(field).find("structure"), std::string::npos);
}

TEST(DMFieldXmlWriteTest, AStorageOutsideTheEnumerationWritesUnknown) {
  const DMField field("age", Type::Typeless, static_cast<Storage>(42), Role::Input);
  EXPECT_EQ(Written(field),
            "<Root><Field measure=\"typeless\" name=\"age\" role=\"input\" "
            "storage=\"unknown\"/></Root>");
}

TEST(DMFieldXmlWriteTest, AFormatReferenceWritesUseNamedFormatAndNoInnerFormat) {
  DMField field = Named(Type::Continuous, Storage::Real);
  ASSERT_TRUE(field.SetFormatReference("money"));
  EXPECT_EQ(Written(field),
            "<Root><Field measure=\"continuous\" name=\"age\" role=\"input\" "
            "storage=\"real\"><FieldFormat useNamedFormat=\"money\"/></Field></Root>");
}

TEST(DMFieldXmlWriteTest, DefaultMissingValuesAreNotWritten) {
  DMField field = Named(Type::Continuous, Storage::Real);
  field.SetMissingValues(DMMissingValues());
  EXPECT_EQ(Written(field).find("MissingValues"), std::string::npos);
}

TEST(DMFieldXmlWriteTest, WhiteSpaceMissingWritesTheElementWithBothSwitches) {
  DMField field = Named(Type::Nominal, Storage::String);
  field.SetMissingValues(DMMissingValues(DMRange(), {}, true, true));
  EXPECT_EQ(Written(field),
            "<Root><Field measure=\"nominal\" name=\"age\" role=\"input\" "
            "storage=\"string\"><MissingValues treatNullAsMissing=\"true\" "
            "treatWhitespaceAsMissing=\"true\"/></Field></Root>");
}

TEST(DMFieldXmlWriteTest, WritesTheChildrenInTheirOrder) {
  DMField field = Named(Type::Flag, Storage::Integer);
  field.SetValues({DMValue(Int(1), "yes", 1), DMValue(Int(0), "no", 2)});
  field.SetMissingValues(
      DMMissingValues(DMRange(Int(90), Int(99)), {DMValue(Int(-1))}, false, false));
  field.SetValueLabels({DMValue(Int(1), "Yes")});
  const DMNumberFormat format(DMNumberFormat::Standard, 8, 0);
  ASSERT_TRUE(field.SetPrivateFormat(&format));
  const DMModelField modelField(DMModelField::Probability, "",
                                DMModelField::MFRuleFeatureType::None);
  ASSERT_TRUE(field.SetModelField(&modelField));
  DMGeo geo;
  geo.SetType(DMGeo::Point);
  ASSERT_TRUE(field.SetGeo(&geo));
  DMCatStatsInt stats;
  ASSERT_TRUE(stats.Update(1, 2.0));
  ASSERT_TRUE(field.SetSumStats(&stats));
  field.SetBaseField(Named(Type::Continuous, Storage::Integer));
  EXPECT_EQ(Written(field),
            "<Root><Field measure=\"flag\" name=\"age\" role=\"input\" storage=\"integer\">"
            "<Values><Value displayLabel=\"yes\" flagValue=\"true\" value=\"1\"/>"
            "<Value displayLabel=\"no\" flagValue=\"false\" value=\"0\"/></Values>"
            "<MissingValues treatNullAsMissing=\"false\" treatWhitespaceAsMissing=\"false\">"
            "<Range maxValue=\"99\" minValue=\"90\"/><Values><Value value=\"-1\"/></Values>"
            "</MissingValues>"
            "<ValueLabels><Values><Value displayLabel=\"Yes\" value=\"1\"/></Values>"
            "</ValueLabels>"
            "<FieldFormat><NumberFormat alignment=\"auto\" decimalPlaces=\"0\" "
            "decimalSymbol=\"period\" formatType=\"standard\" groupingSymbol=\"none\" "
            "name=\"\" width=\"8\"/></FieldFormat>"
            "<ModelField role=\"probability\"/><Geo type=\"point\"/>"
            "<DiscreteStatistics><Category category=\"1\" sumFreqWts=\"2\"/>"
            "</DiscreteStatistics>"
            "<BaseField measure=\"continuous\" name=\"age\" role=\"input\" "
            "storage=\"integer\"/></Field></Root>");
}

TEST(DMFieldXmlWriteTest, WritesAContinuousFieldsRangeAndStatistics) {
  DMField field = Named(Type::Continuous, Storage::Integer);
  field.SetRange(DMRange(Int(1), Int(9)));
  DMContStatsInt stats;
  ASSERT_TRUE(stats.Update(4LL));
  ASSERT_TRUE(field.SetSumStats(&stats));
  const std::string text = Written(field);
  EXPECT_NE(text.find("<Field measure=\"continuous\" name=\"age\" role=\"input\" "
                      "storage=\"integer\"><Range maxValue=\"9\" minValue=\"1\"/>"
                      "<ContinuousStatistics"),
            std::string::npos)
      << text;
}

TEST(DMFieldXmlWriteTest, AReversedRangeIsNotWritten) {
  DMField field = Named(Type::Continuous, Storage::Integer);
  field.SetRange(DMRange());
  EXPECT_EQ(Written(field).find("<Range"), std::string::npos);
}

TEST(DMFieldXmlWriteTest, ABaseFieldIsWrittenInsideItsFieldButNeverInsideABaseField) {
  DMField base = Named(Type::Nominal, Storage::String);
  base.SetName("raw");
  DMField field = Named(Type::Nominal, Storage::String);
  field.SetBaseField(base);
  EXPECT_EQ(Written(field),
            "<Root><Field measure=\"nominal\" name=\"age\" role=\"input\" "
            "storage=\"string\"><BaseField measure=\"nominal\" name=\"raw\" "
            "role=\"input\" storage=\"string\"/></Field></Root>");
  EXPECT_EQ(Written(field, true),
            "<Root><BaseField measure=\"nominal\" name=\"age\" role=\"input\" "
            "storage=\"string\"/></Root>");
}

TEST(DMFieldXmlWriteTest, AFailedPartAbandonsTheWholeFieldAndKeepsTheOutParameter) {
  DMField field = Named(Type::Nominal, Storage::Integer);
  field.SetValueLabels({DMValue(Int(1), "one", 0, 9)});
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  field.AddToTree(document, created);
  EXPECT_EQ(created, nullptr);
  EXPECT_EQ(DMFieldXmlTest::WithoutDeclaration(document), "<Root/>");
}

TEST(DMFieldXmlWriteTest, AMeasureOutsideTheEnumerationAbandonsTheField) {
  const DMField field("age", static_cast<Type>(42), Storage::Integer, Role::Input);
  EXPECT_EQ(Written(field), "<nothing>");
}

// ---------------------------------------------------------------------------
// Reading

TEST_F(DMFieldXmlTest, AFieldWithOnlyANameReadsBackEqual) {
  const DMField field("age", Type::Unknown, Storage::Unknown, Role::None);
  dmtest::ExpectXmlRoundTrip(field, ExpectSameField, false);
}

TEST_F(DMFieldXmlTest, AbsentAttributesReadAsTheDefaults) {
  const DMField field(Parse("<Field name=\"age\"/>"), false);
  ExpectSameField(field, DMField("age", Type::Unknown, Storage::Unknown, Role::None));
}

TEST_F(DMFieldXmlTest, EmptyAttributesCountAsAbsent) {
  const DMField field(Parse("<Field name=\"age\" storage=\"\" measure=\"\" role=\"\" "
                            "structure=\"\" depth=\"\" elementCount=\"\" "
                            "maxStringLength=\"\"/>"),
                      false);
  ExpectSameField(field, DMField("age", Type::Unknown, Storage::Unknown, Role::None));
}

TEST_F(DMFieldXmlTest, ABaseFieldInsideABaseFieldIsIgnored) {
  const DMField field(Parse("<BaseField name=\"raw\" storage=\"integer\">"
                            "<BaseField name=\"older\"/></BaseField>"),
                      true);
  EXPECT_EQ(field.GetName(), "raw");
  EXPECT_EQ(field.GetBaseField(), nullptr);
}

TEST_F(DMFieldXmlTest, ABaseFieldIsReadInsideAField) {
  const DMField field(Parse("<Field name=\"age\"><BaseField name=\"raw\" storage=\"integer\">"
                            "<BaseField name=\"older\"/></BaseField></Field>"),
                      false);
  ASSERT_NE(field.GetBaseField(), nullptr);
  EXPECT_EQ(field.GetBaseField()->GetName(), "raw");
  EXPECT_EQ(field.GetBaseField()->GetStorage(), Storage::Integer);
  EXPECT_EQ(field.GetBaseField()->GetBaseField(), nullptr);
}

TEST_F(DMFieldXmlTest, ALaterFormatChildReplacesAnEarlierOne) {
  const DMField field(
      Parse("<Field name=\"age\" storage=\"integer\"><FieldFormat>"
            "<NumberFormat alignment=\"auto\" decimalPlaces=\"0\" decimalSymbol=\"period\" "
            "formatType=\"standard\" groupingSymbol=\"none\" name=\"\" width=\"8\"/>"
            "<NumberFormat alignment=\"auto\" decimalPlaces=\"0\" decimalSymbol=\"period\" "
            "formatType=\"standard\" groupingSymbol=\"none\" name=\"\" width=\"12\"/>"
            "</FieldFormat></Field>"),
      false);
  ASSERT_NE(field.GetPrivateFormat(), nullptr);
  EXPECT_EQ(field.GetPrivateFormat()->GetWidth(), 12);
}

TEST_F(DMFieldXmlTest, ValuesTheSettersWouldRefuseAreDropped) {
  const DMField field(Parse("<Field name=\"age\" storage=\"integer\" measure=\"continuous\">"
                            "<Values><Value value=\"1\"/></Values></Field>"),
                      false);
  EXPECT_EQ(field.GetName(), "age");
  EXPECT_TRUE(field.GetValues().empty());
  const DMField nominal(Parse("<Field name=\"age\" storage=\"integer\" measure=\"nominal\">"
                              "<Range minValue=\"1\" maxValue=\"5\"/></Field>"),
                        false);
  EXPECT_EQ(nominal.GetName(), "age");
  EXPECT_TRUE(SameRange(nominal.GetRange(), DMRange()));
}

TEST_F(DMFieldXmlTest, ChildrenOfOtherNamesAreSkipped) {
  const DMField field(Parse("<Field name=\"age\"><Extension anything=\"x\"/></Field>"), false);
  EXPECT_EQ(field.GetName(), "age");
}

// One defect each; every row reads as a field with an empty name.
struct MalformedCase {
  const char* defect;
  const char* document;
};

const MalformedCase kMalformedFields[] = {
    {"no name", "<Field storage=\"integer\"/>"},
    {"an empty name", "<Field name=\"\"/>"},
    {"unknown storage text", "<Field name=\"a\" storage=\"Integer\"/>"},
    {"unknown measure text", "<Field name=\"a\" measure=\"interval\"/>"},
    {"unknown role text", "<Field name=\"a\" role=\"output\"/>"},
    {"unknown structure text", "<Field name=\"a\" structure=\"tree\"/>"},
    {"unknown structure storage text", "<Field name=\"a\" structureStorage=\"blob\"/>"},
    {"negative depth", "<Field name=\"a\" depth=\"-2\"/>"},
    {"negative element count", "<Field name=\"a\" elementCount=\"-1\"/>"},
    {"negative maximum string length", "<Field name=\"a\" maxStringLength=\"-5\"/>"},
    {"a depth that is no integer", "<Field name=\"a\" depth=\"two\"/>"},
    {"bad missing-value flag",
     "<Field name=\"a\"><MissingValues treatNullAsMissing=\"yes\"/></Field>"},
    {"bad white-space flag",
     "<Field name=\"a\"><MissingValues treatWhitespaceAsMissing=\"TRUE\"/></Field>"},
    {"a category value that is no integer",
     "<Field name=\"a\" storage=\"integer\" measure=\"nominal\">"
     "<Values><Value value=\"x\"/></Values></Field>"},
    {"a value without its value attribute",
     "<Field name=\"a\" storage=\"real\" measure=\"nominal\"><Values><Value/></Values></Field>"},
    {"a bad missing value",
     "<Field name=\"a\" storage=\"real\"><MissingValues><Values><Value value=\"INF\"/>"
     "</Values></MissingValues></Field>"},
    {"a bad value label",
     "<Field name=\"a\" storage=\"integer\"><ValueLabels><Values>"
     "<Value value=\"1\" flagValue=\"maybe\"/></Values></ValueLabels></Field>"},
    {"a date format on an Integer field",
     "<Field name=\"a\" storage=\"integer\"><FieldFormat><DateFormat alignment=\"auto\" "
     "decimalPlaces=\"0\" formatType=\"d_M_Y\" name=\"\" namesLocal=\"false\" "
     "separator=\"slash\" twoDigitYear=\"false\" width=\"10\"/></FieldFormat></Field>"},
    {"a format that fails to read",
     "<Field name=\"a\" storage=\"integer\"><FieldFormat><NumberFormat width=\"0\"/>"
     "</FieldFormat></Field>"},
    {"a format element of another name",
     "<Field name=\"a\" storage=\"integer\"><FieldFormat><Range/></FieldFormat></Field>"},
    {"continuous statistics on a Nominal field",
     "<Field name=\"a\" storage=\"real\" measure=\"nominal\"><ContinuousStatistics/></Field>"},
    {"categorical statistics on a Continuous field",
     "<Field name=\"a\" storage=\"integer\" measure=\"continuous\"><DiscreteStatistics/>"
     "</Field>"},
    {"zero-weight statistics",
     "<Field name=\"a\" storage=\"real\" measure=\"continuous\"><ContinuousStatistics/>"
     "</Field>"},
    {"a base field without a name", "<Field name=\"a\"><BaseField storage=\"integer\"/></Field>"},
    {"a malformed base field", "<Field name=\"a\"><BaseField name=\"b\" depth=\"-3\"/></Field>"},
    {"a model field without role", "<Field name=\"a\"><ModelField/></Field>"},
    {"a model field with an unknown role",
     "<Field name=\"a\"><ModelField role=\"guess\"/></Field>"},
};

TEST_F(DMFieldXmlTest, EachMalformedFieldReadsWithAnEmptyName) {
  for (const MalformedCase& row : kMalformedFields) {
    SCOPED_TRACE(row.defect);
    const DMField field(Parse(row.document), false);
    ExpectSameField(field, DMField());
  }
}

TEST_F(DMFieldXmlTest, AFailureAfterComponentsWereReadLeavesNoneOfThem) {
  const DMField field(Parse("<Field name=\"a\" storage=\"integer\" measure=\"nominal\">"
                            "<Values><Value value=\"1\"/></Values><Geo type=\"point\"/>"
                            "<ModelField role=\"probability\"/><DiscreteStatistics>"
                            "<Category category=\"1\" sumFreqWts=\"2\"/></DiscreteStatistics>"
                            "<BaseField name=\"b\"/><ContinuousStatistics/></Field>"),
                      false);
  ExpectSameField(field, DMField());
}

// ---------------------------------------------------------------------------
// Round trip

TEST(DMFieldXmlRoundTripTest, EveryStorageAndMeasureWithEveryComponentReadsBackEqual) {
  const Storage storages[] = {Storage::Unknown,  Storage::Integer, Storage::Real,
                              Storage::String,   Storage::Date,    Storage::Time,
                              Storage::Timestamp};
  const Type types[] = {Type::Continuous, Type::Nominal,  Type::Ordinal, Type::Flag,
                        Type::Discrete,   Type::Typeless, Type::Unknown};
  for (Storage storage : storages) {
    for (Type type : types) {
      SCOPED_TRACE("storage " + std::to_string(static_cast<unsigned>(storage)) + " measure " +
                   std::to_string(static_cast<unsigned>(type)));
      const DMField field = dmtest::FullField("f", storage, type);
      const std::string text = dmtest::ExpectXmlRoundTrip(field, ExpectSameField, false);
      EXPECT_NE(text.find("<BaseField"), std::string::npos) << text;
    }
  }
}

TEST(DMFieldXmlRoundTripTest, ATargetValueOfEachTypeReadsBack) {
  const struct {
    Storage storage;
    DMDatum value;
  } rows[] = {{Storage::Integer, Int(4)}, {Storage::Real, Real(0.5)}, {Storage::String, Text("y")}};
  for (const auto& row : rows) {
    DMField field("f", Type::Nominal, row.storage, Role::Target);
    DMModelField modelField(DMModelField::Probability, "", DMModelField::MFRuleFeatureType::None);
    ASSERT_TRUE(modelField.SetTargetProps("target", row.value, "", ""));
    ASSERT_TRUE(field.SetModelField(&modelField));
    dmtest::ExpectXmlRoundTrip(field, ExpectSameField, false);
  }
}

TEST_F(DMFieldXmlTest, ADateFormatIsReadOnADateField) {
  const DMField field(Parse("<Field name=\"a\" storage=\"date\"><FieldFormat><DateFormat "
                            "alignment=\"auto\" decimalPlaces=\"0\" formatType=\"d_M_Y\" "
                            "name=\"\" namesLocal=\"false\" separator=\"slash\" "
                            "twoDigitYear=\"false\" width=\"10\"/></FieldFormat></Field>"),
                      false);
  EXPECT_EQ(field.GetName(), "a");
  EXPECT_NE(field.GetPrivateFormat(), nullptr);
}

}  // namespace
