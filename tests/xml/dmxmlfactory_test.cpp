#include "dmcommon/xml/dmxmlfactory.h"

#include <cstddef>
#include <cstring>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::dm_xml_addAttributeImpl;
using DmExtension::dm_xml_addElementImpl;
using DmExtension::dm_xml_addTextImpl;
using DmExtension::DM_XML_BUFFER_TOO_SMALL;
using DmExtension::dm_xml_copyElementBeforeImpl;
using DmExtension::dm_xml_copyElementImpl;
using DmExtension::dm_xml_disposeDocumentImpl;
using DmExtension::dm_xml_doc2stringImpl;
using DmExtension::DM_XML_FAILED;
using DmExtension::dm_xml_getAttributeImpl;
using DmExtension::dm_xml_getElementDirectIteratorImpl;
using DmExtension::dm_xml_getElementIteratorImpl;
using DmExtension::dm_xml_getNameImpl;
using DmExtension::dm_xml_getTextIteratorImpl;
using DmExtension::dm_xml_hasAttributeImpl;
using DmExtension::dm_xml_insertElementBeforeImpl;
using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::dm_xml_removeAttributeImpl;
using DmExtension::dm_xmliterator_closeImpl;
using DmExtension::dm_xmliterator_deleteCurrentItemImpl;
using DmExtension::dm_xmliterator_hasMoreItemsImpl;
using DmExtension::dm_xmliterator_nextItemImpl;
using DmExtension::DMXML;
using DmExtension::DMXMLFactory;
using DmExtension::DMXMLIterator;
using DmExtension::DMXMLIteratorFactory;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
using DmExtension::ElementFilter;
using DmExtension::TextFilter;
using dmtest::kXmlDeclaration;

// Any function pointer, for comparing entries of different signatures.
using AnyFunction = void (*)();

template <typename Function>
AnyFunction Erase(Function function) {
  return reinterpret_cast<AnyFunction>(function);
}

// The function pointer stored at `offset` in `table`.
AnyFunction EntryAt(const void* table, std::size_t offset) {
  AnyFunction entry = nullptr;
  std::memcpy(&entry, static_cast<const char*>(table) + offset, sizeof entry);
  return entry;
}

// Stand-ins for outputs that no call under test produces, to show whether a
// call wrote its output.
void* Sentinel() {
  static int marker = 0;
  return &marker;
}
DMXMLIterator* IteratorSentinel() {
  static DMXMLIterator marker{};
  return &marker;
}

// One entry of a table: its member offset, its place and the function it
// must hold.
struct Entry {
  const char* name;
  std::size_t offset;
  std::size_t index;
  AnyFunction function;
};

const Entry kDMXMLEntries[] = {
    {"disposeDocument", offsetof(DMXML, disposeDocument), 1, Erase(&dm_xml_disposeDocumentImpl)},
    {"doc2string", offsetof(DMXML, doc2string), 2, Erase(&dm_xml_doc2stringImpl)},
    {"getName", offsetof(DMXML, getName), 3, Erase(&dm_xml_getNameImpl)},
    {"hasAttribute", offsetof(DMXML, hasAttribute), 4, Erase(&dm_xml_hasAttributeImpl)},
    {"getAttribute", offsetof(DMXML, getAttribute), 5, Erase(&dm_xml_getAttributeImpl)},
    {"removeAttribute", offsetof(DMXML, removeAttribute), 6, Erase(&dm_xml_removeAttributeImpl)},
    {"getElementIterator", offsetof(DMXML, getElementIterator), 7,
     Erase(&dm_xml_getElementIteratorImpl)},
    {"getTextIterator", offsetof(DMXML, getTextIterator), 8, Erase(&dm_xml_getTextIteratorImpl)},
    {"addAttribute", offsetof(DMXML, addAttribute), 9, Erase(&dm_xml_addAttributeImpl)},
    {"addElement", offsetof(DMXML, addElement), 10, Erase(&dm_xml_addElementImpl)},
    {"addText", offsetof(DMXML, addText), 11, Erase(&dm_xml_addTextImpl)},
    {"copyElement", offsetof(DMXML, copyElement), 12, Erase(&dm_xml_copyElementImpl)},
    {"getElementDirectIterator", offsetof(DMXML, getElementDirectIterator), 13,
     Erase(&dm_xml_getElementDirectIteratorImpl)},
    {"insertElementBefore", offsetof(DMXML, insertElementBefore), 14,
     Erase(&dm_xml_insertElementBeforeImpl)},
    {"copyElementBefore", offsetof(DMXML, copyElementBefore), 15,
     Erase(&dm_xml_copyElementBeforeImpl)},
};

const Entry kDMXMLIteratorEntries[] = {
    {"hasMoreItems", offsetof(DMXMLIterator, hasMoreItems), 1,
     Erase(&dm_xmliterator_hasMoreItemsImpl)},
    {"nextItem", offsetof(DMXMLIterator, nextItem), 2, Erase(&dm_xmliterator_nextItemImpl)},
    {"deleteCurrentItem", offsetof(DMXMLIterator, deleteCurrentItem), 3,
     Erase(&dm_xmliterator_deleteCurrentItemImpl)},
    {"close", offsetof(DMXMLIterator, close), 4, Erase(&dm_xmliterator_closeImpl)},
};

