// qta/json/parser.h: JSON text to a document tree.
//
// The grammar is JSON's with a few deliberate differences:
//   - numbers are whatever the C library's "%lg" scan reads (in the C locale,
//     whatever locale the program set) from a text that starts with a digit or
//     "-": "007", "1.", "0x1A", "-inf", "-nan" and "1e999" (infinity) parse;
//     "+1", ".5", "inf" and "nan" do not;
//   - an array or object that the end of the text cuts off after "[", "{" or a
//     trailing comma ("[", "[1,", "{", "{\"a\":1,") is complete as it stands;
//     cut off anywhere else ("[1", "{\"a\":1") it fails, and so does a
//     container that holds such a cut-off one ("[[");
//   - an object key may not be empty, and "\u0000" is refused;
//   - of duplicate keys the last one wins; members are kept in key order;
//   - white space is space, tab, line feed and carriage return only;
//   - string bytes of 128 and above are kept as they are, without validation;
//     a "\u" escape adds its code point as UTF-8: a surrogate pair makes one
//     four-byte sequence, a high surrogate not followed by a "\u" escape gives
//     "?", other unpaired surrogates give nothing.
// The text ends at its first NUL byte; nothing after it is read.
//
// Failure gives an empty root (no message, no position); bad input never
// throws. Allocation failure throws std::bad_alloc. The caller owns the
// returned tree. Nesting depth is unlimited and costs heap, not machine stack.
// The functions keep no state: any number of threads may parse at once.
#ifndef QTA_JSON_PARSER_H_
#define QTA_JSON_PARSER_H_

#include <string>

#include "qta/export.h"
#include "qta/json/json.h"

namespace qta::json {

// One value, then only white space up to the end of the text.
QTA_EXPORT JSON::root parse(const std::string& text);

// One value at `cursor` (leading white space skipped). On success the cursor
// stands just after the value; on failure it stands somewhere inside the bad
// input and the result is empty.
QTA_EXPORT JSON::root parseValue(const char*& cursor);

// One string literal, `cursor` standing on its opening quote: appends the
// decoded bytes to `out` and leaves the cursor after the closing quote. On
// failure returns false, `out` holding what was decoded so far.
QTA_EXPORT bool parseString(const char*& cursor, std::string& out);

}  // namespace qta::json

#endif  // QTA_JSON_PARSER_H_
