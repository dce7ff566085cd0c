#include "dmcommon/xml/dmxmlfactory.h"

#include <memory>

#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlwrapper.h"

namespace DmExtension {

namespace {

DMXMLWrapper* Handle(void* handle) { return static_cast<DMXMLWrapper*>(handle); }

DMXMLIteratorWrapper* Iterator(void* iterator) {
  return static_cast<DMXMLIteratorWrapper*>(iterator);
}

// Runs `make`, which creates an iterator, and hands the iterator out as a
// table over it. Without a place for the table nothing is created.
template <typename Make>
int WrapIterator(DMXMLIterator** out, Make make) {
  if (out == nullptr) return DM_XML_FAILED;
  DMXMLIteratorWrapper* iterator = nullptr;
  if (int rc = make(&iterator); rc != DM_XML_OK) return rc;
  *out = DMXMLIteratorFactory::create(iterator);
  return DM_XML_OK;
}

// Runs `make`, which adds an element, and hands the element's handle out as a
// table over it; `*out` is left alone on failure, and without a place for the
// table the document is not changed.
template <typename Make>
int WrapElement(void** out, Make make) {
  if (out == nullptr) return DM_XML_FAILED;
  DMXMLWrapper* element = nullptr;
  if (int rc = make(&element); rc != DM_XML_OK) return rc;
  *out = DMXMLFactory::create(element);
  return DM_XML_OK;
}

}  // namespace

DMXML* DMXMLFactory::create(DMXMLWrapper* handle) {
  if (handle == nullptr) return nullptr;
  auto table = std::make_unique<DMXML>(
      DMXML{handle, dm_xml_disposeDocumentImpl, dm_xml_doc2stringImpl, dm_xml_getNameImpl,
            dm_xml_hasAttributeImpl, dm_xml_getAttributeImpl, dm_xml_removeAttributeImpl,
            dm_xml_getElementIteratorImpl, dm_xml_getTextIteratorImpl, dm_xml_addAttributeImpl,
            dm_xml_addElementImpl, dm_xml_addTextImpl, dm_xml_copyElementImpl,
            dm_xml_getElementDirectIteratorImpl, dm_xml_insertElementBeforeImpl,
            dm_xml_copyElementBeforeImpl});
  DMXML* result = table.get();
  handle->registerHandle(table.release());
  return result;
}

DMXMLIterator* DMXMLIteratorFactory::create(DMXMLIteratorWrapper* iterator) {
  if (iterator == nullptr) return nullptr;
  auto table = std::make_unique<DMXMLIterator>(
      DMXMLIterator{iterator, dm_xmliterator_hasMoreItemsImpl, dm_xmliterator_nextItemImpl,
                    dm_xmliterator_deleteCurrentItemImpl, dm_xmliterator_closeImpl});
  DMXMLIterator* result = table.get();
  iterator->registerHandle(table.release());
  return result;
}

int dm_xml_disposeDocumentImpl(void* handle) {
  if (handle == nullptr) return DM_XML_FAILED;
  const int rc = Handle(handle)->dispose();
  delete Handle(handle);
  return rc;
}

int dm_xml_doc2stringImpl(void* handle, char* buffer, std::size_t size, std::size_t* needed) {
  return Handle(handle)->doc2string(buffer, size, needed);
}

int dm_xml_getNameImpl(void* handle, char* buffer, std::size_t size, std::size_t* needed) {
  return Handle(handle)->getName(buffer, size, needed);
}

int dm_xml_hasAttributeImpl(void* handle, const char* name, int* present) {
  return Handle(handle)->hasAttribute(name, present);
}

int dm_xml_getAttributeImpl(void* handle, const char* name, char* buffer, std::size_t size,
                            std::size_t* needed) {
  return Handle(handle)->getAttribute(name, buffer, size, needed);
}

int dm_xml_removeAttributeImpl(void* handle, const char* name) {
  return Handle(handle)->removeAttribute(name);
}

int dm_xml_getElementIteratorImpl(void* handle, const char* name, DMXMLIterator** out) {
  return WrapIterator(out, [&](DMXMLIteratorWrapper** iterator) {
    return Handle(handle)->getElementIterator(name, iterator);
  });
}

int dm_xml_getTextIteratorImpl(void* handle, DMXMLIterator** out) {
  return WrapIterator(out, [&](DMXMLIteratorWrapper** iterator) {
    return Handle(handle)->getTextIterator(iterator);
  });
}

int dm_xml_addAttributeImpl(void* handle, const char* name, const char* value) {
  return Handle(handle)->addAttribute(name, value);
}

int dm_xml_addElementImpl(void* handle, const char* name, void** out) {
  return WrapElement(
      out, [&](DMXMLWrapper** element) { return Handle(handle)->addElement(name, element); });
}

int dm_xml_addTextImpl(void* handle, const char* text) { return Handle(handle)->addText(text); }

int dm_xml_copyElementImpl(void* handle, void* source, void** out) {
  return WrapElement(out, [&](DMXMLWrapper** element) {
    return Handle(handle)->copyElement(Handle(source), element);
  });
}

int dm_xml_getElementDirectIteratorImpl(void* handle, const char* name, DMXMLIterator** out) {
  return WrapIterator(out, [&](DMXMLIteratorWrapper** iterator) {
    return Handle(handle)->getElementDirectIterator(name, iterator);
  });
}

int dm_xml_insertElementBeforeImpl(void* handle, const char* name, void* before, void** out) {
  return WrapElement(out, [&](DMXMLWrapper** element) {
    return Handle(handle)->insertElementBefore(name, Handle(before), element);
  });
}

int dm_xml_copyElementBeforeImpl(void* handle, void* source, void* before, void** out) {
  return WrapElement(out, [&](DMXMLWrapper** element) {
    return Handle(handle)->copyElementBefore(Handle(source), Handle(before), element);
  });
}

int dm_xmliterator_hasMoreItemsImpl(void* iterator, int* more) {
  return Iterator(iterator)->hasMoreItems(more);
}

int dm_xmliterator_nextItemImpl(void* iterator, void** item) {
  void* next = nullptr;
  if (int rc = Iterator(iterator)->nextItem(&next); rc != DM_XML_OK) {
    if (item != nullptr) *item = nullptr;
    return rc;
  }
  if (item == nullptr) return DM_XML_OK;
  switch (Iterator(iterator)->getFilter()) {
    case TextFilter:
      *item = next;
      break;
    case ElementFilter:
      *item = DMXMLFactory::create(static_cast<DMXMLWrapper*>(next));
      break;
  }
  return DM_XML_OK;
}

int dm_xmliterator_deleteCurrentItemImpl(void* iterator) {
  return Iterator(iterator)->deleteItem();
}

int dm_xmliterator_closeImpl(void* iterator) { return Iterator(iterator)->close(); }

}  // namespace DmExtension
