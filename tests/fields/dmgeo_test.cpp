#include "dmcommon/fields/dmgeo.h"

#include <limits>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;

namespace XMLEntities = DmCppHelperV1::XMLEntities;

using DMGeoXmlTest = dmtest::XmlTest;
using DMGeoEnvelopeXmlTest = dmtest::XmlTest;

// ---------------------------------------------------------------------------
// Comparison helpers

// Whether two envelopes have the same coordinates with the same set flags.
::testing::AssertionResult SameEnvelope(const DMGeoEnvelope& actual,
                                        const DMGeoEnvelope& expected) {
  using Getter = double (DMGeoEnvelope::*)(bool&) const;
  struct Corner {
    const char* name;
    Getter get;
  };
  const Corner corners[] = {
      {"leftUpperX", &DMGeoEnvelope::GetLeftUpperX},
      {"leftUpperY", &DMGeoEnvelope::GetLeftUpperY},
      {"rightLowerX", &DMGeoEnvelope::GetRightLowerX},
      {"rightLowerY", &DMGeoEnvelope::GetRightLowerY},
  };
  for (const Corner& corner : corners) {
    bool actualSet = false;
    bool expectedSet = false;
    const double actualValue = (actual.*corner.get)(actualSet);
    const double expectedValue = (expected.*corner.get)(expectedSet);
    if (actualSet != expectedSet || actualValue != expectedValue) {
      return ::testing::AssertionFailure()
             << corner.name << " is " << actualValue << " (set " << actualSet << "), expected "
             << expectedValue << " (set " << expectedSet << ")";
    }
  }
  return ::testing::AssertionSuccess();
}

// Whether two geo objects have the same properties, flags and envelope.
::testing::AssertionResult SameGeo(const DMGeo& actual, const DMGeo& expected) {
  bool a = false;
  bool e = false;
  if (actual.GetType(a) != expected.GetType(e) || a != e) {
    return ::testing::AssertionFailure() << "type differs (set " << a << " vs " << e << ")";
  }
  if (actual.GetCoordinates(a) != expected.GetCoordinates(e) || a != e) {
    return ::testing::AssertionFailure() << "coordinates differ (set " << a << " vs " << e << ")";
  }
  if (actual.GetCsname(a) != expected.GetCsname(e) || a != e) {
    return ::testing::AssertionFailure() << "csname differs (set " << a << " vs " << e << ")";
  }
  if (actual.GetIsProjected(a) != expected.GetIsProjected(e) || a != e) {
    return ::testing::AssertionFailure() << "isProjected differs (set " << a << " vs " << e << ")";
  }
  if (actual.GetWkid(a) != expected.GetWkid(e) || a != e) {
    return ::testing::AssertionFailure() << "wkid differs (set " << a << " vs " << e << ")";
  }
  if (actual.GetWkt(a) != expected.GetWkt(e) || a != e) {
    return ::testing::AssertionFailure() << "wkt differs (set " << a << " vs " << e << ")";
  }
  const DMGeoEnvelope* actualEnvelope = actual.GetGeoEnvelope();
  const DMGeoEnvelope* expectedEnvelope = expected.GetGeoEnvelope();
  if ((actualEnvelope == nullptr) != (expectedEnvelope == nullptr)) {
    return ::testing::AssertionFailure() << "one has an envelope, the other not";
  }
  if (actualEnvelope != nullptr) {
    if (auto same = SameEnvelope(*actualEnvelope, *expectedEnvelope); !same) {
      return ::testing::AssertionFailure() << "envelope: " << same.message();
    }
  }
  return ::testing::AssertionSuccess();
}

// The set flags of a geo's six properties, in reading order, as a text of
// '1' (set) and '0' (unset) characters, e.g. "110000" for type and
// coordinates.
std::string SetFlags(const DMGeo& geo) {
  bool isSet[6] = {};
  geo.GetType(isSet[0]);
  geo.GetCoordinates(isSet[1]);
  geo.GetCsname(isSet[2]);
  geo.GetIsProjected(isSet[3]);
  geo.GetWkid(isSet[4]);
  geo.GetWkt(isSet[5]);
  std::string flags;
  for (bool flag : isSet) flags += flag ? '1' : '0';
  return flags;
}

DMGeoEnvelope FullEnvelope() {
  DMGeoEnvelope envelope;
  envelope.SetLeftUpperX(-122.5);
  envelope.SetLeftUpperY(47.75);
  envelope.SetRightLowerX(-122.25);
  envelope.SetRightLowerY(47.5);
  return envelope;
}

