// qta/device/identifiers.h: the identifiers of the running device.
//
// The process keeps one set of eight identifiers: the hardware type, the
// device serial number, the user, board, system and chassis serial numbers,
// the main network interface name and the interface name the application
// chose. loadDeviceIdentifiers() fills them from "/proc/cpuinfo" (its
// "Hardware" and "Serial" lines) and then from the shell-style assignment
// file "/etc/quintara/identifiers"; the first source to give an identifier
// wins. Each identifier has a default and a found-flag telling whether a
// source (or setInterfaceName) gave its value.
//
// Ownership: the values live in static storage owned by the library; the
// references handed out stay valid until the next loadDeviceIdentifiers() or
// setInterfaceName() call changes the value, or the program exits.
//
// Threads: the state is unprotected. Call loadDeviceIdentifiers() (and
// setInterfaceName()) once at start-up, before other threads start; after
// that any number of threads may read the values.
#ifndef QTA_DEVICE_IDENTIFIERS_H_
#define QTA_DEVICE_IDENTIFIERS_H_

#include <string>

#include "qta/export.h"

namespace qta::device {

enum class DeviceId {
  kHardwareType,         // "Hardware" line, or file key QTA_HW_TYPE
  kSerialNumber,         // "Serial" line, or file key QTA_SN
  kUserSerialNumber,     // file key QTA_USER_SN
  kBoardSerialNumber,    // file key QTA_BOARD_SN
  kSystemSerialNumber,   // file key QTA_SYSTEM_SN
  kChassisSerialNumber,  // file key QTA_CHASSIS_SN
  kMainInterfaceName,    // file key QTA_MAIN_IFACE_NAME
  kInterfaceName,        // set by setInterfaceName() only
};

inline constexpr int kDeviceIdCount = 8;

// Resets every identifier to its default ("[not defined]", or "eth0" for both
// interface names) and clears every found-flag, then reads "/proc/cpuinfo"
// and the identifiers file. Returns true when both were read without a fault;
// a missing identifiers file is no fault. Never throws and never logs: a fault
// only makes the result false, and the values keep what was read so far.
QTA_EXPORT bool loadDeviceIdentifiers();

// Stores the interface name and sets its found-flag. The next
// loadDeviceIdentifiers() resets it to "eth0".
QTA_EXPORT void setInterfaceName(const std::string& name);

// The identifier's value: empty until loadDeviceIdentifiers() has run.
QTA_EXPORT const std::string& deviceIdentifier(DeviceId id);

// Whether a source (or setInterfaceName) gave the identifier's value.
QTA_EXPORT bool deviceIdentifierFound(DeviceId id);

// Whether loadDeviceIdentifiers() has run in this process.
QTA_EXPORT bool deviceIdentifiersLoaded();

}  // namespace qta::device

#endif  // QTA_DEVICE_IDENTIFIERS_H_