// Checks every entry of a `DMXML` table as `DMXMLFactory::create` fills it.
void ExpectFilledOver(const DMXML* table, const DMXMLWrapper* handle) {
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->handle, handle);
  EXPECT_EQ(table->disposeDocument, &dm_xml_disposeDocumentImpl);
  EXPECT_EQ(table->doc2string, &dm_xml_doc2stringImpl);
  EXPECT_EQ(table->getName, &dm_xml_getNameImpl);
  EXPECT_EQ(table->hasAttribute, &dm_xml_hasAttributeImpl);
  EXPECT_EQ(table->getAttribute, &dm_xml_getAttributeImpl);
  EXPECT_EQ(table->removeAttribute, &dm_xml_removeAttributeImpl);
  EXPECT_EQ(table->getElementIterator, &dm_xml_getElementIteratorImpl);
  EXPECT_EQ(table->getTextIterator, &dm_xml_getTextIteratorImpl);
  EXPECT_EQ(table->addAttribute, &dm_xml_addAttributeImpl);
  EXPECT_EQ(table->addElement, &dm_xml_addElementImpl);
  EXPECT_EQ(table->addText, &dm_xml_addTextImpl);
  EXPECT_EQ(table->copyElement, &dm_xml_copyElementImpl);
  EXPECT_EQ(table->getElementDirectIterator, &dm_xml_getElementDirectIteratorImpl);
  EXPECT_EQ(table->insertElementBefore, &dm_xml_insertElementBeforeImpl);
  EXPECT_EQ(table->copyElementBefore, &dm_xml_copyElementBeforeImpl);
}

// Checks every entry of a `DMXMLIterator` table.
void ExpectFilledOver(const DMXMLIterator* table, const DMXMLIteratorWrapper* iterator) {
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->iterator, iterator);
  EXPECT_EQ(table->hasMoreItems, &dm_xmliterator_hasMoreItemsImpl);
  EXPECT_EQ(table->nextItem, &dm_xmliterator_nextItemImpl);
  EXPECT_EQ(table->deleteCurrentItem, &dm_xmliterator_deleteCurrentItemImpl);
  EXPECT_EQ(table->close, &dm_xmliterator_closeImpl);
}

class DMXMLTableTest : public dmtest::XmlTest {
 protected:
  // A table over the fixture's document parsed from `text`.
  DMXML* ParseTable(const char* text) { return DMXMLFactory::create(&Parse(text)); }

  // The element name read through entry 3.
  static std::string NameThrough(const DMXML* table) {
    char buffer[256];
    std::size_t needed = 0;
    const int rc = table->getName(table->handle, buffer, sizeof buffer, &needed);
    EXPECT_EQ(rc, DM_XML_OK);
    if (rc != DM_XML_OK) return "<failed>";
    EXPECT_EQ(needed, std::strlen(buffer) + 1);
    return buffer;
  }

  // The attribute read through entry 5.
  static std::string AttributeThrough(const DMXML* table, const char* name) {
    char buffer[256];
    std::size_t needed = 0;
    const int rc = table->getAttribute(table->handle, name, buffer, sizeof buffer, &needed);
    EXPECT_EQ(rc, DM_XML_OK) << name;
    if (rc != DM_XML_OK) return "<failed>";
    EXPECT_EQ(needed, std::strlen(buffer) + 1);
    return buffer;
  }

  // The serialisation read through entry 2, sized as entry 2 asks.
  static std::string TextThrough(const DMXML* table) {
    std::size_t needed = 0;
    EXPECT_EQ(table->doc2string(table->handle, nullptr, 0, &needed), DM_XML_BUFFER_TOO_SMALL);
    std::vector<char> buffer(needed, '#');
    EXPECT_EQ(table->doc2string(table->handle, buffer.data(), buffer.size(), &needed), DM_XML_OK);
    return buffer.data();
  }

  // Every remaining item of an element iterator table, which must each be a
  // `DMXML` table over a new element handle.
  static std::vector<DMXML*> ElementsThrough(DMXMLIterator* iterator) {
    std::vector<DMXML*> tables;
    for (;;) {
      int more = -1;
      EXPECT_EQ(iterator->hasMoreItems(iterator->iterator, &more), DM_XML_OK);
      void* item = Sentinel();
      const int rc = iterator->nextItem(iterator->iterator, &item);
      if (rc == DM_XML_NO_MORE_ITEMS) {
        EXPECT_EQ(more, 0);
        EXPECT_EQ(item, nullptr);
        return tables;
      }
      EXPECT_EQ(rc, DM_XML_OK);
      EXPECT_EQ(more, 1);
      if (rc != DM_XML_OK || item == nullptr || item == Sentinel()) return tables;
      tables.push_back(static_cast<DMXML*>(item));
    }
  }

  // The names of ElementsThrough(iterator), read through entry 3.
  static std::vector<std::string> NamesThrough(DMXMLIterator* iterator) {
    std::vector<std::string> names;
    for (const DMXML* table : ElementsThrough(iterator)) names.push_back(NameThrough(table));
    return names;
  }

  // Every remaining item of a text iterator table.
  static std::vector<std::string> TextsThrough(DMXMLIterator* iterator) {
    std::vector<std::string> texts;
    void* item = nullptr;
    int rc = DM_XML_OK;
    while ((rc = iterator->nextItem(iterator->iterator, &item)) == DM_XML_OK) {
      texts.emplace_back(static_cast<const char*>(item));
    }
    EXPECT_EQ(rc, DM_XML_NO_MORE_ITEMS);
    EXPECT_EQ(item, nullptr);
    return texts;
  }

  // The child elements of `table`'s element, through entries 13 and 2.
  static std::vector<DMXML*> ChildrenThrough(const DMXML* table, const char* name = "") {
    DMXMLIterator* iterator = nullptr;
    EXPECT_EQ(table->getElementDirectIterator(table->handle, name, &iterator), DM_XML_OK);
    if (iterator == nullptr) return {};
    return ElementsThrough(iterator);
  }
};

using DMXMLFactoryTest = DMXMLTableTest;
using DMXMLIteratorFactoryTest = DMXMLTableTest;
using DMXMLIteratorTableTest = DMXMLTableTest;
using Names = std::vector<std::string>;

// Creating tables.

TEST_F(DMXMLFactoryTest, CreateFillsTheSixteenEntriesInOrder) {
  DMXMLWrapper& handle = Parse("<r/>");
  const DMXML* table = DMXMLFactory::create(&handle);
  ExpectFilledOver(table, &handle);
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->handle, static_cast<void*>(&handle));
  const void* entry0 = nullptr;
  std::memcpy(&entry0, table, sizeof entry0);
  EXPECT_EQ(entry0, &handle);
  for (const Entry& entry : kDMXMLEntries) {
    EXPECT_EQ(EntryAt(table, entry.index * sizeof(void*)), entry.function) << entry.name;
  }
}

