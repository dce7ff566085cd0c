#include "dmcommon/xml/dmxmliteratorwrapper.h"

#include <cstddef>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DM_XML_FAILED;
using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
using DmExtension::ElementFilter;
using DmExtension::FilterType;
using DmExtension::NodeFilter;
using DmExtension::TextFilter;
using xercesc::DOMNode;
using xercesc::DOMNodeFilter;

// A filter value outside the enumeration, which must let no node pass.
const FilterType kUnknownFilter = static_cast<FilterType>(7);

// Whether `Enum{int}` compiles, which C++17 allows exactly for enumerations
// with a fixed underlying type: only those hold every value of that type.
template <typename Enum, typename = void>
struct HasFixedUnderlyingType : std::false_type {};
template <typename Enum>
struct HasFixedUnderlyingType<Enum, std::void_t<decltype(Enum{std::declval<int>()})>>
    : std::true_type {};

enum class ScopedProbe { kA };
enum UnscopedFixedProbe : int { kFixedA };
enum UnscopedProbe { kUnfixedA };
static_assert(HasFixedUnderlyingType<ScopedProbe>::value);
static_assert(HasFixedUnderlyingType<UnscopedFixedProbe>::value);
static_assert(!HasFixedUnderlyingType<UnscopedProbe>::value);

// Stands in for an item pointer that no call under test produces, to show
// that the call overwrote it.
void* Sentinel() {
  static int marker = 0;
  return &marker;
}

// How a test asks the element handle for an iterator.
enum class Walk {
  kElements,        // getElementIterator(name)
  kDirectElements,  // getElementDirectIterator(name)
  kTexts,           // getTextIterator()
};

std::ostream& operator<<(std::ostream& out, Walk walk) {
  switch (walk) {
    case Walk::kElements:
      return out << "getElementIterator";
    case Walk::kDirectElements:
      return out << "getElementDirectIterator";
    case Walk::kTexts:
      return out << "getTextIterator";
  }
  return out;
}

class DMXMLIteratorWrapperTest : public dmtest::XmlTest {
 protected:
  // A new iterator over `handle`, owned by the handle; null fails the test.
  static DMXMLIteratorWrapper* Iterate(DMXMLWrapper& handle, Walk walk, const char* name = "") {
    DMXMLIteratorWrapper* iterator = nullptr;
    int rc = DM_XML_FAILED;
    switch (walk) {
      case Walk::kElements:
        rc = handle.getElementIterator(name, &iterator);
        break;
      case Walk::kDirectElements:
        rc = handle.getElementDirectIterator(name, &iterator);
        break;
      case Walk::kTexts:
        rc = handle.getTextIterator(&iterator);
        break;
    }
    EXPECT_EQ(rc, DM_XML_OK) << walk;
    EXPECT_NE(iterator, nullptr) << walk;
    return iterator;
  }

  // The tag name of `handle`, followed by "#" and its id attribute if it has
  // one, so that elements of one name can be told apart.
  static std::string Label(const DMXMLWrapper& handle) {
    std::string label = NameOf(handle);
    std::string id;
    bool found = false;
    if (handle.getAttribute("id", id, found) == DM_XML_OK && found) label += "#" + id;
    return label;
  }

  // Hands out every remaining item of `iterator`, described by `describe`,
  // checking that hasMoreItems agrees with nextItem at every step.
  template <typename Describe>
  static std::vector<std::string> Drain(DMXMLIteratorWrapper* iterator, Describe describe) {
    std::vector<std::string> items;
    for (;;) {
      int more = -1;
      EXPECT_EQ(iterator->hasMoreItems(&more), DM_XML_OK);
      void* item = Sentinel();
      const int rc = iterator->nextItem(&item);
      if (rc == DM_XML_NO_MORE_ITEMS) {
        EXPECT_EQ(more, 0);
        EXPECT_EQ(item, nullptr);
        return items;
      }
      EXPECT_EQ(rc, DM_XML_OK);
      EXPECT_EQ(more, 1);
      if (rc != DM_XML_OK || item == nullptr || item == Sentinel()) return items;
      items.push_back(describe(item));
    }
  }

  // The labels of every remaining element of `iterator`.
  static std::vector<std::string> ElementLabels(DMXMLIteratorWrapper* iterator) {
    return Drain(iterator, [](void* item) { return Label(*static_cast<DMXMLWrapper*>(item)); });
  }

