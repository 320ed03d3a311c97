// The line rules of the two identifier sources.
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "device/identifiers_sources.h"
#include "qta/device/identifiers.h"

namespace qta::device::detail {
namespace {

constexpr int kCpuinfoLineBytes = 2048;
// A longer identifiers line is cut into pieces of one byte less, each taken
// as a line of its own.
constexpr int kIdentifiersLineBytes = 128;

// The file keys in the order they are matched.
struct FileKey {
  std::string_view key;
  DeviceId id;
};
constexpr FileKey kFileKeys[] = {
    {"QTA_HW_TYPE", DeviceId::kHardwareType},
    {"QTA_SN", DeviceId::kSerialNumber},
    {"QTA_USER_SN", DeviceId::kUserSerialNumber},
    {"QTA_BOARD_SN", DeviceId::kBoardSerialNumber},
    {"QTA_SYSTEM_SN", DeviceId::kSystemSerialNumber},
    {"QTA_CHASSIS_SN", DeviceId::kChassisSerialNumber},
    {"QTA_MAIN_IFACE_NAME", DeviceId::kMainInterfaceName},
};

// The C locale's white space, whatever locale the program has set.
bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Takes the third blank-separated word of a cpuinfo line ("Key : value"),
// at most 63 characters of it; false when the line has fewer words.
bool takeThirdWord(const char* line, DeviceId id) {
  char word[64];
  if (std::sscanf(line, "%*s %*s %63s", word) != 1) return false;
  storeFound(id, word);
  return true;
}

// Handles one identifiers line; false when it is malformed.
bool takeIdentifiersLine(const char* line) {
  while (isSpace(*line)) ++line;
  if (*line == '\0' || *line == '#') return true;
  const char* equals = std::strchr(line, '=');
  if (equals == nullptr) return false;
  const std::string_view key(line, equals - line);
  std::string_view value(equals + 1);
  while (!value.empty() && isSpace(value.back())) value.remove_suffix(1);
  if (!value.empty() && (value.front() == '"' || value.front() == '\'')) {
    if (value.size() < 2 || value.back() != value.front()) return false;
    value = value.substr(1, value.size() - 2);
  }
  for (const FileKey& known : kFileKeys) {
    if (deviceIdentifierFound(known.id) || known.key != key) continue;
    storeFound(known.id, std::string(value));
    break;
  }
  return true;
}

}  // namespace

bool readCpuinfo(std::FILE* stream) {
  bool result = true;
  char line[kCpuinfoLineBytes];
  while (std::fgets(line, sizeof line, stream) != nullptr) {
    // Prefix tests only; a later matching line overwrites an earlier one.
    if (std::strncmp(line, "Hardware", 8) == 0) {
      if (!takeThirdWord(line, DeviceId::kHardwareType)) result = false;
    } else if (std::strncmp(line, "Serial", 6) == 0) {
      if (!takeThirdWord(line, DeviceId::kSerialNumber)) result = false;
    }
  }
  return result && std::ferror(stream) == 0;
}

bool readIdentifiers(std::FILE* stream) {
  bool result = true;
  char line[kIdentifiersLineBytes];
  while (std::fgets(line, sizeof line, stream) != nullptr) {
    if (!takeIdentifiersLine(line)) result = false;
  }
  return result && std::ferror(stream) == 0;
}

bool readIdentifiersText(std::string_view text) {
  if (text.empty()) return true;
  std::FILE* stream = fmemopen(const_cast<char*>(text.data()), text.size(), "rb");
  if (stream == nullptr) return false;
  const bool result = readIdentifiers(stream);
  std::fclose(stream);
  return result;
}

}  // namespace qta::device::detail