TEST_F(DMXMLFactoryTest, CreateOverNullGivesNull) {
  EXPECT_EQ(DMXMLFactory::create(nullptr), nullptr);
}

TEST_F(DMXMLFactoryTest, CreateGivesNewTableEachTime) {
  DMXMLWrapper& handle = Parse("<r/>");
  DMXML* first = DMXMLFactory::create(&handle);
  DMXML* second = DMXMLFactory::create(&handle);
  EXPECT_NE(first, second);
  ExpectFilledOver(first, &handle);
  ExpectFilledOver(second, &handle);
}

TEST_F(DMXMLFactoryTest, CreateWorksOverHandleWithoutElement) {
  DMXMLWrapper empty;
  ExpectFilledOver(DMXMLFactory::create(&empty), &empty);
}

TEST_F(DMXMLFactoryTest, TableIsSixteenPointersInTheDocumentedOrder) {
  EXPECT_EQ(sizeof(DMXML), 16 * sizeof(void*));
  EXPECT_EQ(offsetof(DMXML, handle), 0u);
  ASSERT_EQ(std::size(kDMXMLEntries), 15u);
  for (const Entry& entry : kDMXMLEntries) {
    EXPECT_EQ(entry.offset, entry.index * sizeof(void*)) << entry.name;
  }
}

TEST_F(DMXMLIteratorFactoryTest, CreateFillsTheFiveEntriesInOrder) {
  DMXMLWrapper& handle = Parse("<r><X/></r>");
  DMXMLIteratorWrapper* iterator = nullptr;
  ASSERT_EQ(handle.getElementIterator("", &iterator), DM_XML_OK);
  const DMXMLIterator* table = DMXMLIteratorFactory::create(iterator);
  ExpectFilledOver(table, iterator);
  ASSERT_NE(table, nullptr);
  const void* entry0 = nullptr;
  std::memcpy(&entry0, table, sizeof entry0);
  EXPECT_EQ(entry0, iterator);
  for (const Entry& entry : kDMXMLIteratorEntries) {
    EXPECT_EQ(EntryAt(table, entry.index * sizeof(void*)), entry.function) << entry.name;
  }
}

TEST_F(DMXMLIteratorFactoryTest, CreateOverNullGivesNull) {
  EXPECT_EQ(DMXMLIteratorFactory::create(nullptr), nullptr);
}

TEST_F(DMXMLIteratorFactoryTest, CreateGivesNewTableEachTime) {
  DMXMLWrapper& handle = Parse("<r/>");
  DMXMLIteratorWrapper* iterator = nullptr;
  ASSERT_EQ(handle.getTextIterator(&iterator), DM_XML_OK);
  DMXMLIterator* first = DMXMLIteratorFactory::create(iterator);
  DMXMLIterator* second = DMXMLIteratorFactory::create(iterator);
  EXPECT_NE(first, second);
  ExpectFilledOver(first, iterator);
  ExpectFilledOver(second, iterator);
}

TEST_F(DMXMLIteratorFactoryTest, TableIsFivePointersInTheDocumentedOrder) {
  EXPECT_EQ(sizeof(DMXMLIterator), 5 * sizeof(void*));
  EXPECT_EQ(offsetof(DMXMLIterator, iterator), 0u);
  ASSERT_EQ(std::size(kDMXMLIteratorEntries), 4u);
  for (const Entry& entry : kDMXMLIteratorEntries) {
    EXPECT_EQ(entry.offset, entry.index * sizeof(void*)) << entry.name;
  }
}

// Reading through a table.

TEST_F(DMXMLTableTest, DocToStringWritesTheDocumentIntoTheBuffer) {
  DMXML* table = ParseTable("<r a='1'><X>t</X></r>");
  const std::string expected = std::string(kXmlDeclaration) + "<r a=\"1\"><X>t</X></r>";
  std::size_t needed = 0;
  EXPECT_EQ(table->doc2string(table->handle, nullptr, 0, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, expected.size() + 1);

  std::vector<char> buffer(expected.size() + 8, '#');
  needed = 0;
  EXPECT_EQ(table->doc2string(table->handle, buffer.data(), expected.size(), &needed),
            DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, expected.size() + 1);
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), std::string(expected.size() + 8, '#'))
      << "a buffer that is too small stays untouched";

  needed = 0;
  EXPECT_EQ(table->doc2string(table->handle, buffer.data(), expected.size() + 1, &needed),
            DM_XML_OK);
  EXPECT_EQ(needed, expected.size() + 1);
  EXPECT_EQ(std::string(buffer.data()), expected);
  EXPECT_EQ(buffer[expected.size() + 1], '#');

  EXPECT_EQ(TextThrough(table), expected);
}

TEST_F(DMXMLTableTest, DocToStringOfElementTableWritesTheElementOnly) {
  DMXML* table = ParseTable("<r><X a='1'>t<Y/></X><Z/></r>");
  const std::vector<DMXML*> children = ChildrenThrough(table);
  ASSERT_EQ(children.size(), 2u);
  EXPECT_EQ(TextThrough(children[0]), "<X a=\"1\">t<Y/></X>");
  EXPECT_EQ(TextThrough(children[1]), "<Z/>");
}