  // Every remaining text of `iterator`.
  static std::vector<std::string> Texts(DMXMLIteratorWrapper* iterator) {
    return Drain(iterator, [](void* item) { return std::string(static_cast<const char*>(item)); });
  }

  // The child of the fixture's root element at `index`, counting every kind
  // of node.
  DOMNode* RootChild(int index) const {
    DOMNode* node = document_->getElement()->getFirstChild();
    for (int i = 0; i < index && node != nullptr; ++i) node = node->getNextSibling();
    EXPECT_NE(node, nullptr) << "no child " << index;
    return node;
  }
};

using Labels = std::vector<std::string>;

// Empty elements.

TEST_F(DMXMLIteratorWrapperTest, ElementWithoutChildrenHasNoItemsAtOnce) {
  const struct {
    Walk walk;
    const char* name;
  } kCases[] = {
      {Walk::kElements, ""},        {Walk::kElements, "Y"}, {Walk::kDirectElements, ""},
      {Walk::kDirectElements, "Y"}, {Walk::kTexts, ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.walk << "(\"" << c.name << "\")");
    DMXMLWrapper& root = Parse("<Y/>");
    DMXMLIteratorWrapper* iterator = Iterate(root, c.walk, c.name);
    int more = -1;
    EXPECT_EQ(iterator->hasMoreItems(&more), DM_XML_OK);
    EXPECT_EQ(more, 0);
    void* item = Sentinel();
    EXPECT_EQ(iterator->nextItem(&item), DM_XML_NO_MORE_ITEMS);
    EXPECT_EQ(item, nullptr);
  }
}

// Mixed content.

TEST_F(DMXMLIteratorWrapperTest, TextIteratorYieldsTextNodesInOrder) {
  DMXMLWrapper& root = Parse("<r>a<X/>b<Y/></r>");
  EXPECT_EQ(Texts(Iterate(root, Walk::kTexts)), (Labels{"a", "b"}));
}

TEST_F(DMXMLIteratorWrapperTest, TextIteratorReadsTextAsUtf8WithReferencesResolved) {
  DMXMLWrapper& root = Parse("<r>caf\xC3\xA9 &amp; &#x20AC;<X>inner</X>&lt;end&gt;</r>");
  EXPECT_EQ(Texts(Iterate(root, Walk::kTexts)), (Labels{"caf\xC3\xA9 & \xE2\x82\xAC", "<end>"}));
}

TEST_F(DMXMLIteratorWrapperTest, TextIteratorSkipsCommentsCdataAndInstructions) {
  DMXMLWrapper& root = Parse("<r>a<!--c--><![CDATA[d]]><?pi x?>b</r>");
  EXPECT_EQ(Texts(Iterate(root, Walk::kTexts)), (Labels{"a", "b"}));
}

TEST_F(DMXMLIteratorWrapperTest, ElementIteratorWithEmptyNameYieldsEveryChildElement) {
  DMXMLWrapper& root = Parse("<r>a<X/>b<Y/></r>");
  EXPECT_EQ(ElementLabels(Iterate(root, Walk::kElements, "")), (Labels{"X", "Y"}));
}

TEST_F(DMXMLIteratorWrapperTest, DirectIteratorWithEmptyNameYieldsEveryChildElement) {
  DMXMLWrapper& root = Parse("<r>a<X/>b<Y/></r>");
  EXPECT_EQ(ElementLabels(Iterate(root, Walk::kDirectElements, "")), (Labels{"X", "Y"}));
}

TEST_F(DMXMLIteratorWrapperTest, DirectIteratorWithNameYieldsOnlyThatName) {
  DMXMLWrapper& root = Parse("<r>a<X/>b<Y/></r>");
  EXPECT_EQ(ElementLabels(Iterate(root, Walk::kDirectElements, "Y")), (Labels{"Y"}));
}

TEST_F(DMXMLIteratorWrapperTest, NullNameMatchesEveryChildElement) {
  DMXMLWrapper& root = Parse("<r><X/><Y><Z/></Y></r>");
  EXPECT_EQ(ElementLabels(Iterate(root, Walk::kElements, nullptr)), (Labels{"X", "Y"}));
  EXPECT_EQ(ElementLabels(Iterate(root, Walk::kDirectElements, nullptr)), (Labels{"X", "Y"}));
}

