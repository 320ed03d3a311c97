// Writes clock values in the styles "" / "s", "ms", "hms", "hms." and "hms...".
#include <cstdint>
#include <string>

#include "qta/time/clock_value.h"
#include "qta/utils/format.h"

namespace qta::time {
namespace {

constexpr uint64_t kMicrosPerSecond = 1000000;
constexpr uint64_t kMicrosPerHour = 3600 * kMicrosPerSecond;

// `whole` with "%lu", then "." and the digits of `rest` / `divisor` without
// trailing zeros when it is not 0, then `suffix`.
std::string decimal(uint64_t whole, uint64_t rest, uint64_t divisor, const char* suffix) {
  std::string text = formatString("%lu", static_cast<unsigned long>(whole));
  if (rest != 0) {
    text += '.';
    for (uint64_t place = divisor / 10; rest != 0 && place != 0; place /= 10) {
      text += static_cast<char>('0' + rest / place);
      rest %= place;
    }
  }
  return text + suffix;
}

// "H:MM:SS", with ".mmm" when `fraction` asks for it. The milliseconds are
// rounded half up from the microseconds without a carry into the seconds, so
// they can print as 1000.
std::string hoursMinutesSeconds(uint64_t micros, bool withFraction, bool dropZeroFraction) {
  const int hours = static_cast<int>(micros / kMicrosPerHour);
  const int minutes = static_cast<int>(micros % kMicrosPerHour / (60 * kMicrosPerSecond));
  const int seconds = static_cast<int>(micros % (60 * kMicrosPerSecond) / kMicrosPerSecond);
  const int millis = static_cast<int>((micros % kMicrosPerSecond + 500) / 1000);
  if (!withFraction || (dropZeroFraction && millis == 0)) {
    return formatString("%d:%02d:%02d", hours, minutes, seconds);
  }
  return formatString("%d:%02d:%02d.%03d", hours, minutes, seconds, millis);
}

}  // namespace

std::string formatClockValue(const ClockValue& value, const std::string& style) {
  switch (value.type) {
    case ClockValue::kResolved:
      break;
    case ClockValue::kIndefinite:
      return "indefinite";
    case ClockValue::kUnresolved:
      return "unresolved";
    case ClockValue::kMedia:
      return "media";
    default:
      return "<invalid value type>";
  }
  const bool negative = value.value < 0;
  const uint64_t nanos =
      negative ? 0 - static_cast<uint64_t>(value.value) : static_cast<uint64_t>(value.value);
  const uint64_t micros = nanos / 1000;
  std::string text;
  if (style.empty() || style == "s") {
    text = decimal(micros / kMicrosPerSecond, micros % kMicrosPerSecond, kMicrosPerSecond, "s");
  } else if (style == "ms") {
    text = decimal(micros / 1000, micros % 1000, 1000, "ms");
  } else if (style == "hms" || style == "hms." || style == "hms...") {
    text = hoursMinutesSeconds(micros, style != "hms", style == "hms...");
  } else {
    return "<invalid format>";
  }
  return negative ? "-" + text : text;
}

}  // namespace qta::time
