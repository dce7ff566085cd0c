#ifndef DMCOMMON_TESTS_FORMATS_FORMATTEST_H
#define DMCOMMON_TESTS_FORMATS_FORMATTEST_H

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace dmtest {

// What a format's AddToTree wrote under a fresh root: the element's text, or
// the empty text when nothing was written. Checks that `created` is null
// exactly when nothing was written and, otherwise, is the root's only child.
template <typename Format>
std::string WrittenXml(const Format& format) {
  DmExtension::DMXMLWrapper document;
  document.createNew("Root");
  // Anything but null, to show that AddToTree sets it either way.
  DmExtension::DMXMLWrapper* created = &document;
  format.AddToTree(document, created);
  const std::string whole = XmlTest::WithoutDeclaration(document);
  if (created == nullptr) {
    EXPECT_EQ(whole, "<Root/>") << "no element was handed out, yet something was written";
    return "";
  }
  std::string element = XmlTest::WithoutDeclaration(*created);
  EXPECT_EQ(whole, "<Root>" + element + "</Root>");
  return element;
}

// A format read from `text`, a document whose root is the format's element.
template <typename Format>
Format ReadXml(const std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  EXPECT_NE(document.getElement(), nullptr) << "snippet did not parse: " << text;
  return Format(document);
}

// One attribute of an element written by a test.
struct Attribute {
  const char* name;
  const char* value;
};

// One change to a valid element, as a row of a table of bad input: the
// attribute gets `value`, or is left out when `value` is null; an attribute
// the element lacks is added.
struct Change {
  const char* what;
  const char* attribute;
  const char* value;
};

inline std::ostream& operator<<(std::ostream& out, const Change& change) {
  return out << change.what;
}

// The element `tag` with `attributes` in order, `change` applied, and
// `content` inside.
inline std::string ElementText(const char* tag, const std::vector<Attribute>& attributes,
                               const Change& change, const std::string& content = "") {
  std::string text = std::string("<") + tag;
  bool changed = false;
  auto add = [&text](const char* name, const char* value) {
    if (value != nullptr) text += std::string(" ") + name + "=\"" + value + "\"";
  };
  for (const Attribute& attribute : attributes) {
    const bool target = std::string(attribute.name) == change.attribute;
    add(attribute.name, target ? change.value : attribute.value);
    changed = changed || target;
  }
  if (!changed) add(change.attribute, change.value);
  if (content.empty()) return text + "/>";
  return text + ">" + content + "</" + tag + ">";
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_FORMATS_FORMATTEST_H