// Which elements a walk finds.

// Y elements at several depths below a root that is itself named Y, some of
// them inside elements of other names.
constexpr char kNestedDocument[] =
    "<Y id='root'>t<A><Y id='1'><Y id='2'/></Y></A><!--Y--><Y id='3'/>"
    "<B><C>u<Y id='4'>v</Y></C></B><y id='lower'/></Y>";

TEST_F(DMXMLIteratorWrapperTest, FindsElementsAsTheWalkAndNameRequire) {
  const struct {
    const char* document;
    Walk walk;
    const char* name;
    Labels expected;
  } kCases[] = {
      // A name searches every depth, in document order, never the root.
      {kNestedDocument, Walk::kElements, "Y", {"Y#1", "Y#2", "Y#3", "Y#4"}},
      // Case matters.
      {kNestedDocument, Walk::kElements, "y", {"y#lower"}},
      {kNestedDocument, Walk::kElements, "A", {"A"}},
      {kNestedDocument, Walk::kElements, "C", {"C"}},
      {kNestedDocument, Walk::kElements, "Z", {}},
      // The empty name lists only the direct children.
      {kNestedDocument, Walk::kElements, "", {"A", "Y#3", "B", "y#lower"}},
      // The direct walk never descends.
      {kNestedDocument, Walk::kDirectElements, "Y", {"Y#3"}},
      {kNestedDocument, Walk::kDirectElements, "y", {"y#lower"}},
      {kNestedDocument, Walk::kDirectElements, "C", {}},
      {kNestedDocument, Walk::kDirectElements, "", {"A", "Y#3", "B", "y#lower"}},
      // Names match whole: neither a prefix nor an extension matches.
      {"<r><YZ/><Y/><X><YZ id='2'/></X></r>", Walk::kElements, "Y", {"Y"}},
      {"<r><YZ/><Y/><X><YZ id='2'/></X></r>", Walk::kElements, "YZ", {"YZ", "YZ#2"}},
      {"<r><YZ/><Y/></r>", Walk::kDirectElements, "YZ", {"YZ"}},
      {"<r><Y/></r>", Walk::kElements, "YZ", {}},
      // The qualified name is compared as a whole; namespaces play no part.
      {"<r xmlns:p='urn:p'><p:Y/><Y/></r>", Walk::kElements, "Y", {"Y"}},
      {"<r xmlns:p='urn:p'><p:Y/><Y/></r>", Walk::kElements, "p:Y", {"p:Y"}},
      {"<r xmlns='urn:d'><Y/></r>", Walk::kDirectElements, "Y", {"Y"}},
      // Names compare as UTF-8.
      {"<r><\xC3\x89t\xC3\xA9/><Ete/></r>",
       Walk::kElements,
       "\xC3\x89t\xC3\xA9",
       {"\xC3\x89t\xC3\xA9"}},
      {"<r><\xC3\x89t\xC3\xA9/><Ete/></r>", Walk::kDirectElements, "Ete", {"Ete"}},
      // The text walk ignores elements and descends nowhere.
      {kNestedDocument, Walk::kTexts, "", {"t"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.walk << "(\"" << c.name << "\") over " << c.document);
    DMXMLWrapper& root = Parse(c.document);
    DMXMLIteratorWrapper* iterator = Iterate(root, c.walk, c.name);
    if (c.walk == Walk::kTexts) {
      EXPECT_EQ(Texts(iterator), c.expected);
    } else {
      EXPECT_EQ(ElementLabels(iterator), c.expected);
    }
  }
}

TEST_F(DMXMLIteratorWrapperTest, DeepWalkStaysBelowItsElement) {
  DMXMLWrapper& root = Parse("<r><Y id='0'/><A><Y id='1'/><B><Y id='2'/></B></A><Y id='3'/></r>");
  DMXMLIteratorWrapper* children = Iterate(root, Walk::kDirectElements, "A");
  void* item = nullptr;
  ASSERT_EQ(children->nextItem(&item), DM_XML_OK);
  auto* a = static_cast<DMXMLWrapper*>(item);
  ASSERT_EQ(NameOf(*a), "A");
  EXPECT_EQ(ElementLabels(Iterate(*a, Walk::kElements, "Y")), (Labels{"Y#1", "Y#2"}));
}

TEST_F(DMXMLIteratorWrapperTest, DeepWalkExpandsEntityReferences) {
  DMXMLWrapper& root = Parse(
      "<!DOCTYPE r [<!ENTITY e \"<Y id='in-entity'/>\">]>"
      "<r><Y id='before'/>&e;<Y id='after'/></r>");
  EXPECT_EQ(ElementLabels(Iterate(root, Walk::kElements, "Y")),
            (Labels{"Y#before", "Y#in-entity", "Y#after"}));
}

TEST_F(DMXMLIteratorWrapperTest, DeepTextWalkYieldsNestedTextsInDocumentOrder) {
  DMXMLWrapper& root = Parse("<r>a<X>b<Y>c</Y>d<!--no--></X>e<Z/><W><V>f</V></W></r>");
  DMXMLIteratorWrapper iterator(root.getElement(), false, TextFilter, "");
  EXPECT_EQ(Texts(&iterator), (Labels{"a", "b", "c", "d", "e", "f"}));
}

TEST_F(DMXMLIteratorWrapperTest, DeepTextWalkIgnoresTheName) {
  DMXMLWrapper& root = Parse("<r>a<X>b</X></r>");
  DMXMLIteratorWrapper iterator(root.getElement(), false, TextFilter, "X");
  EXPECT_EQ(Texts(&iterator), (Labels{"a", "b"}));
}

// Exhaustion.

TEST_F(DMXMLIteratorWrapperTest, HasMoreItemsGivesZeroOnceTheWalkIsExhausted) {
  DMXMLWrapper& root = Parse("<r><X/></r>");
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kElements, "");
  int more = -1;
  EXPECT_EQ(iterator->hasMoreItems(&more), DM_XML_OK);
  EXPECT_EQ(more, 1);
  // Asking twice does not advance.
  more = -1;
  EXPECT_EQ(iterator->hasMoreItems(&more), DM_XML_OK);
  EXPECT_EQ(more, 1);
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(&item), DM_XML_OK);
  EXPECT_EQ(NameOf(*static_cast<DMXMLWrapper*>(item)), "X");
  for (int i = 0; i < 3; ++i) {
    more = -1;
    EXPECT_EQ(iterator->hasMoreItems(&more), DM_XML_OK);
    EXPECT_EQ(more, 0);
    item = Sentinel();
    EXPECT_EQ(iterator->nextItem(&item), DM_XML_NO_MORE_ITEMS);
    EXPECT_EQ(item, nullptr);
  }
}