DMGeo FullGeo() {
  DMGeo geo;
  geo.SetType(DMGeo::MultiLineString);
  geo.SetCoordinates(3);
  geo.SetCsname("WGS 84");
  geo.SetIsProjected(true);
  geo.SetWkid(4326);
  geo.SetWkt("GEOGCS[\"WGS 84\"]");
  const DMGeoEnvelope envelope = FullEnvelope();
  geo.SetGeoEnvelope(&envelope);
  return geo;
}

// What `object` writes under a new root element, or "" when it writes
// nothing (then `created` must be null and the root unchanged).
template <typename T>
std::string Written(const T& object) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  object.AddToTree(document, created);
  std::string text = dmtest::XmlTest::WithoutDeclaration(document);
  if (created == nullptr) {
    EXPECT_EQ(text, "<Root/>");
    return "";
  }
  // `created` stands for the appended element, the last child of the root.
  EXPECT_NE(dmtest::XmlTest::NameOf(*created), "<none>");
  return text;
}

// ---------------------------------------------------------------------------
// Type table

TEST(DMGeoTypeDictTest, ListsTheSixTypesInReadingOrder) {
  ASSERT_EQ(DMEnumDict::Size(gGeoTypeDict), 6);
  const unsigned expectedValues[] = {DMGeo::Polygon,    DMGeo::MultiPolygon,
                                     DMGeo::Point,      DMGeo::MultiPoint,
                                     DMGeo::LineString, DMGeo::MultiLineString};
  const char* expectedTexts[] = {"polygon",    "multiPolygon", "point",
                                 "multiPoint", "lineString",   "multiLineString"};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(gGeoTypeDict[i].value, expectedValues[i]) << i;
    EXPECT_STREQ(gGeoTypeDict[i].text, expectedTexts[i]) << i;
  }
}

TEST(DMGeoTypeDictTest, MapsEveryRowBothWaysWithoutRepeats) {
  const int size = DMEnumDict::Size(gGeoTypeDict);
  std::set<std::string> texts;
  std::set<unsigned> values;
  for (int i = 0; i < size; ++i) {
    const DMEnumDictEntry& row = gGeoTypeDict[i];
    ASSERT_NE(row.text, nullptr) << i;
    EXPECT_EQ(DMEnumDict::IndexOfText(gGeoTypeDict, row.text), i) << row.text;
    EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, row.value), row.text) << row.text;
    EXPECT_TRUE(texts.insert(row.text).second) << "repeated text " << row.text;
    EXPECT_TRUE(values.insert(row.value).second) << "repeated value " << row.value;
  }
  EXPECT_EQ(values, (std::set<unsigned>{0, 1, 2, 3, 4, 5}));
}

TEST(DMGeoTypeDictTest, UsesTheVocabularyEntities) {
  EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, DMGeo::Point), XMLEntities::Point);
  EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, DMGeo::MultiPoint), XMLEntities::MultiPoint);
  EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, DMGeo::LineString), XMLEntities::LineString);
  EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, DMGeo::MultiLineString),
               XMLEntities::MultiLineString);
  EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, DMGeo::Polygon), XMLEntities::Polygon);
  EXPECT_STREQ(DMEnumDict::TextOfValue(gGeoTypeDict, DMGeo::MultiPolygon),
               XMLEntities::MultiPolygon);
}

// ---------------------------------------------------------------------------
// DMGeoEnvelope in memory

TEST(DMGeoEnvelopeTest, StartsWithEveryCoordinateUnsetAtZero) {
  const DMGeoEnvelope envelope;
  bool isSet = true;
  EXPECT_EQ(envelope.GetLeftUpperX(isSet), 0.0);
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(envelope.GetLeftUpperY(isSet), 0.0);
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(envelope.GetRightLowerX(isSet), 0.0);
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(envelope.GetRightLowerY(isSet), 0.0);
  EXPECT_FALSE(isSet);
}

TEST(DMGeoEnvelopeTest, SettersStoreTheirCoordinateOnlyAndMarkItSet) {
  DMGeoEnvelope envelope;
  envelope.SetRightLowerY(-3.5);
  bool isSet = false;
  EXPECT_EQ(envelope.GetRightLowerY(isSet), -3.5);
  EXPECT_TRUE(isSet);
  EXPECT_EQ(envelope.GetLeftUpperX(isSet), 0.0);
  EXPECT_FALSE(isSet);
  envelope.SetLeftUpperX(1.0);
  envelope.SetLeftUpperY(2.0);
  envelope.SetRightLowerX(3.0);
  EXPECT_EQ(envelope.GetLeftUpperX(isSet), 1.0);
  EXPECT_TRUE(isSet);
  EXPECT_EQ(envelope.GetLeftUpperY(isSet), 2.0);
  EXPECT_TRUE(isSet);
  EXPECT_EQ(envelope.GetRightLowerX(isSet), 3.0);
  EXPECT_TRUE(isSet);
}

