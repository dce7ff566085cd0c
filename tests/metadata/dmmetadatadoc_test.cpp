#include <cctype>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/metadata/dmfieldgroup.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/fields/fieldtest.h"
#include "tests/metadata/metadatatest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
using Storage = DMField::StorageType;
using Measure = DMField::FieldType;
using GroupType = DMMetaData::GroupType;
using DMMetaDataDocTest = dmtest::XmlTest;

using dmtest::ContinuousReal;
using dmtest::DateFormat;
using dmtest::kSummaries;
using dmtest::NominalText;
using dmtest::NumberFormat;
using dmtest::StringFormat;
using dmtest::TimeFormat;
using dmtest::UpperCaser;

// The text of a whole document with `body` under the declaration.
std::string Document(const std::string& body) { return dmtest::kXmlDeclaration + body; }

// A group written under the root of a new document, or "<nothing>".
std::string GroupText(const DMFieldGroup& group) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  group.AddToTree(document, created);
  if (created == nullptr) return "<nothing>";
  return DMMetaDataDocTest::WithoutDeclaration(document);
}

// The export of `metadata`, or "<refused>".
std::string Exported(const DMMetaData& metadata) {
  std::string xml;
  if (!metadata.ExportXMLDoc(xml)) return "<refused>";
  return xml;
}

// A container with a field of each kind, every format kind with all four
// default slots set, two groups, every count and summaries.
DMMetaData FullContainer(DMUpperFunc* upper) {
  DMMetaData metadata(upper);
  metadata.AppendField(ContinuousReal("age"));
  metadata.AppendField(NominalText("name"));
  metadata.AddSharedFormat(*NumberFormat("num"));
  metadata.AddSharedFormat(*StringFormat("str"));
  metadata.AddSharedFormat(*DateFormat("date"));
  metadata.AddSharedFormat(*TimeFormat("time"));
  metadata.SetDefaultFormat(Storage::Real, "num");
  metadata.SetDefaultFormat(Storage::String, "str");
  metadata.SetDefaultFormat(Storage::Date, "date");
  metadata.SetDefaultFormat(Storage::Time, "time");
  metadata.SetFieldGroup(GroupType::MultiDichotomySet, "set", {"age", "name"}, "A set", "1");
  metadata.SetFieldGroup(GroupType::SplitGroup, "split", {"name"}, "", "");
  metadata.SetRecordCounts(100, 98.5);
  metadata.SetDroppedCount(3);
  metadata.SetDroppedDetails(2, 1.5);
  metadata.setDatasetSummaries(kSummaries);
  return metadata;
}

constexpr char kFullBody[] =
    R"(<DataModel>)"
    R"(<RecordCounts badWeightCount="2" droppedCount="3" unweightedCount="100" )"
    R"(weightedCount="98.5" weightedDroppedCount="1.5"/>)"
    R"(<FieldFormats defaultDateFormat="date" defaultNumberFormat="num" )"
    R"(defaultStringFormat="str" defaultTimeFormat="time">)"
    R"(<NumberFormat alignment="auto" decimalPlaces="2" decimalSymbol="period" )"
    R"(formatType="standard" groupingSymbol="none" name="num" width="8"/>)"
    R"(<StringFormat alignment="auto" hexadecimal="false" name="str" width="20"/>)"
    R"(<DateFormat alignment="auto" decimalPlaces="0" formatType="y_M_D" name="date" )"
    R"(namesLocal="false" separator="dash" twoDigitYear="false" width="10"/>)"
    R"(<TimeFormat alignment="auto" decimalPlaces="0" formatType="h_M_S" name="time" )"
    R"(paddedHMS="true" separator="colon" width="8"/>)"
    R"(</FieldFormats>)"
    R"(<FieldGroups>)"
    R"(<FieldGroup countedValue="1" displayLabel="A set" groupType="multiDichotomySet" )"
    R"(name="set"><FieldName name="age"/><FieldName name="name"/></FieldGroup>)"
    R"(<FieldGroup groupType="splitGroup" name="split"><FieldName name="name"/></FieldGroup>)"
    R"(</FieldGroups>)"
    R"(<Fields caseSensitive="false" count="2">)"
    R"(<Field measure="continuous" name="age" role="input" storage="real"/>)"
    R"(<Field measure="nominal" name="name" role="input" storage="string"/>)"
    R"(</Fields>)"
    R"(<DatasetSummaries><OverallSummaries current="false" includeNotValid="true" )"
    R"(includeUMissing="true"/></DatasetSummaries>)"
    R"(</DataModel>)";

