#include "qta/uri/query.h"

#include <string>
#include <string_view>

#include "qta/uri/escape.h"
#include "uri/escape_append.h"
#include "uri/placeholder.h"

namespace qta::uri {
namespace {

constexpr CharSet kAmpersand{"&"};
// Escapes the query builder leaves decoded, and characters it keeps literal.
constexpr CharSet kQueryParameterDecodeSet{"*:/?@"};
constexpr CharSet kQueryParameterKeepSet{";[]"};
constexpr CharSet kEquals{"="};

}  // namespace

QueryParameters queryParameters(const URI& uri) {
  QueryParameters parameters;
  parseQuery(uri.query(), TemplateMode::kOff, parameters);
  return parameters;
}

void parseQuery(std::string_view query, TemplateMode templateMode, QueryParameters& out) {
  out.clear();
  detail::PlaceholderFinder placeholders(query);
  size_t start = 0;
  while (start <= query.size()) {
    const size_t end = detail::findStop(query, start, kAmpersand, templateMode, placeholders);
    const std::string_view part = query.substr(start, end - start);
    start = end + 1;
    if (part.empty() || part[0] == '=') continue;
    // The part lies inside the query, so its placeholders are the query's.
    const size_t partStart = end - part.size();
    const size_t nameSize =
        detail::findStop(query.substr(0, end), partStart, kEquals, templateMode, placeholders) -
        partStart;
    std::string name = percentDecodeLeniently(part.substr(0, nameSize), templateMode);
    if (out.count(name) != 0) continue;  // the first value is kept
    const std::string_view value = nameSize < part.size() ? part.substr(nameSize + 1) : "";
    out.emplace(std::move(name), percentDecodeLeniently(value, templateMode));
  }
}

std::string buildQuery(const QueryParameters& parameters, TemplateMode templateMode) {
  std::string out;
  for (const auto& [name, value] : parameters) {
    if (name.empty()) continue;
    if (!out.empty()) out += '&';
    detail::appendNormalized(out, name, kQueryParameterDecodeSet, kQueryParameterKeepSet,
                             templateMode);
    out += '=';
    detail::appendNormalized(out, value, kQueryParameterDecodeSet, kQueryParameterKeepSet,
                             templateMode);
  }
  return out;
}

}  // namespace qta::uri