TEST(DMGeoEnvelopeTest, SettingZeroStillMarksTheCoordinateSet) {
  DMGeoEnvelope envelope;
  envelope.SetLeftUpperY(0.0);
  bool isSet = false;
  EXPECT_EQ(envelope.GetLeftUpperY(isSet), 0.0);
  EXPECT_TRUE(isSet);
  EXPECT_EQ(Written(envelope), "<Root><GeoEnvelope leftUpperY=\"0\"/></Root>");
}

// ---------------------------------------------------------------------------
// DMGeoEnvelope XML

TEST(DMGeoEnvelopeTest, DefaultWritesAnEmptyElement) {
  EXPECT_EQ(Written(DMGeoEnvelope()), "<Root><GeoEnvelope/></Root>");
}

TEST(DMGeoEnvelopeTest, WritesEverySetCoordinateAsANumber) {
  EXPECT_EQ(Written(FullEnvelope()),
            "<Root><GeoEnvelope leftUpperX=\"-122.5\" leftUpperY=\"47.75\" "
            "rightLowerX=\"-122.25\" rightLowerY=\"47.5\"/></Root>");
}

TEST(DMGeoEnvelopeTest, WritesFifteenSignificantDigits) {
  DMGeoEnvelope envelope;
  envelope.SetLeftUpperX(1.0 / 3.0);
  EXPECT_EQ(Written(envelope), "<Root><GeoEnvelope leftUpperX=\"0.333333333333333\"/></Root>");
}

TEST(DMGeoEnvelopeTest, OnlyLeftUpperXWritesOneAttributeAndReadsBackAlone) {
  DMGeoEnvelope envelope;
  envelope.SetLeftUpperX(12.25);
  const std::string text = dmtest::ExpectXmlRoundTrip(
      envelope, [](const DMGeoEnvelope& written, const DMGeoEnvelope& read) {
        EXPECT_TRUE(SameEnvelope(read, written));
        bool isSet = true;
        EXPECT_EQ(read.GetLeftUpperY(isSet), 0.0);
        EXPECT_FALSE(isSet);
        isSet = true;
        EXPECT_EQ(read.GetRightLowerX(isSet), 0.0);
        EXPECT_FALSE(isSet);
        isSet = true;
        EXPECT_EQ(read.GetRightLowerY(isSet), 0.0);
        EXPECT_FALSE(isSet);
      });
  EXPECT_EQ(text, "<Root><GeoEnvelope leftUpperX=\"12.25\"/></Root>");
}

TEST(DMGeoEnvelopeTest, RoundTripsEveryCoordinate) {
  const std::string text = dmtest::ExpectXmlRoundTrip(
      FullEnvelope(),
      [](const DMGeoEnvelope& w, const DMGeoEnvelope& r) { EXPECT_TRUE(SameEnvelope(r, w)); });
  EXPECT_EQ(text,
            "<Root><GeoEnvelope leftUpperX=\"-122.5\" leftUpperY=\"47.75\" "
            "rightLowerX=\"-122.25\" rightLowerY=\"47.5\"/></Root>");
}

TEST(DMGeoEnvelopeTest, WriteFailsWithoutAParentElement) {
  DMXMLWrapper empty;
  DMXMLWrapper* created = &empty;
  FullEnvelope().AddToTree(empty, created);
  EXPECT_EQ(created, nullptr);
}

// Each row: an envelope element, and the set flags and values expected of
// leftUpperX, leftUpperY, rightLowerX, rightLowerY.
struct EnvelopeReadCase {
  const char* document;
  bool set[4];
  double values[4];
};

// Rows print as their documents: gtest would otherwise dump their bytes,
// padding included, into the test names.
void PrintTo(const EnvelopeReadCase& row, std::ostream* out) { *out << row.document; }

class DMGeoEnvelopeReadTest : public dmtest::XmlTest,
                              public ::testing::WithParamInterface<EnvelopeReadCase> {};

