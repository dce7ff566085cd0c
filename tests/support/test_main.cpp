#include <clocale>
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlwrapper.h"

namespace {

// The XML layer is started once per process, as a real caller does.
class XmlEnvironment : public ::testing::Environment {
 public:
  void SetUp() override { DmExtension::DMXMLWrapper::startup(false); }
  void TearDown() override { DmExtension::DMXMLWrapper::shutdown(false); }
};

}  // namespace

int main(int argc, char** argv) {
  // The suite runs a second time under a locale with a decimal comma, which
  // the library must neither write nor be misled by when reading.
  if (const char* locale = std::getenv("DMCOMMON_TEST_LOCALE"); locale != nullptr) {
    if (std::setlocale(LC_ALL, locale) == nullptr) {
      std::fprintf(stderr, "the locale %s is not available on this machine\n", locale);
      return 1;
    }
  }
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new XmlEnvironment);
  return RUN_ALL_TESTS();
}
