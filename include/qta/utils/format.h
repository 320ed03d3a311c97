// qta/utils/format.h: printf-style formatting into a std::string.
//
// formatString() is the library's one formatter for messages and escapes. It
// returns a new string that the caller owns; it keeps no state and may be
// called from any number of threads at once. Formatting follows the rules of
// the C library, including the current locale's decimal point: code that
// needs locale-independent numbers (the JSON writer) formats them itself.
#ifndef QTA_UTILS_FORMAT_H_
#define QTA_UTILS_FORMAT_H_

#include <cstdarg>
#include <string>

#include "qta/export.h"

namespace qta {

// Formats `format` with its arguments as vsnprintf() does and returns the text.
// Formatting starts in a 512-byte heap buffer; when the text does not fit, the
// buffer grows to the length vsnprintf() reports plus one, or doubles when
// vsnprintf() reports an error, and formatting is repeated. A format that keeps
// failing (an error once the buffer passes INT_MAX bytes) throws
// std::length_error rather than growing without end.
QTA_EXPORT std::string formatString(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The same with an argument list; `args` is consumed as by vsnprintf().
QTA_EXPORT std::string formatStringV(const char* format, va_list args)
    __attribute__((format(printf, 1, 0)));

}  // namespace qta

#endif  // QTA_UTILS_FORMAT_H_