TEST_P(DMGeoEnvelopeReadTest, ReadsEachCoordinateIndependently) {
  const EnvelopeReadCase& row = GetParam();
  const DMGeoEnvelope envelope(Parse(row.document));
  bool isSet[4] = {};
  const double values[4] = {
      envelope.GetLeftUpperX(isSet[0]),
      envelope.GetLeftUpperY(isSet[1]),
      envelope.GetRightLowerX(isSet[2]),
      envelope.GetRightLowerY(isSet[3]),
  };
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(isSet[i], row.set[i]) << i;
    EXPECT_EQ(values[i], row.values[i]) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Documents, DMGeoEnvelopeReadTest,
    ::testing::Values(
        EnvelopeReadCase{"<GeoEnvelope/>", {false, false, false, false}, {0, 0, 0, 0}},
        EnvelopeReadCase{"<GeoEnvelope leftUpperX='1' leftUpperY='2' rightLowerX='3' "
                         "rightLowerY='4'/>",
                         {true, true, true, true},
                         {1, 2, 3, 4}},
        // A malformed coordinate costs only itself, unlike the geo's attributes.
        EnvelopeReadCase{"<GeoEnvelope leftUpperX='east' leftUpperY='2' rightLowerX='3' "
                         "rightLowerY='4'/>",
                         {false, true, true, true},
                         {0, 2, 3, 4}},
        EnvelopeReadCase{"<GeoEnvelope leftUpperX='1' leftUpperY='' rightLowerX='3e1'/>",
                         {true, false, true, false},
                         {1, 0, 30, 0}},
        // Infinities and not-a-number are no corners.
        EnvelopeReadCase{"<GeoEnvelope leftUpperX='INF' leftUpperY='-INF' rightLowerX='NaN' "
                         "rightLowerY='-0.5'/>",
                         {false, false, false, true},
                         {0, 0, 0, -0.5}},
        // Attribute names compare exactly.
        EnvelopeReadCase{"<GeoEnvelope LeftUpperX='1' rightlowery='4'/>",
                         {false, false, false, false},
                         {0, 0, 0, 0}}));

// ---------------------------------------------------------------------------
// DMGeo in memory

TEST(DMGeoTest, StartsWithEveryPropertyUnsetAtItsDefault) {
  const DMGeo geo;
  bool isSet = true;
  EXPECT_EQ(geo.GetType(isSet), DMGeo::Polygon);
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(geo.GetCoordinates(isSet), 0);
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(geo.GetCsname(isSet), "");
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_FALSE(geo.GetIsProjected(isSet));
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(geo.GetWkid(isSet), 0);
  EXPECT_FALSE(isSet);
  isSet = true;
  EXPECT_EQ(geo.GetWkt(isSet), "");
  EXPECT_FALSE(isSet);
  EXPECT_EQ(geo.GetGeoEnvelope(), nullptr);
}

TEST(DMGeoTest, EnumerationValuesAreFixed) {
  EXPECT_EQ(DMGeo::Point, 0);
  EXPECT_EQ(DMGeo::MultiPoint, 1);
  EXPECT_EQ(DMGeo::LineString, 2);
  EXPECT_EQ(DMGeo::MultiLineString, 3);
  EXPECT_EQ(DMGeo::Polygon, 4);
  EXPECT_EQ(DMGeo::MultiPolygon, 5);
}

TEST(DMGeoTest, SettersStoreAndMarkSet) {
  const DMGeo geo = FullGeo();
  EXPECT_EQ(SetFlags(geo), "111111");
  bool isSet = false;
  EXPECT_EQ(geo.GetType(isSet), DMGeo::MultiLineString);
  EXPECT_EQ(geo.GetCoordinates(isSet), 3);
  EXPECT_EQ(geo.GetCsname(isSet), "WGS 84");
  EXPECT_TRUE(geo.GetIsProjected(isSet));
  EXPECT_EQ(geo.GetWkid(isSet), 4326);
  EXPECT_EQ(geo.GetWkt(isSet), "GEOGCS[\"WGS 84\"]");
}

TEST(DMGeoTest, SettingTheDefaultValueStillMarksSet) {
  DMGeo geo;
  geo.SetType(DMGeo::Polygon);
  geo.SetIsProjected(false);
  geo.SetCsname("");
  EXPECT_EQ(SetFlags(geo), "101100");
}

TEST(DMGeoTest, SettingAPropertyLeavesTheOthersUnset) {
  DMGeo geo;
  geo.SetWkid(3857);
  EXPECT_EQ(SetFlags(geo), "000010");
}

