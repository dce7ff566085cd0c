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

// Hands a new iterator out as a table over it.
int WrapIterator(int rc, DMXMLIteratorWrapper* iterator, DMXMLIterator** out) {
  if (rc != DM_XML_OK) return rc;
  if (out == nullptr) return DM_XML_FAILED;
  *out = DMXMLIteratorFactory::create(iterator);
  return DM_XML_OK;
}

// Hands a new element handle out as a table over it; `*out` is left alone on
// failure.
int WrapElement(int rc, DMXMLWrapper* element, void** out) {
  if (rc != DM_XML_OK) return rc;
  if (out == nullptr) return DM_XML_FAILED;
  *out = DMXMLFactory::create(element);
  return DM_XML_OK;
}

}  // namespace

DMXML* DMXMLFactory::create(DMXMLWrapper* handle) {
  if (handle == nullptr) return nullptr;
  auto table = std::make_unique<DMXML>(DMXML{handle,
                                             dm_xml_disposeDocumentImpl,
                                             dm_xml_doc2stringImpl,
                                             dm_xml_getNameImpl,
                                             dm_xml_hasAttributeImpl,
                                             dm_xml_getAttributeImpl,
                                             dm_xml_removeAttributeImpl,
                                             dm_xml_getElementIteratorImpl,
                                             dm_xml_getTextIteratorImpl,
                                             dm_xml_addAttributeImpl,
                                             dm_xml_addElementImpl,
                                             dm_xml_addTextImpl,
                                             dm_xml_copyElementImpl,
                                             dm_xml_getElementDirectIteratorImpl,
                                             dm_xml_insertElementBeforeImpl,
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
  DMXMLIteratorWrapper* iterator = nullptr;
  const int rc = Handle(handle)->getElementIterator(name, &iterator);
  return WrapIterator(rc, iterator, out);
}

int dm_xml_getTextIteratorImpl(void* handle, DMXMLIterator** out) {
  DMXMLIteratorWrapper* iterator = nullptr;
  const int rc = Handle(handle)->getTextIterator(&iterator);
  return WrapIterator(rc, iterator, out);
}

int dm_xml_addAttributeImpl(void* handle, const char* name, const char* value) {
  return Handle(handle)->addAttribute(name, value);
}

int dm_xml_addElementImpl(void* handle, const char* name, void** out) {
  DMXMLWrapper* element = nullptr;
  const int rc = Handle(handle)->addElement(name, &element);
  return WrapElement(rc, element, out);
}

int dm_xml_addTextImpl(void* handle, const char* text) { return Handle(handle)->addText(text); }

int dm_xml_copyElementImpl(void* handle, void* source, void** out) {
  DMXMLWrapper* element = nullptr;
  const int rc = Handle(handle)->copyElement(Handle(source), &element);
  return WrapElement(rc, element, out);
}

int dm_xml_getElementDirectIteratorImpl(void* handle, const char* name, DMXMLIterator** out) {
  DMXMLIteratorWrapper* iterator = nullptr;
  const int rc = Handle(handle)->getElementDirectIterator(name, &iterator);
  return WrapIterator(rc, iterator, out);
}

int dm_xml_insertElementBeforeImpl(void* handle, const char* name, void* before, void** out) {
  DMXMLWrapper* element = nullptr;
  const int rc = Handle(handle)->insertElementBefore(name, Handle(before), &element);
  return WrapElement(rc, element, out);
}

int dm_xml_copyElementBeforeImpl(void* handle, void* source, void* before, void** out) {
  DMXMLWrapper* element = nullptr;
  const int rc = Handle(handle)->copyElementBefore(Handle(source), Handle(before), &element);
  return WrapElement(rc, element, out);
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

int dm_xmliterator_deleteCurrentItemImpl(void* iterator) { return Iterator(iterator)->deleteItem(); }

int dm_xmliterator_closeImpl(void* iterator) { return Iterator(iterator)->close(); }

}  // namespace DmExtension
