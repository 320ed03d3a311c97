// The escaping primitives in the form the parser and the writers use: they
// append to a string the caller is building instead of returning a new one.
#ifndef QTA_SRC_URI_ESCAPE_APPEND_H_
#define QTA_SRC_URI_ESCAPE_APPEND_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "qta/uri/escape.h"

namespace qta::uri::detail {

// The byte an escape "%XY" at `pos` denotes, or -1 when there is none there.
int escapeAt(std::string_view text, size_t pos);

// Appends "%" and the byte in upper-case hexadecimal.
void appendEscaped(std::string& out, unsigned char byte);

// Each appends to `out` what its namesake in qta/uri/escape.h returns.
// appendPercentDecoded appends the lenient form and returns false where
// percentDecode gives nothing (a "%" that begins no escape).
bool appendPercentDecoded(std::string& out, std::string_view text, TemplateMode templateMode);
void appendNormalized(std::string& out, std::string_view text, const CharSet& decodeSet,
                      const CharSet& keepSet, TemplateMode templateMode);
void appendPercentEncoded(std::string& out, std::string_view text, const CharSet& keepSet,
                          TemplateMode templateMode);
void appendDisplayDecoded(std::string& out, std::string_view text, const CharSet& decodeSet,
                          TemplateMode templateMode);

}  // namespace qta::uri::detail

#endif  // QTA_SRC_URI_ESCAPE_APPEND_H_