TEST(DMGeoTest, SetGeoEnvelopeStoresACopyAndReturnsTrue) {
  DMGeo geo;
  auto envelope = std::make_unique<DMGeoEnvelope>(FullEnvelope());
  EXPECT_TRUE(geo.SetGeoEnvelope(envelope.get()));
  ASSERT_NE(geo.GetGeoEnvelope(), nullptr);
  EXPECT_NE(geo.GetGeoEnvelope(), envelope.get());
  envelope->SetLeftUpperX(99.0);
  envelope.reset();
  bool isSet = false;
  EXPECT_EQ(geo.GetGeoEnvelope()->GetLeftUpperX(isSet), -122.5);
  EXPECT_TRUE(isSet);
}

TEST(DMGeoTest, SetGeoEnvelopeReplacesTheCurrentOne) {
  DMGeo geo = FullGeo();
  DMGeoEnvelope other;
  other.SetRightLowerY(7.0);
  EXPECT_TRUE(geo.SetGeoEnvelope(&other));
  ASSERT_NE(geo.GetGeoEnvelope(), nullptr);
  EXPECT_TRUE(SameEnvelope(*geo.GetGeoEnvelope(), other));
}

TEST(DMGeoTest, SetGeoEnvelopeWithNullRemovesIt) {
  DMGeo geo = FullGeo();
  EXPECT_TRUE(geo.SetGeoEnvelope(nullptr));
  EXPECT_EQ(geo.GetGeoEnvelope(), nullptr);
  EXPECT_TRUE(geo.SetGeoEnvelope(nullptr));
  EXPECT_EQ(geo.GetGeoEnvelope(), nullptr);
}

TEST(DMGeoTest, SetGeoEnvelopeWithItsOwnEnvelopeKeepsIt) {
  DMGeo geo = FullGeo();
  EXPECT_TRUE(geo.SetGeoEnvelope(geo.GetGeoEnvelope()));
  ASSERT_NE(geo.GetGeoEnvelope(), nullptr);
  EXPECT_TRUE(SameEnvelope(*geo.GetGeoEnvelope(), FullEnvelope()));
}

TEST(DMGeoTest, CopyingCopiesTheEnvelopeAndDeletingTheCopyLeavesTheSourceIntact) {
  const DMGeo source = FullGeo();
  auto copy = std::make_unique<DMGeo>(source);
  EXPECT_TRUE(SameGeo(*copy, source));
  ASSERT_NE(copy->GetGeoEnvelope(), nullptr);
  EXPECT_NE(copy->GetGeoEnvelope(), source.GetGeoEnvelope());
  copy.reset();
  ASSERT_NE(source.GetGeoEnvelope(), nullptr);
  EXPECT_TRUE(SameEnvelope(*source.GetGeoEnvelope(), FullEnvelope()));
}

TEST(DMGeoTest, ChangingTheCopyLeavesTheSourceUnchanged) {
  const DMGeo source = FullGeo();
  DMGeo copy(source);
  copy.SetWkid(1);
  copy.SetGeoEnvelope(nullptr);
  bool isSet = false;
  EXPECT_EQ(source.GetWkid(isSet), 4326);
  EXPECT_NE(source.GetGeoEnvelope(), nullptr);
}

TEST(DMGeoTest, CloneIsADeepCopyOwnedByTheCaller) {
  const DMGeo source = FullGeo();
  std::unique_ptr<DMGeo> clone(source.Clone());
  ASSERT_NE(clone, nullptr);
  EXPECT_TRUE(SameGeo(*clone, source));
  EXPECT_NE(clone->GetGeoEnvelope(), source.GetGeoEnvelope());
}

TEST(DMGeoTest, AssignmentReplacesEverythingWithADeepCopy) {
  DMGeo target;
  target.SetCoordinates(2);
  {
    const DMGeo source = FullGeo();
    target = source;
    EXPECT_TRUE(SameGeo(target, source));
    EXPECT_NE(target.GetGeoEnvelope(), source.GetGeoEnvelope());
  }
  EXPECT_TRUE(SameGeo(target, FullGeo()));
  const DMGeo empty;
  target = empty;
  EXPECT_TRUE(SameGeo(target, empty));
  EXPECT_EQ(target.GetGeoEnvelope(), nullptr);
}

TEST(DMGeoTest, SelfAssignmentKeepsEverything) {
  DMGeo geo = FullGeo();
  const DMGeo& alias = geo;
  geo = alias;
  EXPECT_TRUE(SameGeo(geo, FullGeo()));
}

