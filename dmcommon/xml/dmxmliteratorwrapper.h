#ifndef DMCOMMON_XML_DMXMLITERATORWRAPPER_H
#define DMCOMMON_XML_DMXMLITERATORWRAPPER_H

#include <memory>
#include <string>
#include <vector>

#include <xercesc/dom/DOMNodeFilter.hpp>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/xml/dmxmlresult.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
class DOMTreeWalker;
XERCES_CPP_NAMESPACE_END

namespace DmExtension {

class DMXMLWrapper;
class DMXMLIteratorWrapper;
struct DMXMLIterator;

/// What kind of node an iterator walks. Any other value lets no node pass.
enum FilterType : int {
  ElementFilter = 0,  ///< element nodes, of one name when a name is given
  TextFilter = 1,     ///< text nodes
};

/// Tree-walker filter that applies its iterator's filter test. Nodes that fail
/// are skipped, not rejected, so their children are still visited.
class DMCOMMON_EXPORT NodeFilter : public XERCES_CPP_NAMESPACE::DOMNodeFilter {
 public:
  explicit NodeFilter(DMXMLIteratorWrapper* iterator);
  ~NodeFilter() override;

  NodeFilter(const NodeFilter&) = delete;
  NodeFilter& operator=(const NodeFilter&) = delete;

  /// `FILTER_ACCEPT` when the iterator's `passesFilter` accepts `node`,
  /// otherwise `FILTER_SKIP`.
  FilterAction acceptNode(const XERCES_CPP_NAMESPACE::DOMNode* node) const override;

 private:
  DMXMLIteratorWrapper* iterator;
};

/// Walks the child elements, the descendant elements of one name, or the
/// child text nodes of an element. Created by `DMXMLWrapper`, which owns it;
/// the iterator owns every handle and text it hands out, which stay valid
/// until it is destroyed.
class DMCOMMON_EXPORT DMXMLIteratorWrapper {
 public:
  /// Walks the direct children of `root` when `direct`, otherwise all its
  /// descendants in document order (never `root` itself). A null `name` is
  /// the empty name, which matches every element.
  DMXMLIteratorWrapper(XERCES_CPP_NAMESPACE::DOMNode* root, bool direct, FilterType filter,
                       const char* name);
  ~DMXMLIteratorWrapper();

  DMXMLIteratorWrapper(const DMXMLIteratorWrapper&) = delete;
  DMXMLIteratorWrapper& operator=(const DMXMLIteratorWrapper&) = delete;

  /// Whether `node` counts for this iterator: a text node for `TextFilter`; an
  /// element node, of exactly the iterator's name unless that is empty, for
  /// `ElementFilter`.
  bool passesFilter(const XERCES_CPP_NAMESPACE::DOMNode* node) const;
  /// `*more` = 1 while an item is left, else 0. Returns `DM_XML_OK`.
  int hasMoreItems(int* more) const;
  /// Hands out the next item and advances: a `DMXMLWrapper*` for elements, a
  /// `const char*` UTF-8 text for text nodes, both owned by the iterator.
  /// `DM_XML_NO_MORE_ITEMS` with `*item` null when the walk is exhausted.
  int nextItem(void** item);
  /// Removes the node handed out last from the root element; the walk goes on
  /// undisturbed. `DM_XML_FAILED` before the first `nextItem`. Meant for
  /// direct walks: in a deep walk the node may not be a child of the root,
  /// and the DOM's `DOMException` then reaches the caller.
  int deleteItem();
  /// Does nothing; items stay valid. Returns `DM_XML_OK`.
  int close();
  /// The kind of node walked.
  FilterType getFilter() const;
  /// Takes ownership of a function table that wraps this iterator.
  void registerHandle(DMXMLIterator* table);

 private:
  void advance();

  XERCES_CPP_NAMESPACE::DOMNode* root;
  bool direct;
  // Lives in the document's memory and goes with it, so it is never released
  // here: the iterator may outlive the document inside its owning handle.
  XERCES_CPP_NAMESPACE::DOMTreeWalker* walker;
  XERCES_CPP_NAMESPACE::DOMNode* current;
  XERCES_CPP_NAMESPACE::DOMNode* last;
  std::string name;
  // The name in the DOM's UTF-16, converted once for the whole walk. Empty
  // when the name is not valid UTF-8: no element has the empty name, so such
  // a name matches nothing.
  std::u16string wideName;
  FilterType filter;
  std::vector<std::unique_ptr<DMXMLWrapper>> handles;
  // Each text sits in its own allocation so that the characters handed out
  // stay put when the vector grows.
  std::vector<std::unique_ptr<std::string>> texts;
  std::vector<std::unique_ptr<DMXMLIterator>> tables;
  std::unique_ptr<NodeFilter> nodeFilter_;
};

}  // namespace DmExtension

#endif  // DMCOMMON_XML_DMXMLITERATORWRAPPER_H
