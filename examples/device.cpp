// Reads the device identifiers once at start-up, before any other thread
// runs, then prints each with where its value came from.
#include <cstdio>

#include "qta/device/identifiers.h"

int main() {
  using qta::device::DeviceId;
  const bool clean = qta::device::loadDeviceIdentifiers();
  // The application names the interface it uses; the identifiers file names
  // the main one.
  qta::device::setInterfaceName(qta::device::deviceIdentifier(DeviceId::kMainInterfaceName));

  const struct {
    const char* label;
    DeviceId id;
  } shown[] = {
      {"hardware type", DeviceId::kHardwareType},
      {"serial number", DeviceId::kSerialNumber},
      {"board serial number", DeviceId::kBoardSerialNumber},
      {"interface", DeviceId::kInterfaceName},
  };
  for (const auto& [label, id] : shown) {
    std::printf("%-20s %s (%s)\n", label, qta::device::deviceIdentifier(id).c_str(),
                qta::device::deviceIdentifierFound(id) ? "found" : "default");
  }
  std::printf("sources read %s\n", clean ? "cleanly" : "with faults");
  return 0;
}