// ---------------------------------------------------------------------------
// DMGeo writing

TEST(DMGeoTest, DefaultWritesAnEmptyGeoElement) {
  EXPECT_EQ(Written(DMGeo()), "<Root><Geo/></Root>");
}

TEST(DMGeoTest, WritesEverySetPropertyAndTheEnvelopeAsChild) {
  EXPECT_EQ(Written(FullGeo()),
            "<Root><Geo coordinates=\"3\" csname=\"WGS 84\" isProjected=\"true\" "
            "type=\"multiLineString\" wkid=\"4326\" wkt=\"GEOGCS[&quot;WGS 84&quot;]\">"
            "<GeoEnvelope leftUpperX=\"-122.5\" leftUpperY=\"47.75\" "
            "rightLowerX=\"-122.25\" rightLowerY=\"47.5\"/></Geo></Root>");
}

TEST(DMGeoTest, SetButEmptyCsnameAndWktAreNotWritten) {
  DMGeo geo;
  geo.SetCsname("");
  geo.SetWkt("");
  geo.SetWkid(0);
  EXPECT_EQ(Written(geo), "<Root><Geo wkid=\"0\"/></Root>");
}

TEST(DMGeoTest, WritesIsProjectedAsTheLiteralFalse) {
  DMGeo geo;
  geo.SetIsProjected(false);
  EXPECT_EQ(Written(geo), "<Root><Geo isProjected=\"false\"/></Root>");
}

TEST(DMGeoTest, WritesNegativeIntegers) {
  DMGeo geo;
  geo.SetCoordinates(-1);
  geo.SetWkid(std::numeric_limits<int>::min());
  EXPECT_EQ(Written(geo), "<Root><Geo coordinates=\"-1\" wkid=\"-2147483648\"/></Root>");
}

TEST(DMGeoTest, WritesEachTypeAsItsEntity) {
  const std::pair<DMGeo::Type, const char*> rows[] = {
      {DMGeo::Point, "point"},           {DMGeo::MultiPoint, "multiPoint"},
      {DMGeo::LineString, "lineString"}, {DMGeo::MultiLineString, "multiLineString"},
      {DMGeo::Polygon, "polygon"},       {DMGeo::MultiPolygon, "multiPolygon"},
  };
  for (const auto& [type, entity] : rows) {
    DMGeo geo;
    geo.SetType(type);
    EXPECT_EQ(Written(geo), std::string("<Root><Geo type=\"") + entity + "\"/></Root>") << entity;
  }
}

TEST(DMGeoTest, TypeOutsideTheEnumerationAbandonsTheWholeElement) {
  for (int value : {-1, 6, 42}) {
    DMGeo geo = FullGeo();
    geo.SetType(static_cast<DMGeo::Type>(value));
    EXPECT_EQ(Written(geo), "") << value;
  }
}

TEST(DMGeoTest, WriteFailsWithoutAParentElement) {
  DMXMLWrapper empty;
  DMXMLWrapper* created = &empty;
  FullGeo().AddToTree(empty, created);
  EXPECT_EQ(created, nullptr);
}

TEST(DMGeoTest, WritingTwiceAppendsTwoElements) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* first = nullptr;
  DMXMLWrapper* second = nullptr;
  DMGeo geo;
  geo.SetWkid(1);
  geo.AddToTree(document, first);
  geo.AddToTree(document, second);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document),
            "<Root><Geo wkid=\"1\"/><Geo wkid=\"1\"/></Root>");
}

// ---------------------------------------------------------------------------
// DMGeo round trips

TEST(DMGeoTest, RoundTripsEveryPropertyWithAnEnvelope) {
  const std::string text = dmtest::ExpectXmlRoundTrip(
      FullGeo(),
      [](const DMGeo& written, const DMGeo& read) { EXPECT_TRUE(SameGeo(read, written)); });
  EXPECT_EQ(text,
            "<Root><Geo coordinates=\"3\" csname=\"WGS 84\" isProjected=\"true\" "
            "type=\"multiLineString\" wkid=\"4326\" wkt=\"GEOGCS[&quot;WGS 84&quot;]\">"
            "<GeoEnvelope leftUpperX=\"-122.5\" leftUpperY=\"47.75\" "
            "rightLowerX=\"-122.25\" rightLowerY=\"47.5\"/></Geo></Root>");
}

