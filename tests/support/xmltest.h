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

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_SUPPORT_XMLTEST_H
