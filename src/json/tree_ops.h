// Whole-tree operations that run on explicit work lists instead of recursion,
// so documents of any depth are destroyed, copied, compared and written with
// a small, fixed amount of machine stack.
#ifndef QTA_JSON_TREE_OPS_H_
#define QTA_JSON_TREE_OPS_H_

#include <string>
#include <vector>

#include "qta/json/json.h"

namespace qta::json::detail {

// True for an array or object that has at least one child slot.
inline bool hasChildren(const JSON& node) {
  switch (node.type) {
    case JSON::Array:
      return !static_cast<const JSONArray&>(node).JSON::Elements::empty();
    case JSON::Object:
      return !static_cast<const JSONObject&>(node).JSON::Members::empty();
    default:
      return false;
  }
}

// Destroys the children of a container about to be deleted: children that
// hold children themselves are taken apart on a work list first, so no
// destructor ever runs on a non-empty nested container.
void destroyChildren(JSON::Elements& elements);
void destroyChildren(JSON::Members& members);

// The deep copy behind JSON::clone() for arrays and objects.
JSON::root cloneTree(const JSON& source);

// The writer behind JSON::write() for arrays and objects.
void writeTree(std::string& out, const JSON& value, int indent);

// Appends a string value (up to its first NUL) quoted and escaped.
void writeText(std::string& out, const std::string& text);

}  // namespace qta::json::detail

#endif  // QTA_JSON_TREE_OPS_H_