TEST_F(DMXMLIteratorWrapperTest, IteratorOverNullRootYieldsNothing) {
  for (const bool direct : {true, false}) {
    for (const FilterType filter : {ElementFilter, TextFilter}) {
      SCOPED_TRACE(testing::Message() << "direct " << direct << ", filter " << filter);
      DMXMLIteratorWrapper iterator(nullptr, direct, filter, "");
      int more = -1;
      EXPECT_EQ(iterator.hasMoreItems(&more), DM_XML_OK);
      EXPECT_EQ(more, 0);
      void* item = Sentinel();
      EXPECT_EQ(iterator.nextItem(&item), DM_XML_NO_MORE_ITEMS);
      EXPECT_EQ(item, nullptr);
      EXPECT_EQ(iterator.deleteItem(), DM_XML_FAILED);
      EXPECT_EQ(iterator.close(), DM_XML_OK);
      EXPECT_EQ(iterator.getFilter(), filter);
    }
  }
}

// Deletion.

TEST_F(DMXMLIteratorWrapperTest, DeleteItemBeforeAnyNextItemFails) {
  DMXMLWrapper& root = Parse("<r>a<X/></r>");
  for (const Walk walk : {Walk::kElements, Walk::kDirectElements, Walk::kTexts}) {
    SCOPED_TRACE(walk);
    EXPECT_EQ(Iterate(root, walk)->deleteItem(), DM_XML_FAILED);
  }
  EXPECT_EQ(Serialised(), "<r>a<X/></r>");
}

