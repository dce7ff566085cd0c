#include "dmcommon/xml/dmxmlwrapper.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>

#include "dmcommon/xml/dmxmlconverter.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DM_XML_BUFFER_TOO_SMALL;
using DmExtension::DM_XML_FAILED;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLConverter;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;

constexpr char kMalformedLine[] = "Document is not well-formed XML and was discarded\n";

using DMXMLWrapperTest = dmtest::XmlTest;

// A document of the shape the metadata writer produces: several fields, so
// that a cut after any of them would still look like a smaller document.
std::string SixFieldDocument() {
  std::string text = "<DataModel><Fields>";
  for (int i = 1; i <= 6; ++i) {
    text += "<Field name=\"f" + std::to_string(i) +
            "\" storage=\"real\" measure=\"continuous\"><Range lower=\"0\" upper=\"" +
            std::to_string(i * 10) + "\"/></Field>";
  }
  text += "</Fields></DataModel>";
  return text;
}

std::string TempPath(const char* name) {
  return ::testing::TempDir() + "dmxmlwrapper_test_" + name;
}

// ---------------------------------------------------------------------------
// Set-up, documents and lifetime

TEST(DMXMLWrapperStartupTest, SecondStartupKeepsTheSharedTranscoder) {
  auto* const transcoder = DMXMLConverter::getTranscoder();
  ASSERT_NE(transcoder, nullptr);
  DMXMLWrapper::startup(true);
  EXPECT_EQ(DMXMLConverter::getTranscoder(), transcoder);
  // Shutting down a parser library that the caller initialised does nothing.
  DMXMLWrapper::shutdown(true);
  DMXMLWrapper handle;
  handle.loadFromContents("<a/>");
  EXPECT_NE(handle.getElement(), nullptr);
}

TEST(DMXMLWrapperHandleTest, EmptyHandleHasNoElementAndNoDocument) {
  DMXMLWrapper handle;
  EXPECT_EQ(handle.getElement(), nullptr);
  EXPECT_EQ(handle.getDocument(), nullptr);
  std::string name = "stale";
  EXPECT_EQ(handle.getName(name), DM_XML_FAILED);
  EXPECT_EQ(name, "");
}

TEST_F(DMXMLWrapperTest, LoadsADocumentFromText) {
  DMXMLWrapper& root = Parse("<DataModel version=\"1\"><Fields/></DataModel>");
  EXPECT_NE(root.getDocument(), nullptr);
  EXPECT_EQ(NameOf(root), "DataModel");
  EXPECT_EQ(Serialised(), "<DataModel version=\"1\"><Fields/></DataModel>");
}

TEST_F(DMXMLWrapperTest, LoadingAgainReplacesTheDocument) {
  DMXMLWrapper& root = Parse("<first/>");
  root.loadFromContents("<second/>");
  EXPECT_EQ(NameOf(root), "second");
}

TEST(DMXMLWrapperParseTest, MalformedTextPrintsOneLineAndLeavesNoElement) {
  const char* const kDocuments[] = {"",    "abc",     "<a></b>", "<a/><b/>", "<a x='1' x='2'/>",
                                    "<a>", "<a b=1/>"};
  for (const char* text : kDocuments) {
    DMXMLWrapper handle;
    ::testing::internal::CaptureStdout();
    handle.loadFromContents(text);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), kMalformedLine) << text;
    EXPECT_EQ(handle.getElement(), nullptr) << text;
    EXPECT_EQ(handle.getDocument(), nullptr) << text;
  }
}

TEST(DMXMLWrapperParseTest, NullTextIsRefusedLikeEmptyText) {
  DMXMLWrapper handle;
  ::testing::internal::CaptureStdout();
  handle.loadFromContents(nullptr);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), kMalformedLine);
  EXPECT_EQ(handle.getElement(), nullptr);
}

TEST(DMXMLWrapperParseTest, DocumentCutAtAnyPointLeavesNoElement) {
  const std::string whole = SixFieldDocument();
  {
    DMXMLWrapper handle;
    handle.loadFromContents(whole.c_str());
    ASSERT_NE(handle.getElement(), nullptr);
  }
  for (std::size_t cut = 0; cut < whole.size(); ++cut) {
    const std::string prefix = whole.substr(0, cut);
    DMXMLWrapper handle;
    ::testing::internal::CaptureStdout();
    handle.loadFromContents(prefix.c_str());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), kMalformedLine) << "cut at " << cut;
    EXPECT_EQ(handle.getElement(), nullptr) << "cut at " << cut;
  }
}

TEST(DMXMLWrapperParseTest, FailedLoadClearsTheDocumentHeldBefore) {
  DMXMLWrapper handle;
  handle.loadFromContents("<a/>");
  ASSERT_NE(handle.getElement(), nullptr);
  ::testing::internal::CaptureStdout();
  handle.loadFromContents("<a>");
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(handle.getElement(), nullptr);
  EXPECT_EQ(handle.getDocument(), nullptr);
}

TEST(DMXMLWrapperParseTest, RefusesExternalEntities) {
  DMXMLWrapper handle;
  ::testing::internal::CaptureStdout();
  handle.loadFromContents("<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/hostname\">]><a>&e;</a>");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), kMalformedLine);
  EXPECT_EQ(handle.getElement(), nullptr);
}

