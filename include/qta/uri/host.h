// qta/uri/host.h: default ports and IP address literals of URIs.
//
// Every function works only on its arguments; any number of threads may call
// them at once.
#ifndef QTA_URI_HOST_H_
#define QTA_URI_HOST_H_

#include <cstdint>
#include <string_view>

#include "qta/export.h"

namespace qta::uri {

// The port a scheme uses when none is written ("http" 80, "https" 443, ...);
// 0 when the scheme has none.
QTA_EXPORT uint32_t defaultPort(std::string_view scheme);

// True when `text` starts with an IPv6 address that ends at the end of the
// text or at a "%" (a zone, which is not examined). "::" alone is rejected.
QTA_EXPORT bool isIPv6Address(std::string_view text);

// True when `text` up to `terminator` (or its end) is a dotted-quad IPv4
// address: four decimal parts of at most 255, none empty.
QTA_EXPORT bool isIPv4Address(std::string_view text, char terminator = '\0');

}  // namespace qta::uri

#endif  // QTA_URI_HOST_H_