TEST_F(DMXMLIteratorWrapperTest, DeletingEveryItemOfDirectWalkRemovesThemAll) {
  DMXMLWrapper& root = Parse("<r>t<A/><B><Z/></B>u<A id='2'/><!--c--></r>");
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kDirectElements, "");
  Labels seen;
  std::vector<DMXMLWrapper*> handles;
  void* item = nullptr;
  while (iterator->nextItem(&item) == DM_XML_OK) {
    auto* handle = static_cast<DMXMLWrapper*>(item);
    handles.push_back(handle);
    seen.push_back(Label(*handle));
    EXPECT_EQ(iterator->deleteItem(), DM_XML_OK) << seen.back();
  }
  EXPECT_EQ(seen, (Labels{"A", "B", "A#2"}));
  EXPECT_EQ(Serialised(), "<r>tu<!--c--></r>");
  // The removed elements are not released: their handles still read them.
  ASSERT_EQ(handles.size(), 3u);
  EXPECT_EQ(WithoutDeclaration(*handles[1]), "<B><Z/></B>");
  EXPECT_EQ(Label(*handles[2]), "A#2");
}

TEST_F(DMXMLIteratorWrapperTest, DeletingSomeItemsOfDirectWalkKeepsTheOthers) {
  DMXMLWrapper& root = Parse("<r><Y id='1'/><X/><Y id='2'/><Y id='3'/></r>");
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kDirectElements, "Y");
  Labels seen;
  void* item = nullptr;
  while (iterator->nextItem(&item) == DM_XML_OK) {
    seen.push_back(Label(*static_cast<DMXMLWrapper*>(item)));
    if (seen.back() != "Y#2") {
      EXPECT_EQ(iterator->deleteItem(), DM_XML_OK);
    }
  }
  EXPECT_EQ(seen, (Labels{"Y#1", "Y#2", "Y#3"}));
  EXPECT_EQ(Serialised(), "<r><X/><Y id=\"2\"/></r>");
}

TEST_F(DMXMLIteratorWrapperTest, DeletingEveryItemOfTextWalkRemovesTheTexts) {
  DMXMLWrapper& root = Parse("<r>a<X>x</X>b<Y/>c</r>");
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kTexts);
  Labels seen;
  void* item = nullptr;
  while (iterator->nextItem(&item) == DM_XML_OK) {
    seen.emplace_back(static_cast<const char*>(item));
    EXPECT_EQ(iterator->deleteItem(), DM_XML_OK);
  }
  EXPECT_EQ(seen, (Labels{"a", "b", "c"}));
  EXPECT_EQ(Serialised(), "<r><X>x</X><Y/></r>");
}

TEST_F(DMXMLIteratorWrapperTest, DeleteItemInDeepWalkOnGrandchildThrowsDomException) {
  DMXMLWrapper& root = Parse("<r><A><Y/></A></r>");
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kElements, "Y");
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(&item), DM_XML_OK);
  EXPECT_THROW(iterator->deleteItem(), xercesc::DOMException);
  EXPECT_EQ(Serialised(), "<r><A><Y/></A></r>");
}

TEST_F(DMXMLIteratorWrapperTest, DeleteItemInDeepWalkRemovesDirectChild) {
  DMXMLWrapper& root = Parse("<r><Y id='1'/><A><Y id='2'/></A><Y id='3'/></r>");
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kElements, "Y");
  void* item = nullptr;
  ASSERT_EQ(iterator->nextItem(&item), DM_XML_OK);
  EXPECT_EQ(iterator->deleteItem(), DM_XML_OK);
  EXPECT_EQ(ElementLabels(iterator), (Labels{"Y#2", "Y#3"}));
  EXPECT_EQ(Serialised(), "<r><A><Y id=\"2\"/></A><Y id=\"3\"/></r>");
}

// The filter test.