TEST_F(DMXMLTableTest, DocToStringCountsTheNulThatEscapingTabsAppends) {
  DMXML* table = ParseTable("<r>a&#9;b</r>");
  const std::string expected = std::string(kXmlDeclaration) + "<r>a&#x9;b</r>";
  std::size_t needed = 0;
  EXPECT_EQ(table->doc2string(table->handle, nullptr, 0, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, expected.size() + 2);
  std::vector<char> buffer(needed, '#');
  EXPECT_EQ(table->doc2string(table->handle, buffer.data(), buffer.size(), &needed), DM_XML_OK);
  EXPECT_EQ(std::string(buffer.data()), expected);
  EXPECT_EQ(buffer[expected.size()], '\0');
  EXPECT_EQ(buffer[expected.size() + 1], '\0');
}

TEST_F(DMXMLTableTest, GetNameWritesTheNameIntoTheBuffer) {
  DMXML* table = ParseTable("<Field/>");
  char buffer[8];
  std::memset(buffer, '#', sizeof buffer);
  std::size_t needed = 0;
  EXPECT_EQ(table->getName(table->handle, buffer, 5, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, 6u);
  EXPECT_EQ(std::string(buffer, sizeof buffer), "########");
  needed = 0;
  EXPECT_EQ(table->getName(table->handle, buffer, 6, &needed), DM_XML_OK);
  EXPECT_EQ(needed, 6u);
  EXPECT_STREQ(buffer, "Field");
  EXPECT_EQ(buffer[6], '#');
}

TEST_F(DMXMLTableTest, GetNameReadsUtf8Names) {
  EXPECT_EQ(NameThrough(ParseTable("<\xC3\x89t\xC3\xA9/>")), "\xC3\x89t\xC3\xA9");
  EXPECT_EQ(NameThrough(ParseTable("<p:r xmlns:p='urn:p'/>")), "p:r");
}

TEST_F(DMXMLTableTest, HasAttributeTellsPresentFromAbsent) {
  DMXML* table = ParseTable("<r a='1' e=''/>");
  const struct {
    const char* name;
    int present;
  } kCases[] = {{"a", 1}, {"e", 1}, {"b", 0}, {"A", 0}};
  for (const auto& c : kCases) {
    int present = -1;
    EXPECT_EQ(table->hasAttribute(table->handle, c.name, &present), DM_XML_OK) << c.name;
    EXPECT_EQ(present, c.present) << c.name;
  }
}

TEST_F(DMXMLTableTest, GetAttributeWritesTheValueIntoTheBuffer) {
  DMXML* table = ParseTable("<r a='v&amp;1' e='' u='\xE2\x82\xAC'/>");
  const struct {
    const char* name;
    const char* value;
  } kCases[] = {{"a", "v&1"}, {"e", ""}, {"missing", ""}, {"u", "\xE2\x82\xAC"}};
  for (const auto& c : kCases) EXPECT_EQ(AttributeThrough(table, c.name), c.value) << c.name;

  char buffer[4] = {'#', '#', '#', '#'};
  std::size_t needed = 0;
  EXPECT_EQ(table->getAttribute(table->handle, "a", buffer, 3, &needed), DM_XML_BUFFER_TOO_SMALL);
  EXPECT_EQ(needed, 4u);
  EXPECT_EQ(std::string(buffer, 4), "####");
  EXPECT_EQ(table->getAttribute(table->handle, "a", buffer, 4, &needed), DM_XML_OK);
  EXPECT_STREQ(buffer, "v&1");
}

// Writing through a table.

TEST_F(DMXMLTableTest, RemoveAttributeRemovesIt) {
  DMXML* table = ParseTable("<r a='1' b='2'/>");
  EXPECT_EQ(table->removeAttribute(table->handle, "a"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r b=\"2\"/>");
  EXPECT_EQ(table->removeAttribute(table->handle, "missing"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r b=\"2\"/>");
  EXPECT_EQ(table->removeAttribute(table->handle, "b"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r/>");
}

TEST_F(DMXMLTableTest, AddAttributeSetsOrReplacesIt) {
  DMXML* table = ParseTable("<r a='1'/>");
  EXPECT_EQ(table->addAttribute(table->handle, "b", "x&y<\""), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r a=\"1\" b=\"x&amp;y&lt;&quot;\"/>");
  EXPECT_EQ(table->addAttribute(table->handle, "a", "2"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r a=\"2\" b=\"x&amp;y&lt;&quot;\"/>");
  EXPECT_EQ(AttributeThrough(table, "b"), "x&y<\"");
}

TEST_F(DMXMLTableTest, AddAttributeWithInvalidNameFails) {
  DMXML* table = ParseTable("<r/>");
  EXPECT_EQ(table->addAttribute(table->handle, "1a", "v"), DM_XML_FAILED);
  EXPECT_EQ(table->addAttribute(table->handle, "a b", "v"), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<r/>");
}

TEST_F(DMXMLTableTest, AddTextAppendsTextNode) {
  DMXML* table = ParseTable("<r><X/></r>");
  EXPECT_EQ(table->addText(table->handle, "a<b&c"), DM_XML_OK);
  EXPECT_EQ(table->addText(table->handle, "\xE2\x82\xAC"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r><X/>a&lt;b&amp;c\xE2\x82\xAC</r>");
}

TEST_F(DMXMLTableTest, AddElementGivesTableOverTheNewElement) {
  DMXML* table = ParseTable("<r><X/></r>");
  void* out = Sentinel();
  ASSERT_EQ(table->addElement(table->handle, "A", &out), DM_XML_OK);
  ASSERT_NE(out, Sentinel());
  auto* a = static_cast<DMXML*>(out);
  EXPECT_NE(a, table);
  EXPECT_NE(a->handle, table->handle);
  ExpectFilledOver(a, static_cast<DMXMLWrapper*>(a->handle));
  EXPECT_EQ(NameThrough(a), "A");

  // The new table works on the new element.
  void* b = Sentinel();
  ASSERT_EQ(a->addElement(a->handle, "B", &b), DM_XML_OK);
  EXPECT_EQ(a->addAttribute(a->handle, "k", "v"), DM_XML_OK);
  EXPECT_EQ(static_cast<DMXML*>(b)->addText(static_cast<DMXML*>(b)->handle, "t"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r><X/><A k=\"v\"><B>t</B></A></r>");
  EXPECT_EQ(TextThrough(a), "<A k=\"v\"><B>t</B></A>");
}

TEST_F(DMXMLTableTest, AddElementToHandleWithoutElementFailsAndLeavesOutUntouched) {
  DMXMLWrapper empty;
  DMXML* table = DMXMLFactory::create(&empty);
  void* out = Sentinel();
  EXPECT_EQ(table->addElement(table->handle, "X", &out), DM_XML_FAILED);
  EXPECT_EQ(out, Sentinel());
}

TEST_F(DMXMLTableTest, AddElementWithInvalidNameFailsAndLeavesOutUntouched) {
  DMXML* table = ParseTable("<r/>");
  for (const char* name : {"1X", "a b", "", "<"}) {
    void* out = Sentinel();
    EXPECT_EQ(table->addElement(table->handle, name, &out), DM_XML_FAILED) << name;
    EXPECT_EQ(out, Sentinel()) << name;
  }
  EXPECT_EQ(Serialised(), "<r/>");
}

TEST_F(DMXMLTableTest, EntriesWithoutAPlaceForTheResultChangeNothing) {
  DMXML* table = ParseTable("<r><c/></r>");
  DMXMLWrapper source;
  source.loadFromContents("<s/>");
  DMXMLIteratorWrapper* iterator = nullptr;
  ASSERT_EQ(document_->getElementDirectIterator("c", &iterator), DM_XML_OK);
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(&item), DM_XML_OK);
  auto* child = static_cast<DMXMLWrapper*>(item);
  EXPECT_EQ(table->addElement(table->handle, "X", nullptr), DM_XML_FAILED);
  EXPECT_EQ(table->copyElement(table->handle, &source, nullptr), DM_XML_FAILED);
  EXPECT_EQ(table->insertElementBefore(table->handle, "X", child, nullptr), DM_XML_FAILED);
  EXPECT_EQ(table->copyElementBefore(table->handle, &source, child, nullptr), DM_XML_FAILED);
  EXPECT_EQ(table->getElementIterator(table->handle, "c", nullptr), DM_XML_FAILED);
  EXPECT_EQ(table->getElementDirectIterator(table->handle, "c", nullptr), DM_XML_FAILED);
  EXPECT_EQ(table->getTextIterator(table->handle, nullptr), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<r><c/></r>");
}

TEST_F(DMXMLTableTest, CopyElementCopiesFromAnotherDocument) {
  DMXMLWrapper source;
  source.loadFromContents("<s><t k='v'>x<u/></t></s>");
  ASSERT_NE(source.getElement(), nullptr);
  const std::vector<DMXML*> sourceChildren = ChildrenThrough(DMXMLFactory::create(&source));
  ASSERT_EQ(sourceChildren.size(), 1u);

  DMXML* table = ParseTable("<r><X/></r>");
  void* out = Sentinel();
  ASSERT_EQ(table->copyElement(table->handle, sourceChildren[0]->handle, &out), DM_XML_OK);
  ASSERT_NE(out, Sentinel());
  auto* copy = static_cast<DMXML*>(out);
  ExpectFilledOver(copy, static_cast<DMXMLWrapper*>(copy->handle));
  EXPECT_EQ(NameThrough(copy), "t");
  EXPECT_EQ(Serialised(), "<r><X/><t k=\"v\">x<u/></t></r>");

  // The copy is independent of its source.
  EXPECT_EQ(copy->addAttribute(copy->handle, "k", "changed"), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r><X/><t k=\"changed\">x<u/></t></r>");
  EXPECT_EQ(WithoutDeclaration(source), "<s><t k=\"v\">x<u/></t></s>");
}

TEST_F(DMXMLTableTest, CopyElementCopiesWithinTheDocument) {
  DMXML* table = ParseTable("<r><X a='1'><Y/></X></r>");
  const std::vector<DMXML*> children = ChildrenThrough(table);
  ASSERT_EQ(children.size(), 1u);
  void* out = Sentinel();
  ASSERT_EQ(children[0]->copyElement(children[0]->handle, children[0]->handle, &out), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r><X a=\"1\"><Y/><X a=\"1\"><Y/></X></X></r>");
}

TEST_F(DMXMLTableTest, CopyElementFromHandleWithoutElementFails) {
  DMXML* table = ParseTable("<r/>");
  DMXMLWrapper empty;
  void* out = Sentinel();
  EXPECT_EQ(table->copyElement(table->handle, &empty, &out), DM_XML_FAILED);
  EXPECT_EQ(out, Sentinel());
  EXPECT_EQ(Serialised(), "<r/>");
}

TEST_F(DMXMLTableTest, InsertElementBeforePutsTheNewElementInPlace) {
  DMXML* table = ParseTable("<r><A/>t<C/></r>");
  const std::vector<DMXML*> children = ChildrenThrough(table);
  ASSERT_EQ(children.size(), 2u);
  void* out = Sentinel();
  ASSERT_EQ(table->insertElementBefore(table->handle, "B", children[1]->handle, &out), DM_XML_OK);
  ASSERT_NE(out, Sentinel());
  auto* b = static_cast<DMXML*>(out);
  ExpectFilledOver(b, static_cast<DMXMLWrapper*>(b->handle));
  EXPECT_EQ(NameThrough(b), "B");
  EXPECT_EQ(Serialised(), "<r><A/>t<B/><C/></r>");
  ASSERT_EQ(table->insertElementBefore(table->handle, "Z", children[0]->handle, &out), DM_XML_OK);
  EXPECT_EQ(Serialised(), "<r><Z/><A/>t<B/><C/></r>");
}

TEST_F(DMXMLTableTest, InsertElementBeforeNonChildFailsAndLeavesOutUntouched) {
  DMXML* table = ParseTable("<r><A><G/></A></r>");
  const std::vector<DMXML*> children = ChildrenThrough(table);
  ASSERT_EQ(children.size(), 1u);
  const std::vector<DMXML*> grandchildren = ChildrenThrough(children[0]);
  ASSERT_EQ(grandchildren.size(), 1u);
  DMXMLWrapper empty;
  for (void* before : {grandchildren[0]->handle, table->handle, static_cast<void*>(&empty),
                       static_cast<void*>(nullptr)}) {
    void* out = Sentinel();
    EXPECT_EQ(table->insertElementBefore(table->handle, "B", before, &out), DM_XML_FAILED);
    EXPECT_EQ(out, Sentinel());
  }
  // A valid place but an invalid name.
  void* out = Sentinel();
  EXPECT_EQ(table->insertElementBefore(table->handle, "1B", children[0]->handle, &out),
            DM_XML_FAILED);
  EXPECT_EQ(out, Sentinel());
  EXPECT_EQ(Serialised(), "<r><A><G/></A></r>");
}

TEST_F(DMXMLTableTest, CopyElementBeforePutsTheCopyInPlace) {
  DMXMLWrapper source;
  source.loadFromContents("<s a='1'>x</s>");
  ASSERT_NE(source.getElement(), nullptr);
  DMXML* sourceTable = DMXMLFactory::create(&source);

  DMXML* table = ParseTable("<r><A/><C/></r>");
  const std::vector<DMXML*> children = ChildrenThrough(table);
  ASSERT_EQ(children.size(), 2u);
  void* out = Sentinel();
  ASSERT_EQ(table->copyElementBefore(table->handle, sourceTable->handle, children[1]->handle, &out),
            DM_XML_OK);
  ASSERT_NE(out, Sentinel());
  auto* copy = static_cast<DMXML*>(out);
  ExpectFilledOver(copy, static_cast<DMXMLWrapper*>(copy->handle));
  EXPECT_EQ(NameThrough(copy), "s");
  EXPECT_EQ(Serialised(), "<r><A/><s a=\"1\">x</s><C/></r>");
  EXPECT_EQ(WithoutDeclaration(source), "<s a=\"1\">x</s>");
}

TEST_F(DMXMLTableTest, CopyElementBeforeNonChildFailsAndLeavesOutUntouched) {
  DMXML* table = ParseTable("<r><A><G/></A></r>");
  const std::vector<DMXML*> children = ChildrenThrough(table);
  ASSERT_EQ(children.size(), 1u);
  const std::vector<DMXML*> grandchildren = ChildrenThrough(children[0]);
  ASSERT_EQ(grandchildren.size(), 1u);
  DMXMLWrapper empty;
  const struct {
    void* source;
    void* before;
  } kCases[] = {
      {children[0]->handle, grandchildren[0]->handle},
      {children[0]->handle, nullptr},
      {children[0]->handle, &empty},
      {&empty, children[0]->handle},
      {nullptr, children[0]->handle},
  };
  for (const auto& c : kCases) {
    void* out = Sentinel();
    EXPECT_EQ(table->copyElementBefore(table->handle, c.source, c.before, &out), DM_XML_FAILED);
    EXPECT_EQ(out, Sentinel());
  }
  EXPECT_EQ(Serialised(), "<r><A><G/></A></r>");
}

TEST_F(DMXMLTableTest, EveryEntryFailsOnHandleWithoutElement) {
  DMXMLWrapper empty;
  DMXML* table = DMXMLFactory::create(&empty);
  DMXMLWrapper& other = Parse("<r><X/></r>");
  void* const handle = table->handle;
  char buffer[16] = "untouched";
  std::size_t needed = 0;
  EXPECT_EQ(table->doc2string(handle, buffer, sizeof buffer, &needed), DM_XML_FAILED);
  EXPECT_EQ(table->getName(handle, buffer, sizeof buffer, &needed), DM_XML_FAILED);
  EXPECT_EQ(table->getAttribute(handle, "a", buffer, sizeof buffer, &needed), DM_XML_FAILED);
  EXPECT_STREQ(buffer, "untouched");
  int present = -1;
  EXPECT_EQ(table->hasAttribute(handle, "a", &present), DM_XML_FAILED);
  EXPECT_EQ(present, 0);
  EXPECT_EQ(table->removeAttribute(handle, "a"), DM_XML_FAILED);
  EXPECT_EQ(table->addAttribute(handle, "a", "v"), DM_XML_FAILED);
  EXPECT_EQ(table->addText(handle, "t"), DM_XML_FAILED);

  DMXMLIterator* iterator = IteratorSentinel();
  EXPECT_EQ(table->getElementIterator(handle, "", &iterator), DM_XML_FAILED);
  EXPECT_EQ(table->getElementIterator(handle, "X", &iterator), DM_XML_FAILED);
  EXPECT_EQ(table->getElementDirectIterator(handle, "", &iterator), DM_XML_FAILED);
  EXPECT_EQ(table->getTextIterator(handle, &iterator), DM_XML_FAILED);
  EXPECT_EQ(iterator, IteratorSentinel());

  void* out = Sentinel();
  EXPECT_EQ(table->addElement(handle, "X", &out), DM_XML_FAILED);
  EXPECT_EQ(table->copyElement(handle, &other, &out), DM_XML_FAILED);
  EXPECT_EQ(table->insertElementBefore(handle, "X", &other, &out), DM_XML_FAILED);
  EXPECT_EQ(table->copyElementBefore(handle, &other, &other, &out), DM_XML_FAILED);
  EXPECT_EQ(out, Sentinel());
  EXPECT_EQ(Serialised(), "<r><X/></r>");
}

// Iterating through tables.

TEST_F(DMXMLIteratorTableTest, IteratingChildElementsYieldsNewTablePerElement) {
  DMXML* table = ParseTable("<r><A/>t<B><A/></B><C/></r>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getElementIterator(table->handle, "", &iterator), DM_XML_OK);
  ASSERT_NE(iterator, nullptr);
  ExpectFilledOver(iterator, static_cast<DMXMLIteratorWrapper*>(iterator->iterator));
  EXPECT_EQ(static_cast<DMXMLIteratorWrapper*>(iterator->iterator)->getFilter(), ElementFilter);

  const std::vector<DMXML*> elements = ElementsThrough(iterator);
  ASSERT_EQ(elements.size(), 3u);
  const Names expected = {"A", "B", "C"};
  std::set<const void*> tables;
  std::set<const void*> handles;
  xercesc::DOMElement* child = document_->getElement()->getFirstElementChild();
  for (std::size_t i = 0; i < elements.size(); ++i) {
    ExpectFilledOver(elements[i], static_cast<DMXMLWrapper*>(elements[i]->handle));
    EXPECT_EQ(NameThrough(elements[i]), expected[i]);
    EXPECT_NE(elements[i], table);
    EXPECT_NE(elements[i]->handle, table->handle);
    // Entry 0 is a handle over the very child element.
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(static_cast<DMXMLWrapper*>(elements[i]->handle)->getElement(), child);
    child = child->getNextElementSibling();
    tables.insert(elements[i]);
    handles.insert(elements[i]->handle);
  }
  EXPECT_EQ(tables.size(), 3u);
  EXPECT_EQ(handles.size(), 3u);
}

TEST_F(DMXMLIteratorTableTest, SameElementThroughTwoIteratorsGivesDistinctTables) {
  DMXML* table = ParseTable("<r><A/></r>");
  const std::vector<DMXML*> first = ChildrenThrough(table);
  const std::vector<DMXML*> second = ChildrenThrough(table);
  ASSERT_EQ(first.size(), 1u);
  ASSERT_EQ(second.size(), 1u);
  EXPECT_NE(first[0], second[0]);
  EXPECT_NE(first[0]->handle, second[0]->handle);
  EXPECT_EQ(static_cast<DMXMLWrapper*>(first[0]->handle)->getElement(),
            static_cast<DMXMLWrapper*>(second[0]->handle)->getElement());
}

TEST_F(DMXMLIteratorTableTest, ElementIteratorEntrySearchesEveryDepthForName) {
  DMXML* table = ParseTable("<Y><Y id='1'/><A><Y id='2'><Y id='3'/></Y></A><y/><Y id='4'/></Y>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getElementIterator(table->handle, "Y", &iterator), DM_XML_OK);
  Names ids;
  for (const DMXML* element : ElementsThrough(iterator)) {
    EXPECT_EQ(NameThrough(element), "Y");
    ids.push_back(AttributeThrough(element, "id"));
  }
  EXPECT_EQ(ids, (Names{"1", "2", "3", "4"}));
  ASSERT_EQ(table->getElementIterator(table->handle, "", &iterator), DM_XML_OK);
  EXPECT_EQ(NamesThrough(iterator), (Names{"Y", "A", "y", "Y"}));
}

TEST_F(DMXMLIteratorTableTest, DirectIteratorEntryStaysWithTheChildren) {
  DMXML* table = ParseTable("<r><Y id='1'/><A><Y id='2'/></A><Y id='3'/></r>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getElementDirectIterator(table->handle, "Y", &iterator), DM_XML_OK);
  ExpectFilledOver(iterator, static_cast<DMXMLIteratorWrapper*>(iterator->iterator));
  Names ids;
  for (const DMXML* element : ElementsThrough(iterator)) {
    ids.push_back(AttributeThrough(element, "id"));
  }
  EXPECT_EQ(ids, (Names{"1", "3"}));
  ASSERT_EQ(table->getElementDirectIterator(table->handle, "", &iterator), DM_XML_OK);
  EXPECT_EQ(NamesThrough(iterator), (Names{"Y", "A", "Y"}));
}

TEST_F(DMXMLIteratorTableTest, TextIteratorYieldsTexts) {
  DMXML* table = ParseTable("<r>a<X>inner</X>b&amp;c<Y/>\xE2\x82\xAC</r>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getTextIterator(table->handle, &iterator), DM_XML_OK);
  ASSERT_NE(iterator, nullptr);
  ExpectFilledOver(iterator, static_cast<DMXMLIteratorWrapper*>(iterator->iterator));
  EXPECT_EQ(static_cast<DMXMLIteratorWrapper*>(iterator->iterator)->getFilter(), TextFilter);
  EXPECT_EQ(TextsThrough(iterator), (Names{"a", "b&c", "\xE2\x82\xAC"}));
}

TEST_F(DMXMLIteratorTableTest, HasMoreItemsFollowsTheWalk) {
  DMXML* table = ParseTable("<r><X/></r>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getElementIterator(table->handle, "", &iterator), DM_XML_OK);
  int more = -1;
  EXPECT_EQ(iterator->hasMoreItems(iterator->iterator, &more), DM_XML_OK);
  EXPECT_EQ(more, 1);
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(iterator->iterator, &item), DM_XML_OK);
  more = -1;
  EXPECT_EQ(iterator->hasMoreItems(iterator->iterator, &more), DM_XML_OK);
  EXPECT_EQ(more, 0);
}

TEST_F(DMXMLIteratorTableTest, NextItemAtExhaustionGivesNoMoreItemsAndNullItem) {
  DMXML* table = ParseTable("<r>t<X/></r>");
  DMXMLIterator* iterators[3] = {};
  ASSERT_EQ(table->getElementIterator(table->handle, "", &iterators[0]), DM_XML_OK);
  ASSERT_EQ(table->getElementDirectIterator(table->handle, "Z", &iterators[1]), DM_XML_OK);
  ASSERT_EQ(table->getTextIterator(table->handle, &iterators[2]), DM_XML_OK);
  const int itemsBefore[3] = {1, 0, 1};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    DMXMLIterator* iterator = iterators[i];
    void* item = nullptr;
    for (int n = 0; n < itemsBefore[i]; ++n) {
      ASSERT_EQ(iterator->nextItem(iterator->iterator, &item), DM_XML_OK);
    }
    for (int n = 0; n < 2; ++n) {
      item = Sentinel();
      EXPECT_EQ(iterator->nextItem(iterator->iterator, &item), DM_XML_NO_MORE_ITEMS);
      EXPECT_EQ(item, nullptr);
    }
  }
}

TEST_F(DMXMLIteratorTableTest, DeleteCurrentItemRemovesTheElementHandedOutLast) {
  DMXML* table = ParseTable("<r><A/><B/>t<C/></r>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getElementDirectIterator(table->handle, "", &iterator), DM_XML_OK);
  EXPECT_EQ(iterator->deleteCurrentItem(iterator->iterator), DM_XML_FAILED);
  EXPECT_EQ(Serialised(), "<r><A/><B/>t<C/></r>");
  Names seen;
  void* item = nullptr;
  while (iterator->nextItem(iterator->iterator, &item) == DM_XML_OK) {
    const auto* element = static_cast<DMXML*>(item);
    seen.push_back(NameThrough(element));
    if (seen.back() != "B") {
      EXPECT_EQ(iterator->deleteCurrentItem(iterator->iterator), DM_XML_OK);
    }
  }
  EXPECT_EQ(seen, (Names{"A", "B", "C"}));
  EXPECT_EQ(Serialised(), "<r><B/>t</r>");
}

TEST_F(DMXMLIteratorTableTest, DeleteCurrentItemRemovesTheTextHandedOutLast) {
  DMXML* table = ParseTable("<r>a<X/>b</r>");
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getTextIterator(table->handle, &iterator), DM_XML_OK);
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(iterator->iterator, &item), DM_XML_OK);
  EXPECT_EQ(iterator->deleteCurrentItem(iterator->iterator), DM_XML_OK);
  EXPECT_STREQ(static_cast<const char*>(item), "a");
  EXPECT_EQ(Serialised(), "<r><X/>b</r>");
}

TEST_F(DMXMLIteratorTableTest, CloseReturnsOkAndItemsStayValid) {
  DMXML* table = ParseTable("<r>a<X/>b</r>");
  DMXMLIterator* texts = nullptr;
  DMXMLIterator* elements = nullptr;
  ASSERT_EQ(table->getTextIterator(table->handle, &texts), DM_XML_OK);
  ASSERT_EQ(table->getElementIterator(table->handle, "X", &elements), DM_XML_OK);
  void* text = nullptr;
  void* element = nullptr;
  ASSERT_EQ(texts->nextItem(texts->iterator, &text), DM_XML_OK);
  ASSERT_EQ(elements->nextItem(elements->iterator, &element), DM_XML_OK);
  EXPECT_EQ(texts->close(texts->iterator), DM_XML_OK);
  EXPECT_EQ(elements->close(elements->iterator), DM_XML_OK);
  EXPECT_STREQ(static_cast<const char*>(text), "a");
  EXPECT_EQ(NameThrough(static_cast<DMXML*>(element)), "X");
  EXPECT_EQ(TextsThrough(texts), (Names{"b"}));
  EXPECT_STREQ(static_cast<const char*>(text), "a");
}

// Disposing of a document.

TEST_F(DMXMLTableTest, DisposeDocumentFreesTheHandleAndEverythingObtainedThroughIt) {
  auto* document = new DMXMLWrapper;
  document->loadFromContents("<r><A k='1'><B>t<C/></B></A>u<D/></r>");
  ASSERT_NE(document->getElement(), nullptr);
  DMXML* table = DMXMLFactory::create(document);
  ASSERT_NE(table, nullptr);

  // Tables and iterators at several depths, with their items.
  DMXMLIterator* children = nullptr;
  ASSERT_EQ(table->getElementIterator(table->handle, "", &children), DM_XML_OK);
  void* a = nullptr;
  ASSERT_EQ(children->nextItem(children->iterator, &a), DM_XML_OK);
  auto* tableA = static_cast<DMXML*>(a);
  EXPECT_EQ(NameThrough(tableA), "A");
  DMXMLIterator* deep = nullptr;
  ASSERT_EQ(tableA->getElementIterator(tableA->handle, "C", &deep), DM_XML_OK);
  EXPECT_EQ(NamesThrough(deep), (Names{"C"}));
  const std::vector<DMXML*> bs = ChildrenThrough(tableA, "B");
  ASSERT_EQ(bs.size(), 1u);
  DMXMLIterator* texts = nullptr;
  ASSERT_EQ(bs[0]->getTextIterator(bs[0]->handle, &texts), DM_XML_OK);
  EXPECT_EQ(TextsThrough(texts), (Names{"t"}));
  void* added = nullptr;
  ASSERT_EQ(bs[0]->addElement(bs[0]->handle, "E", &added), DM_XML_OK);
  void* copied = nullptr;
  ASSERT_EQ(table->copyElement(table->handle, tableA->handle, &copied), DM_XML_OK);
  void* inserted = nullptr;
  ASSERT_EQ(table->insertElementBefore(table->handle, "F", tableA->handle, &inserted), DM_XML_OK);
  DMXMLIterator* addedChildren = nullptr;
  auto* tableE = static_cast<DMXML*>(added);
  ASSERT_EQ(tableE->getElementDirectIterator(tableE->handle, "", &addedChildren), DM_XML_OK);
  EXPECT_EQ(NamesThrough(addedChildren), (Names{}));
  EXPECT_NE(DMXMLFactory::create(document), nullptr);
  EXPECT_EQ(TextThrough(table), std::string(kXmlDeclaration) +
                                    "<r><F/><A k=\"1\"><B>t<C/><E/></B></A>u<D/>"
                                    "<A k=\"1\"><B>t<C/><E/></B></A></r>");
  // Leaves the rest of the first iterator unread on purpose.

  void* const handle = table->handle;
  EXPECT_EQ(table->disposeDocument(handle), DM_XML_OK);
  // Nothing obtained above may be touched now; the sanitizer build shows
  // that all of it was freed.
}

TEST_F(DMXMLTableTest, DisposeDocumentFreesNewlyCreatedDocument) {
  auto* document = new DMXMLWrapper;
  document->createNew("root");
  ASSERT_NE(document->getElement(), nullptr);
  DMXML* table = DMXMLFactory::create(document);
  void* child = nullptr;
  ASSERT_EQ(table->addElement(table->handle, "child", &child), DM_XML_OK);
  DMXMLIterator* iterator = nullptr;
  ASSERT_EQ(table->getElementIterator(table->handle, "child", &iterator), DM_XML_OK);
  EXPECT_EQ(NamesThrough(iterator), (Names{"child"}));
  EXPECT_EQ(table->disposeDocument(table->handle), DM_XML_OK);
}

TEST_F(DMXMLTableTest, DisposeDocumentFreesHandleWithoutDocument) {
  auto* empty = new DMXMLWrapper;
  DMXML* table = DMXMLFactory::create(empty);
  EXPECT_EQ(table->disposeDocument(table->handle), DM_XML_OK);
}

}  // namespace