TEST(DMGeoTest, RoundTripsAGeoWithNothingSet) {
  const std::string text =
      dmtest::ExpectXmlRoundTrip(DMGeo(), [](const DMGeo& written, const DMGeo& read) {
        EXPECT_TRUE(SameGeo(read, written));
        EXPECT_EQ(SetFlags(read), "000000");
      });
  EXPECT_EQ(text, "<Root><Geo/></Root>");
}

TEST(DMGeoTest, RoundTripsAnEmptyEnvelope) {
  DMGeo geo;
  const DMGeoEnvelope empty;
  geo.SetGeoEnvelope(&empty);
  const std::string text = dmtest::ExpectXmlRoundTrip(
      geo, [](const DMGeo& written, const DMGeo& read) { EXPECT_TRUE(SameGeo(read, written)); });
  EXPECT_EQ(text, "<Root><Geo><GeoEnvelope/></Geo></Root>");
}

TEST(DMGeoTest, RoundTripsEveryType) {
  for (int value = 0; value <= 5; ++value) {
    DMGeo geo;
    geo.SetType(static_cast<DMGeo::Type>(value));
    dmtest::ExpectXmlRoundTrip(geo, [value](const DMGeo& written, const DMGeo& read) {
      EXPECT_TRUE(SameGeo(read, written)) << value;
    });
  }
}

// ---------------------------------------------------------------------------
// DMGeo reading

TEST_F(DMGeoXmlTest, ReadsEveryAttributeAndTheEnvelope) {
  const DMGeo geo(
      Parse("<Geo type='point' coordinates='2' csname='NAD83' isProjected='false' wkid='4269' "
            "wkt='GEOGCS[]'><GeoEnvelope rightLowerX='5'/></Geo>"));
  EXPECT_EQ(SetFlags(geo), "111111");
  bool isSet = false;
  EXPECT_EQ(geo.GetType(isSet), DMGeo::Point);
  EXPECT_EQ(geo.GetCoordinates(isSet), 2);
  EXPECT_EQ(geo.GetCsname(isSet), "NAD83");
  EXPECT_FALSE(geo.GetIsProjected(isSet));
  EXPECT_TRUE(isSet);
  EXPECT_EQ(geo.GetWkid(isSet), 4269);
  EXPECT_EQ(geo.GetWkt(isSet), "GEOGCS[]");
  ASSERT_NE(geo.GetGeoEnvelope(), nullptr);
  DMGeoEnvelope expected;
  expected.SetRightLowerX(5.0);
  EXPECT_TRUE(SameEnvelope(*geo.GetGeoEnvelope(), expected));
}

TEST_F(DMGeoXmlTest, UnknownTypeWithAValidWkidReadsWithNeitherSet) {
  const DMGeo geo(Parse("<Geo type='circle' wkid='4326'/>"));
  EXPECT_EQ(SetFlags(geo), "000000");
  bool isSet = true;
  EXPECT_EQ(geo.GetType(isSet), DMGeo::Polygon);
  EXPECT_FALSE(isSet);
  EXPECT_EQ(geo.GetWkid(isSet), 0);
  EXPECT_FALSE(isSet);
}

TEST_F(DMGeoXmlTest, IsProjectedInCapitalsStopsTheAttributesAfterIt) {
  const DMGeo geo(
      Parse("<Geo type='polygon' coordinates='2' csname='UTM' isProjected='TRUE' wkid='32633' "
            "wkt='PROJCS[]'/>"));
  EXPECT_EQ(SetFlags(geo), "111000");
  bool isSet = false;
  EXPECT_EQ(geo.GetCsname(isSet), "UTM");
  EXPECT_FALSE(geo.GetIsProjected(isSet));
  EXPECT_FALSE(isSet);
  EXPECT_EQ(geo.GetWkid(isSet), 0);
  EXPECT_EQ(geo.GetWkt(isSet), "");
}

TEST_F(DMGeoXmlTest, EnvelopeIsStillReadAfterAMalformedAttribute) {
  const DMGeo geo(Parse("<Geo coordinates='two'><GeoEnvelope leftUpperX='1'/></Geo>"));
  EXPECT_EQ(SetFlags(geo), "000000");
  EXPECT_NE(geo.GetGeoEnvelope(), nullptr);
}

TEST_F(DMGeoXmlTest, LaterEnvelopeTakesThePlaceOfAnEarlierOne) {
  const DMGeo geo(
      Parse("<Geo><GeoEnvelope leftUpperX='1'/><Other/><GeoEnvelope rightLowerY='9'/></Geo>"));
  ASSERT_NE(geo.GetGeoEnvelope(), nullptr);
  DMGeoEnvelope expected;
  expected.SetRightLowerY(9.0);
  EXPECT_TRUE(SameEnvelope(*geo.GetGeoEnvelope(), expected));
}