TEST_F(DMXMLIteratorWrapperTest, PassesFilterAcceptsExactlyTheNodesOfItsKind) {
  // Children: 0 text "X", 1 <X>, 2 comment, 3 <XX>, 4 CDATA, 5 instruction,
  // 6 <x>.
  Parse("<r>X<X/><!--X--><XX/><![CDATA[X]]><?X x?><x/></r>");
  ASSERT_EQ(RootChild(0)->getNodeType(), DOMNode::TEXT_NODE);
  ASSERT_EQ(RootChild(2)->getNodeType(), DOMNode::COMMENT_NODE);
  ASSERT_EQ(RootChild(4)->getNodeType(), DOMNode::CDATA_SECTION_NODE);
  ASSERT_EQ(RootChild(5)->getNodeType(), DOMNode::PROCESSING_INSTRUCTION_NODE);
  const struct {
    FilterType filter;
    const char* name;
    int child;
    bool passes;
  } kCases[] = {
      {ElementFilter, "", 0, false},   {ElementFilter, "", 1, true},
      {ElementFilter, "", 2, false},   {ElementFilter, "", 3, true},
      {ElementFilter, "", 4, false},   {ElementFilter, "", 5, false},
      {ElementFilter, "", 6, true},    {ElementFilter, "X", 0, false},
      {ElementFilter, "X", 1, true},   {ElementFilter, "X", 2, false},
      {ElementFilter, "X", 3, false},  {ElementFilter, "X", 5, false},
      {ElementFilter, "X", 6, false},  {ElementFilter, "XX", 1, false},
      {ElementFilter, "XX", 3, true},  {ElementFilter, "x", 1, false},
      {ElementFilter, "x", 6, true},   {ElementFilter, "r", 1, false},
      {TextFilter, "", 0, true},       {TextFilter, "", 1, false},
      {TextFilter, "", 2, false},      {TextFilter, "", 4, false},
      {TextFilter, "", 5, false},      {TextFilter, "X", 0, true},
      {TextFilter, "X", 1, false},     {TextFilter, "Z", 0, true},
      {kUnknownFilter, "", 0, false},  {kUnknownFilter, "", 1, false},
      {kUnknownFilter, "", 2, false},  {kUnknownFilter, "X", 1, false},
      {kUnknownFilter, "X", 0, false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << "filter " << static_cast<int>(c.filter) << ", name \""
                                    << c.name << "\", child " << c.child);
    const DMXMLIteratorWrapper probe(nullptr, true, c.filter, c.name);
    EXPECT_EQ(probe.passesFilter(RootChild(c.child)), c.passes);
  }
}

TEST_F(DMXMLIteratorWrapperTest, PassesFilterRejectsTheDocumentNode) {
  DMXMLWrapper& root = Parse("<r/>");
  for (const FilterType filter : {ElementFilter, TextFilter, kUnknownFilter}) {
    const DMXMLIteratorWrapper probe(nullptr, true, filter, "");
    EXPECT_FALSE(probe.passesFilter(root.getDocument())) << static_cast<int>(filter);
    EXPECT_EQ(probe.passesFilter(root.getElement()), filter == ElementFilter)
        << static_cast<int>(filter);
  }
}

TEST_F(DMXMLIteratorWrapperTest, FilterTypeCanHoldValuesOtherThanItsEnumerators) {
  // Values other than 0 and 1 are part of the contract ("lets no node pass"),
  // and only an enumeration with a fixed underlying type can hold them: for
  // any other, converting 7 is undefined and the optimiser may assume the
  // filter is always one of the two enumerators.
  EXPECT_TRUE(HasFixedUnderlyingType<FilterType>::value);
  EXPECT_EQ(static_cast<int>(kUnknownFilter), 7);
}

TEST_F(DMXMLIteratorWrapperTest, UnknownFilterLetsNoNodePass) {
  DMXMLWrapper& root = Parse("<r>a<X>b<Y/></X>c<!--d--></r>");
  for (const bool direct : {true, false}) {
    for (const char* name : {"", "X", "Y"}) {
      SCOPED_TRACE(testing::Message() << "direct " << direct << ", name \"" << name << "\"");
      DMXMLIteratorWrapper iterator(root.getElement(), direct, kUnknownFilter, name);
      EXPECT_EQ(iterator.getFilter(), kUnknownFilter);
      int more = -1;
      EXPECT_EQ(iterator.hasMoreItems(&more), DM_XML_OK);
      EXPECT_EQ(more, 0);
      void* item = Sentinel();
      EXPECT_EQ(iterator.nextItem(&item), DM_XML_NO_MORE_ITEMS);
      EXPECT_EQ(item, nullptr);
      EXPECT_EQ(iterator.deleteItem(), DM_XML_FAILED);
    }
  }
  EXPECT_EQ(Serialised(), "<r>a<X>b<Y/></X>c<!--d--></r>");
}

