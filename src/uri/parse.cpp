#include "uri/parse.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "qta/uri/escape.h"
#include "qta/uri/host.h"
#include "uri/data_uri.h"
#include "uri/escape_append.h"
#include "uri/host_detail.h"
#include "uri/placeholder.h"

namespace qta::uri {
namespace {

constexpr CharSet kLetters{"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"};
constexpr CharSet kSchemeChars = kLetters | CharSet("0123456789+-.");
constexpr CharSet kAuthorityEnd{"/?#"};
constexpr CharSet kHash{"#"};
constexpr CharSet kBrackets{"[]"};
constexpr CharSet kNotInHost{"[]@"};

bool containsAny(std::string_view text, const CharSet& set) {
  return std::any_of(text.begin(), text.end(),
                     [&](char c) { return set.contains(static_cast<unsigned char>(c)); });
}

bool allowsEmptyHost(std::string_view scheme) {
  return scheme == "file" || scheme == "udp" || scheme == "rtp";
}

// "[address]" or "[address%25zone]" into data.host ("address%zone").
bool parseIPv6Literal(std::string_view address, std::string& host) {
  if (!isIPv6Address(address)) return false;
  const size_t percent = address.find('%');
  if (percent == std::string_view::npos) {
    host.assign(address);
    return true;
  }
  if (address.size() - percent < 4 || address.substr(percent + 1, 2) != "25") return false;
  const std::string_view zone = address.substr(percent + 3);
  if (containsAny(zone, kNotInHost)) return false;
  host.assign(address.substr(0, percent + 1));
  const size_t zoneStart = host.size();
  if (!detail::appendPercentDecoded(host, zone, TemplateMode::kOff)) return false;
  return std::all_of(host.begin() + static_cast<std::ptrdiff_t>(zoneStart), host.end(),
                     detail::isLabelByte);
}

bool parsePort(std::string_view text, uint32_t& port) {
  if (text.empty()) return false;
  uint32_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + static_cast<uint32_t>(c - '0');
    if (value >= 65536) return false;
  }
  port = value;
  return true;
}

// The host and port part of an authority (after any "@").
bool parseHostAndPort(URI::Data& data, std::string_view text) {
  if (text.empty()) return true;
  std::string& host = data.host;
  if (hasOpaqueAuthority(data.scheme)) {
    if (!detail::appendPercentDecoded(host, text, TemplateMode::kOff) || host.empty()) return false;
    return std::all_of(host.begin(), host.end(),
                       [](char c) { return static_cast<unsigned char>(c) >= 32; });
  }
  std::string_view portText;
  bool hasPort = false;
  if (text[0] == '[') {
    const size_t close = text.find(']', 1);
    if (close == std::string_view::npos) return false;
    const std::string_view after = text.substr(close + 1);
    if (!after.empty()) {
      if (after[0] != ':') return false;
      hasPort = true;
      portText = after.substr(1);
    }
    if (!parseIPv6Literal(text.substr(1, close - 1), host)) return false;
  } else {
    size_t colon = 0;
    bool escaped = false;
    for (; colon < text.size() && text[colon] != ':'; ++colon) {
      if (kNotInHost.contains(static_cast<unsigned char>(text[colon]))) return false;
      escaped |= text[colon] == '%';
    }
    if (colon < text.size()) {
      hasPort = true;
      portText = text.substr(colon + 1);
    }
    const std::string_view name = text.substr(0, colon);
    if (!escaped) {
      host.assign(name);
    } else if (!detail::appendPercentDecoded(host, name, TemplateMode::kOff)) {
      return false;
    }
    if (host.empty()) {
      if (!allowsEmptyHost(data.scheme)) return false;
    } else if (!detail::isHostName(host, false) || !toAsciiHost(host, false)) {
      return false;
    }
  }
  return !hasPort || parsePort(portText, data.port);
}

bool parseInto(std::string_view text, TemplateMode templateMode, URI::Data& out) {
  if (text.size() >= 2 && text[0] == '/' && text[1] == '/') {
    // A network-path reference names a file on a server: "//srv/a" is "file://srv/a".
    std::string withScheme = "file:";
    withScheme += text;
    return parseInto(withScheme, templateMode, out);
  }
  bool hasAuthority = false;
  const std::optional<size_t> afterAuthority =
      parseSchemeAndAuthority(out, text, &out.userInfo, hasAuthority);
  if (!afterAuthority) return false;
  const std::string_view rest = text.substr(*afterAuthority);
  if (!out.scheme.empty()) {
    if (!out.userInfo.empty()) {
      if (containsAny(out.userInfo, kBrackets)) return false;
      const std::string raw = std::move(out.userInfo);
      out.userInfo.clear();
      detail::appendNormalized(out.userInfo, raw, kUserInfoDecodeSet, kUserInfoKeepSet,
                               TemplateMode::kOff);
    }
    // A query or fragment needs at least "/" after an authority.
    if (hasAuthority && !rest.empty() && rest[0] != '/') return false;
  }
  if (out.scheme == "data") {
    return out.host.empty() && out.userInfo.empty() && readDataURI(out, rest);
  }

  const std::optional<size_t> afterPath = parsePath(rest, templateMode, out.path);
  if (!afterPath) return false;
  size_t pos = *afterPath;
  if (pos < rest.size() && rest[pos] == '?') {
    detail::PlaceholderFinder placeholders(rest);
    const size_t end = detail::findStop(rest, pos + 1, kHash, templateMode, placeholders);
    const std::string_view query = rest.substr(pos + 1, end - pos - 1);
    if (!hasValidEscapes(query, templateMode)) return false;
    out.query.reserve(query.size());
    detail::appendNormalized(out.query, query, kQueryDecodeSet, kQueryKeepSet, templateMode);
    pos = end;
  }
  if (pos < rest.size()) {  // at "#"
    const std::string_view fragment = rest.substr(pos + 1);
    if (!hasValidEscapes(fragment, templateMode)) return false;
    out.fragment.reserve(fragment.size());
    detail::appendNormalized(out.fragment, fragment, kFragmentDecodeSet, kFragmentKeepSet,
                             templateMode);
  }
  removeDotSegments(out.path, !out.scheme.empty() && hasAuthority);
  return true;
}

}  // namespace

