// Device identifiers: the load sequence, the line rules of both sources and
// the first-source-wins flags, run on scratch files instead of the machine's.
#include "qta/device/identifiers.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "device/identifiers_reference.h"
#include "device/identifiers_sources.h"
#include "log/scratch_directory.h"

namespace qta::device {
namespace {

constexpr char kNotDefined[] = "[not defined]";

// Loads from scratch cpuinfo and identifiers files; a null text leaves that file out.
class DeviceIdentifiersTest : public testing::ScratchDirectoryTest {
 protected:
  std::string path(const char* name, const std::string* text) {
    if (text) std::ofstream(directory_ / name, std::ios::binary) << *text;
    return (directory_ / (text ? name : "absent")).string();
  }
  bool load(const std::string* cpuinfo, const std::string* identifiers) {
    return detail::loadDeviceIdentifiersFrom(path("cpuinfo", cpuinfo).c_str(),
                                             path("identifiers", identifiers).c_str());
  }
};

// Each case loads its text as the identifiers file and checks the result and
// the serial number (null: the default, flag clear), against the reference too.
TEST(DeviceIdentifiersText, IdentifiersFileLineRules) {
  const std::string longValue(120, 'a');
  const struct {
    std::string text;
    bool result;
    const char* serial;
  } cases[] = {
      {"", true, nullptr},
      {"# nothing here\n\n   \n", true, nullptr},
      {"QTA_SN=\"A1B2\"\n", true, "A1B2"},
      {"QTA_SN='A1B2'   \n", true, "A1B2"},
      {"QTA_SN='A1B2\"\n", false, nullptr},
      {"QTA_SN=\"\n", false, nullptr},
      {"QTA_SN=\"\"\n", true, ""},
      {"QTA_SN=  x y  \r\n", true, "  x y"},
      {"QTA_SN=a=b", true, "a=b"},
      {"  \tQTA_SN=lead\n", true, "lead"},
      {"QTA_SN = X\nqta_sn=X\nQTA_SNX=Y\n#QTA_SN=X\n  # QTA_SN=Y\n", true, nullptr},
      {"QTA_SN=first\nQTA_SN=second\n", true, "first"},
      {"no equals sign\nQTA_SN=later\n", false, "later"},
      {std::string("QTA_SN\0=X\n", 10), false, nullptr},
      {"QTA_SN=" + longValue + "tail\n", false, longValue.c_str()},  // cut after 127 bytes
  };
  for (const auto& c : cases) {
    detail::loadDeviceIdentifiersFrom("/nonexistent/cpuinfo", "/nonexistent/identifiers");
    EXPECT_EQ(detail::readIdentifiersText(c.text), c.result) << c.text;
    EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), c.serial ? c.serial : kNotDefined)
        << c.text;
    EXPECT_EQ(deviceIdentifierFound(DeviceId::kSerialNumber), c.serial != nullptr) << c.text;
    const auto reference = identifiersref::referenceReadIdentifiers(c.text);
    EXPECT_EQ(reference.result, c.result) << c.text;
    EXPECT_EQ(reference.values[1].has_value(), c.serial != nullptr) << c.text;
  }
}

TEST_F(DeviceIdentifiersTest, EveryFileKeyFillsItsIdentifierAndCpuinfoWins) {
  const std::string cpuinfo = "Serial : 0000abcd\n";
  std::string file = "QTA_SN=file\n";
  for (std::string_view key : identifiersref::kIdentifierFileKeys)
    file += std::string(key) + "=v\n";
  EXPECT_TRUE(load(&cpuinfo, &file));
  for (int i = 0; i < 7; ++i) {
    const auto id = static_cast<DeviceId>(i);
    EXPECT_EQ(deviceIdentifier(id), id == DeviceId::kSerialNumber ? "0000abcd" : "v") << i;
    EXPECT_TRUE(deviceIdentifierFound(id)) << i;
  }
  // The file never names the application's interface; the application does, until the next load.
  EXPECT_FALSE(deviceIdentifierFound(DeviceId::kInterfaceName));
  setInterfaceName("br0");
  EXPECT_EQ(deviceIdentifier(DeviceId::kInterfaceName), "br0");
  EXPECT_TRUE(deviceIdentifierFound(DeviceId::kInterfaceName));
  EXPECT_TRUE(load(&cpuinfo, nullptr));
  EXPECT_EQ(deviceIdentifier(DeviceId::kInterfaceName), "eth0");
  EXPECT_FALSE(deviceIdentifierFound(DeviceId::kInterfaceName));
}

// One cpuinfo text: the load result, then the hardware type and serial number (null: the default).
TEST_F(DeviceIdentifiersTest, CpuinfoLineRules) {
  const std::string longWord(70, 'w'), cutWord(63, 'w');
  const struct {
    std::string text;
    bool result;
    const char *hardware, *serial;
  } cases[] = {
      {"processor\t: 0\nmodel name\t: Some CPU @ 2.0GHz\n", true, nullptr, nullptr},
      {"Hardware\t: BCM2835\nSerial\t\t: 0000abcd\n", true, "BCM2835", "0000abcd"},
      {"Hardware : first\nHardware : second words\n", true, "second", nullptr},
      {"HardwareRevision : r2\nSerialNo : s9\n", true, "r2", "s9"},
      {"Hardware: glued\nSerial : ok\n", false, nullptr, "ok"},
      {"Serial :\n", false, nullptr, nullptr},
      {"Hardware : " + longWord + " x\n", true, cutWord.c_str(), nullptr},
      {" Hardware : indented\n", true, nullptr, nullptr},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(load(&c.text, nullptr), c.result) << c.text;
    EXPECT_EQ(deviceIdentifier(DeviceId::kHardwareType), c.hardware ? c.hardware : kNotDefined)
        << c.text;
    EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), c.serial ? c.serial : kNotDefined)
        << c.text;
  }
}

TEST_F(DeviceIdentifiersTest, SourceFaults) {
  const std::string serial = "QTA_SN=from-file\n", plain = "processor : 0\n";
  // Missing cpuinfo: false, but the file is still read.
  EXPECT_FALSE(load(nullptr, &serial));
  EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), "from-file");
  // An identifiers path that cannot be opened for a reason other than absence,
  // and one that opens but cannot be read.
  const std::string cpuinfo = path("cpuinfo", &plain);
  for (const std::string& bad : {path("identifiers", &serial) + "/x", directory_.string()}) {
    EXPECT_FALSE(detail::loadDeviceIdentifiersFrom(cpuinfo.c_str(), bad.c_str())) << bad;
    EXPECT_TRUE(deviceIdentifiersLoaded());
    for (int i = 0; i < kDeviceIdCount; ++i) {  // every identifier back to its default
      const auto id = static_cast<DeviceId>(i);
      const bool iface = id == DeviceId::kMainInterfaceName || id == DeviceId::kInterfaceName;
      EXPECT_EQ(deviceIdentifier(id), iface ? "eth0" : kNotDefined) << i;
      EXPECT_FALSE(deviceIdentifierFound(id)) << i;
    }
  }
}

}  // namespace
}  // namespace qta::device