TEST_F(DMGeoXmlTest, OtherChildrenAndDeeperEnvelopesAreIgnored) {
  const DMGeo geo(Parse("<Geo wkid='1'><Other><GeoEnvelope leftUpperX='1'/></Other></Geo>"));
  EXPECT_EQ(SetFlags(geo), "000010");
  EXPECT_EQ(geo.GetGeoEnvelope(), nullptr);
}

TEST_F(DMGeoXmlTest, ReadingLeavesTheDocumentUnchanged) {
  const char* text = "<Geo type='point' wkid='1'><GeoEnvelope leftUpperX='1'/></Geo>";
  const DMGeo geo(Parse(text));
  EXPECT_EQ(Serialised(), "<Geo type=\"point\" wkid=\"1\"><GeoEnvelope leftUpperX=\"1\"/></Geo>");
}

TEST(DMGeoTest, ElementWithoutADocumentReadsAsNothingSet) {
  const DMXMLWrapper empty;
  const DMGeo geo(empty);
  EXPECT_EQ(SetFlags(geo), "000000");
  EXPECT_EQ(geo.GetGeoEnvelope(), nullptr);
  const DMGeoEnvelope envelope(empty);
  EXPECT_TRUE(SameEnvelope(envelope, DMGeoEnvelope()));
}

// Each row: a geo element, the set flags it reads with (type, coordinates,
// csname, isProjected, wkid, wkt) and whether it has an envelope.
struct GeoReadCase {
  const char* document;
  const char* flags;
  bool hasEnvelope;
};

void PrintTo(const GeoReadCase& row, std::ostream* out) { *out << row.document; }

class DMGeoReadTest : public dmtest::XmlTest, public ::testing::WithParamInterface<GeoReadCase> {};

TEST_P(DMGeoReadTest, StopsAtTheFirstMalformedAttribute) {
  const GeoReadCase& row = GetParam();
  const DMGeo geo(Parse(row.document));
  EXPECT_EQ(SetFlags(geo), row.flags);
  EXPECT_EQ(geo.GetGeoEnvelope() != nullptr, row.hasEnvelope);
}

INSTANTIATE_TEST_SUITE_P(
    MalformedElements, DMGeoReadTest,
    ::testing::Values(
        GeoReadCase{"<Geo/>", "000000", false},
        // Absent attributes are skipped, not failures.
        GeoReadCase{"<Geo csname='a' wkt='b'/>", "001001", false},
        GeoReadCase{"<Geo type='Point' coordinates='2' wkid='1'/>", "000000", false},
        GeoReadCase{"<Geo type='' coordinates='2'/>", "000000", false},
        GeoReadCase{"<Geo type='point' coordinates='2.5' csname='a' wkid='1'/>", "100000", false},
        GeoReadCase{"<Geo type='point' coordinates='3x' csname='a'/>", "100000", false},
        GeoReadCase{"<Geo coordinates='' csname='a'/>", "000000", false},
        GeoReadCase{"<Geo coordinates='2147483648' csname='a'/>", "000000", false},
        GeoReadCase{"<Geo coordinates='-2147483648' csname='a'/>", "011000", false},
        // An empty csname is still a present one.
        GeoReadCase{"<Geo csname='' isProjected='true'/>", "001100", false},
        GeoReadCase{"<Geo coordinates='2' isProjected='yes' wkid='1' wkt='w'/>", "010000", false},
        GeoReadCase{"<Geo isProjected='True' wkid='1'/>", "000000", false},
        GeoReadCase{"<Geo isProjected=' true' wkid='1'/>", "000000", false},
        GeoReadCase{"<Geo isProjected='1' wkid='1'/>", "000000", false},
        GeoReadCase{"<Geo isProjected='' wkid='1'/>", "000000", false},
        GeoReadCase{"<Geo isProjected='false' wkid='x' wkt='w'/>", "000100", false},
        GeoReadCase{"<Geo wkid='99999999999' wkt='w'/>", "000000", false},
        GeoReadCase{"<Geo type='polygon' wkid='-1' wkt=''/>", "100011", false},
        // The envelope is read whatever happened to the attributes.
        GeoReadCase{"<Geo type='hexagon'><GeoEnvelope/></Geo>", "000000", true},
        GeoReadCase{"<Geo><geoEnvelope leftUpperX='1'/></Geo>", "000000", false}));

}  // namespace
