// Null, boolean, number and string nodes.
#include <string>

#include "json/number_text.h"
#include "json/tree_ops.h"
#include "qta/json/json.h"

namespace qta {
namespace {

// Appends `value` as "%.16g" writes it in the C locale.
void appendNumber(std::string& out, double value) {
  char buffer[json::detail::kNumberTextMax];
  out.append(buffer, json::detail::formatNumber(value, buffer));
}

}  // namespace

JSONNull::~JSONNull() = default;
bool JSONNull::toBoolean() const { return false; }
double JSONNull::toNumber() const { return 0; }
std::string JSONNull::toString() const { return "null"; }
void JSONNull::write(std::string& out, int) const { out.append("null", 4); }
JSON::root JSONNull::clone() const { return std::make_unique<JSONNull>(); }

JSONBoolean::~JSONBoolean() = default;
bool JSONBoolean::toBoolean() const { return value; }
double JSONBoolean::toNumber() const { return value ? 1 : 0; }
std::string JSONBoolean::toString() const { return value ? "true" : "false"; }
void JSONBoolean::write(std::string& out, int) const {
  if (value) {
    out.append("true", 4);
  } else {
    out.append("false", 5);
  }
}
JSON::root JSONBoolean::clone() const { return std::make_unique<JSONBoolean>(value); }

JSONNumber::~JSONNumber() = default;
bool JSONNumber::toBoolean() const { return value < 0 || value > 0; }
double JSONNumber::toNumber() const { return value; }
std::string JSONNumber::toString() const {
  std::string text;
  appendNumber(text, value);
  return text;
}
void JSONNumber::write(std::string& out, int) const { appendNumber(out, value); }
JSON::root JSONNumber::clone() const { return std::make_unique<JSONNumber>(value); }

JSONString::~JSONString() = default;
bool JSONString::toBoolean() const { return !text().empty(); }
double JSONString::toNumber() const { return json::detail::scanNumber(text()); }
std::string JSONString::toString() const { return text(); }
void JSONString::write(std::string& out, int) const { json::detail::writeText(out, text()); }
JSON::root JSONString::clone() const { return std::make_unique<JSONString>(text()); }

}  // namespace qta
