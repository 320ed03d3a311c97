// Array nodes.
#include <algorithm>
#include <iterator>

#include "json/tree_ops.h"
#include "qta/json/json.h"

namespace qta {

JSONArray::~JSONArray() { json::detail::destroyChildren(*this); }

bool JSONArray::toBoolean() const { return true; }
std::string JSONArray::toString() const { return "[object Array]"; }
void JSONArray::write(std::string& out, int indent) const {
  json::detail::writeTree(out, *this, indent);
}
JSON::root JSONArray::clone() const { return json::detail::cloneTree(*this); }

std::size_t JSONArray::size() const { return Elements::size(); }
// An index past the end answers as the base class does rather than reading
// outside the vector.
const JSON* JSONArray::at(std::size_t index) const {
  return index < Elements::size() ? (*this)[index].get() : nullptr;
}
JSON* JSONArray::at(std::size_t index) {
  return index < Elements::size() ? (*this)[index].get() : nullptr;
}
JSON::root JSONArray::take(std::size_t index) {
  return index < Elements::size() ? std::move((*this)[index]) : nullptr;
}
JSON::root& JSONArray::slot(std::size_t index) {
  return index < Elements::size() ? (*this)[index] : JSON::slot(index);
}

JSON* JSONArray::push(root value) {
  push_back(std::move(value));
  return back().get();
}

void JSONArray::append(root value) {
  if (value && value->type == Array) {
    Elements& source = static_cast<JSONArray&>(*value);
    insert(end(), std::make_move_iterator(source.begin()), std::make_move_iterator(source.end()));
    return;  // `value`, now holding only empty slots, is deleted here
  }
  push_back(std::move(value));
}

bool JSONArray::empty() const { return Elements::empty(); }
void JSONArray::reverse() { std::reverse(begin(), end()); }
const JSON::Elements& JSONArray::elements() const { return *this; }
JSON::Elements& JSONArray::elements() { return *this; }

std::string JSONArray::join(const std::string& separator) const {
  std::string text;
  for (auto element = begin(); element != end(); ++element) {
    if (element != begin()) text += separator;
    text += *element ? (*element)->toString() : "null";
  }
  return text;
}

}  // namespace qta
