#ifndef DMCOMMON_XML_DMXMLWRAPPER_H
#define DMCOMMON_XML_DMXMLWRAPPER_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/xml/dmxmlresult.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMNode;
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace DmExtension {

class DMXMLIteratorWrapper;
struct DMXML;

/// Handle over an XML document or over one element of a document. All names
/// and values are UTF-8. A handle owns every handle, iterator and function
/// table it hands out: destroying a document handle releases everything
/// obtained through it. Operations report `DM_XML_*` codes instead of throwing.
class DMCOMMON_EXPORT DMXMLWrapper {
 public:
  /// Initialises the XML parser library (unless `alreadyInitialised`) and
  /// creates the shared UTF-8 transcoder if there is none yet. Call once
  /// before any other operation of the XML layer.
  static void startup(bool alreadyInitialised);
  /// Terminates the XML parser library unless `alreadyInitialised`. The shared
  /// transcoder is left installed.
  static void shutdown(bool alreadyInitialised);

  /// An empty handle: no element, no document.
  DMXMLWrapper();
  /// A handle standing for `element`, which stays owned by its document.
  explicit DMXMLWrapper(XERCES_CPP_NAMESPACE::DOMElement* element);
  /// Releases the document this handle created or parsed, then every handle,
  /// iterator and table handed out through it.
  ~DMXMLWrapper();

  DMXMLWrapper(const DMXMLWrapper&) = delete;
  DMXMLWrapper& operator=(const DMXMLWrapper&) = delete;

  /// Makes the handle stand for `element`; nothing else changes.
  void createFromElement(XERCES_CPP_NAMESPACE::DOMElement* element);
  /// Parses a whole document from UTF-8 text, releasing the document held
  /// before. Success shows as a non-null `getElement()`. A document the parser
  /// cannot read, or reads only in part, prints one line to standard output
  /// and leaves the handle without a document.
  void loadFromContents(const char* text);
  /// Creates a new document whose root element is named `rootName`, releasing
  /// the document held before. A failure prints one line to standard output
  /// and leaves the handle without a document.
  void createNew(const char* rootName);
  /// Creates an element named `name` in this element's document, attached
  /// nowhere. Returns a new handle that the caller owns until it passes it to
  /// `addElement(DMXMLWrapper*)`, or null when this handle has no element or
  /// the name is not a valid element name.
  DMXMLWrapper* createFreeElement(const char* name);
  /// Releases the document; handles and iterators handed out stay. Returns
  /// `DM_XML_OK`.
  int dispose();
  /// Takes ownership of a function table that wraps this handle.
  void registerHandle(DMXML* table);

  /// The element's tag name into `buffer`. `*needed` receives the length plus
  /// one; the buffer is written only when `*needed <= size`, otherwise the
  /// result is `DM_XML_BUFFER_TOO_SMALL`. `DM_XML_FAILED` without an element.
  int getName(char* buffer, std::size_t size, std::size_t* needed) const;
  /// The element's tag name; `name` is cleared first. `DM_XML_FAILED` without
  /// an element.
  int getName(std::string& name) const;
  /// The attribute's value into `buffer` with the rules of the buffer form of
  /// `getName`; an absent attribute reads as the empty text.
  int getAttribute(const char* name, char* buffer, std::size_t size, std::size_t* needed) const;
  /// The attribute's value; `found` tells an absent attribute (`DM_XML_OK`,
  /// empty value) from a present, possibly empty, one. Both outputs are reset
  /// first. `DM_XML_FAILED` without an element.
  int getAttribute(const char* name, std::string& value, bool& found) const;
  /// The attribute as an XML Schema integer. Outputs are reset to 0 and false
  /// first; absent gives `DM_XML_OK`; text that is not an integer gives
  /// `DM_XML_FAILED`.
  int getAttribute(const char* name, int& value, bool& found) const;
  /// The attribute read with "%lld": leading blanks and trailing characters
  /// are accepted. Outputs are reset to 0 and false first; absent gives
  /// `DM_XML_OK`; text with no leading number gives `DM_XML_FAILED`.
  int getAttribute(const char* name, long long& value, bool& found) const;
  /// The attribute as an XML Schema double. Outputs are reset to 0 and false
  /// first; `special` is untouched when the attribute is absent. Present:
  /// `special` is 0 for an ordinary number (in `value`), 1 for "-INF", 2 for
  /// "INF", 3 for "NaN" (`value` 0), and -1 with `DM_XML_FAILED` for text that
  /// is not a double.
  int getAttribute(const char* name, double& value, bool& found, int& special) const;
  /// `*present` = 1 when the attribute exists, else 0. `DM_XML_FAILED` without
  /// an element.
  int hasAttribute(const char* name, int* present) const;
  /// An iterator over the descendant elements named `name`, or over the direct
  /// child elements when `name` is empty. The handle owns the iterator.
  /// `DM_XML_FAILED` without an element, `*out` untouched.
  int getElementIterator(const char* name, DMXMLIteratorWrapper** out);
  /// An iterator over the direct child elements named `name` (every child
  /// element when empty). The handle owns the iterator.
  int getElementDirectIterator(const char* name, DMXMLIteratorWrapper** out);
  /// An iterator over the direct child text nodes. The handle owns it.
  int getTextIterator(DMXMLIteratorWrapper** out);

  /// Sets the attribute, replacing an existing value. `DM_XML_FAILED` without
  /// an element or for a name that is not a valid attribute name.
  int addAttribute(const char* name, const char* value);
  /// Sets the attribute to the text of `ToString(double)`.
  int addAttribute(const char* name, double value);
  /// Sets the attribute to the text "%lld".
  int addAttribute(const char* name, long long value);
  /// Writes `value` with "%.15g", the first ',' replaced by '.'. Returns
  /// false, with `text` cleared, when nothing could be written.
  static bool ToString(double value, std::string& text);
  /// Writes `value` with "%lld". Returns false, with `text` cleared, when
  /// nothing could be written.
  static bool ToString(long long value, std::string& text);
  /// Removes the attribute if present. `DM_XML_FAILED` without an element.
  int removeAttribute(const char* name);
  /// Appends a new child element named `name`; `*out` receives its handle,
  /// owned by this handle. `DM_XML_FAILED`, `*out` untouched, without an
  /// element or for an invalid name.
  int addElement(const char* name, DMXMLWrapper** out);
  /// Appends the element of `child` (from `createFreeElement`) and takes
  /// ownership of `child`. `DM_XML_FAILED`, ownership not taken, when either
  /// handle has no element or the child belongs to another document.
  int addElement(DMXMLWrapper* child);
  /// As `addElement(name, out)`, inserted before the element of `before`,
  /// which must be a child of this element; `DM_XML_FAILED` otherwise.
  int insertElementBefore(const char* name, DMXMLWrapper* before, DMXMLWrapper** out);
  /// Appends a deep copy of the element of `source`, which may belong to
  /// another document; `*out` receives the copy's handle, owned by this handle.
  int copyElement(DMXMLWrapper* source, DMXMLWrapper** out);
  /// As `copyElement`, inserted before the element of `before`.
  int copyElementBefore(DMXMLWrapper* source, DMXMLWrapper* before, DMXMLWrapper** out);
  /// Appends a text node. `DM_XML_FAILED` without an element.
  int addText(const char* text);

  /// Serialises the document (or this element) and escapes TAB and CR with
  /// `handleTabAndCR`. Returns `DM_XML_OK`; `text` is empty without a document
  /// or element.
  int doc2string(std::string& text) const;
  /// Serialises into `buffer` with the rules of the buffer form of `getName`.
  int doc2string(char* buffer, std::size_t size, std::size_t* needed) const;
  /// Replaces each TAB with "&#x9;" and each CR with "&#xD;". When it replaces
  /// anything, the result carries one trailing NUL character inside its
  /// length, which readers of the text rely on.
  static void handleTabAndCR(std::string& text);
  /// The file's bytes from its first '<' on, followed by one NUL character
  /// inside the result's length. A file that cannot be opened gives the empty
  /// text.
  static std::string loadStringFromFile(const char* path);
  /// Writes `text` up to its terminator to `path`, replacing the file.
  /// Failures are not reported.
  static void saveStringToFile(const char* path, const char* text);

  /// The element this handle stands for, or null.
  XERCES_CPP_NAMESPACE::DOMElement* getElement() const;
  /// The document this handle created or parsed, or null.
  XERCES_CPP_NAMESPACE::DOMDocument* getDocument() const;

 private:
  void releaseDocument();
  [[nodiscard]] DMXMLWrapper* adopt(XERCES_CPP_NAMESPACE::DOMElement* element);
  // Insert a new or copied element before `reference`, or append it when
  // `reference` is null.
  [[nodiscard]] int insertNew(const char* name, XERCES_CPP_NAMESPACE::DOMNode* reference,
                              DMXMLWrapper** out);
  [[nodiscard]] int insertCopy(DMXMLWrapper* source, XERCES_CPP_NAMESPACE::DOMNode* reference,
                               DMXMLWrapper** out);
  [[nodiscard]] int addIterator(bool direct, int filter, const char* name,
                                DMXMLIteratorWrapper** out);

  XERCES_CPP_NAMESPACE::DOMElement* element;
  XERCES_CPP_NAMESPACE::DOMDocument* document;
  std::vector<std::unique_ptr<DMXMLWrapper>> children;
  std::vector<std::unique_ptr<DMXMLIteratorWrapper>> iterators;
  std::unique_ptr<XERCES_CPP_NAMESPACE::XercesDOMParser> parser;
  std::vector<std::unique_ptr<DMXML>> tables;
};

}  // namespace DmExtension

#endif  // DMCOMMON_XML_DMXMLWRAPPER_H
