// The process-wide identifier state and the load sequence.
#include "qta/device/identifiers.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

#include "device/identifiers_sources.h"

namespace qta::device {
namespace {

constexpr char kProcCpuinfo[] = "/proc/cpuinfo";
constexpr char kIdentifiersFile[] = "/etc/quintara/identifiers";
constexpr char kNotDefined[] = "[not defined]";
constexpr char kDefaultInterface[] = "eth0";

// Empty until the first load, as the accessors promise.
std::string gValues[kDeviceIdCount];
bool gFound[kDeviceIdCount] = {};
bool gLoaded = false;

std::size_t slot(DeviceId id) { return static_cast<std::size_t>(id); }

void resetToDefaults() {
  gLoaded = true;
  for (int i = 0; i < kDeviceIdCount; ++i) {
    gFound[i] = false;
    gValues[i] = kNotDefined;
  }
  gValues[slot(DeviceId::kMainInterfaceName)] = kDefaultInterface;
  gValues[slot(DeviceId::kInterfaceName)] = kDefaultInterface;
}

}  // namespace

namespace detail {

void storeFound(DeviceId id, std::string value) {
  gValues[slot(id)] = std::move(value);
  gFound[slot(id)] = true;
}

bool loadDeviceIdentifiersFrom(const char* cpuinfoPath, const char* identifiersPath) {
  resetToDefaults();
  bool cpuinfoRead = false;
  if (std::FILE* cpuinfo = std::fopen(cpuinfoPath, "rb")) {
    cpuinfoRead = readCpuinfo(cpuinfo);
    std::fclose(cpuinfo);
  }
  // The file is read whatever cpuinfo gave; a missing one is no fault.
  bool fileRead = false;
  if (std::FILE* file = std::fopen(identifiersPath, "rb")) {
    fileRead = readIdentifiers(file);
    std::fclose(file);
  } else {
    fileRead = errno == ENOENT;
  }
  return cpuinfoRead && fileRead;
}

}  // namespace detail

bool loadDeviceIdentifiers() {
  return detail::loadDeviceIdentifiersFrom(kProcCpuinfo, kIdentifiersFile);
}

void setInterfaceName(const std::string& name) {
  detail::storeFound(DeviceId::kInterfaceName, name);
}

const std::string& deviceIdentifier(DeviceId id) { return gValues[slot(id)]; }

bool deviceIdentifierFound(DeviceId id) { return gFound[slot(id)]; }

bool deviceIdentifiersLoaded() { return gLoaded; }

}  // namespace qta::device
