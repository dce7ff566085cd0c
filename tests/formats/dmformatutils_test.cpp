#include "dmcommon/formats/dmformatutils.h"

#include <cstring>
#include <ostream>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

using Alignment = DMFormat::Alignment;
using DecimalSymbol = DMFormat::DecimalSymbol;
using GroupingSymbol = DMFormat::GroupingSymbol;
using UnitsSeparator = DMFormat::UnitsSeparator;

// Every enumeration can hold the out-of-range values that the "anything
// else" rules talk about only when its underlying type is fixed.
template <typename Enum>
constexpr bool kFixedUnsigned = std::is_same_v<std::underlying_type_t<Enum>, unsigned>;
static_assert(kFixedUnsigned<DMFormat::Alignment>);
static_assert(kFixedUnsigned<DMFormat::DecimalSymbol>);
static_assert(kFixedUnsigned<DMFormat::GroupingSymbol>);
static_assert(kFixedUnsigned<DMFormat::UnitsSeparator>);
static_assert(kFixedUnsigned<DMFormat::FormatClass>);
static_assert(kFixedUnsigned<DMFormat::ValueUnits>);
static_assert(kFixedUnsigned<DMNumberFormat::FormatType>);
static_assert(kFixedUnsigned<DMDecoratedFormat::FormatType>);
static_assert(kFixedUnsigned<DMDateFormat::FormatType>);
static_assert(kFixedUnsigned<DMTimeFormat::FormatType>);

// ---------------------------------------------------------------------------
// Enumerations

TEST(DMFormatTest, EnumerationsHaveTheirFixedNumbers) {
  EXPECT_EQ(DMFormat::Left, 0u);
  EXPECT_EQ(DMFormat::Center, 1u);
  EXPECT_EQ(DMFormat::Right, 2u);
  EXPECT_EQ(DMFormat::Auto, 3u);
  EXPECT_EQ(static_cast<unsigned>(DecimalSymbol::Local), 2u);
  EXPECT_EQ(static_cast<unsigned>(GroupingSymbol::Local), 4u);
  EXPECT_EQ(static_cast<unsigned>(UnitsSeparator::Colon), 4u);
  EXPECT_EQ(static_cast<unsigned>(UnitsSeparator::Local), 7u);
  EXPECT_EQ(DMFormat::UnitsNone, 0u);
  EXPECT_EQ(DMFormat::UnitsSeconds, 1u);
  EXPECT_EQ(DMFormat::UnitsDays, 2u);
}

TEST(DMFormatTest, FormatClassCodesAreTheAsciiLettersOfTheKinds) {
  EXPECT_EQ(DMFormat::Decorated, static_cast<unsigned>('c'));
  EXPECT_EQ(DMFormat::Date, static_cast<unsigned>('d'));
  EXPECT_EQ(DMFormat::Number, static_cast<unsigned>('n'));
  EXPECT_EQ(DMFormat::String, static_cast<unsigned>('s'));
  EXPECT_EQ(DMFormat::Time, static_cast<unsigned>('t'));
  EXPECT_EQ(DMFormat::Decorated, 99u);
  EXPECT_EQ(DMFormat::Date, 100u);
  EXPECT_EQ(DMFormat::Number, 110u);
  EXPECT_EQ(DMFormat::String, 115u);
  EXPECT_EQ(DMFormat::Time, 116u);
}

// ---------------------------------------------------------------------------
// Tables

struct Row {
  unsigned value;
  const char* text;
};

struct TableCase {
  const char* name;
  const DMEnumDictEntry* table;
  std::vector<Row> rows;
};

std::ostream& operator<<(std::ostream& out, const TableCase& c) { return out << c.name; }

