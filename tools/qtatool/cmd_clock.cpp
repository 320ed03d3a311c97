// qtatool clock and qtatool date: clock values parsed, formatted and
// converted from counts at a rate, and calendar-date texts; and their
// sections of `qtatool demo`.
#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "args.h"
#include "command.h"
#include "qta/time/calendar_date.h"
#include "qta/time/clock_value.h"
#include "qta/time/rate_conversion.h"

namespace qtatool {
namespace {

int parse(const Command& self, const ParsedArgs& parsed) {
  if (parsed.operands.size() != 1) return usageError(self, "parse takes one TEXT");
  const std::string text(parsed.operands[0]);
  qta::ClockValue value;
  if (!qta::time::parseClockValue(value, text, parsed.has("--allow-zero"),
                                  parsed.has("--allow-negative"))) {
    std::cerr << "qtatool clock: not an accepted clock value: '" << text << "'\n";
    return kRejected;
  }
  if (value.type == qta::ClockValue::kResolved) {
    std::cout << value.value << "\n";
  } else {
    std::cout << qta::time::formatClockValue(value, "") << "\n";
  }
  return kSuccess;
}

int format(const Command& self, const ParsedArgs& parsed) {
  const auto& operands = parsed.operands;
  if (operands.empty() || operands.size() > 2) {
    return usageError(self, "format takes NANOSECONDS and an optional STYLE");
  }
  const std::optional<int64_t> nanos = number<int64_t>(operands[0]);
  if (!nanos) return usageError(self, notANumber(operands[0]));
  const std::string style(operands.size() > 1 ? operands[1] : "");
  std::cout << qta::time::formatClockValue({qta::ClockValue::kResolved, *nanos}, style) << "\n";
  return kSuccess;
}

int convert(const Command& self, const ParsedArgs& parsed) {
  const auto& operands = parsed.operands;
  if (operands.size() < 2) return usageError(self, "convert takes COUNT RATE [PPM]");
  const std::optional<int64_t> count = number<int64_t>(operands[0]);
  const std::optional<int64_t> rate = number<int64_t>(operands[1]);
  if (!count) return usageError(self, notANumber(operands[0]));
  if (!rate) return usageError(self, notANumber(operands[1]));
  std::optional<int32_t> ppm;
  if (operands.size() > 2 && !(ppm = number<int32_t>(operands[2]))) {
    return usageError(self, notANumber(operands[2]));
  }
  try {
    std::cout << (ppm ? qta::time::correctedCountToNanoseconds(*count, *rate, *ppm)
                      : qta::time::countToNanoseconds(*count, *rate))
              << "\n";
  } catch (const std::overflow_error& error) {
    std::cerr << "qtatool clock: " << error.what() << "\n";
    return kRejected;
  }
  return kSuccess;
}

int runClock(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed = parseArgs(self, args,
                                                     {.modes = {"parse", "format", "convert"},
                                                      .flags = {"--allow-zero", "--allow-negative"},
                                                      .maxOperands = 3});
  if (!parsed) return kUsage;
  if (parsed->mode != "parse" && !parsed->options.empty()) {
    return usageError(self, "the --allow options belong to parse");
  }
  if (parsed->mode == "parse") return parse(self, *parsed);
  if (parsed->mode == "format") return format(self, *parsed);
  return convert(self, *parsed);
}

int runDate(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed =
      parseArgs(self, args, {.modes = {"iso", "rfc822", "http"}, .maxOperands = 1});
  if (!parsed) return kUsage;
  if (parsed->operands.size() != 1) return usageError(self, "missing operand");
  const std::string_view operand = parsed->operands[0];
  if (parsed->mode == "http") {
    std::cout << qta::time::parseHttpDate(std::string(operand).c_str()) << "\n";
    return kSuccess;
  }
  const std::optional<int64_t> nanos = number<int64_t>(operand);
  if (!nanos) return usageError(self, notANumber(operand));
  std::cout << (parsed->mode == "iso" ? qta::time::formatIsoDate(*nanos)
                                      : qta::time::formatRfc822Date(*nanos))
            << "\n";
  return kSuccess;
}

void clockDemo(std::ostream& out) {
  out << "== clock values\n";
  for (const char* text :
       {"  1:02:03.5  ", "90min", "1.23456789s", "250ms", "indefinite", "-5s", "1:02:03.5s"}) {
    qta::ClockValue value;
    const bool accepted = qta::time::parseClockValue(value, text, false, false);
    out << "parse \"" << text << "\": " << (accepted ? "" : "rejected, ")
        << qta::time::formatClockValue(value, "") << "\n";
  }
  const qta::ClockValue almostMinute{qta::ClockValue::kResolved, 59999600000};
  for (const char* style : {"", "ms", "hms", "hms.", "hms...", "hms.."}) {
    out << "59.9996 s as \"" << style << "\": " << qta::time::formatClockValue(almostMinute, style)
        << "\n";
  }
  out << "48000 ticks at 48000/s: " << qta::time::countToNanoseconds(48000, 48000) << " ns\n";
  out << "the same 100 ppm fast: " << qta::time::correctedCountToNanoseconds(48000, 48000, 100)
      << " ns\n";
  out << "2^63-1 ticks at 1/s: " << qta::time::countToNanoseconds(INT64_MAX, 1)
      << " ns (saturated)\n";
}

void dateDemo(std::ostream& out) {
  out << "== calendar dates\n";
  const int64_t november1994 = 784111777000000000;
  out << "iso: " << qta::time::formatIsoDate(november1994) << "\n";
  out << "rfc822: " << qta::time::formatRfc822Date(november1994) << "\n";
  for (const char* text : {"Sun, 06 Nov 1994 08:49:37 GMT", "Sunday, 06-Nov-94 08:49:37 GMT",
                           "Sun Nov  6 08:49:37 1994", "yesterday"}) {
    out << "http \"" << text << "\": " << qta::time::parseHttpDate(text) << " ns\n";
  }
}

const RegisterCommand kClock({
    .order = 60,
    .name = "clock",
    .summary = "parse, format or convert clock values",
    .usage =
        "Usage: qtatool clock parse [--allow-zero] [--allow-negative] TEXT\n"
        "       qtatool clock format NANOSECONDS [STYLE]\n"
        "       qtatool clock convert COUNT RATE [PPM]\n\n"
        "parse prints the clock value TEXT in nanoseconds, or \"indefinite\" or \"media\";\n"
        "a rejected text exits with 1. Zero needs --allow-zero, a negative value\n"
        "--allow-negative. format writes NANOSECONDS in STYLE: \"\" (the default), \"s\",\n"
        "\"ms\", \"hms\", \"hms.\" or \"hms...\". convert prints COUNT ticks at RATE ticks per\n"
        "second in nanoseconds, corrected by PPM parts per million when given; a RATE of\n"
        "0 exits with 1. Put \"--\" before the operands when one starts with \"-\".\n",
    .run = runClock,
    .demo = clockDemo,
});

const RegisterCommand kDate({
    .order = 61,
    .name = "date",
    .summary = "write or read calendar dates",
    .usage = "Usage: qtatool date iso NANOSECONDS\n"
             "       qtatool date rfc822 NANOSECONDS\n"
             "       qtatool date http TEXT\n\n"
             "iso and rfc822 write the time NANOSECONDS after 1970-01-01T00:00:00Z (UTC) as\n"
             "an ISO 8601 or an RFC 822 date. http reads an HTTP date (RFC 1123, RFC 850 or\n"
             "asctime form) and prints its time in nanoseconds, 0 when it is unreadable.\n"
             "Put \"--\" before a negative NANOSECONDS.\n",
    .run = runDate,
    .demo = dateDemo,
});

}  // namespace
}  // namespace qtatool
