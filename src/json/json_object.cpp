// Object nodes.
#include <iterator>

#include "json/tree_ops.h"
#include "qta/json/json.h"

namespace qta {

JSONObject::~JSONObject() { json::detail::destroyChildren(*this); }

bool JSONObject::toBoolean() const { return true; }
std::string JSONObject::toString() const { return "[object Object]"; }
void JSONObject::write(std::string& out, int indent) const {
  json::detail::writeTree(out, *this, indent);
}
JSON::root JSONObject::clone() const { return json::detail::cloneTree(*this); }

const JSON* JSONObject::get(const std::string& key) const {
  const auto member = find(key);
  return member == Members::end() ? nullptr : member->second.get();
}

JSON* JSONObject::get(const std::string& key) {
  const auto member = find(key);
  return member == Members::end() ? nullptr : member->second.get();
}

JSON* JSONObject::set(const std::string& key, root value) {
  // The lookup position is the insertion hint: keys set in ascending order
  // are inserted in constant time, and a key above every present one (as in
  // a document written in key order) is placed at the end without a search.
  auto member = Members::end();
  if (!Members::empty() && !(std::prev(member)->first < key)) member = lower_bound(key);
  if (member != Members::end() && member->first == key) {
    member->second = std::move(value);
  } else {
    member = emplace_hint(member, key, std::move(value));
  }
  return member->second.get();
}

void JSONObject::remove(const std::string& key) { erase(key); }
std::size_t JSONObject::size() const { return Members::size(); }

JSON::root JSONObject::take(const std::string& key) {
  const auto member = find(key);
  if (member == Members::end()) return nullptr;
  root value = std::move(member->second);
  erase(member);
  return value;
}

bool JSONObject::empty() const { return Members::empty(); }
const JSON::Members& JSONObject::members() const { return *this; }
JSON::Members& JSONObject::members() { return *this; }
const JSON::Members& JSONObject::constMembers() const { return *this; }

}  // namespace qta