std::optional<size_t> parseSchemeAndAuthority(URI::Data& data, std::string_view text,
                                              std::string* userInfo, bool& hasAuthority) {
  data.scheme.clear();
  data.host.clear();
  data.port = 0;
  hasAuthority = false;
  if (userInfo != nullptr) userInfo->clear();
  if (text.empty() || !kLetters.contains(static_cast<unsigned char>(text[0]))) return 0;
  size_t colon = 1;
  while (colon < text.size() && kSchemeChars.contains(static_cast<unsigned char>(text[colon]))) {
    ++colon;
  }
  if (colon == text.size() || text[colon] != ':') return 0;
  data.scheme.assign(text.data(), colon);
  for (char& c : data.scheme) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }

  const size_t authorityStart = colon + 3;
  if (text.size() < authorityStart || text[colon + 1] != '/' || text[colon + 2] != '/') {
    return colon + 1;
  }
  hasAuthority = true;
  size_t end = authorityStart;
  while (end < text.size() && !kAuthorityEnd.contains(static_cast<unsigned char>(text[end]))) {
    ++end;
  }
  std::string_view hostAndPort = text.substr(authorityStart, end - authorityStart);
  const size_t at = hostAndPort.find('@');
  if (at != std::string_view::npos) {
    if (userInfo != nullptr) userInfo->assign(hostAndPort.substr(0, at));
    hostAndPort.remove_prefix(at + 1);
  }
  if (!parseHostAndPort(data, hostAndPort)) return std::nullopt;
  if (!data.host.empty() && data.port == 0) data.port = defaultPort(data.scheme);
  return end;
}

std::optional<size_t> parsePath(std::string_view text, TemplateMode templateMode, URI::Path& path) {
  path.absolute = false;
  path.trailingSlash = false;
  path.segments.clear();
  if (text.empty() || text[0] == '?' || text[0] == '#') return 0;
  // Most paths have a few segments: one allocation holds them.
  path.segments.reserve(4);
  detail::PlaceholderFinder placeholders(text);
  size_t i = 0;
  if (text[0] == '/') {
    path.absolute = true;
    i = 1;
  }
  // One pass finds the end of the path, splits the segments and notes which
  // of them need decoding.
  size_t segmentStart = i;
  bool escaped = false;
  while (true) {
    const char c = i < text.size() ? text[i] : '?';
    if (c == '/' || c == '?' || c == '#') {
      const bool atEnd = c != '/';
      if (atEnd && segmentStart == i) {
        path.trailingSlash = true;  // the path text ended with "/"
        return i;
      }
      const std::string_view raw = text.substr(segmentStart, i - segmentStart);
      std::string& segment = path.segments.emplace_back();
      if (!escaped) {
        segment.assign(raw);
      } else if (!detail::appendPercentDecoded(segment, raw, templateMode)) {
        return std::nullopt;
      }
      if (atEnd) return i;
      segmentStart = ++i;
      escaped = false;
      continue;
    }
    if (c == '%') {
      escaped = true;
    } else if (templateMode == TemplateMode::kOn && c == '[') {
      const size_t placeholderEnd = placeholders.endAt(i);
      if (placeholderEnd != std::string_view::npos) {
        i = placeholderEnd;
        continue;
      }
    }
    ++i;
  }
}

void removeDotSegments(URI::Path& path, bool rooted) {
  std::vector<std::string>& segments = path.segments;
  const size_t count = segments.size();
  size_t kept = 0;
  for (size_t i = 0; i < count; ++i) {
    const bool last = i + 1 == count;
    if (segments[i] == ".") {
      if (last) path.trailingSlash = true;
      continue;
    }
    if (segments[i] == "..") {
      if (kept > 0 && segments[kept - 1] != "..") {
        --kept;
        if (last) path.trailingSlash = true;
        continue;
      }
      if (rooted) continue;  // nothing lies above the root
    }
    if (kept != i) segments[kept] = std::move(segments[i]);
    ++kept;
  }
  segments.erase(segments.begin() + static_cast<std::ptrdiff_t>(kept), segments.end());
  if (rooted) {
    path.absolute = true;
    if (segments.empty()) path.trailingSlash = true;
  }
}

}  // namespace qta::uri

namespace qta {

bool URI::parse(std::string_view text, TemplateMode templateMode, Data& out) {
  out = Data();
  if (uri::parseInto(text, templateMode, out)) return true;
  out = Data();
  return false;
}

}  // namespace qta
