#ifndef DMCOMMON_TESTS_PRINTABLE_PRINTABLETEST_H
#define DMCOMMON_TESTS_PRINTABLE_PRINTABLETEST_H

// Helpers shared by the printable tests: items that print a fixed text, a
// resource lookup that counts its calls, and reading printables back from
// XML.

#include <map>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/printable/dmprintablevalue.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/support/xmltest.h"

namespace dmtest {

// A string format of variable width prints a text exactly as it is.
inline DMPrintableValue TextItem(const std::string& text) {
  return DMPrintableValue(DMDatum(text), DMPrintableValue::Real, DMStringFormat(-1, false));
}

// An integer printed without padding up to `width` digits.
inline DMPrintableValue IntegerItem(long long value, int width) {
  return DMPrintableValue(DMDatum(value), DMPrintableValue::Real,
                          DMNumberFormat(DMNumberFormat::Standard, width, 0));
}

// A resource lookup with a fixed table that counts how often it is asked.
class CountingLookUp : public DMResLookUp {
 public:
  bool LookUp(const std::string& key, std::string& text, int mapId) override {
    ++calls;
    lastMapId = mapId;
    const auto found = texts.find(key);
    if (found == texts.end()) {
      // Leaves something behind, to show that a refused lookup counts as no
      // text whatever it wrote.
      text = "stale";
      return false;
    }
    text = found->second;
    return true;
  }

  std::map<std::string, std::string> texts;
  int calls = 0;
  int lastMapId = -1;
};

// What `CreateFromElmt` makes of an XML document's root element.
struct ReadResult {
  std::unique_ptr<DMPrintable> printable;
  bool recognised = false;
};

inline ReadResult ReadPrintable(const std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  EXPECT_NE(document.getElement(), nullptr) << "snippet did not parse: " << text;
  ReadResult result;
  // Anything but false, to show that the factory sets it either way.
  result.recognised = true;
  result.printable.reset(DMPrintable::CreateFromElmt(document, result.recognised));
  return result;
}

// Writes `printable` under a fresh root, reads the written element back with
// `CreateFromElmt`, checks that the copy writes the same text, and returns
// the copy. Null (with a failure) when nothing was written or read.
inline std::unique_ptr<DMPrintable> XmlRoundTrip(const DMPrintable& printable) {
  const std::string written = WrittenXml(printable);
  EXPECT_NE(written, "") << "nothing was written";
  if (written.empty()) return nullptr;
  ReadResult read = ReadPrintable(written);
  EXPECT_TRUE(read.recognised);
  EXPECT_NE(read.printable, nullptr) << "could not read back: " << written;
  if (read.printable == nullptr) return nullptr;
  EXPECT_EQ(WrittenXml(*read.printable), written);
  return std::move(read.printable);
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_PRINTABLE_PRINTABLETEST_H
