// Loads a metadata document with an installed dmcommon and prints its
// fields. Exits 0 when the document has fields, 1 when the library rejects
// it, 2 on bad arguments.
#include <iostream>
#include <string>

#include "dmcommon/dmcommon.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: consumer META.xml\n";
    return 2;
  }
  // Once per process, before anything else of the XML layer.
  DmExtension::DMXMLWrapper::startup(false);
  int rc = 1;
  {
    const std::string xml = DmExtension::DMXMLWrapper::loadStringFromFile(argv[1]);
    const DMMetaData metadata(xml, nullptr);
    for (unsigned i = 0; i < metadata.FieldCount(); ++i) {
      const DMField& field = *metadata.GetField(i);
      const char* storage =
          DMEnumDict::TextOfValue(gStorageDict, static_cast<unsigned>(field.GetStorage()));
      const char* measure =
          DMEnumDict::TextOfValue(gMeasureDict, static_cast<unsigned>(field.GetType()));
      std::cout << field.GetName() << ' ' << storage << ' ' << measure << '\n';
    }
    std::cout << metadata.FieldCount() << " fields\n";
    if (metadata.FieldCount() > 0) rc = 0;
  }  // the container must be gone before the XML layer shuts down
  DmExtension::DMXMLWrapper::shutdown(false);
  return rc;
}
