// Reads the begin and duration attributes of a media item, converts a sample
// count to a play position and stamps the result with the current date.
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "qta/time/calendar_date.h"
#include "qta/time/clock_value.h"
#include "qta/time/rate_conversion.h"

int main() {
  qta::ClockValue begin;
  qta::ClockValue duration;
  if (!qta::time::parseClockValue(begin, "0:01:30", true, false) ||
      !qta::time::parseClockValue(duration, "2.5min", false, false)) {
    std::puts("bad timing attributes");
    return 1;
  }
  std::printf("begin %s, duration %s\n", qta::time::formatClockValue(begin, "hms").c_str(),
              qta::time::formatClockValue(duration, "s").c_str());

  // 441000 samples at 44.1 kHz on a sound card that runs 100 ppm fast.
  const int64_t played = qta::time::correctedCountToNanoseconds(441000, 44100, 100);
  const qta::ClockValue position{qta::ClockValue::kResolved, begin.value + played};
  std::printf("position %s\n", qta::time::formatClockValue(position, "hms...").c_str());

  const int64_t now = static_cast<int64_t>(std::time(nullptr)) * 1000000000;
  std::printf("stamped %s (%s)\n", qta::time::formatIsoDate(now).c_str(),
              qta::time::formatRfc822Date(now).c_str());
  return 0;
}
