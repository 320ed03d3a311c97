// qtatool device: loads the device identifiers and prints them, with their
// found-flags and the load's result, as one line of JSON; and the device
// section of `qtatool demo`.
#include <iostream>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "args.h"
#include "command.h"
#include "qta/device/identifiers.h"
#include "qta/json/json.h"
#include "qta/json/writer.h"

namespace qtatool {
namespace {

using qta::device::DeviceId;

struct Named {
  const char* name;
  DeviceId id;
};

constexpr Named kIdentifiers[] = {
    {"hardwareType", DeviceId::kHardwareType},
    {"serialNumber", DeviceId::kSerialNumber},
    {"userSerialNumber", DeviceId::kUserSerialNumber},
    {"boardSerialNumber", DeviceId::kBoardSerialNumber},
    {"systemSerialNumber", DeviceId::kSystemSerialNumber},
    {"chassisSerialNumber", DeviceId::kChassisSerialNumber},
    {"mainInterfaceName", DeviceId::kMainInterfaceName},
    {"interfaceName", DeviceId::kInterfaceName},
};

// {"identifiers": {NAME: {"found": FLAG, "value": TEXT}, ...}, "result": RESULT}
std::string identifiersJSON(bool result) {
  using namespace qta::json;
  qta::JSON::root identifiers = makeObject();
  for (const Named& named : kIdentifiers) {
    qta::JSON* entry = identifiers->set(named.name, makeObject());
    entry->set("value", makeString(qta::device::deviceIdentifier(named.id)));
    entry->set("found", makeBoolean(qta::device::deviceIdentifierFound(named.id)));
  }
  qta::JSON::root all = makeObject();
  all->set("identifiers", std::move(identifiers));
  all->set("result", makeBoolean(result));
  return toJSONText(*all);
}

int run(const Command& self, Args args) {
  if (!parseArgs(self, args, {})) return kUsage;
  std::cout << identifiersJSON(qta::device::loadDeviceIdentifiers()) << "\n";
  return kSuccess;
}

void demo(std::ostream& out) {
  out << "== device\n";
  const bool result = qta::device::loadDeviceIdentifiers();
  out << "loaded from this machine: " << identifiersJSON(result) << "\n";
  qta::device::setInterfaceName("br0");
  out << "after setInterfaceName(\"br0\"): interface \""
      << qta::device::deviceIdentifier(DeviceId::kInterfaceName) << "\", found "
      << (qta::device::deviceIdentifierFound(DeviceId::kInterfaceName) ? "true" : "false")
      << ", main interface \"" << qta::device::deviceIdentifier(DeviceId::kMainInterfaceName)
      << "\"\n";
}

const RegisterCommand kDevice({
    .order = 70,
    .name = "device",
    .summary = "load the device identifiers and print them as JSON",
    .usage = "Usage: qtatool device\n\n"
             "Reads /proc/cpuinfo, then /etc/quintara/identifiers, and prints one line of\n"
             "JSON: under \"identifiers\" each identifier's \"value\" and \"found\" flag\n"
             "(false when the value is its default), and under \"result\" whether both\n"
             "sources were read without a fault. Exits 0 whatever the result.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
