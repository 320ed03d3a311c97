// qta/json/writer.h: JSON text output.
//
// JSON::write(out, indent) appends a value's text to a caller-owned string:
// with indent -1 on one line ("{ \"a\": [ 1, 2 ] }"), with indent 0 on
// tab-indented lines. Object members come out in key order. Numbers are
// written as "%.16g" would write them in the C locale, whatever locale the
// program set; NaN and infinities come out as "nan", "-nan", "inf", "-inf",
// which is not valid JSON. Strings end at their first NUL byte. An empty slot
// left by take() is written as null. Writing only reads the tree, so several
// threads may write one tree at once, each into its own string.
#ifndef QTA_JSON_WRITER_H_
#define QTA_JSON_WRITER_H_

#include <string>

#include "qta/export.h"
#include "qta/json/json.h"

namespace qta::json {

// Appends `text` (up to its first NUL) as a quoted JSON string: the double
// quote and backslash are escaped with a backslash, bytes 8, 9, 10, 12 and 13
// as \b \t \n \f \r, other bytes below 32 as \u00XX (upper-case hex); every
// other byte, the slash and bytes of 128 and above included, is copied as is.
QTA_EXPORT void writeString(std::string& out, const char* text);

// The text of a whole tree: write(out, indent) into a new string.
QTA_EXPORT std::string toJSONText(const JSON& value, int indent = -1);

}  // namespace qta::json

#endif  // QTA_JSON_WRITER_H_
