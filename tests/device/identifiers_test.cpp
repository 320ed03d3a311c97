// Device identifiers: the load sequence, the line rules of both sources and
// the first-source-wins flags, run on scratch files instead of the machine's.
#include "qta/device/identifiers.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "device/identifiers_reference.h"
#include "device/identifiers_sources.h"

namespace qta::device {
namespace {

namespace fs = std::filesystem;

constexpr char kNotDefined[] = "[not defined]";

// A scratch directory holding a cpuinfo file and an identifiers file.
class DeviceIdentifiersTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = testing::TempDir() + "qta_device_XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    dir_ = pattern;
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string write(const std::string& name, const std::string& text) {
    const fs::path path = dir_ / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  // Loads from a cpuinfo text and an identifiers text; nullopt leaves the
  // identifiers file out.
  bool load(const std::string& cpuinfo, const std::optional<std::string>& identifiers) {
    const std::string cpuinfoPath = write("cpuinfo", cpuinfo);
    const std::string filePath =
        identifiers ? write("identifiers", *identifiers) : (dir_ / "absent").string();
    return detail::loadDeviceIdentifiersFrom(cpuinfoPath.c_str(), filePath.c_str());
  }

  fs::path dir_;
};

void expectDefaults(const std::vector<DeviceId>& except = {}) {
  for (int i = 0; i < kDeviceIdCount; ++i) {
    const auto id = static_cast<DeviceId>(i);
    if (std::find(except.begin(), except.end(), id) != except.end()) continue;
    const bool iface = id == DeviceId::kMainInterfaceName || id == DeviceId::kInterfaceName;
    EXPECT_EQ(deviceIdentifier(id), iface ? "eth0" : kNotDefined) << i;
    EXPECT_FALSE(deviceIdentifierFound(id)) << i;
  }
}

constexpr char kPlainCpuinfo[] = "processor\t: 0\nmodel name\t: Some CPU @ 2.0GHz\n";

TEST_F(DeviceIdentifiersTest, NoSourceValuesKeepTheDefaults) {
  EXPECT_TRUE(load(kPlainCpuinfo, std::nullopt));
  EXPECT_TRUE(deviceIdentifiersLoaded());
  expectDefaults();
  EXPECT_TRUE(load(kPlainCpuinfo, "# nothing here\n\n   \n"));
  expectDefaults();
}

// One identifiers-file text: the load result and the serial number after it.
struct FileCase {
  std::string text;
  bool result;
  const char* serial;  // null: the default, flag clear
};

TEST_F(DeviceIdentifiersTest, IdentifiersFileLineRules) {
  const std::string longValue(120, 'a');
  const std::string longLine = "QTA_SN=" + longValue + "tail\n";  // cut after 127 bytes
  const FileCase cases[] = {
      {"QTA_SN=A1B2\n", true, "A1B2"},
      {"QTA_SN=\"A1B2\"\n", true, "A1B2"},
      {"QTA_SN='A1B2'   \n", true, "A1B2"},
      {"QTA_SN='A1B2\"\n", false, nullptr},
      {"QTA_SN=\"\n", false, nullptr},
      {"QTA_SN=\"\"\n", true, ""},
      {"QTA_SN=  x y  \r\n", true, "  x y"},
      {"QTA_SN=   \n", true, ""},
      {"QTA_SN=a=b", true, "a=b"},
      {"  \tQTA_SN=lead\n", true, "lead"},
      {"QTA_SN = X\n", true, nullptr},
      {"qta_sn=X\nQTA_SNX=Y\n", true, nullptr},
      {"#QTA_SN=X\n  # QTA_SN=Y\n", true, nullptr},
      {"QTA_SN=first\nQTA_SN=second\n", true, "first"},
      {"no equals sign\nQTA_SN=later\n", false, "later"},
      {std::string("QTA_SN\0=X\n", 10), false, nullptr},
      {longLine, false, longValue.c_str()},
  };
  for (const FileCase& c : cases) {
    EXPECT_EQ(load(kPlainCpuinfo, c.text), c.result) << c.text;
    EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), c.serial ? c.serial : kNotDefined)
        << c.text;
    EXPECT_EQ(deviceIdentifierFound(DeviceId::kSerialNumber), c.serial != nullptr) << c.text;
    // The fuzz harness's reference reading agrees on every case.
    const identifiersref::IdentifiersReading reference =
        identifiersref::referenceReadIdentifiers(c.text);
    EXPECT_EQ(reference.result, c.result) << c.text;
    EXPECT_EQ(reference.values[1].has_value(), c.serial != nullptr) << c.text;
  }
}

