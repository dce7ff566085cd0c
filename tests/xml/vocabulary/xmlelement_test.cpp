#include "dmcommon/xml/vocabulary/xmlelement.h"

#include <cmath>
#include <limits>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace {

using DmCppHelperV1::XMLElement;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;

// A value no read in these tests produces, to show a failed read left the
// caller's variable alone.
constexpr double kUntouchedDouble = -12345.25;
constexpr long long kUntouchedInteger = -424242;

// Parses an inline snippet and keeps its handle alive for the views built on it.
class XMLElementTest : public ::testing::Test {
 protected:
  XMLElement Load(const std::string& document) {
    doc_.loadFromContents(document.c_str());
    EXPECT_NE(doc_.getElement(), nullptr) << document;
    return XMLElement(doc_);
  }

  // The snippet `<a v="text"/>`, with `text` written as given (so it may hold
  // character references).
  XMLElement LoadValue(const std::string& text) { return Load("<a v=\"" + text + "\"/>"); }

  DmExtension::DMXMLWrapper doc_;
};

// Text form.

TEST_F(XMLElementTest, ReadsPresentAttributeText) {
  const XMLElement element = Load(R"(<Field name="age" storage="integer"/>)");
  EXPECT_EQ(element.getAttribute(XMLAttributes::Name), "age");
  EXPECT_EQ(element.getAttribute(XMLAttributes::Storage), "integer");
}

TEST_F(XMLElementTest, ReadsAbsentAttributeAsEmptyText) {
  const XMLElement element = Load(R"(<Field name="age"/>)");
  EXPECT_EQ(element.getAttribute(XMLAttributes::Storage), "");
}

TEST_F(XMLElementTest, ReadsEmptyAttributeAsEmptyText) {
  const XMLElement element = Load(R"(<Field name=""/>)");
  EXPECT_EQ(element.getAttribute(XMLAttributes::Name), "");
}

TEST_F(XMLElementTest, ReadsAttributeNamesCaseSensitively) {
  const XMLElement element = Load(R"(<Field Name="upper" name="lower"/>)");
  EXPECT_EQ(element.getAttribute("Name"), "upper");
  EXPECT_EQ(element.getAttribute(XMLAttributes::Name), "lower");
  EXPECT_EQ(element.getAttribute("NAME"), "");
}

TEST_F(XMLElementTest, ReadsTextWithReferencesResolved) {
  const XMLElement element = LoadValue("a &amp; b &lt;c&gt; &quot;d&quot;");
  EXPECT_EQ(element.getAttribute("v"), "a & b <c> \"d\"");
}

TEST_F(XMLElementTest, ReadsTextAsUtf8) {
  const XMLElement element = LoadValue("\xC3\xA9t\xC3\xA9 &#x20AC;");
  EXPECT_EQ(element.getAttribute("v"), "\xC3\xA9t\xC3\xA9 \xE2\x82\xAC");
}

// Presence.

TEST_F(XMLElementTest, HasAttributeIsTrueForPresentAttribute) {
  const XMLElement element = Load(R"(<Field name="age"/>)");
  EXPECT_TRUE(element.hasAttribute(XMLAttributes::Name));
}

TEST_F(XMLElementTest, HasAttributeIsTrueForEmptyAttribute) {
  const XMLElement element = Load(R"(<Field name=""/>)");
  EXPECT_TRUE(element.hasAttribute(XMLAttributes::Name));
}

TEST_F(XMLElementTest, HasAttributeIsFalseForAbsentAttribute) {
  const XMLElement element = Load(R"(<Field name="age"/>)");
  EXPECT_FALSE(element.hasAttribute(XMLAttributes::Storage));
  EXPECT_FALSE(element.hasAttribute("Name"));
}

TEST_F(XMLElementTest, SeesAttributesAddedAfterItWasBuilt) {
  const XMLElement element = Load("<Field/>");
  ASSERT_EQ(doc_.addAttribute(XMLAttributes::Name, "later"), DmExtension::DM_XML_OK);
  EXPECT_TRUE(element.hasAttribute(XMLAttributes::Name));
  EXPECT_EQ(element.getAttribute(XMLAttributes::Name), "later");
}

// Real numbers.

struct DoubleCase {
  const char* text;
  double expected;
};

std::ostream& operator<<(std::ostream& out, const DoubleCase& row) {
  return out << '"' << row.text << '"';
}

class XMLElementDoubleTest : public XMLElementTest,
                             public ::testing::WithParamInterface<DoubleCase> {};

