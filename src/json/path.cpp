// Dotted paths: creating walks (path, set) and plain lookups (take, find).
#include "qta/json/path.h"

#include <string_view>

namespace qta::json {
namespace {

// One component of a dotted path: an array index or an object key.
struct Component {
  std::string_view text;
  bool isIndex;
  std::size_t index;  // when isIndex; saturates far above any array's reach
};

Component parseComponent(std::string_view text) {
  constexpr std::size_t kSaturated = JSON::Elements().max_size();
  Component component{text, true, 0};
  for (char c : text) {
    if (c < '0' || c > '9') return Component{text, false, 0};
    const std::size_t digit = static_cast<std::size_t>(c - '0');
    component.index =
        component.index > (kSaturated - digit) / 10 ? kSaturated : component.index * 10 + digit;
  }
  return component;
}

// Calls `visit(component, isLast)` for each component of `dottedPath` in turn
// until it returns false; returns whether every call returned true.
template <typename Visit>
bool forEachComponent(const std::string& dottedPath, Visit visit) {
  std::string_view rest = dottedPath;
  for (;;) {
    const std::size_t dot = rest.find('.');
    const bool last = dot == std::string_view::npos;
    if (!visit(parseComponent(rest.substr(0, dot)), last)) return false;
    if (last) return true;
    rest.remove_prefix(dot + 1);
  }
}

// Makes `slot` hold a node of the given kind, replacing anything else.
JSON& ensureKind(JSON::root& slot, JSON::Type type) {
  if (!slot || slot->type != type) slot = type == JSON::Array ? makeArray() : makeObject();
  return *slot;
}

// Grows `elements` so that `index` is inside it: nulls below the index and an
// empty slot at it.
void growTo(JSON::Elements& elements, std::size_t index) {
  if (index < elements.size()) return;
  std::size_t first = elements.size();
  elements.resize(index + 1);  // throws length_error for an index beyond reach
  for (; first < index; ++first) elements[first] = makeNull();
}

// The child of `node` that `component` names without creating anything, or
// null when `node` has the wrong kind or the child is absent.
JSON::root* existingSlot(JSON& node, const Component& component) {
  if (component.isIndex) {
    if (node.type != JSON::Array || component.index >= node.size()) return nullptr;
    return &node.slot(component.index);
  }
  if (node.type != JSON::Object) return nullptr;
  JSON::Members& members = node.members();
  const auto member = members.find(std::string(component.text));
  return member == members.end() ? nullptr : &member->second;
}

}  // namespace

JSON::root& path(JSON::root& root, const std::string& dottedPath) {
  JSON::root* slot = &root;
  forEachComponent(dottedPath, [&slot](const Component& component, bool) {
    if (component.isIndex) {
      JSON::Elements& elements = ensureKind(*slot, JSON::Array).elements();
      growTo(elements, component.index);
      slot = &elements[component.index];
    } else {
      JSON::Members& members = ensureKind(*slot, JSON::Object).members();
      std::string key(component.text);
      auto member = members.lower_bound(key);
      if (member == members.end() || member->first != key) {
        member = members.emplace_hint(member, std::move(key), nullptr);
      }
      slot = &member->second;
    }
    return true;
  });
  return *slot;
}

void set(JSON::root& root, const std::string& dottedPath, JSON::root value) {
  path(root, dottedPath) = std::move(value);
}

JSON::root take(JSON& root, const std::string& dottedPath) {
  JSON* node = &root;
  JSON::root* target = nullptr;
  const bool found = forEachComponent(dottedPath, [&](const Component& component, bool last) {
    JSON::root* slot = existingSlot(*node, component);
    if (slot == nullptr || !*slot) return false;
    if (last) {
      target = slot;
    } else {
      node = slot->get();
    }
    return true;
  });
  return found ? std::move(*target) : nullptr;
}

const JSON* find(const JSON& root, const std::string& dottedPath) {
  // The walk only reads; existingSlot() is shared with take(), which writes.
  JSON* node = const_cast<JSON*>(&root);
  const bool found = forEachComponent(dottedPath, [&node](const Component& component, bool) {
    JSON::root* slot = existingSlot(*node, component);
    if (slot == nullptr || !*slot) return false;
    node = slot->get();
    return true;
  });
  return found ? node : nullptr;
}

}  // namespace qta::json
