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

}  // namespace
