#include "dmcommon/printable/dmuncconverter.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using DMPrintableUtil::DMUncConverter;

TEST(DMUncConverterTest, ConvertsUtf8ToUtf16AndBack) {
  DMUncConverter converter;
  const std::string text = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
  const icu::UnicodeString wide = converter.ToUTF16(text);
  EXPECT_EQ(wide, icu::UnicodeString(u"caf\u00E9 \u20AC \U0001F600"));
  EXPECT_EQ(converter.ToUTF8(wide), text);
}

TEST(DMUncConverterTest, ConvertsTheEmptyText) {
  DMUncConverter converter;
  EXPECT_TRUE(converter.ToUTF16("").isEmpty());
  EXPECT_EQ(converter.ToUTF8(icu::UnicodeString()), "");
}

TEST(DMUncConverterTest, TextsAroundTheLocalBufferSizeComeBackWhole) {
  DMUncConverter converter;
  // 128 bytes fit the local buffer exactly; from 129 on the text is extracted
  // a second time into a buffer of its own.
  for (const std::size_t size : {1u, 127u, 128u, 129u, 130u, 4096u}) {
    const std::string text(size, 'x');
    EXPECT_EQ(converter.ToUTF8(converter.ToUTF16(text)), text) << size;
  }
}

TEST(DMUncConverterTest, MultiByteCharacterAcrossTheLocalBufferEdgeComesBackWhole) {
  DMUncConverter converter;
  for (const std::size_t ascii : {125u, 126u, 127u, 128u}) {
    const std::string text = std::string(ascii, 'x') + "\xE2\x82\xAC";
    EXPECT_EQ(converter.ToUTF8(converter.ToUTF16(text)), text) << ascii;
  }
}

TEST(DMUncConverterTest, MalformedInputBecomesSubstitutionCharacters) {
  DMUncConverter converter;
  EXPECT_EQ(converter.ToUTF16("a\xFF"
                              "b"),
            icu::UnicodeString(u"a\uFFFDb"));
}

TEST(DMUncConverterTest, ConversionAfterMalformedInputStartsClean) {
  DMUncConverter converter;
  // A lead byte left at the end must not pair with the next text's first
  // byte.
  EXPECT_EQ(converter.ToUTF16("a\xC3"), icu::UnicodeString(u"a\uFFFD"));
  EXPECT_EQ(converter.ToUTF16("\xA9z"), icu::UnicodeString(u"\uFFFDz"));
  EXPECT_EQ(converter.ToUTF16("ok"), icu::UnicodeString(u"ok"));
}

TEST(DMUncConverterTest, UnpairedSurrogateBecomesTheReplacementCharacter) {
  DMUncConverter converter;
  const char16_t lone[] = {u'a', 0xD800, u'b', 0};
  EXPECT_EQ(converter.ToUTF8(icu::UnicodeString(lone)),
            "a\xEF\xBF\xBD"
            "b");
}

}  // namespace
