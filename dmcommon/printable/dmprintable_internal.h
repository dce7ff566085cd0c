#ifndef DMCOMMON_PRINTABLE_DMPRINTABLE_INTERNAL_H
#define DMCOMMON_PRINTABLE_DMPRINTABLE_INTERNAL_H

// Pieces of the printables' XML form that several printable classes share.
// Never installed.

#include <memory>
#include <string>

#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"

namespace dmprintable_internal {

// The printables' names are not in the shared vocabulary: the components
// that exchange printables write exactly these texts.
inline constexpr char kListElement[] = "PrintableList";
inline constexpr char kValueElement[] = "PrintableValue";
inline constexpr char kVListElement[] = "PrintableVList";
inline constexpr char kPatternAttribute[] = "pattern";
inline constexpr char kIsKeyAttribute[] = "isKey";
inline constexpr char kMapIdAttribute[] = "mapId";
inline constexpr char kIsNullAttribute[] = "isNull";
inline constexpr char kLabelAttribute[] = "label";
// The switches of printables are the literal texts, whatever the vocabulary's
// entities for true and false may be.
inline constexpr char kTrue[] = "true";
inline constexpr char kFalse[] = "false";

/// Reads a switch attribute written as "true" or "false"; absent reads as
/// false. Returns false, `value` untouched, for any other text or when the
/// element cannot be read.
[[nodiscard]] inline bool ReadSwitch(const DmExtension::DMXMLWrapper& element, const char* name,
                                     bool& value) {
  std::string text;
  bool found = false;
  if (element.getAttribute(name, text, found) != DmExtension::DM_XML_OK) return false;
  if (!found || text == kFalse) {
    value = false;
  } else if (text == kTrue) {
    value = true;
  } else {
    return false;
  }
  return true;
}

/// The factory of one printable kind: null with `recognised` false unless
/// `element` is named `elementName`; otherwise `recognised` is true and the
/// result is a new `Kind` read from the element (owned by the caller), or
/// null when reading it threw `DMPrintable::FailExcp`.
template <typename Kind>
Kind* CreateKind(const DmExtension::DMXMLWrapper& element, const char* elementName,
                 bool& recognised) {
  recognised = false;
  std::string name;
  if (element.getName(name) != DmExtension::DM_XML_OK || name != elementName) return nullptr;
  recognised = true;
  try {
    return new Kind(element);
  } catch (const DMPrintable::FailExcp&) {
    return nullptr;
  }
}

/// Hands `child`, a free element of `parent`'s document, to `parent`, which
/// owns it from then on; on failure the caller still owns it.
[[nodiscard]] inline bool AppendTo(DmExtension::DMXMLWrapper& parent,
                                   std::unique_ptr<DmExtension::DMXMLWrapper>& child) {
  if (parent.addElement(child.get()) != DmExtension::DM_XML_OK) return false;
  static_cast<void>(child.release());
  return true;
}

}  // namespace dmprintable_internal

#endif  // DMCOMMON_PRINTABLE_DMPRINTABLE_INTERNAL_H