TEST_P(XMLElementDoubleTest, ReadsRealNumber) {
  const XMLElement element = LoadValue(GetParam().text);
  double value = kUntouchedDouble;
  EXPECT_TRUE(element.getAttribute("v", value));
  EXPECT_EQ(value, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, XMLElementDoubleTest,
    ::testing::Values(DoubleCase{"1.5e3", 1500.0}, DoubleCase{"0", 0.0}, DoubleCase{"-2.25", -2.25},
                      DoubleCase{"42", 42.0}, DoubleCase{"+0.5", 0.5}, DoubleCase{"1E-2", 0.01},
                      DoubleCase{".5", 0.5},
                      DoubleCase{"INF", std::numeric_limits<double>::infinity()},
                      DoubleCase{"-INF", -std::numeric_limits<double>::infinity()}));

TEST_F(XMLElementTest, ReadsNaNAsQuietNaN) {
  const XMLElement element = LoadValue("NaN");
  double value = kUntouchedDouble;
  EXPECT_TRUE(element.getAttribute("v", value));
  EXPECT_TRUE(std::isnan(value));
}

class XMLElementBadDoubleTest : public XMLElementTest,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(XMLElementBadDoubleTest, RejectsTextThatIsNotADoubleAndLeavesValueUnchanged) {
  const XMLElement element = LoadValue(GetParam());
  double value = kUntouchedDouble;
  EXPECT_FALSE(element.getAttribute("v", value));
  EXPECT_EQ(value, kUntouchedDouble);
}

// The XML Schema spellings of the special values are case-sensitive.
INSTANTIATE_TEST_SUITE_P(Malformed, XMLElementBadDoubleTest,
                         ::testing::Values("", "abc", "1.5x", "1,5", "inf", "-inf", "nan",
                                           "Infinity", "1e", "--1"));

TEST_F(XMLElementTest, AbsentAttributeReadAsDoubleReportsFalseAndLeavesValueUnchanged) {
  const XMLElement element = Load(R"(<Range minimum="1"/>)");
  double value = kUntouchedDouble;
  EXPECT_FALSE(element.getAttribute(XMLAttributes::Maximum, value));
  EXPECT_EQ(value, kUntouchedDouble);
}

// Integers.

struct IntegerCase {
  const char* text;
  long long expected;
};

std::ostream& operator<<(std::ostream& out, const IntegerCase& row) {
  return out << '"' << row.text << '"';
}

class XMLElementIntegerTest : public XMLElementTest,
                              public ::testing::WithParamInterface<IntegerCase> {};

TEST_P(XMLElementIntegerTest, ReadsInteger) {
  const XMLElement element = LoadValue(GetParam().text);
  long long value = kUntouchedInteger;
  EXPECT_TRUE(element.getAttribute("v", value));
  EXPECT_EQ(value, GetParam().expected);
}

// "&#9;" and "&#10;" survive attribute-value normalisation, so they exercise
// the XML white space around a number.
INSTANTIATE_TEST_SUITE_P(
    Numbers, XMLElementIntegerTest,
    ::testing::Values(IntegerCase{"0", 0}, IntegerCase{"-7", -7}, IntegerCase{"+42", 42},
                      IntegerCase{" 42 ", 42}, IntegerCase{"&#9;42&#10;", 42},
                      IntegerCase{"&#13;&#10;-3 ", -3}, IntegerCase{"007", 7},
                      IntegerCase{"9223372036854775807", std::numeric_limits<long long>::max()},
                      IntegerCase{"-9223372036854775808", std::numeric_limits<long long>::min()}));

class XMLElementBadIntegerTest : public XMLElementTest,
                                 public ::testing::WithParamInterface<const char*> {};

TEST_P(XMLElementBadIntegerTest, RejectsTextThatIsNotAnIntegerAndLeavesValueUnchanged) {
  const XMLElement element = LoadValue(GetParam());
  long long value = kUntouchedInteger;
  EXPECT_FALSE(element.getAttribute("v", value));
  EXPECT_EQ(value, kUntouchedInteger);
}

INSTANTIATE_TEST_SUITE_P(Malformed, XMLElementBadIntegerTest,
                         ::testing::Values("", "   ", "42abc", "abc", "9223372036854775808",
                                           "-9223372036854775809", "99999999999999999999", "1.0",
                                           "1e3", "0x10", "4 2", "+", "-", "+-5", "-+5", "--5",
                                           "++5"));

TEST_F(XMLElementTest, AbsentAttributeReadAsIntegerReportsFalseAndLeavesValueUnchanged) {
  const XMLElement element = Load(R"(<Field name="age"/>)");
  long long value = kUntouchedInteger;
  EXPECT_FALSE(element.getAttribute(XMLAttributes::Count, value));
  EXPECT_EQ(value, kUntouchedInteger);
}

// A handle without an element.

TEST(XMLElementWithoutElementTest, ReadsEveryAttributeAsAbsent) {
  const DmExtension::DMXMLWrapper empty;
  ASSERT_EQ(empty.getElement(), nullptr);
  const XMLElement element(empty);
  double real = kUntouchedDouble;
  long long integer = kUntouchedInteger;
  EXPECT_EQ(element.getAttribute(XMLAttributes::Name), "");
  EXPECT_FALSE(element.getAttribute(XMLAttributes::Mean, real));
  EXPECT_FALSE(element.getAttribute(XMLAttributes::Count, integer));
  EXPECT_FALSE(element.hasAttribute(XMLAttributes::Name));
  EXPECT_EQ(real, kUntouchedDouble);
  EXPECT_EQ(integer, kUntouchedInteger);
}

TEST_F(XMLElementTest, ReadsEveryAttributeAsAbsentAfterADocumentFailsToParse) {
  doc_.loadFromContents("<Field name='age'");
  ASSERT_EQ(doc_.getElement(), nullptr);
  const XMLElement element(doc_);
  long long integer = kUntouchedInteger;
  EXPECT_EQ(element.getAttribute(XMLAttributes::Name), "");
  EXPECT_FALSE(element.getAttribute(XMLAttributes::Count, integer));
  EXPECT_FALSE(element.hasAttribute(XMLAttributes::Name));
  EXPECT_EQ(integer, kUntouchedInteger);
}

}  // namespace