// The five record counts of a container.
struct Counts {
  double unweighted;
  double weighted;
  double dropped;
  double badWeight;
  double weightedDropped;
};

void ExpectCounts(const DMMetaData& metadata, const Counts& expected) {
  EXPECT_EQ(metadata.GetRecordCount(false), expected.unweighted);
  EXPECT_EQ(metadata.GetRecordCount(true), expected.weighted);
  EXPECT_EQ(metadata.GetDroppedCount(), expected.dropped);
  double badWeight = 0;
  double weightedDropped = 0;
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, expected.badWeight);
  EXPECT_EQ(weightedDropped, expected.weightedDropped);
}

// The summaries of `kSummaries`, read back.
void ExpectSummariesOf(const DMMetaData& metadata) {
  ASSERT_NE(metadata.getDatasetSummaries(), nullptr);
  ASSERT_NE(metadata.getDatasetSummaries()->getOverallSummaries(), nullptr);
  EXPECT_FALSE(metadata.getDatasetSummaries()->getOverallSummaries()->getCurrent());
}

// The group writer.

TEST(DMMetaDataDocTest, GroupWritesTypeNameLabelAndMembers) {
  EXPECT_EQ(GroupText(DMFieldGroup(GroupType::MultiCategorySet, "g", {"a", "b"}, "L", "")),
            R"(<Root><FieldGroup displayLabel="L" groupType="multiCategorySet" name="g">)"
            R"(<FieldName name="a"/><FieldName name="b"/></FieldGroup></Root>)");
  EXPECT_EQ(GroupText(DMFieldGroup(GroupType::FieldGroup, "", {"x"}, "", "yes")),
            R"(<Root><FieldGroup countedValue="yes" groupType="fieldGroup" name="">)"
            R"(<FieldName name="x"/></FieldGroup></Root>)");
}

TEST(DMMetaDataDocTest, GroupWithoutMembersOrOfAnUnknownTypeWritesNothing) {
  EXPECT_EQ(GroupText(DMFieldGroup()), "<nothing>");
  EXPECT_EQ(GroupText(DMFieldGroup(static_cast<GroupType>(4), "g", {"a"}, "", "")), "<nothing>");
}

// Writing.

TEST(DMMetaDataDocTest, WritesEveryPartInOrder) {
  UpperCaser upper;
  EXPECT_EQ(Exported(FullContainer(&upper)), Document(kFullBody));
}

TEST(DMMetaDataDocTest, ContainerWithoutFieldsIsNotWrittenAndTextIsUntouched) {
  DMMetaData metadata(nullptr);
  metadata.AddSharedFormat(*NumberFormat("num"));
  metadata.SetRecordCounts(5, 5);
  std::string xml = "before";
  EXPECT_FALSE(metadata.ExportXMLDoc(xml));
  EXPECT_EQ(xml, "before");
}

TEST(DMMetaDataDocTest, UnknownCountsWriteNoRecordCountsAndCaseSensitiveIsTrue) {
  DMMetaData metadata(nullptr);
  metadata.AppendField(ContinuousReal("x"));
  metadata.SetDroppedDetails(4, 2);  // details alone do not make the element
  EXPECT_EQ(Exported(metadata),
            Document(R"(<DataModel><Fields caseSensitive="true" count="1">)"
                     R"(<Field measure="continuous" name="x" role="input" storage="real"/>)"
                     R"(</Fields></DataModel>)"));
}

TEST(DMMetaDataDocTest, OneKnownCountWritesAllThreeWithMinusOne) {
  DMMetaData metadata(nullptr);
  metadata.AppendField(ContinuousReal("x"));
  metadata.SetDroppedCount(3);
  EXPECT_EQ(Exported(metadata),
            Document(R"(<DataModel><RecordCounts droppedCount="3" unweightedCount="-1" )"
                     R"(weightedCount="-1"/><Fields caseSensitive="true" count="1">)"
                     R"(<Field measure="continuous" name="x" role="input" storage="real"/>)"
                     R"(</Fields></DataModel>)"));
}