TEST_F(DeviceIdentifiersTest, EveryFileKeyFillsItsIdentifier) {
  EXPECT_TRUE(load(kPlainCpuinfo,
                   "QTA_HW_TYPE=hw\nQTA_SN=sn\nQTA_USER_SN=user\nQTA_BOARD_SN=board\n"
                   "QTA_SYSTEM_SN=system\nQTA_CHASSIS_SN=chassis\nQTA_MAIN_IFACE_NAME=enp1s0\n"));
  const std::pair<DeviceId, const char*> expected[] = {
      {DeviceId::kHardwareType, "hw"},           {DeviceId::kSerialNumber, "sn"},
      {DeviceId::kUserSerialNumber, "user"},     {DeviceId::kBoardSerialNumber, "board"},
      {DeviceId::kSystemSerialNumber, "system"}, {DeviceId::kChassisSerialNumber, "chassis"},
      {DeviceId::kMainInterfaceName, "enp1s0"},
  };
  for (const auto& [id, value] : expected) {
    EXPECT_EQ(deviceIdentifier(id), value);
    EXPECT_TRUE(deviceIdentifierFound(id));
  }
  // The file never names the application's interface.
  EXPECT_EQ(deviceIdentifier(DeviceId::kInterfaceName), "eth0");
  EXPECT_FALSE(deviceIdentifierFound(DeviceId::kInterfaceName));
}

// One cpuinfo text: the load result, then the hardware type and serial number
// (null: the default).
struct CpuinfoCase {
  std::string text;
  bool result;
  const char* hardware;
  const char* serial;
};

TEST_F(DeviceIdentifiersTest, CpuinfoLineRules) {
  const std::string longWord(70, 'w');
  const std::string cutWord(63, 'w');
  const CpuinfoCase cases[] = {
      {"Hardware\t: BCM2835\nSerial\t\t: 0000abcd\n", true, "BCM2835", "0000abcd"},
      {"Hardware : two words\n", true, "two", nullptr},
      {"Hardware : first\nHardware : second\n", true, "second", nullptr},
      {"HardwareRevision : r2\nSerialNo : s9\n", true, "r2", "s9"},
      {"Hardware: glued\nSerial : ok\n", false, nullptr, "ok"},
      {"Serial :\n", false, nullptr, nullptr},
      {"Hardware : " + longWord + "\n", true, cutWord.c_str(), nullptr},
      {" Hardware : indented\n", true, nullptr, nullptr},
  };
  for (const CpuinfoCase& c : cases) {
    EXPECT_EQ(load(c.text, std::nullopt), c.result) << c.text;
    EXPECT_EQ(deviceIdentifier(DeviceId::kHardwareType), c.hardware ? c.hardware : kNotDefined)
        << c.text;
    EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), c.serial ? c.serial : kNotDefined)
        << c.text;
  }
}

TEST_F(DeviceIdentifiersTest, CpuinfoWinsOverTheFile) {
  EXPECT_TRUE(load("Serial : 0000abcd\n", "QTA_SN=file\nQTA_HW_TYPE=box\n"));
  EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), "0000abcd");
  EXPECT_EQ(deviceIdentifier(DeviceId::kHardwareType), "box");
}

TEST_F(DeviceIdentifiersTest, SourceFaults) {
  const std::string file = write("identifiers", "QTA_SN=from-file\n");
  // Missing cpuinfo: false, but the file is still read.
  const std::string missing = (dir_ / "no-cpuinfo").string();
  EXPECT_FALSE(detail::loadDeviceIdentifiersFrom(missing.c_str(), file.c_str()));
  EXPECT_EQ(deviceIdentifier(DeviceId::kSerialNumber), "from-file");

  const std::string cpuinfo = write("cpuinfo", kPlainCpuinfo);
  // An identifiers path that cannot be opened for a reason other than absence.
  const std::string underFile = file + "/x";
  EXPECT_FALSE(detail::loadDeviceIdentifiersFrom(cpuinfo.c_str(), underFile.c_str()));
  expectDefaults();
  // One that opens but cannot be read.
  EXPECT_FALSE(detail::loadDeviceIdentifiersFrom(cpuinfo.c_str(), dir_.c_str()));
  expectDefaults();
}

TEST_F(DeviceIdentifiersTest, InterfaceNameIsTheApplicationsAndResetOnLoad) {
  EXPECT_TRUE(load(kPlainCpuinfo, "QTA_MAIN_IFACE_NAME=wlan0\n"));
  setInterfaceName("br0");
  EXPECT_EQ(deviceIdentifier(DeviceId::kInterfaceName), "br0");
  EXPECT_TRUE(deviceIdentifierFound(DeviceId::kInterfaceName));
  EXPECT_EQ(deviceIdentifier(DeviceId::kMainInterfaceName), "wlan0");
  EXPECT_TRUE(load(kPlainCpuinfo, std::nullopt));
  expectDefaults();
}

TEST(DeviceIdentifiersText, ReaderOverTextMatchesTheFileRules) {
  detail::loadDeviceIdentifiersFrom("/nonexistent/cpuinfo", "/nonexistent/identifiers");
  EXPECT_TRUE(detail::readIdentifiersText(""));
  EXPECT_TRUE(detail::readIdentifiersText("QTA_BOARD_SN='b 1'"));
  EXPECT_FALSE(detail::readIdentifiersText("QTA_BOARD_SN=again\nbroken\n"));
  EXPECT_EQ(deviceIdentifier(DeviceId::kBoardSerialNumber), "b 1");
}

}  // namespace
}  // namespace qta::device