std::vector<TableCase> Tables() {
  return {
      {"gAlignDict",
       gAlignDict,
       {{0, XMLEntities::Left},
        {1, XMLEntities::Center},
        {2, XMLEntities::Right},
        {3, XMLEntities::Auto}}},
      {"gDecSymDict",
       gDecSymDict,
       {{0, XMLEntities::Period}, {1, XMLEntities::Comma}, {2, XMLEntities::Local}}},
      {"gGrpSymDict",
       gGrpSymDict,
       {{0, XMLEntities::None},
        {1, XMLEntities::Period},
        {2, XMLEntities::Comma},
        {3, XMLEntities::Space},
        {4, XMLEntities::Local}}},
      // The last row maps the entity of the local separator to the colon.
      {"gUniSepDict",
       gUniSepDict,
       {{0, XMLEntities::None},
        {1, XMLEntities::Period},
        {2, XMLEntities::Comma},
        {3, XMLEntities::Space},
        {4, XMLEntities::Colon},
        {5, XMLEntities::Dash},
        {6, XMLEntities::Slash},
        {4, XMLEntities::Local}}},
  };
}

class FormatTableTest : public ::testing::TestWithParam<TableCase> {};

TEST_P(FormatTableTest, HoldsExactlyTheExpectedRowsInOrder) {
  const TableCase& c = GetParam();
  ASSERT_EQ(DMEnumDict::Size(c.table), static_cast<int>(c.rows.size()));
  for (std::size_t i = 0; i < c.rows.size(); ++i) {
    EXPECT_EQ(c.table[i].value, c.rows[i].value) << "row " << i;
    EXPECT_STREQ(c.table[i].text, c.rows[i].text) << "row " << i;
  }
  EXPECT_EQ(c.table[c.rows.size()].value, 0u);
  EXPECT_EQ(c.table[c.rows.size()].text, nullptr);
}

TEST_P(FormatTableTest, NoTextRepeats) {
  const TableCase& c = GetParam();
  std::set<std::string> texts;
  for (int i = 0; i < DMEnumDict::Size(c.table); ++i) {
    EXPECT_TRUE(texts.insert(c.table[i].text).second) << c.table[i].text;
  }
}

TEST_P(FormatTableTest, EveryTextFindsItsOwnRow) {
  const TableCase& c = GetParam();
  for (int i = 0; i < DMEnumDict::Size(c.table); ++i) {
    EXPECT_EQ(DMFormatUtils::FindStrInList(c.table[i].text, c.table), i) << c.table[i].text;
    EXPECT_EQ(DMEnumDict::IndexOfText(c.table, c.table[i].text), i) << c.table[i].text;
  }
}

TEST_P(FormatTableTest, EveryValueMapsBackToItsFirstText) {
  const TableCase& c = GetParam();
  std::set<unsigned> seen;
  for (int i = 0; i < DMEnumDict::Size(c.table); ++i) {
    const bool first = seen.insert(c.table[i].value).second;
    // Only the local units separator shares its value, with the colon row
    // before it; the value maps back to the colon.
    if (!first) {
      EXPECT_STREQ(c.name, "gUniSepDict");
      EXPECT_STREQ(c.table[i].text, XMLEntities::Local);
      continue;
    }
    EXPECT_STREQ(DMEnumDict::TextOfValue(c.table, c.table[i].value), c.table[i].text);
  }
}

INSTANTIATE_TEST_SUITE_P(SharedTables, FormatTableTest, ::testing::ValuesIn(Tables()),
                         [](const ::testing::TestParamInfo<TableCase>& table) {
                           return std::string(table.param.name);
                         });

// ---------------------------------------------------------------------------
// FindStrInList and MakeSeparatorStr

TEST(DMFormatUtilsTest, FindStrInListComparesExactlyAndCaseSensitively) {
  EXPECT_EQ(DMFormatUtils::FindStrInList("left", gAlignDict), 0);
  EXPECT_EQ(DMFormatUtils::FindStrInList("auto", gAlignDict), 3);
  EXPECT_EQ(DMFormatUtils::FindStrInList("Left", gAlignDict), -1);
  EXPECT_EQ(DMFormatUtils::FindStrInList("LEFT", gAlignDict), -1);
  EXPECT_EQ(DMFormatUtils::FindStrInList("lef", gAlignDict), -1);
  EXPECT_EQ(DMFormatUtils::FindStrInList("left ", gAlignDict), -1);
  EXPECT_EQ(DMFormatUtils::FindStrInList("", gAlignDict), -1);
  EXPECT_EQ(DMFormatUtils::FindStrInList(nullptr, gAlignDict), -1);
  EXPECT_EQ(DMFormatUtils::FindStrInList("local", gUniSepDict), 7);
}

