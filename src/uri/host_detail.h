// Host helpers shared by the parser, checkHost and the writers.
#ifndef QTA_SRC_URI_HOST_DETAIL_H_
#define QTA_SRC_URI_HOST_DETAIL_H_

#include <string>
#include <string_view>

#include "qta/uri/escape.h"
#include "qta/uri/uri.h"

namespace qta::uri::detail {

// The bytes of a host name label: ASCII letters, digits and "-".
inline constexpr CharSet kLabelBytes{
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-"};

inline bool isLabelByte(char c) { return kLabelBytes.contains(static_cast<unsigned char>(c)); }

// True when a non-empty host name holds only letters, digits, "-", "." and
// bytes of 128 and above, and neither begins nor (unless allowed) ends with "-".
bool isHostName(std::string_view host, bool allowTrailingHyphen);

// hostForOutput and hostAndPort, appended to `out`.
void appendHostForOutput(std::string& out, const URI::Data& data);
void appendHostAndPort(std::string& out, const URI::Data& data);

}  // namespace qta::uri::detail

#endif  // QTA_SRC_URI_HOST_DETAIL_H_