TEST_F(DMXMLIteratorWrapperTest, NodeFilterAcceptsPassingNodesAndSkipsTheRest) {
  EXPECT_EQ(DOMNodeFilter::FILTER_ACCEPT, 1);
  EXPECT_EQ(DOMNodeFilter::FILTER_SKIP, 3);
  Parse("<r>X<X/><!--X--><XX/><![CDATA[X]]><?X x?><x/></r>");
  const struct {
    FilterType filter;
    const char* name;
    int child;
    DOMNodeFilter::FilterAction action;
  } kCases[] = {
      {ElementFilter, "X", 0, DOMNodeFilter::FILTER_SKIP},
      {ElementFilter, "X", 1, DOMNodeFilter::FILTER_ACCEPT},
      {ElementFilter, "X", 2, DOMNodeFilter::FILTER_SKIP},
      {ElementFilter, "X", 3, DOMNodeFilter::FILTER_SKIP},
      {ElementFilter, "X", 6, DOMNodeFilter::FILTER_SKIP},
      {ElementFilter, "", 3, DOMNodeFilter::FILTER_ACCEPT},
      {ElementFilter, "", 4, DOMNodeFilter::FILTER_SKIP},
      {TextFilter, "", 0, DOMNodeFilter::FILTER_ACCEPT},
      {TextFilter, "", 1, DOMNodeFilter::FILTER_SKIP},
      {TextFilter, "", 4, DOMNodeFilter::FILTER_SKIP},
      {kUnknownFilter, "", 0, DOMNodeFilter::FILTER_SKIP},
      {kUnknownFilter, "", 1, DOMNodeFilter::FILTER_SKIP},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(testing::Message() << "filter " << static_cast<int>(c.filter) << ", name \""
                                    << c.name << "\", child " << c.child);
    DMXMLIteratorWrapper iterator(nullptr, true, c.filter, c.name);
    const NodeFilter nodeFilter(&iterator);
    EXPECT_EQ(nodeFilter.acceptNode(RootChild(c.child)), c.action);
  }
}

TEST_F(DMXMLIteratorWrapperTest, NodeFilterNeverRejects) {
  Parse("<r>X<X><Y>y</Y></X><!--X--><XX/><![CDATA[X]]><?X x?><x/></r>");
  for (const FilterType filter : {ElementFilter, TextFilter, kUnknownFilter}) {
    for (const char* name : {"", "X", "Y", "nothing"}) {
      DMXMLIteratorWrapper iterator(nullptr, true, filter, name);
      const NodeFilter nodeFilter(&iterator);
      // Every node of the document, the document itself included, in
      // document order.
      std::vector<DOMNode*> pending = {document_->getDocument()};
      int visited = 0;
      while (!pending.empty()) {
        DOMNode* node = pending.back();
        pending.pop_back();
        ++visited;
        EXPECT_NE(nodeFilter.acceptNode(node), DOMNodeFilter::FILTER_REJECT)
            << "filter " << static_cast<int>(filter) << ", name \"" << name << "\", node type "
            << node->getNodeType();
        for (DOMNode* child = node->getLastChild(); child != nullptr;
             child = child->getPreviousSibling()) {
          pending.push_back(child);
        }
      }
      EXPECT_EQ(visited, 11);
    }
  }
}

TEST_F(DMXMLIteratorWrapperTest, GetFilterReportsTheKindOfWalk) {
  DMXMLWrapper& root = Parse("<r/>");
  EXPECT_EQ(Iterate(root, Walk::kElements, "")->getFilter(), ElementFilter);
  EXPECT_EQ(Iterate(root, Walk::kElements, "Y")->getFilter(), ElementFilter);
  EXPECT_EQ(Iterate(root, Walk::kDirectElements, "Y")->getFilter(), ElementFilter);
  EXPECT_EQ(Iterate(root, Walk::kTexts)->getFilter(), TextFilter);
  const DMXMLIteratorWrapper deepText(root.getElement(), false, TextFilter, "");
  EXPECT_EQ(deepText.getFilter(), TextFilter);
  const DMXMLIteratorWrapper unknown(root.getElement(), true, kUnknownFilter, "");
  EXPECT_EQ(unknown.getFilter(), kUnknownFilter);
}

// Closing and the lifetime of items.

