#ifndef DMCOMMON_XML_DMXMLFACTORY_H
#define DMCOMMON_XML_DMXMLFACTORY_H

#include <cstddef>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/xml/dmxmlresult.h"

namespace DmExtension {

class DMXMLWrapper;
class DMXMLIteratorWrapper;
struct DMXMLIterator;

/// Plain function table over an element handle, for callers across a
/// function-table boundary. Entries take `handle` as their first argument and
/// return `DM_XML_*` codes. The table is owned by the handle it wraps.
struct DMXML {
  void* handle;  ///< the wrapped `DMXMLWrapper*`
  int (*disposeDocument)(void* handle);
  int (*doc2string)(void* handle, char* buffer, std::size_t size, std::size_t* needed);
  int (*getName)(void* handle, char* buffer, std::size_t size, std::size_t* needed);
  int (*hasAttribute)(void* handle, const char* name, int* present);
  int (*getAttribute)(void* handle, const char* name, char* buffer, std::size_t size,
                      std::size_t* needed);
  int (*removeAttribute)(void* handle, const char* name);
  int (*getElementIterator)(void* handle, const char* name, DMXMLIterator** out);
  int (*getTextIterator)(void* handle, DMXMLIterator** out);
  int (*addAttribute)(void* handle, const char* name, const char* value);
  int (*addElement)(void* handle, const char* name, void** out);
  int (*addText)(void* handle, const char* text);
  int (*copyElement)(void* handle, void* source, void** out);
  int (*getElementDirectIterator)(void* handle, const char* name, DMXMLIterator** out);
  int (*insertElementBefore)(void* handle, const char* name, void* before, void** out);
  int (*copyElementBefore)(void* handle, void* source, void* before, void** out);
};

/// Plain function table over an iterator; owned by the iterator it wraps.
struct DMXMLIterator {
  void* iterator;  ///< the wrapped `DMXMLIteratorWrapper*`
  int (*hasMoreItems)(void* iterator, int* more);
  int (*nextItem)(void* iterator, void** item);
  int (*deleteCurrentItem)(void* iterator);
  int (*close)(void* iterator);
};

/// Builds `DMXML` tables.
class DMCOMMON_EXPORT DMXMLFactory {
 public:
  /// A new table over `handle`, registered with it (the handle owns and frees
  /// it). Null when `handle` is null.
  static DMXML* create(DMXMLWrapper* handle);
};

/// Builds `DMXMLIterator` tables.
class DMCOMMON_EXPORT DMXMLIteratorFactory {
 public:
  /// A new table over `iterator`, registered with it (the iterator owns and
  /// frees it). Null when `iterator` is null.
  static DMXMLIterator* create(DMXMLIteratorWrapper* iterator);
};

/// Calls `dispose` on the handle, then destroys it with everything obtained
/// through it, this table included. For tables over a handle that the caller
/// owns (a document handle); returns the result of `dispose`.
DMCOMMON_EXPORT int dm_xml_disposeDocumentImpl(void* handle);
/// `doc2string`, buffer form.
DMCOMMON_EXPORT int dm_xml_doc2stringImpl(void* handle, char* buffer, std::size_t size,
                                          std::size_t* needed);
/// `getName`, buffer form.
DMCOMMON_EXPORT int dm_xml_getNameImpl(void* handle, char* buffer, std::size_t size,
                                       std::size_t* needed);
/// `hasAttribute`.
DMCOMMON_EXPORT int dm_xml_hasAttributeImpl(void* handle, const char* name, int* present);
/// `getAttribute`, buffer form.
DMCOMMON_EXPORT int dm_xml_getAttributeImpl(void* handle, const char* name, char* buffer,
                                            std::size_t size, std::size_t* needed);
/// `removeAttribute`.
DMCOMMON_EXPORT int dm_xml_removeAttributeImpl(void* handle, const char* name);
/// `getElementIterator`; `*out` receives a table over the new iterator.
DMCOMMON_EXPORT int dm_xml_getElementIteratorImpl(void* handle, const char* name,
                                                  DMXMLIterator** out);
/// `getTextIterator`; `*out` receives a table over the new iterator.
DMCOMMON_EXPORT int dm_xml_getTextIteratorImpl(void* handle, DMXMLIterator** out);
/// `addAttribute`, text form.
DMCOMMON_EXPORT int dm_xml_addAttributeImpl(void* handle, const char* name, const char* value);
/// `addElement` by name; `*out` receives a `DMXML*` over the new element and
/// is untouched on failure.
DMCOMMON_EXPORT int dm_xml_addElementImpl(void* handle, const char* name, void** out);
/// `addText`.
DMCOMMON_EXPORT int dm_xml_addTextImpl(void* handle, const char* text);
/// `copyElement`; `source` is a `DMXMLWrapper*` (entry 0 of its table);
/// `*out` receives a `DMXML*` over the copy.
DMCOMMON_EXPORT int dm_xml_copyElementImpl(void* handle, void* source, void** out);
/// `getElementDirectIterator`; `*out` receives a table over the new iterator.
DMCOMMON_EXPORT int dm_xml_getElementDirectIteratorImpl(void* handle, const char* name,
                                                        DMXMLIterator** out);
/// `insertElementBefore`; `before` is a `DMXMLWrapper*`; `*out` receives a
/// `DMXML*` over the new element.
DMCOMMON_EXPORT int dm_xml_insertElementBeforeImpl(void* handle, const char* name, void* before,
                                                   void** out);
/// `copyElementBefore`; `source` and `before` are `DMXMLWrapper*`; `*out`
/// receives a `DMXML*` over the copy.
DMCOMMON_EXPORT int dm_xml_copyElementBeforeImpl(void* handle, void* source, void* before,
                                                 void** out);

/// `hasMoreItems`.
DMCOMMON_EXPORT int dm_xmliterator_hasMoreItemsImpl(void* iterator, int* more);
/// `nextItem`: `*item` receives the text for text iterators and a `DMXML*`
/// over the element for element iterators, both owned by the iterator.
DMCOMMON_EXPORT int dm_xmliterator_nextItemImpl(void* iterator, void** item);
/// `deleteItem`.
DMCOMMON_EXPORT int dm_xmliterator_deleteCurrentItemImpl(void* iterator);
/// `close`.
DMCOMMON_EXPORT int dm_xmliterator_closeImpl(void* iterator);

}  // namespace DmExtension

#endif  // DMCOMMON_XML_DMXMLFACTORY_H