TEST(DMMetaDataDocTest, UnsetDefaultSlotsWriteNoAttributeAndCountIsAPlainNumber) {
  DMMetaData metadata(nullptr);
  for (int i = 0; i < 12; ++i) metadata.AppendField(ContinuousReal("v" + std::to_string(i)));
  metadata.AddSharedFormat(*StringFormat("str"));
  const std::string xml = Exported(metadata);
  EXPECT_NE(xml.find(R"(<FieldFormats><StringFormat alignment="auto" hexadecimal="false" )"
                     R"(name="str" width="20"/></FieldFormats>)"),
            std::string::npos);
  EXPECT_NE(xml.find(R"(<Fields caseSensitive="true" count="12">)"), std::string::npos);
}

// Reading.

TEST(DMMetaDataDocTest, ExportReadExportGivesTheSameTextAndModel) {
  UpperCaser upper;
  const std::string first = Exported(FullContainer(&upper));
  const DMMetaData read(first, &upper);
  EXPECT_EQ(Exported(read), first);
  ASSERT_EQ(read.FieldCount(), 2u);
  EXPECT_EQ(read.GetField(1)->GetName(), "name");
  EXPECT_EQ(read.GetFieldIndex("AGE"), 0);
  EXPECT_FALSE(read.IsCaseSensitive());
  ASSERT_NE(read.GetSharedFormat(3), nullptr);
  EXPECT_EQ(read.GetSharedFormat(3)->GetName(), "time");
  EXPECT_EQ(read.GetDefaultFormat(Storage::Integer)->GetName(), "num");
  EXPECT_EQ(read.GetDefaultFormat(Storage::String)->GetName(), "str");
  EXPECT_EQ(read.GetDefaultFormat(Storage::Timestamp)->GetName(), "date");
  EXPECT_EQ(read.GetDefaultFormat(Storage::Time)->GetName(), "time");
  std::vector<std::string> members;
  std::string label;
  std::string counted;
  EXPECT_TRUE(read.GetFieldGroup(GroupType::MultiDichotomySet, "set", members, label, counted));
  EXPECT_EQ(members, (std::vector<std::string>{"age", "name"}));
  EXPECT_EQ(label, "A set");
  EXPECT_EQ(counted, "1");
  ExpectCounts(read, {100, 98.5, 3, 2, 1.5});
  ExpectSummariesOf(read);
}

constexpr Storage kStorages[] = {Storage::Unknown,  Storage::Integer, Storage::Real,
                                 Storage::String,   Storage::Date,    Storage::Time,
                                 Storage::Timestamp};
constexpr Measure kMeasures[] = {Measure::Continuous, Measure::Nominal,  Measure::Ordinal,
                                 Measure::Flag,       Measure::Discrete, Measure::Typeless,
                                 Measure::Unknown};
constexpr GroupType kGroupTypes[] = {GroupType::FieldGroup, GroupType::MultiCategorySet,
                                     GroupType::MultiDichotomySet, GroupType::SplitGroup};

std::string FieldName(Storage storage, Measure measure) {
  return "f" + std::to_string(static_cast<unsigned>(storage)) + "_" +
         std::to_string(static_cast<unsigned>(measure));
}

