// Calendar-date texts: ISO 8601 through gmtime_r, RFC 822 and HTTP dates
// through APR-util's date functions (which need no pool).
#include <apr_date.h>
#include <apr_time.h>

#include <cstdint>
#include <ctime>
#include <limits>
#include <string>

#include "qta/time/calendar_date.h"
#include "qta/utils/format.h"

namespace qta::time {
namespace {

constexpr int64_t kNanosPerSecond = 1000000000;
constexpr int64_t kNanosPerMicro = 1000;

}  // namespace

std::string formatIsoDate(int64_t ns) {
  const std::time_t seconds = static_cast<std::time_t>(ns / kNanosPerSecond);
  std::tm parts{};
  if (gmtime_r(&seconds, &parts) == nullptr) return "";
  return formatString("%04d-%02d-%02dT%02d:%02d:%02dZ", parts.tm_year + 1900, parts.tm_mon + 1,
                      parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
}

std::string formatRfc822Date(int64_t ns) {
  char text[APR_RFC822_DATE_LEN];
  if (apr_rfc822_date(text, static_cast<apr_time_t>(ns / kNanosPerMicro)) != APR_SUCCESS) {
    return "";
  }
  return text;
}

int64_t parseHttpDate(const char* text) {
  if (text == nullptr) return 0;
  const apr_time_t micros = apr_date_parse_http(text);
  if (micros > std::numeric_limits<int64_t>::max() / kNanosPerMicro) {
    return std::numeric_limits<int64_t>::max();
  }
  if (micros < std::numeric_limits<int64_t>::min() / kNanosPerMicro) {
    return std::numeric_limits<int64_t>::min();
  }
  return micros * kNanosPerMicro;
}

}  // namespace qta::time
