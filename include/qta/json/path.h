// qta/json/path.h: dotted paths into a JSON document ("servers.0.name").
//
// A path is split at every "." into components. A component made only of the
// digits 0-9 (the empty component included) is an array index in base 10; any
// other component is an object key. Components are not unescaped, so a key
// that contains "." cannot be reached by a path.
//
// path() and set() create what is missing and replace nodes of the wrong kind
// (deleting them); take() and find() never create anything. The functions
// keep no state; like every mutation they need exclusive access to the tree.
#ifndef QTA_JSON_PATH_H_
#define QTA_JSON_PATH_H_

#include <string>

#include "qta/export.h"
#include "qta/json/json.h"

namespace qta::json {

// Walks `dottedPath` from `root`, creating as it goes, and returns the slot the
// last component names. At each index component the slot is made an array
// when it does not hold one; at each key component an object likewise. An
// intermediate index at or past the end grows the array to index + 1 with
// nulls below the index and an empty slot at it; a missing intermediate key is
// inserted with an empty slot. The last component's slot is returned as it is:
// a missing key is inserted empty, and an index past the end grows the array
// the same way (the returned slot then being empty). Throws std::length_error
// or std::bad_alloc when an index is too large to grow to.
QTA_EXPORT JSON::root& path(JSON::root& root, const std::string& dottedPath);

// path(), then moves `value` into the slot, deleting what was there.
QTA_EXPORT void set(JSON::root& root, const std::string& dottedPath, JSON::root value);

// Moves the value the path names out of its container and leaves an empty slot
// (the member or element stays). An empty root when any step is missing.
QTA_EXPORT JSON::root take(JSON& root, const std::string& dottedPath);

// The node the path names, or null when a key is absent, an index is out of
// range, a node on the way has the wrong kind or an empty slot is met.
QTA_EXPORT const JSON* find(const JSON& root, const std::string& dottedPath);

}  // namespace qta::json

#endif  // QTA_JSON_PATH_H_
