// A second, independent reading of identifiers-file text, for checking the
// library's reader: the text is cut the way a 128-byte fgets buffer cuts it,
// each piece is read as a C string, and the line rules are applied with
// plain string searches.
#ifndef QTA_TESTS_DEVICE_IDENTIFIERS_REFERENCE_H_
#define QTA_TESTS_DEVICE_IDENTIFIERS_REFERENCE_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace identifiersref {

// The file keys, in the order the identifiers are numbered.
inline constexpr std::array<std::string_view, 7> kIdentifierFileKeys = {
    "QTA_HW_TYPE",   "QTA_SN",         "QTA_USER_SN",         "QTA_BOARD_SN",
    "QTA_SYSTEM_SN", "QTA_CHASSIS_SN", "QTA_MAIN_IFACE_NAME",
};

struct IdentifiersReading {
  bool result = true;
  std::array<std::optional<std::string>, 7> values;  // by key; empty when not found
};

inline IdentifiersReading referenceReadIdentifiers(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  IdentifiersReading reading;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t length = std::min<std::size_t>(127, text.size() - at);
    const std::size_t newline = text.substr(at, length).find('\n');
    if (newline != std::string_view::npos) length = newline + 1;
    std::string_view line = text.substr(at, length);
    at += length;
    line = line.substr(0, line.find('\0'));

    const std::size_t start = line.find_first_not_of(kBlanks);
    if (start == std::string_view::npos || line[start] == '#') continue;
    const std::size_t equals = line.find('=', start);
    if (equals == std::string_view::npos) {
      reading.result = false;
      continue;
    }
    const std::string_view key = line.substr(start, equals - start);
    std::string_view value = line.substr(equals + 1);
    const std::size_t last = value.find_last_not_of(kBlanks);
    value = last == std::string_view::npos ? std::string_view() : value.substr(0, last + 1);
    if (value.starts_with('"') || value.starts_with('\'')) {
      if (value.size() == 1 || !value.ends_with(value[0])) {
        reading.result = false;
        continue;
      }
      value = value.substr(1, value.size() - 2);
    }
    for (std::size_t i = 0; i < kIdentifierFileKeys.size(); ++i) {
      if (key == kIdentifierFileKeys[i] && !reading.values[i]) reading.values[i] = value;
    }
  }
  return reading;
}

}  // namespace identifiersref

#endif  // QTA_TESTS_DEVICE_IDENTIFIERS_REFERENCE_H_
