// The steps URI::parse is made of. Each function writes only to its output
// arguments.
#ifndef QTA_SRC_URI_PARSE_H_
#define QTA_SRC_URI_PARSE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "qta/uri/uri.h"

namespace qta::uri {

// Reads the scheme and the authority at the start of `text` into `data`
// (scheme, host, port; cleared first) and, when `userInfo` is given, the user
// information before "@". Returns the position after the authority (after
// ":" when there is none, 0 when there is no scheme), or nothing when the
// text is not valid.
std::optional<size_t> parseSchemeAndAuthority(URI::Data& data, std::string_view text,
                                              std::string* userInfo, bool& hasAuthority);

// Reads the path at the start of `text` (up to "?" or "#") into `path`,
// splitting at "/" and percent-decoding the segments. Returns the position
// after the path, or nothing when a segment holds an invalid escape.
std::optional<size_t> parsePath(std::string_view text, TemplateMode templateMode, URI::Path& path);

// Removes "." and ".." segments. A rooted path (one under an authority) becomes
// absolute and cannot climb above its root.
void removeDotSegments(URI::Path& path, bool rooted);

}  // namespace qta::uri

#endif  // QTA_SRC_URI_PARSE_H_
