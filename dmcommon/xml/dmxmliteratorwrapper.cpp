#include "dmcommon/xml/dmxmliteratorwrapper.h"

#include <xercesc/dom/DOM.hpp>

#include "dmcommon/xml/dmxmlfactory.h"
#include "dmcommon/xml/dmxmltext_internal.h"
#include "dmcommon/xml/dmxmlwrapper.h"

XERCES_CPP_NAMESPACE_USE

namespace DmExtension {

NodeFilter::NodeFilter(DMXMLIteratorWrapper* iterator_) : iterator(iterator_) {}

NodeFilter::~NodeFilter() = default;

DOMNodeFilter::FilterAction NodeFilter::acceptNode(const DOMNode* node) const {
  // Skipping rather than rejecting keeps the walker descending into elements
  // of other names.
  return iterator->passesFilter(node) ? FILTER_ACCEPT : FILTER_SKIP;
}

DMXMLIteratorWrapper::DMXMLIteratorWrapper(DOMNode* root_, bool direct_, FilterType filter_,
                                           const char* name_)
    : root(root_),
      direct(direct_),
      walker(nullptr),
      current(nullptr),
      last(nullptr),
      name(name_ == nullptr ? "" : name_),
      filter(filter_) {
  if (const char16_t* wide = WideName(name.c_str()); wide != nullptr) wideName = wide;
  if (root == nullptr) return;
  if (direct) {
    current = root->getFirstChild();
    while (current != nullptr && !passesFilter(current)) current = current->getNextSibling();
    return;
  }
  nodeFilter_ = std::make_unique<NodeFilter>(this);
  const DOMNodeFilter::ShowType show =
      filter == TextFilter ? DOMNodeFilter::SHOW_TEXT : DOMNodeFilter::SHOW_ELEMENT;
  walker = root->getOwnerDocument()->createTreeWalker(root, show, nodeFilter_.get(), true);
  current = walker->nextNode();
}

DMXMLIteratorWrapper::~DMXMLIteratorWrapper() = default;

bool DMXMLIteratorWrapper::passesFilter(const DOMNode* node) const {
  switch (filter) {
    case TextFilter:
      return node->getNodeType() == DOMNode::TEXT_NODE;
    case ElementFilter: {
      if (node->getNodeType() != DOMNode::ELEMENT_NODE) return false;
      if (name.empty()) return true;
      return wideName == node->getNodeName();
    }
  }
  return false;
}

int DMXMLIteratorWrapper::hasMoreItems(int* more) const {
  if (more != nullptr) *more = current != nullptr ? 1 : 0;
  return DM_XML_OK;
}

int DMXMLIteratorWrapper::nextItem(void** item) {
  if (current == nullptr) {
    if (item != nullptr) *item = nullptr;
    return DM_XML_NO_MORE_ITEMS;
  }
  switch (filter) {
    case TextFilter:
      texts.push_back(std::make_unique<std::string>());
      ToUtf8(current->getNodeValue(), *texts.back());
      if (item != nullptr) *item = texts.back()->data();
      break;
    case ElementFilter:
      handles.push_back(std::make_unique<DMXMLWrapper>(static_cast<DOMElement*>(current)));
      if (item != nullptr) *item = handles.back().get();
      break;
  }
  last = current;
  advance();
  return DM_XML_OK;
}

void DMXMLIteratorWrapper::advance() {
  if (!direct) {
    current = walker->nextNode();
    return;
  }
  current = last->getNextSibling();
  while (current != nullptr && !passesFilter(current)) current = current->getNextSibling();
}

int DMXMLIteratorWrapper::deleteItem() {
  if (last == nullptr) return DM_XML_FAILED;
  // The removed node stays in the document's memory; the walk already moved
  // past it.
  root->removeChild(last);
  return DM_XML_OK;
}

int DMXMLIteratorWrapper::close() { return DM_XML_OK; }

FilterType DMXMLIteratorWrapper::getFilter() const { return filter; }

void DMXMLIteratorWrapper::registerHandle(DMXMLIterator* table) { tables.emplace_back(table); }

}  // namespace DmExtension
