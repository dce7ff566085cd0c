// Parses a small document through the installed or embedded library and
// prints one attribute. Exits 0 only when the attribute reads back as "1".
#include <iostream>
#include <string>

#include "dmcommon/dmcommon.h"

int main() {
  DmExtension::DMXMLWrapper::startup(false);

  int rc = DmExtension::DM_XML_FAILED;
  std::string value;
  bool found = false;
  {
    // The document must be gone before the XML layer shuts down.
    DmExtension::DMXMLWrapper doc;
    doc.loadFromContents("<a b=\"1\"/>");
    rc = doc.getAttribute("b", value, found);
  }

  DmExtension::DMXMLWrapper::shutdown(false);

  std::cout << "b=" << value << " (rc " << rc << ", found " << found << ")\n";
  return rc == DmExtension::DM_XML_OK && found && value == "1" ? 0 : 1;
}
