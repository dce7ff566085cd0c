#include "dmcommon/xml/dmxmlconverter.h"

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
