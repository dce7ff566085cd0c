#include "dmcommon/printable/dmprintable.h"

#include "dmcommon/printable/dmprintablelist.h"
#include "dmcommon/printable/dmprintablevalue.h"
#include "dmcommon/printable/dmprintablevlist.h"
#include "dmcommon/xml/dmxmlwrapper.h"

DMResLookUp::~DMResLookUp() = default;

DMPrintable::~DMPrintable() = default;

DMPrintable* DMPrintable::CreateFromElmt(const DmExtension::DMXMLWrapper& element,
                                         bool& recognised) {
  // Each kind answers only to its own element name; the first that
  // recognises the element decides, even when it cannot read it.
  if (DMPrintable* list = DMPrintableList::CreateFromElmt(element, recognised); recognised) {
    return list;
  }
  if (DMPrintable* value = DMPrintableValue::CreateFromElmt(element, recognised); recognised) {
    return value;
  }
  return DMPrintableVList::CreateFromElmt(element, recognised);
}
