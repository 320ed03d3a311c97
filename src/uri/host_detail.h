// Host rules shared by the parser, URI::setHost and the writers: the host
// name conversion (IDNA through libidn; plain ASCII names are checked here
// without calling libidn, with the same result), the check of a host set by a
// caller, and the host and port texts the writers print.
#ifndef QTA_SRC_URI_HOST_DETAIL_H_
#define QTA_SRC_URI_HOST_DETAIL_H_

#include <string>
#include <string_view>

#include "qta/uri/escape.h"
#include "qta/uri/host.h"
#include "qta/uri/uri.h"

namespace qta::uri {

// True for the schemes whose authority is opaque text ("qta", "project").
bool hasOpaqueAuthority(std::string_view scheme);

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

namespace detail {

// The bytes of a host name label: ASCII letters, digits and "-".
inline constexpr CharSet kLabelBytes{
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-"};

inline bool isLabelByte(char c) { return kLabelBytes.contains(static_cast<unsigned char>(c)); }

// True when a non-empty host name holds only letters, digits, "-", "." and
// bytes of 128 and above, and neither begins nor (unless allowed) ends with "-".
bool isHostName(std::string_view host, bool allowTrailingHyphen);

// Appends the host as the full form writes it: opaque hosts escaped, IPv6
// addresses in brackets with the zone after "%25", names as stored.
void appendHostForOutput(std::string& out, const URI::Data& data);
// appendHostForOutput, then ":" and the port unless it is the scheme's
// default (or the scheme's authority is opaque).
void appendHostAndPort(std::string& out, const URI::Data& data);

}  // namespace detail
}  // namespace qta::uri

#endif  // QTA_SRC_URI_HOST_DETAIL_H_
