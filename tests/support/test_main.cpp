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
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new XmlEnvironment);
  return RUN_ALL_TESTS();
}
