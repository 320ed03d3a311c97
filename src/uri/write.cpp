// The text forms of a URI: full, display and root, and the local file path.
#include <string>
#include <string_view>

#include "qta/text/base64.h"
#include "qta/uri/escape.h"
#include "qta/uri/host.h"
#include "qta/uri/uri.h"
#include "uri/escape_append.h"
#include "uri/host_detail.h"

namespace qta {
namespace {

// kLocal is the local file path: segments as they are.
enum class Form { kFull, kDisplay, kLocal };

// Characters the writers leave literal besides the unreserved ones. A path
// segment escapes "+" and "@" on purpose.
constexpr uri::CharSet kPathSegmentSet{"!$&'()*,;=:"};
constexpr uri::CharSet kMediaTypeSet{"!$&'()*+=;:@/[]\""};

// Characters whose escapes the display form shows decoded.
constexpr uri::CharSet kUserInfoDisplaySet{"@:/?#[]"};
constexpr uri::CharSet kQueryDisplaySet{"&=#"};
constexpr uri::CharSet kFragmentDisplaySet{"#"};

bool writesEmptyAuthority(std::string_view scheme) { return scheme == "udp" || scheme == "rtp"; }

// Bytes a display path segment shows as they are: all but control bytes and
// the ones that would change how the text reads back ("%", "/", "?", "#").
constexpr uri::CharSet displaySegmentSet() {
  uri::CharSet set;
  for (int c = 32; c < 256; ++c) {
    if (c != '%' && c != '/' && c != '?' && c != '#') set.add(static_cast<unsigned char>(c));
  }
  return set;
}

void appendSegment(std::string& out, std::string_view segment, Form form,
                   TemplateMode templateMode) {
  if (form == Form::kFull) {
    uri::detail::appendPercentEncoded(out, segment, kPathSegmentSet, templateMode);
    return;
  }
  if (form == Form::kLocal) {
    out += segment;
    return;
  }
  static constexpr uri::CharSet kShown = displaySegmentSet();
  uri::detail::appendPercentEncoded(out, segment, kShown, templateMode);
}

void appendPath(std::string& out, const URI::Path& path, Form form, TemplateMode templateMode) {
  if (path.absolute) out += '/';
  for (size_t i = 0; i < path.segments.size(); ++i) {
    if (i > 0) out += '/';
    appendSegment(out, path.segments[i], form, templateMode);
  }
  if (path.trailingSlash) out += path.segments.empty() ? (path.absolute ? "" : "./") : "/";
}

size_t estimatedSize(const URI::Data& data) {
  size_t size = data.scheme.size() + data.userInfo.size() + data.host.size() + data.query.size() +
                data.fragment.size() + 16;
  for (const std::string& segment : data.path.segments) size += segment.size() + 1;
  return size;
}

std::string write(const URI::Data& data, Form form, TemplateMode templateMode) {
  std::string out;
  out.reserve(estimatedSize(data));
  if (!data.scheme.empty()) {
    out += data.scheme;
    out += ':';
  }
  // A "data" URI is its media type and payload: nothing else is written, even
  // when the payload is missing (a "data" scheme set on another URI).
  if (data.scheme == "data") {
    if (data.content == nullptr) return out;
    uri::detail::appendPercentEncoded(out, data.content->mediaType, kMediaTypeSet,
                                      TemplateMode::kOff);
    if (form == Form::kDisplay) {
      out += ",[...]";  // the payload is never shown
    } else {
      out += ";base64,";
      out += text::base64Encode(data.content->bytes.data(), data.content->bytes.size());
    }
    return out;
  }
  if (!data.host.empty()) {
    out += "//";
    if (!data.userInfo.empty()) {
      if (form == Form::kFull) {
        out += data.userInfo;
      } else {
        uri::detail::appendDisplayDecoded(out, data.userInfo, kUserInfoDisplaySet,
                                          TemplateMode::kOff);
      }
      out += '@';
    }
    uri::detail::appendHostAndPort(out, data);
  } else if (writesEmptyAuthority(data.scheme)) {
    out += "//@";  // an any-address listener: "udp://@:1234"
    uri::detail::appendHostAndPort(out, data);
  }
  if (!data.path.empty()) appendPath(out, data.path, form, templateMode);
  if (!data.query.empty()) {
    out += '?';
    if (form == Form::kFull) {
      out += data.query;
    } else {
      uri::detail::appendDisplayDecoded(out, data.query, kQueryDisplaySet, templateMode);
    }
  }
  if (!data.fragment.empty()) {
    out += '#';
    if (form == Form::kFull) {
      out += data.fragment;
    } else {
      uri::detail::appendDisplayDecoded(out, data.fragment, kFragmentDisplaySet, templateMode);
    }
  }
  return out;
}

}  // namespace

std::string URI::toString(TemplateMode templateMode) const {
  return write(data(), Form::kFull, templateMode);
}

std::string URI::toDisplayString(TemplateMode templateMode) const {
  return write(data(), Form::kDisplay, templateMode);
}

std::string URI::rootString() const {
  const Data& data = this->data();
  std::string out;
  if (!data.scheme.empty()) {
    out += data.scheme;
    out += ':';
  }
  if (!data.host.empty()) {
    out += "//";
    uri::detail::appendHostAndPort(out, data);
    out += '/';
  }
  return out;
}

std::string URI::localPath() const {
  const Data& data = this->data();
  if ((!data.scheme.empty() && data.scheme != "file") ||
      (!data.host.empty() && data.host != "localhost")) {
    return std::string();
  }
  std::string out;
  appendPath(out, data.path, Form::kLocal, TemplateMode::kOff);
  return out;
}

}  // namespace qta