// Everything a document can hold: a field of every storage and measurement
// level with every component its kind can hold, shared formats of all five
// kinds with all four default slots, a group of each type, all five counts
// and summaries.
DMMetaData CompleteContainer(DMUpperFunc* upper) {
  DMMetaData metadata(upper);
  for (Storage storage : kStorages) {
    for (Measure measure : kMeasures) {
      EXPECT_GE(
          metadata.AppendField(dmtest::FullField(FieldName(storage, measure), storage, measure)),
          0);
    }
  }
  DMDecoratedFormat decorated(DMDecoratedFormat::Currency, 12, 2);
  decorated.SetName("shared");
  metadata.AddSharedFormat(*NumberFormat("num"));
  metadata.AddSharedFormat(decorated);
  metadata.AddSharedFormat(*StringFormat("str"));
  metadata.AddSharedFormat(*DateFormat("date"));
  metadata.AddSharedFormat(*TimeFormat("time"));
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::Real, "num"), 0);
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::String, "str"), 2);
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::Date, "date"), 3);
  EXPECT_EQ(metadata.SetDefaultFormat(Storage::Time, "time"), 4);
  for (GroupType type : kGroupTypes) {
    const std::string name = "g" + std::to_string(static_cast<unsigned>(type));
    EXPECT_TRUE(metadata.SetFieldGroup(
        type, name,
        {FieldName(Storage::Integer, Measure::Flag), FieldName(Storage::String, Measure::Nominal)},
        "Group " + name, type == GroupType::FieldGroup ? "" : "1"));
  }
  metadata.SetRecordCounts(1000, 987.5);
  metadata.SetDroppedCount(12);
  metadata.SetDroppedDetails(4, 3.25);
  EXPECT_TRUE(metadata.setDatasetSummaries(kSummaries));
  return metadata;
}

void ExpectSameFormat(const DMFormat* actual, const DMFormat* expected) {
  ASSERT_EQ(actual == nullptr, expected == nullptr);
  if (expected == nullptr) return;
  EXPECT_EQ(actual->GetFormatClass(), expected->GetFormatClass());
  EXPECT_EQ(actual->GetName(), expected->GetName());
  EXPECT_EQ(actual->GetWidth(), expected->GetWidth());
  EXPECT_EQ(actual->GetAlignment(), expected->GetAlignment());
}

TEST(DMMetaDataDocTest, ACompleteDocumentRoundTripsToTheSameTextAndEqualObjects) {
  UpperCaser upper;
  const DMMetaData original = CompleteContainer(&upper);
  const std::string first = Exported(original);
  ASSERT_NE(first, "<refused>");
  // The text holds every kind of element the model can write.
  for (const char* element : {"<RecordCounts ",
                              "<FieldFormats ",
                              "<NumberFormat ",
                              "<DecoratedFormat ",
                              "<StringFormat ",
                              "<DateFormat ",
                              "<TimeFormat ",
                              "<FieldGroups>",
                              "<Fields ",
                              "<Range ",
                              "<Values>",
                              "<MissingValues ",
                              "<ValueLabels>",
                              "<FieldFormat>",
                              "<ModelField ",
                              "<Geo ",
                              "<ContinuousStatistics ",
                              "<DiscreteStatistics>",
                              "<BaseField ",
                              "<DatasetSummaries>"}) {
    EXPECT_NE(first.find(element), std::string::npos) << element;
  }
  for (const char* type :
       {"\"fieldGroup\"", "\"multiCategorySet\"", "\"multiDichotomySet\"", "\"splitGroup\""}) {
    EXPECT_NE(first.find(type), std::string::npos) << type;
  }
  const DMMetaData read(first, &upper);
  EXPECT_EQ(Exported(read), first);

  ASSERT_EQ(read.FieldCount(), original.FieldCount());
  for (unsigned i = 0; i < original.FieldCount(); ++i) {
    SCOPED_TRACE(original.GetField(i)->GetName());
    dmtest::ExpectSameField(*read.GetField(i), *original.GetField(i));
  }
  EXPECT_EQ(read.GetFieldIndex(FieldName(Storage::Time, Measure::Ordinal)),
            original.GetFieldIndex(FieldName(Storage::Time, Measure::Ordinal)));
  for (unsigned i = 0; i < 5; ++i) {
    ExpectSameFormat(read.GetSharedFormat(i), original.GetSharedFormat(i));
  }
  EXPECT_EQ(read.GetSharedFormat(5), nullptr);
  for (Storage storage : kStorages) {
    ExpectSameFormat(read.GetDefaultFormat(storage), original.GetDefaultFormat(storage));
  }
  for (GroupType type : kGroupTypes) {
    std::string name[2];
    std::vector<std::string> members[2];
    std::string label[2];
    std::string counted[2];
    EXPECT_TRUE(read.GetFieldGroup(type, 0u, name[0], members[0], label[0], counted[0]));
    EXPECT_TRUE(original.GetFieldGroup(type, 0u, name[1], members[1], label[1], counted[1]));
    EXPECT_EQ(name[0], name[1]);
    EXPECT_EQ(members[0], members[1]);
    EXPECT_EQ(label[0], label[1]);
    EXPECT_EQ(counted[0], counted[1]);
  }
  ExpectCounts(read, {1000, 987.5, 12, 4, 3.25});
  EXPECT_FALSE(read.IsCaseSensitive());
  ExpectSummariesOf(read);
}

