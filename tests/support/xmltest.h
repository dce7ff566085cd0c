#ifndef DMCOMMON_TESTS_SUPPORT_XMLTEST_H
#define DMCOMMON_TESTS_SUPPORT_XMLTEST_H

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlwrapper.h"

namespace dmtest {

// The declaration every document serialised from a handle starts with.
inline constexpr char kXmlDeclaration[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>";

// Fixture for tests that read an inline XML snippet.
class XmlTest : public ::testing::Test {
 public:
  // `handle` serialised, without the XML declaration of a whole document.
  static std::string WithoutDeclaration(const DmExtension::DMXMLWrapper& handle) {
    std::string text;
    handle.doc2string(text);
    const std::string declaration = kXmlDeclaration;
    if (text.compare(0, declaration.size(), declaration) == 0) text.erase(0, declaration.size());
    return text;
  }

  // The tag name of `handle`, or "<none>" when it has no element.
  static std::string NameOf(const DmExtension::DMXMLWrapper& handle) {
    std::string name;
    if (handle.getName(name) != DmExtension::DM_XML_OK) return "<none>";
    return name;
  }

 protected:
  // Parses `text` into the fixture's document and returns its root handle.
  // A snippet that does not parse fails the test.
  DmExtension::DMXMLWrapper& Parse(const char* text) {
    document_ = std::make_unique<DmExtension::DMXMLWrapper>();
    document_->loadFromContents(text);
    EXPECT_NE(document_->getElement(), nullptr) << "snippet did not parse: " << text;
    return *document_;
  }

  // The fixture's document serialised without its XML declaration.
  std::string Serialised() const { return WithoutDeclaration(*document_); }

  std::unique_ptr<DmExtension::DMXMLWrapper> document_;
};

// Writes `object` with its AddToTree(parent, created) under the root of a new
// document, reads the written element back with the class's constructor from
// an element (followed by `readArgs`), lets `expectEqual(object, readBack)`
// compare them, and checks that writing the read-back object gives the same
// text. Returns the written text, without the XML declaration.
template <typename T, typename Equal, typename... ReadArgs>
std::string ExpectXmlRoundTrip(const T& object, Equal expectEqual, ReadArgs... readArgs) {
  DmExtension::DMXMLWrapper first;
  first.createNew("Root");
  DmExtension::DMXMLWrapper* created = nullptr;
  object.AddToTree(first, created);
  EXPECT_NE(created, nullptr) << "nothing was written";
  if (created == nullptr) return "";
  const T readBack(*created, readArgs...);
  expectEqual(object, readBack);
  DmExtension::DMXMLWrapper second;
  second.createNew("Root");
  DmExtension::DMXMLWrapper* rewritten = nullptr;
  readBack.AddToTree(second, rewritten);
  std::string text = XmlTest::WithoutDeclaration(first);
  EXPECT_EQ(XmlTest::WithoutDeclaration(second), text);
  return text;
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_SUPPORT_XMLTEST_H
