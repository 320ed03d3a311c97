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

#include "qta/export.h"
#include "qta/uri/template_mode.h"
#include "qta/uri/uri.h"

namespace qta::uri {

using QueryParameters = std::map<std::string, std::string>;

// The parameters of the URI's query.
QTA_EXPORT QueryParameters queryParameters(const URI& uri);

// Clears `out` and reads the parameters of a query text (without "?"). In
// template mode "&" and "=" inside placeholders do not split, and placeholders
// are not decoded.
QTA_EXPORT void parseQuery(std::string_view query, TemplateMode templateMode, QueryParameters& out);

// The query text ("a=1&b=x%26y", without "?") for `parameters`, in the map's
// order. Names and values are normalised (normalizeComponent) with the decode
// set "*:/?@" and the keep set ";[]": "&", "=", "#", "+" and a "%" that begins
// no escape are always escaped, and an escape already present ("%41") is read
// as an escape, so write "%25" for a literal "%". Parameters with an empty
// name are left out.
QTA_EXPORT std::string buildQuery(const QueryParameters& parameters,
                                  TemplateMode templateMode = TemplateMode::kOff);

}  // namespace qta::uri

#endif  // QTA_URI_QUERY_H_