TEST(DMXMLWrapperParseTest, RefusesRunawayEntityExpansion) {
  std::string text = "<!DOCTYPE a [<!ENTITY a \"aaaaaaaaaa\">";
  const char* const kLevels[] = {"a", "b", "c", "d", "f"};
  for (int level = 1; level < 5; ++level) {
    text += std::string("<!ENTITY ") + kLevels[level] + " \"";
    for (int i = 0; i < 10; ++i) text += std::string("&") + kLevels[level - 1] + ";";
    text += "\">";
  }
  text += "]><a>&f;</a>";
  DMXMLWrapper handle;
  ::testing::internal::CaptureStdout();
  handle.loadFromContents(text.c_str());
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), kMalformedLine);
  EXPECT_EQ(handle.getElement(), nullptr);
}

TEST(DMXMLWrapperParseTest, ExpandsOrdinaryEntities) {
  DMXMLWrapper handle;
  handle.loadFromContents("<!DOCTYPE a [<!ENTITY e \"x\">]><a v=\"&e;&amp;&#x41;\"/>");
  std::string value;
  bool found = false;
  ASSERT_EQ(handle.getAttribute("v", value, found), DM_XML_OK);
  EXPECT_EQ(value, "x&A");
}

TEST(DMXMLWrapperCreateTest, CreatesAnEmptyDocument) {
  DMXMLWrapper handle;
  handle.createNew("DataModel");
  ASSERT_NE(handle.getElement(), nullptr);
  ASSERT_NE(handle.getDocument(), nullptr);
  std::string text;
  EXPECT_EQ(handle.doc2string(text), DM_XML_OK);
  EXPECT_EQ(text, std::string(dmtest::kXmlDeclaration) + "<DataModel/>");
}

TEST(DMXMLWrapperCreateTest, InvalidRootNamePrintsTheDomMessage) {
  for (const char* name : {"bad name", "", "1abc"}) {
    DMXMLWrapper handle;
    handle.createNew("Old");
    ::testing::internal::CaptureStdout();
    handle.createNew(name);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Caught DOM Exception invalid or illegal XML character\n")
        << name;
    EXPECT_EQ(handle.getElement(), nullptr) << name;
    EXPECT_EQ(handle.getDocument(), nullptr) << name;
  }
}

TEST(DMXMLWrapperCreateTest, DisposeReleasesTheDocument) {
  DMXMLWrapper handle;
  handle.createNew("Root");
  DMXMLWrapper* child = nullptr;
  ASSERT_EQ(handle.addElement("Child", &child), DM_XML_OK);
  EXPECT_EQ(handle.dispose(), DM_XML_OK);
  EXPECT_EQ(handle.getDocument(), nullptr);
  EXPECT_EQ(handle.getElement(), nullptr);
  EXPECT_EQ(handle.dispose(), DM_XML_OK);
}

TEST(DMXMLWrapperCreateTest, ElementHandleStandsForItsElement) {
  DMXMLWrapper document;
  document.loadFromContents("<a><b/></a>");
  auto* const b = static_cast<xercesc::DOMElement*>(nullptr);
  DMXMLWrapper empty(b);
  EXPECT_EQ(empty.getElement(), nullptr);
  DMXMLWrapper handle;
  handle.createFromElement(document.getElement());
  EXPECT_EQ(handle.getElement(), document.getElement());
  EXPECT_EQ(handle.getDocument(), nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(handle), "<a><b/></a>");
}

TEST(DMXMLWrapperCreateTest, DestroyingTheDocumentReleasesEverythingObtainedThroughIt) {
  // The sanitizer build turns any leak of handles, iterators or free
  // elements attached here into a failure.
  auto document = std::make_unique<DMXMLWrapper>();
  document->createNew("Root");
  DMXMLWrapper* parent = nullptr;
  ASSERT_EQ(document->addElement("Parent", &parent), DM_XML_OK);
  for (int i = 0; i < 10; ++i) {
    DMXMLWrapper* child = nullptr;
    ASSERT_EQ(parent->addElement("Child", &child), DM_XML_OK);
    DMXMLWrapper* free = child->createFreeElement("Free");
    ASSERT_NE(free, nullptr);
    ASSERT_EQ(child->addElement(free), DM_XML_OK);
    ASSERT_EQ(free->addText("t"), DM_XML_OK);
  }
  DMXMLIteratorWrapper* iterator = nullptr;
  ASSERT_EQ(document->getElementIterator("Free", &iterator), DM_XML_OK);
  void* item = nullptr;
  int count = 0;
  while (iterator->nextItem(&item) == DM_XML_OK) {
    DMXMLIteratorWrapper* texts = nullptr;
    ASSERT_EQ(static_cast<DMXMLWrapper*>(item)->getTextIterator(&texts), DM_XML_OK);
    void* text = nullptr;
    ASSERT_EQ(texts->nextItem(&text), DM_XML_OK);
    EXPECT_STREQ(static_cast<const char*>(text), "t");
    ++count;
  }
  EXPECT_EQ(count, 10);
  document.reset();
}

// ---------------------------------------------------------------------------
// Reading

TEST_F(DMXMLWrapperTest, GetNameFillsABufferThatFits) {
  DMXMLWrapper& root = Parse("<Field/>");
  char buffer[6];
  std::size_t needed = 0;
  EXPECT_EQ(root.getName(buffer, sizeof buffer, &needed), DM_XML_OK);
  EXPECT_EQ(needed, 6u);
  EXPECT_STREQ(buffer, "Field");
}

