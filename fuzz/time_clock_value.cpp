// Clock values and HTTP dates from arbitrary text. Whatever the parser
// accepts writes back in seconds to a text that parses to the same value cut
// to whole microseconds; the parser agrees with its scanner; an HTTP date that
// reads writes back as an RFC 822 date that reads as the same time.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "qta/time/calendar_date.h"
#include "qta/time/clock_value.h"

namespace {

void checkClockValue(const std::string& text) {
  qta::ClockValue value;
  const bool accepted = qta::time::parseClockValue(value, text, true, true);
  if (value.type != qta::ClockValue::kResolved) return;
  const char* cursor = text.c_str();
  const uint64_t micros = static_cast<uint64_t>(qta::time::parseClockText(cursor));
  if (static_cast<uint64_t>(value.value) != micros * 1000) std::abort();
  if (!accepted) return;

  const bool negative = value.value < 0;
  const uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(value.value) : value.value;
  const uint64_t whole = magnitude / 1000 * 1000;
  const int64_t expected = static_cast<int64_t>(negative ? 0 - whole : whole);
  qta::ClockValue again;
  if (!qta::time::parseClockValue(again, qta::time::formatClockValue(value, "s"), true, true) ||
      again.type != qta::ClockValue::kResolved || again.value != expected) {
    std::abort();
  }
}

void checkHttpDate(const std::string& text) {
  if (std::memchr(text.data(), '\0', text.size()) != nullptr) return;  // C strings only
  const int64_t ns = qta::time::parseHttpDate(text.c_str());
  if (ns == 0 || ns == std::numeric_limits<int64_t>::max()) return;  // unreadable or saturated
  const int64_t second = ns - ns % 1000000000;
  if (qta::time::parseHttpDate(qta::time::formatRfc822Date(ns).c_str()) != second) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  checkClockValue(text);
  checkHttpDate(text);
  return 0;
}
