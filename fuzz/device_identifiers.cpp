// Holds the identifiers-file reader to the independent reference reading for
// every input: the same result, and the same value and flag for every key.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "device/identifiers_reference.h"
#include "device/identifiers_sources.h"
#include "qta/device/identifiers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using qta::device::DeviceId;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  // Absent sources: every identifier back to its default, no flag set.
  qta::device::detail::loadDeviceIdentifiersFrom("/nonexistent/cpuinfo",
                                                 "/nonexistent/identifiers");
  const bool result = qta::device::detail::readIdentifiersText(text);
  const identifiersref::IdentifiersReading expected =
      identifiersref::referenceReadIdentifiers(text);
  if (result != expected.result) std::abort();
  for (std::size_t i = 0; i < expected.values.size(); ++i) {
    const auto id = static_cast<DeviceId>(i);
    if (qta::device::deviceIdentifierFound(id) != expected.values[i].has_value()) std::abort();
    if (expected.values[i] && qta::device::deviceIdentifier(id) != *expected.values[i]) {
      std::abort();
    }
  }
  return 0;
}
