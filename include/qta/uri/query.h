// qta/uri/query.h: query parameters read into, and built from, a map.
//
// Reading: the query is split at "&"; empty parts and parts that begin with
// "=" are skipped; the name is the text before the first "=" and the value the
// text after it; a part without "=" is a name with an empty value. Names and
// values are percent-decoded leniently: an invalid escape is copied as it is
// and "+" stays "+". When a name occurs again, its first value is kept.
//
// The functions are pure; the map is the caller's. Any number of threads may
// call them at once on different maps.
#ifndef QTA_URI_QUERY_H_
#define QTA_URI_QUERY_H_

#include <map>
#include <string>
#include <string_view>

#include "qta/uri/escape.h"
#include "qta/uri/uri.h"

namespace qta::uri {

using QueryParameters = std::map<std::string, std::string>;

// Escapes the query builder leaves decoded, and characters it keeps literal.
// "&", "=", "#", "+" and "%" are always escaped in names and values.
inline constexpr CharSet kQueryParameterDecodeSet{"*:/?@"};
inline constexpr CharSet kQueryParameterKeepSet{";[]"};

// The parameters of the URI's query.
QueryParameters queryParameters(const URI& uri);

// Clears `out` and reads the parameters of a query text (without "?"). In
// template mode "&" and "=" inside placeholders do not split, and placeholders
// are not decoded.
void parseQuery(std::string_view query, TemplateMode templateMode, QueryParameters& out);

// The query text ("a=1&b=x%26y", without "?") for `parameters`, in the map's
// order. Names and values are normalised with the parameter sets above, so an
// escape already present ("%41") is read as an escape; write "%25" for a
// literal "%". Parameters with an empty name are left out.
std::string buildQuery(const QueryParameters& parameters,
                       TemplateMode templateMode = TemplateMode::kOff);

}  // namespace qta::uri

#endif  // QTA_URI_QUERY_H_