TEST_F(DMXMLIteratorWrapperTest, CloseReturnsOkAndKeepsItemsValid) {
  DMXMLWrapper& root = Parse("<r>a<X id='1'/>b<X id='2'/>c</r>");
  DMXMLIteratorWrapper* texts = Iterate(root, Walk::kTexts);
  DMXMLIteratorWrapper* elements = Iterate(root, Walk::kElements, "X");
  void* text = nullptr;
  void* element = nullptr;
  ASSERT_EQ(texts->nextItem(&text), DM_XML_OK);
  ASSERT_EQ(elements->nextItem(&element), DM_XML_OK);
  EXPECT_EQ(texts->close(), DM_XML_OK);
  EXPECT_EQ(elements->close(), DM_XML_OK);
  EXPECT_STREQ(static_cast<const char*>(text), "a");
  EXPECT_EQ(Label(*static_cast<DMXMLWrapper*>(element)), "X#1");
  // Closing does not end the walk either.
  EXPECT_EQ(Texts(texts), (Labels{"b", "c"}));
  EXPECT_EQ(ElementLabels(elements), (Labels{"X#2"}));
  EXPECT_EQ(texts->close(), DM_XML_OK);
  EXPECT_EQ(texts->close(), DM_XML_OK);
  EXPECT_STREQ(static_cast<const char*>(text), "a");
  EXPECT_EQ(Label(*static_cast<DMXMLWrapper*>(element)), "X#1");
}

TEST_F(DMXMLIteratorWrapperTest, HandedOutTextsStayPutAcrossManyItems) {
  std::string document = "<r>";
  for (int i = 0; i < 100; ++i) document += "text " + std::to_string(i) + "<e/>";
  document += "</r>";
  DMXMLWrapper& root = Parse(document.c_str());
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kTexts);
  std::vector<const char*> texts;
  void* item = nullptr;
  while (iterator->nextItem(&item) == DM_XML_OK) texts.push_back(static_cast<const char*>(item));
  EXPECT_EQ(iterator->close(), DM_XML_OK);
  ASSERT_EQ(texts.size(), 100u);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(std::string(texts[i]), "text " + std::to_string(i)) << i;
  }
}

TEST_F(DMXMLIteratorWrapperTest, HandedOutHandlesStayValidAcrossManyItems) {
  std::string document = "<r>";
  for (int i = 0; i < 100; ++i) document += "<e id='" + std::to_string(i) + "'><e/></e>";
  document += "</r>";
  DMXMLWrapper& root = Parse(document.c_str());
  // The deep walk also hands out the inner elements, which have no id.
  DMXMLIteratorWrapper* iterator = Iterate(root, Walk::kElements, "e");
  std::vector<DMXMLWrapper*> handles;
  void* item = nullptr;
  while (iterator->nextItem(&item) == DM_XML_OK)
    handles.push_back(static_cast<DMXMLWrapper*>(item));
  EXPECT_EQ(iterator->close(), DM_XML_OK);
  ASSERT_EQ(handles.size(), 200u);
  for (std::size_t i = 0; i < handles.size(); i += 2) {
    EXPECT_EQ(Label(*handles[i]), "e#" + std::to_string(i / 2));
    EXPECT_EQ(Label(*handles[i + 1]), "e");
    EXPECT_EQ(handles[i + 1]->getElement()->getParentNode(), handles[i]->getElement());
  }
}

TEST_F(DMXMLIteratorWrapperTest, EachItemIsNewHandleOverTheChildElement) {
  DMXMLWrapper& root = Parse("<r><A/><A/></r>");
  DMXMLIteratorWrapper* first = Iterate(root, Walk::kDirectElements, "A");
  DMXMLIteratorWrapper* second = Iterate(root, Walk::kDirectElements, "A");
  void* a = nullptr;
  void* b = nullptr;
  void* again = nullptr;
  ASSERT_EQ(first->nextItem(&a), DM_XML_OK);
  ASSERT_EQ(first->nextItem(&b), DM_XML_OK);
  ASSERT_EQ(second->nextItem(&again), DM_XML_OK);
  EXPECT_NE(a, b);
  EXPECT_NE(a, again);
  EXPECT_EQ(static_cast<DMXMLWrapper*>(a)->getElement(), RootChild(0));
  EXPECT_EQ(static_cast<DMXMLWrapper*>(b)->getElement(), RootChild(1));
  EXPECT_EQ(static_cast<DMXMLWrapper*>(again)->getElement(), RootChild(0));
  // Item handles stand for elements; they hold no document of their own.
  EXPECT_EQ(static_cast<DMXMLWrapper*>(a)->getDocument(), nullptr);
}

}  // namespace