TEST(DMMetaDataDocTest, CallbackComesFromTheCallerNotTheDocument) {
  UpperCaser upper;
  const DMMetaData read(Exported(FullContainer(&upper)), nullptr);
  EXPECT_EQ(read.FieldCount(), 2u);
  EXPECT_TRUE(read.IsCaseSensitive());
  EXPECT_EQ(read.GetFieldIndex("AGE"), -1);
}

TEST(DMMetaDataDocTest, ChildOrderAndRootNameDoNotMatter) {
  const DMMetaData read(
      R"(<Anything><Fields><Field name="b" measure="nominal" storage="string" role="input"/>)"
      R"(</Fields><RecordCounts unweightedCount="7" weightedCount="6.5" droppedCount="0"/>)"
      R"(</Anything>)",
      nullptr);
  EXPECT_EQ(read.FieldCount(), 1u);
  EXPECT_EQ(read.GetRecordCount(false), 7);
  EXPECT_EQ(read.GetRecordCount(true), 6.5);
  EXPECT_EQ(read.GetDroppedCount(), 0);
  double badWeight = 0;
  double weightedDropped = 0;
  read.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, -1);
  EXPECT_EQ(weightedDropped, -1);
}

TEST(DMMetaDataDocTest, FractionalUnweightedCountLoadsButKeepsCountsUnknown) {
  const DMMetaData read(
      R"(<DataModel><RecordCounts unweightedCount="10.5" weightedCount="3" droppedCount="2.5" )"
      R"(badWeightCount="1.5" weightedDroppedCount="-4"/>)"
      R"(<Fields><Field name="b" measure="nominal" storage="string" role="input"/></Fields>)"
      R"(</DataModel>)",
      nullptr);
  EXPECT_EQ(read.FieldCount(), 1u);
  EXPECT_EQ(read.GetRecordCount(false), -1);
  EXPECT_EQ(read.GetRecordCount(true), -1);
  EXPECT_EQ(read.GetDroppedCount(), -1);
  double badWeight = 0;
  double weightedDropped = 0;
  read.GetDroppedDetails(badWeight, weightedDropped);
  EXPECT_EQ(badWeight, -1);
  EXPECT_EQ(weightedDropped, -1);
}

TEST(DMMetaDataDocTest, NamesDifferingInCaseLoadOnlyWithoutCallback) {
  const std::string xml =
      R"(<DataModel><Fields><Field name="age" measure="nominal" storage="string" role="input"/>)"
      R"(<Field name="AGE" measure="nominal" storage="string" role="input"/></Fields>)"
      R"(</DataModel>)";
  UpperCaser upper;
  EXPECT_EQ(DMMetaData(xml, nullptr).FieldCount(), 2u);
  const DMMetaData folded(xml, &upper);
  EXPECT_EQ(folded.FieldCount(), 0u);
  EXPECT_FALSE(folded.IsCaseSensitive());
}

// Characters.

TEST(DMMetaDataDocTest, ValidateXMLCharsRefusesControlBytesButTabLineFeedReturnAndZero) {
  EXPECT_TRUE(DMMetaData::ValidateXMLChars(""));
  EXPECT_TRUE(DMMetaData::ValidateXMLChars("a\tb\nc\rd"));
  EXPECT_TRUE(DMMetaData::ValidateXMLChars(std::string("a\0b", 3)));
  EXPECT_TRUE(DMMetaData::ValidateXMLChars("caf\xC3\xA9 \x7F\xFF"));
  EXPECT_FALSE(DMMetaData::ValidateXMLChars("a\x0B"));
  for (int byte = 1; byte < 32; ++byte) {
    const bool allowed = byte == 9 || byte == 10 || byte == 13;
    EXPECT_EQ(DMMetaData::ValidateXMLChars(std::string(1, static_cast<char>(byte))), allowed)
        << byte;
  }
}

// Defective documents: one defect each, every one giving the empty container.

