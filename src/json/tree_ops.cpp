// Iterative teardown, deep copy and comparison of JSON trees.
#include "json/tree_ops.h"

#include <new>
#include <utility>

namespace qta::json::detail {
namespace {

// Moves `child` onto `pending` when it holds children of its own. Destructors
// must not throw: when the work list cannot grow, the child stays where it is
// and is destroyed recursively with its parent.
void detachChild(JSON::root& child, std::vector<JSON::root>& pending) noexcept {
  if (!child || !hasChildren(*child)) return;
  try {
    pending.push_back(std::move(child));  // leaves `child` alone if it throws
  } catch (const std::bad_alloc&) {
  }
}

// Detaches the children that hold children and destroys the others (scalars
// and empty containers, whose destructors do not recurse).
void detachChildren(JSON::Elements& elements, std::vector<JSON::root>& pending) {
  for (JSON::root& child : elements) detachChild(child, pending);
  elements.clear();
}

void detachChildren(JSON::Members& members, std::vector<JSON::root>& pending) {
  for (auto& member : members) detachChild(member.second, pending);
  members.clear();
}

// Takes apart every tree on `pending`; each node is deleted once it is empty.
void destroyPending(std::vector<JSON::root>& pending) {
  while (!pending.empty()) {
    JSON::root node = std::move(pending.back());
    pending.pop_back();
    if (node->type == JSON::Array) {
      detachChildren(static_cast<JSONArray&>(*node), pending);
    } else {
      detachChildren(static_cast<JSONObject&>(*node), pending);
    }
  }
}

// Containers nested this deep are destroyed by plain recursion, which needs
// no work list (and so no allocation) and frees each child as it goes; deeper
// ones fall back on the work list, so the machine stack stays bounded. The
// limit keeps the recursion to some tens of KiB of stack.
constexpr int kRecursiveTeardownDepth = 128;

// How many destructors of containers are running on this thread, nested.
constinit thread_local int teardownDepth = 0;

template <typename Children>
void destroyChildrenOf(Children& children) {
  if (teardownDepth < kRecursiveTeardownDepth) {
    ++teardownDepth;
    children.clear();
    --teardownDepth;
    return;
  }
  std::vector<JSON::root> pending;
  detachChildren(children, pending);
  destroyPending(pending);
}

// A copy of `source` without its children: a whole scalar, or an empty
// container (an array with room for all of the source's elements).
JSON::root copyNode(const JSON& source) {
  switch (source.type) {
    case JSON::Array: {
      auto copy = std::make_unique<JSONArray>();
      copy->reserve(source.size());
      return copy;
    }
    case JSON::Object:
      return std::make_unique<JSONObject>();
    default:
      return source.clone();
  }
}

}  // namespace

void destroyChildren(JSON::Elements& elements) { destroyChildrenOf(elements); }
void destroyChildren(JSON::Members& members) { destroyChildrenOf(members); }

JSON::root cloneTree(const JSON& source) {
  JSON::root copy = copyNode(source);
  // Containers whose copies still wait for their children. Each is filled in
  // one go, so the order of the work list does not matter.
  std::vector<std::pair<const JSON*, JSON*>> pending;
  if (hasChildren(source)) pending.emplace_back(&source, copy.get());
  while (!pending.empty()) {
    const auto [from, to] = pending.back();
    pending.pop_back();
    if (from->type == JSON::Array) {
      JSONArray& target = static_cast<JSONArray&>(*to);
      for (const JSON::root& child : from->elements()) {
        if (!child) continue;  // empty slots are left out of the copy
        target.push_back(copyNode(*child));
        if (hasChildren(*child)) pending.emplace_back(child.get(), target.back().get());
      }
    } else {
      JSONObject& target = static_cast<JSONObject&>(*to);
      for (const auto& [key, child] : from->members()) {
        if (!child) continue;
        // Keys arrive in ascending order: appending at the end is constant time.
        const auto member = target.emplace_hint(target.end(), key, copyNode(*child));
        if (hasChildren(*child)) pending.emplace_back(child.get(), member->second.get());
      }
    }
  }
  return copy;
}

}  // namespace qta::json::detail

namespace qta::json {
namespace {

bool equalScalars(const JSON& a, const JSON& b) {
  switch (a.type) {
    case JSON::Boolean:
      return static_cast<const JSONBoolean&>(a).value == static_cast<const JSONBoolean&>(b).value;
    case JSON::Number:
      return static_cast<const JSONNumber&>(a).value == static_cast<const JSONNumber&>(b).value;
    case JSON::String:
      return static_cast<const JSONString&>(a).text() == static_cast<const JSONString&>(b).text();
    default:
      return true;
  }
}

}  // namespace

bool equal(const JSON& a, const JSON& b) {
  std::vector<std::pair<const JSON*, const JSON*>> pending{{&a, &b}};
  while (!pending.empty()) {
    const auto [left, right] = pending.back();
    pending.pop_back();
    if (!left || !right) {
      if (left != right) return false;
      continue;
    }
    if (left->type != right->type || left->size() != right->size()) return false;
    if (left->type == JSON::Array) {
      const JSON::Elements& leftElements = left->elements();
      const JSON::Elements& rightElements = right->elements();
      for (std::size_t i = 0; i < leftElements.size(); ++i) {
        pending.emplace_back(leftElements[i].get(), rightElements[i].get());
      }
    } else if (left->type == JSON::Object) {
      auto rightMember = right->members().begin();
      for (const auto& [key, value] : left->members()) {
        if (key != rightMember->first) return false;
        pending.emplace_back(value.get(), rightMember->second.get());
        ++rightMember;
      }
    } else if (!equalScalars(*left, *right)) {
      return false;
    }
  }
  return true;
}

}  // namespace qta::json