TEST(DMFormatUtilsTest, FindStrInListComparesTextNotAddresses) {
  const std::string copy = XMLEntities::Comma;
  ASSERT_NE(copy.c_str(), XMLEntities::Comma);
  EXPECT_EQ(DMFormatUtils::FindStrInList(copy.c_str(), gGrpSymDict), 2);
}

TEST(DMFormatUtilsTest, FindStrInListStopsAtTheTerminatingRow) {
  const DMEnumDictEntry table[] = {{5, "a"}, {0, nullptr}, {6, "b"}};
  EXPECT_EQ(DMFormatUtils::FindStrInList("a", table), 0);
  EXPECT_EQ(DMFormatUtils::FindStrInList("b", table), -1);
}

struct SeparatorCase {
  unsigned value;
  const char* text;
};

std::ostream& operator<<(std::ostream& out, const SeparatorCase& c) { return out << c.value; }

class MakeSeparatorStrTest : public ::testing::TestWithParam<SeparatorCase> {};

TEST_P(MakeSeparatorStrTest, GivesTheSeparatorText) {
  EXPECT_EQ(DMFormatUtils::MakeSeparatorStr(static_cast<UnitsSeparator>(GetParam().value)),
            GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(EveryValue, MakeSeparatorStrTest,
                         ::testing::Values(SeparatorCase{0, ""}, SeparatorCase{1, "."},
                                           SeparatorCase{2, ","}, SeparatorCase{3, " "},
                                           SeparatorCase{4, ":"}, SeparatorCase{5, "-"},
                                           SeparatorCase{6, "/"}, SeparatorCase{7, ""},
                                           SeparatorCase{8, ""}, SeparatorCase{99, ""},
                                           SeparatorCase{0xFFFFFFFFu, ""}));

// ---------------------------------------------------------------------------
// Writing

class DMFormatUtilsWriteTest : public dmtest::XmlTest {
 protected:
  DMXMLWrapper& Element() { return Parse("<F/>"); }
};

struct CommonCase {
  const char* name;
  int width;
  unsigned alignment;
  const char* expected;
};

std::ostream& operator<<(std::ostream& out, const CommonCase& c) { return out << c.expected; }

class SetCommonAttrTest : public DMFormatUtilsWriteTest,
                          public ::testing::WithParamInterface<CommonCase> {};

// The serializer puts attributes in alphabetical order, whatever the order in
// which they were added.
TEST_P(SetCommonAttrTest, WritesNameWidthAndAlignment) {
  const CommonCase& c = GetParam();
  DMXMLWrapper& element = Element();
  EXPECT_EQ(
      DMFormatUtils::SetCommonAttr(element, c.name, c.width, static_cast<Alignment>(c.alignment)),
      DM_FORMAT_OK);
  EXPECT_EQ(Serialised(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, SetCommonAttrTest,
    ::testing::Values(
        CommonCase{"n", 8, 0, R"(<F alignment="left" name="n" width="8"/>)"},
        CommonCase{"n", 1, 1, R"(<F alignment="center" name="n" width="1"/>)"},
        CommonCase{"n", 2147483647, 2, R"(<F alignment="right" name="n" width="2147483647"/>)"},
        CommonCase{"n", 8, 3, R"(<F alignment="auto" name="n" width="8"/>)"},
        // Alignments outside the enumeration are written as automatic.
        CommonCase{"n", 8, 4, R"(<F alignment="auto" name="n" width="8"/>)"},
        CommonCase{"n", 8, 0xFFFFFFFFu, R"(<F alignment="auto" name="n" width="8"/>)"},
        // Every width below 1 is written as -1.
        CommonCase{"n", 0, 0, R"(<F alignment="left" name="n" width="-1"/>)"},
        CommonCase{"n", -1, 0, R"(<F alignment="left" name="n" width="-1"/>)"},
        CommonCase{"n", -7, 0, R"(<F alignment="left" name="n" width="-1"/>)"},
        // The name is written also when it is empty.
        CommonCase{"", 8, 0, R"(<F alignment="left" name="" width="8"/>)"},
        CommonCase{"a&b", 8, 0, R"(<F alignment="left" name="a&amp;b" width="8"/>)"}));

struct EntityCase {
  unsigned value;
  const char* expected;
};

std::ostream& operator<<(std::ostream& out, const EntityCase& c) { return out << c.value; }

class SetDecimalSymAttrTest : public DMFormatUtilsWriteTest,
                              public ::testing::WithParamInterface<EntityCase> {};

TEST_P(SetDecimalSymAttrTest, WritesTheSymbolEntity) {
  DMXMLWrapper& element = Element();
  EXPECT_EQ(DMFormatUtils::SetDecimalSymAttr(element, static_cast<DecimalSymbol>(GetParam().value)),
            DM_FORMAT_OK);
  EXPECT_EQ(Serialised(), std::string("<F decimalSymbol=\"") + GetParam().expected + "\"/>");
}

INSTANTIATE_TEST_SUITE_P(EveryValue, SetDecimalSymAttrTest,
                         ::testing::Values(EntityCase{0, "period"}, EntityCase{1, "comma"},
                                           EntityCase{2, "local"}, EntityCase{3, "period"},
                                           EntityCase{0xFFFFFFFFu, "period"}));

class SetGroupingSymAttrTest : public DMFormatUtilsWriteTest,
                               public ::testing::WithParamInterface<EntityCase> {};

TEST_P(SetGroupingSymAttrTest, WritesTheSymbolEntity) {
  DMXMLWrapper& element = Element();
  EXPECT_EQ(
      DMFormatUtils::SetGroupingSymAttr(element, static_cast<GroupingSymbol>(GetParam().value)),
      DM_FORMAT_OK);
  EXPECT_EQ(Serialised(), std::string("<F groupingSymbol=\"") + GetParam().expected + "\"/>");
}

INSTANTIATE_TEST_SUITE_P(EveryValue, SetGroupingSymAttrTest,
                         ::testing::Values(EntityCase{0, "none"}, EntityCase{1, "period"},
                                           EntityCase{2, "comma"}, EntityCase{3, "space"},
                                           EntityCase{4, "local"}, EntityCase{5, "none"},
                                           EntityCase{0xFFFFFFFFu, "none"}));

class SetUnitsSepAttrTest : public DMFormatUtilsWriteTest,
                            public ::testing::WithParamInterface<EntityCase> {};

TEST_P(SetUnitsSepAttrTest, WritesTheSeparatorEntity) {
  DMXMLWrapper& element = Element();
  EXPECT_EQ(DMFormatUtils::SetUnitsSepAttr(element, static_cast<UnitsSeparator>(GetParam().value)),
            DM_FORMAT_OK);
  EXPECT_EQ(Serialised(), std::string("<F separator=\"") + GetParam().expected + "\"/>");
}

// Local is written as its own entity, although reading that entity gives the
// colon.
INSTANTIATE_TEST_SUITE_P(EveryValue, SetUnitsSepAttrTest,
                         ::testing::Values(EntityCase{0, "none"}, EntityCase{1, "period"},
                                           EntityCase{2, "comma"}, EntityCase{3, "space"},
                                           EntityCase{4, "colon"}, EntityCase{5, "dash"},
                                           EntityCase{6, "slash"}, EntityCase{7, "local"},
                                           EntityCase{8, "none"}, EntityCase{0xFFFFFFFFu, "none"}));

TEST_F(DMFormatUtilsWriteTest, SetBoolAttrWritesTheLiteralTexts) {
  DMXMLWrapper& element = Element();
  EXPECT_EQ(DMFormatUtils::SetBoolAttr(element, "on", true), DM_FORMAT_OK);
  EXPECT_EQ(DMFormatUtils::SetBoolAttr(element, "off", false), DM_FORMAT_OK);
  EXPECT_EQ(Serialised(), R"(<F off="false" on="true"/>)");
}

TEST(DMFormatUtilsEmptyHandleTest, WritersFailWithoutAnElement) {
  DMXMLWrapper empty;
  EXPECT_NE(DMFormatUtils::SetCommonAttr(empty, "n", 5, DMFormat::Left), DM_FORMAT_OK);
  EXPECT_NE(DMFormatUtils::SetDecimalSymAttr(empty, DecimalSymbol::Comma), DM_FORMAT_OK);
  EXPECT_NE(DMFormatUtils::SetGroupingSymAttr(empty, GroupingSymbol::Comma), DM_FORMAT_OK);
  EXPECT_NE(DMFormatUtils::SetUnitsSepAttr(empty, UnitsSeparator::Dash), DM_FORMAT_OK);
  EXPECT_NE(DMFormatUtils::SetBoolAttr(empty, "b", true), DM_FORMAT_OK);
}

TEST(DMFormatUtilsEmptyHandleTest, ReadersFailWithoutAnElement) {
  const DMXMLWrapper empty;
  std::string name = "kept";
  int width = 9;
  Alignment alignment = DMFormat::Right;
  EXPECT_NE(DMFormatUtils::GetCommonAttr(empty, name, width, alignment), DM_FORMAT_OK);
  EXPECT_EQ(name, "kept");
  EXPECT_EQ(width, 9);
  EXPECT_EQ(alignment, DMFormat::Right);
  DecimalSymbol decimal = DecimalSymbol::Local;
  bool found = true;
  EXPECT_NE(DMFormatUtils::GetDecimalSymAttr(empty, decimal, found), DM_FORMAT_OK);
  EXPECT_EQ(decimal, DecimalSymbol::Period);
  EXPECT_FALSE(found);
  bool value = true;
  EXPECT_NE(DMFormatUtils::GetBoolAttr(empty, "b", value, found), DM_FORMAT_OK);
  EXPECT_FALSE(value);
}

// ---------------------------------------------------------------------------
// GetCommonAttr

struct ReadCommonCase {
  const char* text;
  bool succeeds;
  const char* name;
  int width;
  Alignment alignment;
};

std::ostream& operator<<(std::ostream& out, const ReadCommonCase& c) { return out << c.text; }

class GetCommonAttrTest : public dmtest::XmlTest,
                          public ::testing::WithParamInterface<ReadCommonCase> {};

// The outputs start as "kept", 9 and Right; a failure leaves all three so.
TEST_P(GetCommonAttrTest, ReadsOrRefusesTheCommonAttributes) {
  const ReadCommonCase& c = GetParam();
  std::string name = "kept";
  int width = 9;
  Alignment alignment = DMFormat::Right;
  const int rc = DMFormatUtils::GetCommonAttr(Parse(c.text), name, width, alignment);
  EXPECT_EQ(rc == DM_FORMAT_OK, c.succeeds);
  EXPECT_EQ(name, c.name);
  EXPECT_EQ(width, c.width);
  EXPECT_EQ(alignment, c.alignment);
}

INSTANTIATE_TEST_SUITE_P(
    Table, GetCommonAttrTest,
    ::testing::Values(
        ReadCommonCase{R"(<F name="n" width="8" alignment="left"/>)", true, "n", 8, DMFormat::Left},
        ReadCommonCase{R"(<F name="n" width="8" alignment="center"/>)", true, "n", 8,
                       DMFormat::Center},
        ReadCommonCase{R"(<F name="n" width="8" alignment="auto"/>)", true, "n", 8, DMFormat::Auto},
        ReadCommonCase{R"(<F name="" width="1" alignment="right"/>)", true, "", 1, DMFormat::Right},
        // An absent alignment is automatic.
        ReadCommonCase{R"(<F name="n" width="8"/>)", true, "n", 8, DMFormat::Auto},
        // An unknown or empty alignment is ignored: the caller's value stays.
        ReadCommonCase{R"(<F name="n" width="8" alignment="middle"/>)", true, "n", 8,
                       DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width="8" alignment="Left"/>)", true, "n", 8,
                       DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width="8" alignment=""/>)", true, "n", 8, DMFormat::Right},
        // Negative widths are variable width, -1.
        ReadCommonCase{R"(<F name="n" width="-7"/>)", true, "n", -1, DMFormat::Auto},
        ReadCommonCase{R"(<F name="n" width="-1"/>)", true, "n", -1, DMFormat::Auto},
        // Failures.
        ReadCommonCase{R"(<F name="n" width="0"/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F name="n"/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width=""/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width="wide"/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width="8px"/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width="8.5"/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F name="n" width="99999999999"/>)", false, "kept", 9, DMFormat::Right},
        ReadCommonCase{R"(<F width="8" alignment="left"/>)", false, "kept", 9, DMFormat::Right}));

// ---------------------------------------------------------------------------
// Reading symbols and flags

struct ReadEntityCase {
  const char* text;
  bool succeeds;
  unsigned value;
  bool found;
};

std::ostream& operator<<(std::ostream& out, const ReadEntityCase& c) { return out << c.text; }

class GetDecimalSymAttrTest : public dmtest::XmlTest,
                              public ::testing::WithParamInterface<ReadEntityCase> {};

TEST_P(GetDecimalSymAttrTest, ReadsTheSymbol) {
  const ReadEntityCase& c = GetParam();
  DecimalSymbol symbol = DecimalSymbol::Local;
  bool found = !c.found;
  const int rc = DMFormatUtils::GetDecimalSymAttr(Parse(c.text), symbol, found);
  EXPECT_EQ(rc == DM_FORMAT_OK, c.succeeds);
  EXPECT_EQ(static_cast<unsigned>(symbol), c.value);
  EXPECT_EQ(found, c.found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, GetDecimalSymAttrTest,
    ::testing::Values(ReadEntityCase{"<F/>", true, 0, false},
                      ReadEntityCase{R"(<F decimalSymbol="period"/>)", true, 0, true},
                      ReadEntityCase{R"(<F decimalSymbol="comma"/>)", true, 1, true},
                      ReadEntityCase{R"(<F decimalSymbol="local"/>)", true, 2, true},
                      ReadEntityCase{R"(<F decimalSymbol=""/>)", false, 0, true},
                      ReadEntityCase{R"(<F decimalSymbol="Comma"/>)", false, 0, true},
                      ReadEntityCase{R"(<F decimalSymbol="space"/>)", false, 0, true}));

class GetGroupingSymAttrTest : public dmtest::XmlTest,
                               public ::testing::WithParamInterface<ReadEntityCase> {};

TEST_P(GetGroupingSymAttrTest, ReadsTheSymbol) {
  const ReadEntityCase& c = GetParam();
  GroupingSymbol symbol = GroupingSymbol::Local;
  bool found = !c.found;
  const int rc = DMFormatUtils::GetGroupingSymAttr(Parse(c.text), symbol, found);
  EXPECT_EQ(rc == DM_FORMAT_OK, c.succeeds);
  EXPECT_EQ(static_cast<unsigned>(symbol), c.value);
  EXPECT_EQ(found, c.found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, GetGroupingSymAttrTest,
    ::testing::Values(ReadEntityCase{"<F/>", true, 0, false},
                      ReadEntityCase{R"(<F groupingSymbol="none"/>)", true, 0, true},
                      ReadEntityCase{R"(<F groupingSymbol="period"/>)", true, 1, true},
                      ReadEntityCase{R"(<F groupingSymbol="comma"/>)", true, 2, true},
                      ReadEntityCase{R"(<F groupingSymbol="space"/>)", true, 3, true},
                      ReadEntityCase{R"(<F groupingSymbol="local"/>)", true, 4, true},
                      ReadEntityCase{R"(<F groupingSymbol=""/>)", false, 0, true},
                      ReadEntityCase{R"(<F groupingSymbol="NONE"/>)", false, 0, true},
                      ReadEntityCase{R"(<F groupingSymbol="colon"/>)", false, 0, true}));

class GetUnitsSepAttrTest : public dmtest::XmlTest,
                            public ::testing::WithParamInterface<ReadEntityCase> {};

TEST_P(GetUnitsSepAttrTest, ReadsTheSeparator) {
  const ReadEntityCase& c = GetParam();
  UnitsSeparator separator = UnitsSeparator::Local;
  bool found = !c.found;
  const int rc = DMFormatUtils::GetUnitsSepAttr(Parse(c.text), separator, found);
  EXPECT_EQ(rc == DM_FORMAT_OK, c.succeeds);
  EXPECT_EQ(static_cast<unsigned>(separator), c.value);
  EXPECT_EQ(found, c.found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, GetUnitsSepAttrTest,
    ::testing::Values(ReadEntityCase{"<F/>", true, 0, false},
                      ReadEntityCase{R"(<F separator="none"/>)", true, 0, true},
                      ReadEntityCase{R"(<F separator="period"/>)", true, 1, true},
                      ReadEntityCase{R"(<F separator="comma"/>)", true, 2, true},
                      ReadEntityCase{R"(<F separator="space"/>)", true, 3, true},
                      ReadEntityCase{R"(<F separator="colon"/>)", true, 4, true},
                      ReadEntityCase{R"(<F separator="dash"/>)", true, 5, true},
                      ReadEntityCase{R"(<F separator="slash"/>)", true, 6, true},
                      // The local separator reads as the colon.
                      ReadEntityCase{R"(<F separator="local"/>)", true, 4, true},
                      ReadEntityCase{R"(<F separator=""/>)", false, 0, true},
                      ReadEntityCase{R"(<F separator="Dash"/>)", false, 0, true},
                      ReadEntityCase{R"(<F separator="-"/>)", false, 0, true}));

struct ReadBoolCase {
  const char* text;
  bool succeeds;
  bool value;
  bool found;
};

std::ostream& operator<<(std::ostream& out, const ReadBoolCase& c) { return out << c.text; }

class GetBoolAttrTest : public dmtest::XmlTest,
                        public ::testing::WithParamInterface<ReadBoolCase> {};

// `value` starts true, to show that it is reset first.
TEST_P(GetBoolAttrTest, ReadsTheFlag) {
  const ReadBoolCase& c = GetParam();
  bool value = true;
  bool found = !c.found;
  const int rc = DMFormatUtils::GetBoolAttr(Parse(c.text), "flag", value, found);
  EXPECT_EQ(rc == DM_FORMAT_OK, c.succeeds);
  EXPECT_EQ(value, c.value);
  EXPECT_EQ(found, c.found);
}

INSTANTIATE_TEST_SUITE_P(Table, GetBoolAttrTest,
                         ::testing::Values(ReadBoolCase{"<F/>", true, false, false},
                                           ReadBoolCase{R"(<F flag="true"/>)", true, true, true},
                                           ReadBoolCase{R"(<F flag="false"/>)", true, false, true},
                                           ReadBoolCase{R"(<F flag=""/>)", false, false, true},
                                           ReadBoolCase{R"(<F flag="True"/>)", false, false, true},
                                           ReadBoolCase{R"(<F flag="1"/>)", false, false, true},
                                           ReadBoolCase{R"(<F flag="yes"/>)", false, false, true},
                                           ReadBoolCase{R"(<F flag=" true"/>)", false, false,
                                                        true}));

TEST_F(DMFormatUtilsWriteTest, WrittenFlagsAndSymbolsReadBack) {
  DMXMLWrapper& element = Element();
  ASSERT_EQ(DMFormatUtils::SetBoolAttr(element, "flag", true), DM_FORMAT_OK);
  ASSERT_EQ(DMFormatUtils::SetDecimalSymAttr(element, DecimalSymbol::Comma), DM_FORMAT_OK);
  ASSERT_EQ(DMFormatUtils::SetGroupingSymAttr(element, GroupingSymbol::Space), DM_FORMAT_OK);
  bool flag = false;
  bool found = false;
  EXPECT_EQ(DMFormatUtils::GetBoolAttr(element, "flag", flag, found), DM_FORMAT_OK);
  EXPECT_TRUE(flag);
  DecimalSymbol decimal = DecimalSymbol::Period;
  EXPECT_EQ(DMFormatUtils::GetDecimalSymAttr(element, decimal, found), DM_FORMAT_OK);
  EXPECT_EQ(decimal, DecimalSymbol::Comma);
  GroupingSymbol grouping = GroupingSymbol::None;
  EXPECT_EQ(DMFormatUtils::GetGroupingSymAttr(element, grouping, found), DM_FORMAT_OK);
  EXPECT_EQ(grouping, GroupingSymbol::Space);
}

}  // namespace
