// qta/uri/relative.h: resolving references against a base URI and making
// URIs relative to a base.
//
// Both work on the parsed components and never read text again. Results are
// new URI values (or copies sharing an argument's data when nothing changes);
// the functions are pure and any number of threads may call them at once.
#ifndef QTA_URI_RELATIVE_H_
#define QTA_URI_RELATIVE_H_

#include "qta/export.h"
#include "qta/uri/uri.h"

namespace qta::uri {

// `reference` with its missing parts taken from `base`. A reference of the
// schemes "data", "rtp" and "udp", of another scheme than the base's, or of
// the base's scheme with a host of its own is returned unchanged; one of the
// base's scheme without a host is read as relative ("http:x" against
// "http://h/a/b" gives "http://h/a/x"). A reference with a host keeps its
// authority, path and query; otherwise the base's authority is used. An empty
// path takes the base's path, and the base's query when the reference has
// none. The fragment is always the reference's own.
QTA_EXPORT URI resolve(const URI& reference, const URI& base);

// `uri` without the scheme and authority it shares with `base`, its path made
// relative to the base's directory when both paths are absolute. User info,
// query and fragment stay. `uri` is returned unchanged when either has no
// scheme or the scheme "urn" or "data", or when their origins differ.
QTA_EXPORT URI relativize(const URI& uri, const URI& base);

// The path `reference` denotes in the directory of `basePath`: an absolute
// reference as it is, a relative one after the base's directory segments;
// then "." and ".." are removed. A `rooted` result (one under an authority)
// is absolute and cannot climb above its root.
QTA_EXPORT URI::Path mergePaths(const URI::Path& reference, const URI::Path& basePath, bool rooted);

// The relative path that leads from the directory of `basePath` to `path`:
// the shared leading segments are dropped and one ".." is put in front for
// each directory of the base below them. Both paths should be absolute.
QTA_EXPORT URI::Path relativePath(const URI::Path& path, const URI::Path& basePath);

}  // namespace qta::uri

#endif  // QTA_URI_RELATIVE_H_
