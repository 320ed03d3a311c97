// Parses arbitrary text as a URI, in template mode when the first byte is odd.
// Every accepted URI is written out, and the written text must read back as
// the same URI, except where the rules make that impossible (see
// writtenFormCannotReadBack); for "data" URIs that includes the media type
// and the decoded bytes. The other writers and the query reader run too, so
// that every path through them sees hostile input.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "qta/uri/query.h"
#include "qta/uri/uri.h"
#include "uri/describe.h"

namespace {

// URIs whose full form reads back differently by the rules, not by a fault:
// - a relative path whose first segment holds ":" reads back with a scheme;
// - an absolute path that starts with an empty segment and has no host is
//   written "//...", which reads back as an authority;
// - a relative path that starts with an empty segment is written "/...",
//   which reads back as absolute;
// - with an empty host no authority is written (only "//@" and the port for
//   "udp" and "rtp"), so user info, and a port of any other scheme, are lost;
// - "udp" and "rtp" always get that "//@", so their paths read back rooted: a
//   relative (or empty) path joins the authority and a leading ".." is dropped.
bool writtenFormCannotReadBack(const qta::URI& uri) {
  const qta::URI::Path& path = uri.path();
  const bool firstEmpty = !path.segments.empty() && path.segments.front().empty();
  if (uri.scheme().empty() && !path.absolute && !path.segments.empty() &&
      path.segments.front().find(':') != std::string::npos) {
    return true;
  }
  if (firstEmpty && (!path.absolute || uri.host().empty())) return true;
  if (uri.host().empty()) {
    const bool writesPort = uri.scheme() == "udp" || uri.scheme() == "rtp";
    if (!uri.userInfo().empty() || (uri.port() != 0 && !writesPort)) return true;
    if (writesPort && (!path.absolute || std::find(path.segments.begin(), path.segments.end(),
                                                   "..") != path.segments.end())) {
      return true;
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const qta::TemplateMode templateMode =
      (data[0] & 1) != 0 ? qta::TemplateMode::kOn : qta::TemplateMode::kOff;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::optional<qta::URI> uri = qta::URI::tryParse(text, templateMode);
  if (!uri) return 0;

  const std::string written = uri->toString(templateMode);
  (void)uri->toDisplayString(templateMode);
  (void)uri->rootString();
  (void)uri->localPath();
  (void)qta::uri::queryParameters(*uri);
  qta::uri::QueryParameters parameters;
  qta::uri::parseQuery(text, templateMode, parameters);
  (void)qta::uri::buildQuery(parameters, templateMode);

  if (writtenFormCannotReadBack(*uri)) return 0;
  const std::optional<qta::URI> again = qta::URI::tryParse(written, templateMode);
  if (!again || qtatest::describe(*again) != qtatest::describe(*uri)) {
    std::fprintf(stderr,
                 "written form does not read back\n  parsed:  %s\n  written: %s\n  again:   %s\n",
                 qtatest::describe(*uri).c_str(), written.c_str(),
                 again ? qtatest::describe(*again).c_str() : "(invalid)");
    std::abort();
  }
  return 0;
}