TEST_F(DMXMLWrapperTest, GetNameReportsTheNeededSizeAndLeavesASmallBufferUntouched) {
  DMXMLWrapper& root = Parse("<Field/>");
  char buffer[5] = {'x', 'x', 'x', 'x', 'x'};
  std::size_t needed = 0;
  EXPECT_EQ(root.getName(buffer, sizeof buffer, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, 6u);
  EXPECT_EQ(std::string(buffer, sizeof buffer), "xxxxx");
}

TEST(DMXMLWrapperReadTest, EveryReadFailsWithoutAnElement) {
  DMXMLWrapper handle;
  char buffer[8];
  std::size_t needed = 0;
  EXPECT_EQ(handle.getName(buffer, sizeof buffer, &needed), DM_XML_FAILED);
  EXPECT_EQ(handle.getAttribute("a", buffer, sizeof buffer, &needed), DM_XML_FAILED);
  std::string text = "stale";
  bool found = true;
  EXPECT_EQ(handle.getAttribute("a", text, found), DM_XML_FAILED);
  EXPECT_EQ(text, "");
  EXPECT_FALSE(found);
  int number = 7;
  found = true;
  EXPECT_EQ(handle.getAttribute("a", number, found), DM_XML_FAILED);
  EXPECT_EQ(number, 0);
  EXPECT_FALSE(found);
  long long big = 7;
  found = true;
  EXPECT_EQ(handle.getAttribute("a", big, found), DM_XML_FAILED);
  EXPECT_EQ(big, 0);
  EXPECT_FALSE(found);
  double real = 7.0;
  int special = 9;
  found = true;
  EXPECT_EQ(handle.getAttribute("a", real, found, special), DM_XML_FAILED);
  EXPECT_EQ(real, 0.0);
  EXPECT_FALSE(found);
  EXPECT_EQ(special, 9);
  int present = 7;
  EXPECT_EQ(handle.hasAttribute("a", &present), DM_XML_FAILED);
  EXPECT_EQ(present, 0);
  DMXMLIteratorWrapper* iterator = nullptr;
  EXPECT_EQ(handle.getElementIterator("a", &iterator), DM_XML_FAILED);
  EXPECT_EQ(handle.getElementDirectIterator("a", &iterator), DM_XML_FAILED);
  EXPECT_EQ(handle.getTextIterator(&iterator), DM_XML_FAILED);
  EXPECT_EQ(iterator, nullptr);
}

TEST_F(DMXMLWrapperTest, StringReadTellsAbsentFromEmpty) {
  DMXMLWrapper& root = Parse("<a empty=\"\" full=\"x y\" utf=\"caf&#xE9;\"/>");
  std::string value = "stale";
  bool found = true;
  EXPECT_EQ(root.getAttribute("absent", value, found), DM_XML_OK);
  EXPECT_FALSE(found);
  EXPECT_EQ(value, "");
  EXPECT_EQ(root.getAttribute("empty", value, found), DM_XML_OK);
  EXPECT_TRUE(found);
  EXPECT_EQ(value, "");
  EXPECT_EQ(root.getAttribute("full", value, found), DM_XML_OK);
  EXPECT_TRUE(found);
  EXPECT_EQ(value, "x y");
  EXPECT_EQ(root.getAttribute("utf", value, found), DM_XML_OK);
  EXPECT_EQ(value, "caf\xC3\xA9");
}

TEST_F(DMXMLWrapperTest, BufferReadGivesTheEmptyTextForAnAbsentAttribute) {
  DMXMLWrapper& root = Parse("<a v=\"abc\"/>");
  char buffer[4] = {'x', 'x', 'x', 'x'};
  std::size_t needed = 0;
  EXPECT_EQ(root.getAttribute("absent", buffer, sizeof buffer, &needed), DM_XML_OK);
  EXPECT_EQ(needed, 1u);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(root.getAttribute("v", buffer, sizeof buffer, &needed), DM_XML_OK);
  EXPECT_EQ(needed, 4u);
  EXPECT_STREQ(buffer, "abc");
  char small[3] = {'x', 'x', 'x'};
  EXPECT_EQ(root.getAttribute("v", small, sizeof small, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, 4u);
  EXPECT_EQ(std::string(small, sizeof small), "xxx");
}

struct IntCase {
  const char* text;
  int rc;
  int value;
  bool found;
};

TEST_F(DMXMLWrapperTest, IntReadParsesSchemaIntegers) {
  const IntCase kCases[] = {
      {"12", DM_XML_OK, 12, true},
      {" 12 ", DM_XML_OK, 12, true},
      {"+5", DM_XML_OK, 5, true},
      {"-5", DM_XML_OK, -5, true},
      {"2147483647", DM_XML_OK, 2147483647, true},
      {"-2147483648", DM_XML_OK, std::numeric_limits<int>::min(), true},
      {"2147483648", DM_XML_FAILED, 0, false},
      {"-2147483649", DM_XML_FAILED, 0, false},
      {"99999999999999999999", DM_XML_FAILED, 0, false},
      {"", DM_XML_FAILED, 0, false},
      {"1.5", DM_XML_FAILED, 0, false},
      {"abc", DM_XML_FAILED, 0, false},
      {"0x10", DM_XML_FAILED, 0, false},
  };
  for (const IntCase& c : kCases) {
    const std::string text = std::string("<a v=\"") + c.text + "\"/>";
    DMXMLWrapper& root = Parse(text.c_str());
    int value = 77;
    bool found = !c.found;
    EXPECT_EQ(root.getAttribute("v", value, found), c.rc) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
    EXPECT_EQ(found, c.found) << c.text;
  }
  DMXMLWrapper& root = Parse("<a/>");
  int value = 77;
  bool found = true;
  EXPECT_EQ(root.getAttribute("v", value, found), DM_XML_OK);
  EXPECT_EQ(value, 0);
  EXPECT_FALSE(found);
}

struct LongLongCase {
  const char* text;
  int rc;
  long long value;
  bool found;
};

TEST_F(DMXMLWrapperTest, LongLongReadScansALeadingNumber) {
  const LongLongCase kCases[] = {
      {"42", DM_XML_OK, 42, true},
      {"  42abc", DM_XML_OK, 42, true},
      {"-9223372036854775808", DM_XML_OK, std::numeric_limits<long long>::min(), true},
      {"9223372036854775807", DM_XML_OK, std::numeric_limits<long long>::max(), true},
      {"", DM_XML_FAILED, 0, false},
      {"abc", DM_XML_FAILED, 0, false},
      {"-", DM_XML_FAILED, 0, false},
  };
  for (const LongLongCase& c : kCases) {
    const std::string text = std::string("<a v=\"") + c.text + "\"/>";
    DMXMLWrapper& root = Parse(text.c_str());
    long long value = 77;
    bool found = !c.found;
    EXPECT_EQ(root.getAttribute("v", value, found), c.rc) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
    EXPECT_EQ(found, c.found) << c.text;
  }
  DMXMLWrapper& root = Parse("<a/>");
  long long value = 77;
  bool found = true;
  EXPECT_EQ(root.getAttribute("v", value, found), DM_XML_OK);
  EXPECT_EQ(value, 0);
  EXPECT_FALSE(found);
}

struct DoubleCase {
  const char* text;
  int rc;
  double value;
  bool found;
  int special;
};

TEST_F(DMXMLWrapperTest, DoubleReadReportsSpecialValues) {
  const DoubleCase kCases[] = {
      {"-INF", DM_XML_OK, 0.0, true, 1},      {"INF", DM_XML_OK, 0.0, true, 2},
      {"NaN", DM_XML_OK, 0.0, true, 3},       {"1.5e3", DM_XML_OK, 1500.0, true, 0},
      {" 2 ", DM_XML_OK, 2.0, true, 0},       {"0.1", DM_XML_OK, 0.1, true, 0},
      {"-0", DM_XML_OK, -0.0, true, 0},       {"1e400", DM_XML_OK, 0.0, true, 2},
      {"abc", DM_XML_FAILED, 0.0, false, -1}, {"", DM_XML_FAILED, 0.0, false, -1},
      {"inf", DM_XML_FAILED, 0.0, false, -1}, {"+INF", DM_XML_FAILED, 0.0, false, -1},
      {"1,5", DM_XML_FAILED, 0.0, false, -1},
  };
  for (const DoubleCase& c : kCases) {
    const std::string text = std::string("<a v=\"") + c.text + "\"/>";
    DMXMLWrapper& root = Parse(text.c_str());
    double value = 77.0;
    bool found = !c.found;
    int special = 99;
    EXPECT_EQ(root.getAttribute("v", value, found, special), c.rc) << c.text;
    EXPECT_EQ(value, c.value) << c.text;
    EXPECT_EQ(found, c.found) << c.text;
    EXPECT_EQ(special, c.special) << c.text;
  }
}

// Texts around the plain forms that numbers are read by without the schema
// types: signs, zeros, points, exponents, the ends of the ranges of int and
// double, and lookalikes that are not numbers at all.
constexpr const char* kNumberTexts[] = {"0",
                                        "-0",
                                        "0.0",
                                        "-0.0",
                                        "+0",
                                        "1",
                                        "-1",
                                        "+1",
                                        "007",
                                        "-007",
                                        "123456789",
                                        "-123456789",
                                        "999999999",
                                        "1234567890",
                                        "2147483647",
                                        "-2147483648",
                                        "2147483648",
                                        "1.",
                                        ".5",
                                        "-.5",
                                        "1e5",
                                        "1E-5",
                                        "1e+5",
                                        "-1.25e-3",
                                        "0.1",
                                        "3.14159265358979323846264338327950288",
                                        "1.7976931348623157e308",
                                        "1.7976931348623159e308",
                                        "2.2250738585072014e-308",
                                        "2.2250738585072011e-308",
                                        "4.9e-324",
                                        "1e-400",
                                        "1e400",
                                        "-1e400",
                                        "0e5",
                                        "-0e-5",
                                        "1e5.5",
                                        "--1",
                                        "1-",
                                        "1+1",
                                        "e5",
                                        ".",
                                        "-",
                                        "+",
                                        "",
                                        "1..2",
                                        "1ee5",
                                        "123456789012345678901234567890123456789",
                                        "1234567890123456789012345678901234567890",
                                        "12345678901234567890123456789012345678901"};

TEST_F(DMXMLWrapperTest, DoubleReadAgreesWithTheSchemaTypeOnEveryForm) {
  for (const char* number : kNumberTexts) {
    const DMXMLConverter wide(number);
    int expectedRc = DM_XML_OK;
    double expectedValue = 0.0;
    int expectedSpecial = -1;
    try {
      const xercesc::XMLDouble schema(wide);
      switch (schema.getType()) {
        case xercesc::XMLAbstractDoubleFloat::NegINF:
          expectedSpecial = 1;
          break;
        case xercesc::XMLAbstractDoubleFloat::PosINF:
          expectedSpecial = 2;
          break;
        case xercesc::XMLAbstractDoubleFloat::NaN:
          expectedSpecial = 3;
          break;
        case xercesc::XMLAbstractDoubleFloat::Normal:
          expectedSpecial = 0;
          expectedValue = schema.getValue();
          break;
        case xercesc::XMLAbstractDoubleFloat::SpecialTypeNum:
          expectedRc = DM_XML_FAILED;
          break;
      }
    } catch (const xercesc::NumberFormatException&) {
      expectedRc = DM_XML_FAILED;
    }
    const std::string text = std::string("<a v=\"") + number + "\"/>";
    DMXMLWrapper& root = Parse(text.c_str());
    double value = 77.0;
    bool found = false;
    int special = 99;
    EXPECT_EQ(root.getAttribute("v", value, found, special), expectedRc) << number;
    EXPECT_EQ(special, expectedSpecial) << number;
    // Bit for bit: the sign of zero counts.
    EXPECT_EQ(std::signbit(value), std::signbit(expectedValue)) << number;
    EXPECT_EQ(value, expectedValue) << number;
  }
}

TEST_F(DMXMLWrapperTest, IntReadAgreesWithTheSchemaTypeOnEveryForm) {
  const xercesc::XMLBigInteger max(u"2147483647");
  const xercesc::XMLBigInteger min(u"-2147483648");
  for (const char* number : kNumberTexts) {
    const DMXMLConverter wide(number);
    int expectedRc = DM_XML_OK;
    int expectedValue = 0;
    try {
      const xercesc::XMLBigInteger schema(wide);
      if (xercesc::XMLBigInteger::compareValues(&schema, &max) > 0 ||
          xercesc::XMLBigInteger::compareValues(&schema, &min) < 0) {
        expectedRc = DM_XML_FAILED;
      } else {
        expectedValue = schema.intValue();
      }
    } catch (const xercesc::NumberFormatException&) {
      expectedRc = DM_XML_FAILED;
    }
    const std::string text = std::string("<a v=\"") + number + "\"/>";
    DMXMLWrapper& root = Parse(text.c_str());
    int value = 77;
    bool found = false;
    EXPECT_EQ(root.getAttribute("v", value, found), expectedRc) << number;
    EXPECT_EQ(value, expectedValue) << number;
    EXPECT_EQ(found, expectedRc == DM_XML_OK) << number;
  }
}

TEST_F(DMXMLWrapperTest, DoubleReadLeavesSpecialUntouchedForAnAbsentAttribute) {
  DMXMLWrapper& root = Parse("<a/>");
  double value = 77.0;
  bool found = true;
  int special = 99;
  EXPECT_EQ(root.getAttribute("v", value, found, special), DM_XML_OK);
  EXPECT_EQ(value, 0.0);
  EXPECT_FALSE(found);
  EXPECT_EQ(special, 99);
}

TEST_F(DMXMLWrapperTest, HasAttributeTellsPresence) {
  DMXMLWrapper& root = Parse("<a empty=\"\" v=\"1\"/>");
  int present = 7;
  EXPECT_EQ(root.hasAttribute("v", &present), DM_XML_OK);
  EXPECT_EQ(present, 1);
  EXPECT_EQ(root.hasAttribute("empty", &present), DM_XML_OK);
  EXPECT_EQ(present, 1);
  EXPECT_EQ(root.hasAttribute("V", &present), DM_XML_OK);
  EXPECT_EQ(present, 0);
  EXPECT_EQ(root.hasAttribute("v", nullptr), DM_XML_FAILED);
}

TEST_F(DMXMLWrapperTest, MalformedUtf8NamesAreRefused) {
  DMXMLWrapper& root = Parse("<a v=\"1\"/>");
  std::string value;
  bool found = true;
  EXPECT_EQ(root.getAttribute("v\xFF", value, found), DM_XML_FAILED);
  EXPECT_FALSE(found);
  EXPECT_EQ(root.addAttribute("w", "bad\xC3"), DM_XML_FAILED);
  EXPECT_EQ(root.addAttribute("w\xFF", "good"), DM_XML_FAILED);
  DMXMLWrapper* child = nullptr;
  EXPECT_EQ(root.addElement("b\xFF", &child), DM_XML_FAILED);
  EXPECT_EQ(root.addText("t\xFF"), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<a v=\"1\"/>");
}

// ---------------------------------------------------------------------------
// Writing

struct RealTextCase {
  double value;
  const char* text;
};

TEST(DMXMLWrapperToStringTest, WritesRealsWithFifteenSignificantDigits) {
  const RealTextCase kCases[] = {
      {0.1, "0.1"},
      {1e20, "1e+20"},
      {1.2345678901234567e17, "1.23456789012346e+17"},
      {-2.5, "-2.5"},
      {0.0, "0"},
      {1.0 / 3.0, "0.333333333333333"},
      {std::numeric_limits<double>::infinity(), "inf"},
  };
  for (const RealTextCase& c : kCases) {
    std::string text = "stale";
    EXPECT_TRUE(DMXMLWrapper::ToString(c.value, text));
    EXPECT_EQ(text, c.text);
  }
}

TEST(DMXMLWrapperToStringTest, WritesIntegersInFull) {
  std::string text;
  EXPECT_TRUE(DMXMLWrapper::ToString(std::numeric_limits<long long>::min(), text));
  EXPECT_EQ(text, "-9223372036854775808");
  EXPECT_TRUE(DMXMLWrapper::ToString(0LL, text));
  EXPECT_EQ(text, "0");
}

TEST_F(DMXMLWrapperTest, AddsAttributesOfEveryKind) {
  DMXMLWrapper& root = Parse("<a/>");
  EXPECT_EQ(root.addAttribute("s", "x&y"), DM_XML_OK);
  EXPECT_EQ(root.addAttribute("d", 0.1), DM_XML_OK);
  EXPECT_EQ(root.addAttribute("e", 1e20), DM_XML_OK);
  EXPECT_EQ(root.addAttribute("l", -12345678901LL), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a d=\"0.1\" e=\"1e+20\" l=\"-12345678901\" s=\"x&amp;y\"/>");
}

TEST_F(DMXMLWrapperTest, AddAttributeReplacesAnExistingValue) {
  DMXMLWrapper& root = Parse("<a v=\"1\"/>");
  EXPECT_EQ(root.addAttribute("v", "2"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a v=\"2\"/>");
}

TEST_F(DMXMLWrapperTest, AddAttributeRefusesAnInvalidName) {
  DMXMLWrapper& root = Parse("<a/>");
  EXPECT_EQ(root.addAttribute("bad name", "1"), DM_XML_FAILED);
  EXPECT_EQ(root.addAttribute("", "1"), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<a/>");
}

TEST(DMXMLWrapperWriteTest, EveryWriteFailsWithoutAnElement) {
  DMXMLWrapper handle;
  DMXMLWrapper other;
  other.createNew("Other");
  DMXMLWrapper* out = &other;
  EXPECT_EQ(handle.addAttribute("a", "1"), DM_XML_FAILED);
  EXPECT_EQ(handle.addAttribute("a", 1.0), DM_XML_FAILED);
  EXPECT_EQ(handle.addAttribute("a", 1LL), DM_XML_FAILED);
  EXPECT_EQ(handle.removeAttribute("a"), DM_XML_FAILED);
  EXPECT_EQ(handle.addElement("a", &out), DM_XML_FAILED);
  EXPECT_EQ(handle.insertElementBefore("a", &other, &out), DM_XML_FAILED);
  EXPECT_EQ(handle.copyElement(&other, &out), DM_XML_FAILED);
  EXPECT_EQ(handle.copyElementBefore(&other, &other, &out), DM_XML_FAILED);
  EXPECT_EQ(handle.addText("t"), DM_XML_FAILED);
  EXPECT_EQ(handle.createFreeElement("a"), nullptr);
  EXPECT_EQ(out, &other);
}

TEST_F(DMXMLWrapperTest, RemovesAnAttribute) {
  DMXMLWrapper& root = Parse("<a v=\"1\" w=\"2\"/>");
  EXPECT_EQ(root.removeAttribute("v"), DM_XML_OK);
  EXPECT_EQ(root.removeAttribute("absent"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a w=\"2\"/>");
}

TEST_F(DMXMLWrapperTest, AddElementAppendsAnOwnedChild) {
  DMXMLWrapper& root = Parse("<a><first/></a>");
  DMXMLWrapper* child = nullptr;
  ASSERT_EQ(root.addElement("last", &child), DM_XML_OK);
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(NameOf(*child), "last");
  EXPECT_EQ(child->addAttribute("v", "1"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a><first/><last v=\"1\"/></a>");
}

TEST_F(DMXMLWrapperTest, AddElementRefusesAnInvalidNameAndLeavesOutUntouched) {
  DMXMLWrapper& root = Parse("<a/>");
  DMXMLWrapper* const sentinel = &root;
  DMXMLWrapper* out = sentinel;
  EXPECT_EQ(root.addElement("bad name", &out), DM_XML_FAILED);
  EXPECT_EQ(out, sentinel);
  EXPECT_EQ(root.addElement("b", nullptr), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<a/>");
}

TEST_F(DMXMLWrapperTest, FreeElementIsAttachedOnlyWhenAdded) {
  DMXMLWrapper& root = Parse("<a/>");
  DMXMLWrapper* free = root.createFreeElement("Free");
  ASSERT_NE(free, nullptr);
  EXPECT_EQ(free->addAttribute("v", "1"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a/>");
  ASSERT_EQ(root.addElement(free), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a><Free v=\"1\"/></a>");
}

TEST_F(DMXMLWrapperTest, FreeElementThatIsNeverAddedIsTheCallersToDelete) {
  DMXMLWrapper& root = Parse("<a/>");
  std::unique_ptr<DMXMLWrapper> free(root.createFreeElement("Free"));
  ASSERT_NE(free, nullptr);
  EXPECT_EQ(root.createFreeElement("bad name"), nullptr);
  EXPECT_EQ(Serialised(), "<a/>");
}

TEST_F(DMXMLWrapperTest, AddElementRefusesChildrenItCannotAttach) {
  DMXMLWrapper& root = Parse("<a/>");
  EXPECT_EQ(root.addElement(static_cast<DMXMLWrapper*>(nullptr)), DM_XML_FAILED);
  DMXMLWrapper empty;
  EXPECT_EQ(root.addElement(&empty), DM_XML_FAILED);
  // An element of another document stays with the caller.
  DMXMLWrapper other;
  other.createNew("Other");
  std::unique_ptr<DMXMLWrapper> foreign(other.createFreeElement("Foreign"));
  EXPECT_EQ(root.addElement(foreign.get()), DM_XML_FAILED);
  DMXMLWrapper noElement;
  std::unique_ptr<DMXMLWrapper> free(root.createFreeElement("Free"));
  EXPECT_EQ(noElement.addElement(free.get()), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<a/>");
}

TEST_F(DMXMLWrapperTest, InsertElementBeforePlacesTheNewElement) {
  DMXMLWrapper& root = Parse("<a/>");
  DMXMLWrapper* second = nullptr;
  ASSERT_EQ(root.addElement("second", &second), DM_XML_OK);
  DMXMLWrapper* first = nullptr;
  ASSERT_EQ(root.insertElementBefore("first", second, &first), DM_XML_OK);
  EXPECT_EQ(NameOf(*first), "first");
  EXPECT_EQ(Serialised(), "<a><first/><second/></a>");
}

TEST_F(DMXMLWrapperTest, InsertElementBeforeNeedsAChildToInsertBefore) {
  DMXMLWrapper& root = Parse("<a><b><c/></b></a>");
  DMXMLIteratorWrapper* iterator = nullptr;
  ASSERT_EQ(root.getElementIterator("c", &iterator), DM_XML_OK);
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(&item), DM_XML_OK);
  auto* grandchild = static_cast<DMXMLWrapper*>(item);
  DMXMLWrapper* const sentinel = &root;
  DMXMLWrapper* out = sentinel;
  EXPECT_EQ(root.insertElementBefore("x", grandchild, &out), DM_XML_FAILED);
  EXPECT_EQ(root.insertElementBefore("x", nullptr, &out), DM_XML_FAILED);
  DMXMLWrapper empty;
  EXPECT_EQ(root.insertElementBefore("x", &empty, &out), DM_XML_FAILED);
  EXPECT_EQ(out, sentinel);
  EXPECT_EQ(Serialised(), "<a><b><c/></b></a>");
}

TEST_F(DMXMLWrapperTest, CopyElementCopiesDeeplyFromAnotherDocument) {
  DMXMLWrapper& root = Parse("<a><z/></a>");
  DMXMLWrapper source;
  source.loadFromContents("<s v=\"1\"><t>text</t></s>");
  DMXMLWrapper* copy = nullptr;
  ASSERT_EQ(root.copyElement(&source, &copy), DM_XML_OK);
  EXPECT_EQ(NameOf(*copy), "s");
  EXPECT_EQ(copy->addAttribute("w", "2"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a><z/><s v=\"1\" w=\"2\"><t>text</t></s></a>");
  // The source is a copy's origin only.
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(source), "<s v=\"1\"><t>text</t></s>");
}

TEST_F(DMXMLWrapperTest, CopyElementBeforePlacesTheCopy) {
  DMXMLWrapper& root = Parse("<a/>");
  DMXMLWrapper* last = nullptr;
  ASSERT_EQ(root.addElement("last", &last), DM_XML_OK);
  DMXMLWrapper source;
  source.loadFromContents("<s/>");
  DMXMLWrapper* copy = nullptr;
  ASSERT_EQ(root.copyElementBefore(&source, last, &copy), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a><s/><last/></a>");
  DMXMLWrapper empty;
  DMXMLWrapper* out = nullptr;
  EXPECT_EQ(root.copyElement(&empty, &out), DM_XML_FAILED);
  EXPECT_EQ(root.copyElement(nullptr, &out), DM_XML_FAILED);
  EXPECT_EQ(root.copyElementBefore(&source, nullptr, &out), DM_XML_FAILED);
  EXPECT_EQ(root.copyElementBefore(&source, &empty, &out), DM_XML_FAILED);
  EXPECT_EQ(out, nullptr);
}

TEST_F(DMXMLWrapperTest, AddTextAppendsATextNode) {
  DMXMLWrapper& root = Parse("<a><b/></a>");
  EXPECT_EQ(root.addText("x < y"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<a><b/>x &lt; y</a>");
}

// ---------------------------------------------------------------------------
// Text

TEST_F(DMXMLWrapperTest, TextWithoutTabOrCarriageReturnHasNoTrailingNul) {
  Parse("<a v=\"1\">text</a>");
  const std::string text = Serialised();
  EXPECT_EQ(text, "<a v=\"1\">text</a>");
  EXPECT_EQ(text.find('\0'), std::string::npos);
}

TEST(DMXMLWrapperTextTest, TabInTextSerialisesEscapedWithOneTrailingNul) {
  DMXMLWrapper document;
  document.createNew("a");
  ASSERT_EQ(document.addText("x\ty"), DM_XML_OK);
  std::string text;
  EXPECT_EQ(document.doc2string(text), DM_XML_OK);
  EXPECT_EQ(text, std::string(dmtest::kXmlDeclaration) + "<a>x&#x9;y</a>" + '\0');
}

TEST(DMXMLWrapperTextTest, HandleTabAndCREscapesEachAndAppendsOneNul) {
  std::string text = "a\tb\rc\t";
  DMXMLWrapper::handleTabAndCR(text);
  EXPECT_EQ(text, std::string("a&#x9;b&#xD;c&#x9;") + '\0');
  std::string plain = "abc";
  DMXMLWrapper::handleTabAndCR(plain);
  EXPECT_EQ(plain, "abc");
  std::string empty;
  DMXMLWrapper::handleTabAndCR(empty);
  EXPECT_EQ(empty, "");
}

TEST_F(DMXMLWrapperTest, SerialisesAnElementHandleAlone) {
  DMXMLWrapper& root = Parse("<a><b v=\"1\"><c/></b><d/></a>");
  DMXMLIteratorWrapper* iterator = nullptr;
  ASSERT_EQ(root.getElementIterator("b", &iterator), DM_XML_OK);
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(&item), DM_XML_OK);
  std::string text;
  EXPECT_EQ(static_cast<DMXMLWrapper*>(item)->doc2string(text), DM_XML_OK);
  EXPECT_EQ(text, "<b v=\"1\"><c/></b>");
}

TEST(DMXMLWrapperTextTest, EmptyHandleSerialisesAsTheEmptyText) {
  DMXMLWrapper handle;
  std::string text = "stale";
  EXPECT_EQ(handle.doc2string(text), DM_XML_OK);
  EXPECT_EQ(text, "");
  char buffer[4];
  std::size_t needed = 0;
  EXPECT_EQ(handle.doc2string(buffer, sizeof buffer, &needed), DM_XML_FAILED);
}

TEST_F(DMXMLWrapperTest, BufferSerialisationNeedsRoomForTheTerminator) {
  DMXMLWrapper& root = Parse("<a/>");
  std::string expected;
  root.doc2string(expected);
  const std::size_t exact = expected.size() + 1;
  std::vector<char> buffer(exact, 'x');
  std::size_t needed = 0;
  // One byte too small: the needed size comes back and nothing is written.
  EXPECT_EQ(root.doc2string(buffer.data(), exact - 1, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, exact);
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), std::string(exact, 'x'));
  EXPECT_EQ(root.doc2string(buffer.data(), exact, &needed), DM_XML_OK);
  EXPECT_EQ(needed, exact);
  EXPECT_STREQ(buffer.data(), expected.c_str());
}

TEST(DMXMLWrapperTextTest, BufferSerialisationCountsTheTrailingNulOfEscapedText) {
  DMXMLWrapper document;
  document.createNew("a");
  ASSERT_EQ(document.addText("\t"), DM_XML_OK);
  std::string expected;
  document.doc2string(expected);
  std::size_t needed = 0;
  char small[1];
  EXPECT_EQ(document.doc2string(small, sizeof small, &needed), DM_XML_BUFFER_TOO_SMALL);
  // The escaped text keeps its NUL inside its length, and the terminator
  // comes on top of it.
  EXPECT_EQ(needed, std::strlen(dmtest::kXmlDeclaration) + std::strlen("<a>&#x9;</a>") + 2);
  EXPECT_EQ(needed, expected.size() + 1);
}

TEST(DMXMLWrapperFileTest, LoadsFromTheFirstAngleBracket) {
  const std::string path = TempPath("bom.xml");
  {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"),
                                                         &std::fclose);
    ASSERT_NE(file, nullptr);
    const char bytes[] = "\xEF\xBB\xBF\n  <a v=\"1\"/>\n";
    std::fwrite(bytes, 1, sizeof bytes - 1, file.get());
  }
  const std::string text = DMXMLWrapper::loadStringFromFile(path.c_str());
  EXPECT_EQ(text, std::string("<a v=\"1\"/>\n") + '\0');
  DMXMLWrapper handle;
  handle.loadFromContents(text.c_str());
  ASSERT_NE(handle.getElement(), nullptr);
  EXPECT_EQ(dmtest::XmlTest::NameOf(handle), "a");
  std::remove(path.c_str());
}

TEST(DMXMLWrapperFileTest, FileWithoutAngleBracketGivesASingleNul) {
  const std::string path = TempPath("plain.txt");
  DMXMLWrapper::saveStringToFile(path.c_str(), "no markup here");
  EXPECT_EQ(DMXMLWrapper::loadStringFromFile(path.c_str()), std::string(1, '\0'));
  std::remove(path.c_str());
}

TEST(DMXMLWrapperFileTest, MissingFileGivesTheEmptyText) {
  EXPECT_EQ(DMXMLWrapper::loadStringFromFile(TempPath("does-not-exist.xml").c_str()), "");
  EXPECT_EQ(DMXMLWrapper::loadStringFromFile(nullptr), "");
}

TEST(DMXMLWrapperFileTest, SavedDocumentLoadsBackWhole) {
  const std::string path = TempPath("saved.xml");
  std::string big = "<a>";
  for (int i = 0; i < 20000; ++i) big += "<b i=\"" + std::to_string(i) + "\"/>";
  big += "</a>";
  DMXMLWrapper::saveStringToFile(path.c_str(), big.c_str());
  EXPECT_EQ(DMXMLWrapper::loadStringFromFile(path.c_str()), big + '\0');
  // Saving replaces what the file held.
  DMXMLWrapper::saveStringToFile(path.c_str(), "<c/>");
  EXPECT_EQ(DMXMLWrapper::loadStringFromFile(path.c_str()), std::string("<c/>") + '\0');
  std::remove(path.c_str());
}

}  // namespace