struct DefectRow {
  const char* defect;
  const char* from;  // every occurrence in the full document is replaced; null: `to` is the text
  const char* to;
  bool parseError;  // the XML layer prints its one line
};

constexpr DefectRow kDefects[] = {
    {"empty text", nullptr, "", true},
    {"text that is not XML", "</DataModel>", "", true},
    {"no Fields element", "Fields", "Fieldz", false},
    {"format element of no known kind", "StringFormat ", "StrangeFormat ", false},
    {"shared format without a name", R"(name="str" width="20")", R"(width="20")", false},
    {"default naming no shared format", R"(defaultTimeFormat="time")",
     R"(defaultTimeFormat="clock")", false},
    {"default format of the wrong kind", R"(defaultNumberFormat="num")",
     R"(defaultNumberFormat="str")", false},
    {"group type in the wrong case", R"(groupType="splitGroup")", R"(groupType="SplitGroup")",
     false},
    {"group without a type", R"(groupType="splitGroup" )", "", false},
    {"group without a name", R"( name="split")", "", false},
    {"member without a name", R"(<FieldName name="age"/>)", "<FieldName/>", false},
    {"group without members", R"(<FieldName name="name"/></FieldGroup></FieldGroups>)",
     "</FieldGroup></FieldGroups>", false},
    {"second group of the same type and name", R"(groupType="splitGroup" name="split")",
     R"(groupType="multiDichotomySet" name="set")", false},
    {"unweighted count missing", R"(unweightedCount="100" )", "", false},
    {"unweighted count not a number", R"(unweightedCount="100")", R"(unweightedCount="many")",
     false},
    {"weighted count infinite", R"(weightedCount="98.5")", R"(weightedCount="INF")", false},
    {"dropped count not-a-number", R"(droppedCount="3")", R"(droppedCount="NaN")", false},
    {"bad-weight count infinite", R"(badWeightCount="2")", R"(badWeightCount="-INF")", false},
    {"weighted dropped count infinite", R"(weightedDroppedCount="1.5")",
     R"(weightedDroppedCount="INF")", false},
    {"field without a name", R"(<Field measure="continuous" name="age")",
     R"(<Field measure="continuous")", false},
    {"second field with the same folded name", R"(name="name" role)", R"(name="AGE" role)", false},
    {"summaries that do not parse", R"(current="false")", R"(current="no")", false},
};

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

TEST(DMMetaDataDocTest, EveryDefectGivesTheEmptyContainerWithTheSameCallback) {
  UpperCaser upper;
  const std::string full = Document(kFullBody);
  ASSERT_EQ(DMMetaData(full, &upper).FieldCount(), 2u);
  for (const DefectRow& row : kDefects) {
    SCOPED_TRACE(row.defect);
    std::string xml = row.to;
    if (row.from != nullptr) {
      ASSERT_NE(full.find(row.from), std::string::npos);
      xml = ReplaceAll(full, row.from, row.to);
    }
    testing::internal::CaptureStdout();
    const DMMetaData read(xml, &upper);
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(!printed.empty(), row.parseError) << printed;
    EXPECT_EQ(read.FieldCount(), 0u);
    EXPECT_EQ(read.GetSharedFormat(0), nullptr);
    EXPECT_EQ(read.GetDefaultFormat(Storage::Real), nullptr);
    EXPECT_EQ(read.FindFieldGroup(GroupType::MultiDichotomySet, 0, ""), -1);
    EXPECT_EQ(read.FindFieldGroup(GroupType::SplitGroup, 0, ""), -1);
    EXPECT_EQ(read.GetRecordCount(false), -1);
    EXPECT_EQ(read.GetRecordCount(true), -1);
    EXPECT_EQ(read.GetDroppedCount(), -1);
    double badWeight = 0;
    double weightedDropped = 0;
    read.GetDroppedDetails(badWeight, weightedDropped);
    EXPECT_EQ(badWeight, -1);
    EXPECT_EQ(weightedDropped, -1);
    EXPECT_EQ(read.getDatasetSummaries(), nullptr);
    EXPECT_FALSE(read.IsCaseSensitive());
    std::string exported = "untouched";
    EXPECT_FALSE(read.ExportXMLDoc(exported));
  }
}

}  // namespace
