// The readers behind loadDeviceIdentifiers(), reachable with other paths or
// with in-memory text so that tests and the fuzz harness do not depend on the
// machine's own files. Same threading rules as the public interface.
#ifndef QTA_SRC_DEVICE_IDENTIFIERS_SOURCES_H_
#define QTA_SRC_DEVICE_IDENTIFIERS_SOURCES_H_

#include <cstdio>
#include <string>
#include <string_view>

#include "qta/device/identifiers.h"

namespace qta::device::detail {

// loadDeviceIdentifiers() with the two source paths given.
bool loadDeviceIdentifiersFrom(const char* cpuinfoPath, const char* identifiersPath);

// Takes the "Hardware" and "Serial" lines of an open cpuinfo stream; false on
// a line whose value cannot be scanned, or on a read error.
bool readCpuinfo(std::FILE* stream);

// Takes the known keys of an open identifiers stream whose found-flags are
// still clear; false on a malformed line, or on a read error.
bool readIdentifiers(std::FILE* stream);

// readIdentifiers() over in-memory text.
bool readIdentifiersText(std::string_view text);

// Stores a value read from a source and sets its found-flag.
void storeFound(DeviceId id, std::string value);

}  // namespace qta::device::detail

#endif  // QTA_SRC_DEVICE_IDENTIFIERS_SOURCES_H_
