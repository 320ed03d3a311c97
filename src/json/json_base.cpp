// The defaults of JSON's operations, the shared empty values they hand out,
// and the factories.
#include <limits>

#include "qta/json/json.h"

namespace qta {
namespace {

// Created before main() and only read afterwards. They are not declared const
// because the non-const accessors hand them out too; callers must not write
// through those references.
JSON::root sharedEmptyRoot;
JSON::Members sharedEmptyMembers;
JSON::Elements sharedEmptyElements;

}  // namespace

JSON::~JSON() = default;

double JSON::toNumber() const { return std::numeric_limits<double>::quiet_NaN(); }
const JSON* JSON::get(const std::string&) const { return nullptr; }
JSON* JSON::get(const std::string&) { return nullptr; }
JSON* JSON::set(const std::string&, root) { return nullptr; }
void JSON::remove(const std::string&) {}
std::size_t JSON::size() const { return 0; }
const JSON* JSON::at(std::size_t) const { return nullptr; }
JSON* JSON::at(std::size_t) { return nullptr; }
JSON::root JSON::take(std::size_t) { return nullptr; }
JSON::root JSON::take(const std::string&) { return nullptr; }
JSON::root& JSON::slot(std::size_t) { return sharedEmptyRoot; }
JSON::root& JSON::emptySlot() { return sharedEmptyRoot; }
JSON* JSON::push(root) { return nullptr; }
void JSON::append(root) {}
bool JSON::empty() const { return true; }
void JSON::reverse() {}
const JSON::Members& JSON::members() const { return sharedEmptyMembers; }
JSON::Members& JSON::members() { return sharedEmptyMembers; }
const JSON::Members& JSON::constMembers() const { return sharedEmptyMembers; }
const JSON::Elements& JSON::elements() const { return sharedEmptyElements; }
JSON::Elements& JSON::elements() { return sharedEmptyElements; }
std::string JSON::join(const std::string&) const { return std::string(); }

namespace json {

JSON::root makeNull() { return std::make_unique<JSONNull>(); }
JSON::root makeBoolean(int value) { return std::make_unique<JSONBoolean>(value); }
JSON::root makeNumber(double value) { return std::make_unique<JSONNumber>(value); }
JSON::root makeString(const std::string& text) { return std::make_unique<JSONString>(text); }
JSON::root makeArray() { return std::make_unique<JSONArray>(); }
JSON::root makeObject() { return std::make_unique<JSONObject>(); }

}  // namespace json
}  // namespace qta
