#include "dmcommon/xml/dmxmlconverter.h"

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace {

using DmExtension::DMXMLConverter;

std::u16string Wide(const char* utf8) {
  const DMXMLConverter converter(utf8);
  return static_cast<const char16_t*>(converter);
}

std::string Narrow(const char16_t* utf16) {
  const DMXMLConverter converter(utf16);
  return static_cast<const char*>(converter);
}

TEST(DMXMLConverterTest, ConvertsUtf8ToUtf16) {
  EXPECT_EQ(Wide("Field"), u"Field");
  EXPECT_EQ(Wide("caf\xC3\xA9 \xE2\x82\xAC"), u"caf\u00E9 \u20AC");
  // A character outside the basic plane becomes a surrogate pair.
  EXPECT_EQ(Wide("\xF0\x9F\x98\x80"), u"\U0001F600");
}

TEST(DMXMLConverterTest, LeavesTheNarrowSideEmptyWhenBuiltFromUtf8) {
  const DMXMLConverter converter("abc");
  EXPECT_STREQ(static_cast<const char*>(converter), "");
}

TEST(DMXMLConverterTest, ConvertsUtf16ToUtf8) {
  EXPECT_EQ(Narrow(u"Field"), "Field");
  EXPECT_EQ(Narrow(u"caf\u00E9 \u20AC \U0001F600"), "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(DMXMLConverterTest, HasNoWideTextWhenBuiltFromUtf16) {
  const DMXMLConverter converter(u"abc");
  EXPECT_EQ(static_cast<const char16_t*>(converter), nullptr);
  EXPECT_TRUE(converter.isValid());
}

TEST(DMXMLConverterTest, ConvertsTextsLongerThanOnePieceWhole) {
  // Multi-byte characters land on every offset of the 256-byte pieces.
  std::u16string wide;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    wide += (i % 3 == 0) ? u"\u20AC" : u"x";
    expected += (i % 3 == 0) ? "\xE2\x82\xAC" : "x";
  }
  EXPECT_EQ(Narrow(wide.c_str()), expected);
  EXPECT_EQ(Wide(expected.c_str()), wide);
}

TEST(DMXMLConverterTest, TreatsNullInputsAsEmptyTexts) {
  const DMXMLConverter fromNarrow(static_cast<const char*>(nullptr));
  EXPECT_EQ(std::u16string(static_cast<const char16_t*>(fromNarrow)), u"");
  EXPECT_TRUE(fromNarrow.isValid());
  const DMXMLConverter fromWide(static_cast<const char16_t*>(nullptr));
  EXPECT_STREQ(static_cast<const char*>(fromWide), "");
  EXPECT_TRUE(fromWide.isValid());
}

TEST(DMXMLConverterTest, RefusesMalformedUtf8) {
  for (const char* text : {"\xFF", "ab\xC3", "\xC3(", "\xED\xA0\x80"}) {
    const DMXMLConverter converter(text);
    EXPECT_FALSE(converter.isValid()) << text;
    EXPECT_EQ(std::u16string(static_cast<const char16_t*>(converter)), u"") << text;
  }
}

TEST(DMXMLConverterTest, StopsAtAnUnpairedSurrogateAtTheEnd) {
  const DMXMLConverter converter(u"ab\xD800");
  EXPECT_FALSE(converter.isValid());
  EXPECT_STREQ(static_cast<const char*>(converter), "ab");
}

}  // namespace

namespace {

std::string Hex(const std::string& text) {
  std::string hex;
  char buffer[4];
  for (const char c : text) {
    std::snprintf(buffer, sizeof buffer, "%02X", static_cast<unsigned char>(c));
    hex += buffer;
  }
  return hex;
}

// Unpaired surrogates inside a text: the transcoder pairs a high one with
// whatever follows and writes a low one on its own. The result must still
// come out whole, within the room the converter sets aside for it.
TEST(DMXMLConverterTest, ConvertsUnpairedSurrogatesInsideATextWhole) {
  const struct {
    const char16_t* text;
    const char* hex;
  } kCases[] = {
      {u"a\xD800"
       u"b",
       "61E291A2"},
      {u"a\xDC00"
       u"b",
       "61EDB08062"},
      {u"\xDC00\xD800"
       u"b",
       "EDB080E291A2"},
      {u"\xDBFF"
       u"b\u00E9",
       "F48281A2C3A9"},
  };
  for (const auto& c : kCases) {
    const DMXMLConverter converter(c.text);
    EXPECT_TRUE(converter.isValid()) << c.hex;
    EXPECT_EQ(Hex(static_cast<const char*>(converter)), c.hex);
  }
}

TEST(DMXMLConverterTest, ConvertsEveryUtf8LengthAtItsBoundaries) {
  EXPECT_EQ(Hex(Narrow(u"\u007F\u0080\u07FF\u0800\uFFFF")), "7FC280DFBFE0A080EFBFBF");
  // Plain ASCII after a wider character goes through the transcoder too.
  EXPECT_EQ(Narrow(u"\u00E9abc"),
            "\xC3\xA9"
            "abc");
}

}  // namespace
