// The defaults of JSON's operations, the empty values they hand out by
// reference, and the factories.
#include <limits>
#include <memory>
#include <utility>

#include "json/thread_exit.h"
#include "qta/json/json.h"

namespace qta {
namespace {

// The read-only defaults of the const accessors. Made on first use, so they
// are ready even for callers that run before main().
const JSON::Members& readOnlyMembers() {
  static const JSON::Members empty;
  return empty;
}
const JSON::Elements& readOnlyElements() {
  static const JSON::Elements empty;
  return empty;
}

// What the non-const defaults hand out: values of the calling thread alone.
struct Scratch {
  JSON::root root;
  JSON::Members members;
  JSON::Elements elements;
};

// A plain pointer, which outlives every thread-exit handler, rather than a
// thread_local object, which could be reached after its destructor has run
// (from another object's destructor late in the thread's exit).
thread_local Scratch* threadScratch = nullptr;

void releaseScratch(void*) noexcept { delete std::exchange(threadScratch, nullptr); }

// The calling thread's scratch values, made on first use together with a
// thread-exit handler that frees them. A call after that handler ran makes
// and registers fresh ones, which are then freed as well.
Scratch& scratch() {
  if (threadScratch == nullptr) {
    auto fresh = std::make_unique<Scratch>();
    json::detail::atThreadExit(releaseScratch);
    threadScratch = fresh.release();
  }
  return *threadScratch;
}

// Empties a scratch value before it is handed out: what a caller wrote
// through an earlier hand-out is deleted rather than seen by the next caller.
template <typename Value>
Value& emptied(Value& value) {
  value = Value();
  return value;
}

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
JSON::root& JSON::slot(std::size_t) { return emptied(scratch().root); }
JSON::root& JSON::emptySlot() { return emptied(scratch().root); }
JSON* JSON::push(root) { return nullptr; }
void JSON::append(root) {}
bool JSON::empty() const { return true; }
void JSON::reverse() {}
const JSON::Members& JSON::members() const { return readOnlyMembers(); }
JSON::Members& JSON::members() { return emptied(scratch().members); }
const JSON::Members& JSON::constMembers() const { return readOnlyMembers(); }
const JSON::Elements& JSON::elements() const { return readOnlyElements(); }
JSON::Elements& JSON::elements() { return emptied(scratch().elements); }
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
