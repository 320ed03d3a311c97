// qta/uri/host.h: host names, IP literals and ports of URIs.
//
// Default ports, the IPv4 and IPv6 literal checks, the conversion of host
// names to lower-case ASCII (IDNA through libidn; plain ASCII names are
// checked here without calling libidn, with the same result), and the host
// and port texts the writers print. Every function works only on its
// arguments; any number of threads may call them at once.
#ifndef QTA_URI_HOST_H_
#define QTA_URI_HOST_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "qta/uri/uri.h"

namespace qta::uri {

// The port a scheme uses when none is written ("http" 80, "https" 443, ...);
// 0 when the scheme has none.
uint32_t defaultPort(std::string_view scheme);

// True for the schemes whose authority is opaque text ("qta", "project").
bool hasOpaqueAuthority(std::string_view scheme);

// True when `text` starts with an IPv6 address that ends at the end of the
// text or at a "%" (a zone, which is not examined). "::" alone is rejected.
bool isIPv6Address(std::string_view text);

// True when `text` up to `terminator` (or its end) is a dotted-quad IPv4
// address: four decimal parts of at most 255, none empty.
bool isIPv4Address(std::string_view text, char terminator = '\0');

// Converts a host name to lower-case ASCII as IDNA (ToASCII with
// unassigned code points allowed and the STD3 rules) does. With
// `keepTrailingHyphen`, a final "-" is set aside during the conversion and
// put back. Returns false and leaves `host` unchanged when it cannot be
// converted (also when it holds a NUL byte).
bool toAsciiHost(std::string& host, bool keepTrailingHyphen);

// Checks and normalises a host set by a caller in `data.host`, with the rules
// of `data.scheme`: opaque hosts need bytes of 32 and above, "[...]" must be
// an IPv6 literal with an optional zone of letters, digits and "-", and names
// go through toAsciiHost.
bool checkHost(URI::Data& data, bool keepTrailingHyphen);

// The host as the full form writes it: opaque hosts escaped, IPv6 addresses
// in brackets with the zone after "%25", names as stored.
std::string hostForOutput(const URI::Data& data);
// hostForOutput, then ":" and the port unless it is the scheme's default (or
// the scheme's authority is opaque).
std::string hostAndPort(const URI::Data& data);

}  // namespace qta::uri

#endif  // QTA_URI_HOST_H_
