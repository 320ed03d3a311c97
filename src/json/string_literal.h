// Decoding of JSON string literals, shared by the parser and parseString().
//
// Every function reads a NUL-terminated text whose terminating NUL is at
// `end` (the text may also hold an earlier NUL, which ends it as well). Bytes
// are read in words only where the word lies before `end`, so nothing past
// the text is ever read.
#ifndef QTA_JSON_STRING_LITERAL_H_
#define QTA_JSON_STRING_LITERAL_H_

#include <string>
#include <string_view>

namespace qta::json::detail {

// Decodes the rest of a literal whose opening quote has been passed, appending
// the bytes to `out`, and leaves `cursor` after the closing quote. Returns
// false, `out` holding what was decoded so far, at a raw byte below 32 (the
// end of the text included), a bad escape or "\u0000".
bool decodeStringRest(const char*& cursor, const char* end, std::string& out);

// Reads the literal whose opening quote `cursor` stands on. On success `text`
// holds its bytes: a view of the input when the literal has no escapes, else
// of `scratch`, which then holds the decoded bytes.
bool readString(const char*& cursor, const char* end, std::string& scratch, std::string_view& text);

}  // namespace qta::json::detail

#endif  // QTA_JSON_STRING_LITERAL_H_
