// The document model: conversions, edits, defaults, dotted paths, deep trees.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <thread>

#include "json/reference.h"
#include "qta/json/json.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

namespace qta {
namespace {

using namespace json;

template <typename... Values>
JSON::root arrayOf(Values... values) {
  JSON::root array = makeArray();
  (array->push(std::move(values)), ...);
  return array;
}

TEST(JSONModel, EveryKindConvertsAndWritesItself) {
  struct Row {
    JSON::root value;
    JSON::Type type;
    bool truth;
    double number;
    const char *asText, *written;
  };
  Row rows[] = {
      {makeNull(), JSON::Null, false, 0, "null", "null"},
      {makeBoolean(7), JSON::Boolean, true, 1, "true", "true"},
      {makeBoolean(0), JSON::Boolean, false, 0, "false", "false"},
      {makeNumber(-1.5), JSON::Number, true, -1.5, "-1.5", "-1.5"},
      {makeNumber(-0.0), JSON::Number, false, -0.0, "-0", "-0"},
      {makeNumber(NAN), JSON::Number, false, NAN, "nan", "nan"},
      {makeString("0"), JSON::String, true, 0, "0", "\"0\""},
      {makeString(""), JSON::String, false, 0, "", "\"\""},
      {makeArray(), JSON::Array, true, NAN, "[object Array]", "[ ]"},
      {makeObject(), JSON::Object, true, NAN, "[object Object]", "{ }"},
  };
  for (Row& row : rows) {
    SCOPED_TRACE(row.asText);
    JSON& value = *row.value;
    EXPECT_EQ(value.type, row.type);
    EXPECT_EQ(value.toBoolean(), row.truth);
    EXPECT_TRUE(jsonref::sameNumber(value.toNumber(), row.number));
    EXPECT_EQ(value.toString(), row.asText);
    for (int indent : {-1, 0, 3}) EXPECT_EQ(toJSONText(value, indent), row.written);
    EXPECT_EQ(value.asObject() != nullptr, row.type == JSON::Object);
    EXPECT_EQ(value.asArray() != nullptr, row.type == JSON::Array);
    EXPECT_TRUE(value.empty());
  }
}

// Writes through the non-const defaults of `node`, a scalar. True when they
// were empty when handed out and the read-only defaults of `other` stay empty.
bool writeThroughDefaults(JSON& node, const JSON& other) {
  JSON::Members& members = node.members();
  JSON::Elements& elements = node.elements();
  JSON::root& slot = node.slot(0);
  const bool wereEmpty = members.empty() && elements.empty() && !slot && !node.emptySlot();
  members["x"] = makeNull();
  elements.push_back(makeNull());
  slot = makeNull();
  return wereEmpty && other.members().empty() && other.constMembers().empty() &&
         other.elements().empty();
}

// Writes through defaults late in its thread's exit, possibly after that
// thread's scratch values were freed: they must be made afresh, and freed.
struct LateWriter {
  ~LateWriter() { writeThroughDefaults(*makeNumber(1), JSONNull()); }
};
thread_local LateWriter lateWriter;

TEST(ConcurrentJSONDefaults, WritesThroughDefaultsReachNoOtherNodeOrThread) {
  const JSON::root number = makeNumber(1), string = makeString("s");
  bool isolated[2] = {true, true};
  auto writeAndCheck = [&](int thread) {
    (void)&lateWriter;  // in a new thread: made before the scratch, destroyed after it
    for (int round = 0; round < 1000; ++round) {
      isolated[thread] &=
          writeThroughDefaults(*number, *string) && writeThroughDefaults(*string, *number);
    }
  };
  std::thread other(writeAndCheck, 1);
  writeAndCheck(0);
  other.join();
  EXPECT_TRUE(isolated[0] && isolated[1]);
}

TEST(JSONModel, ObjectSetReplacesAndTakeErases) {
  JSON::root object = makeObject();
  const JSON* stored = object->set("b", makeNumber(1));
  EXPECT_EQ(object->get("b"), stored);
  object->set("a", makeNumber(2));
  object->set("b", makeString("x"));
  EXPECT_EQ(object->take("a")->toNumber(), 2);
  EXPECT_EQ(object->take("a"), nullptr);
  EXPECT_EQ(toJSONText(*object), R"({ "b": "x" })");
}

TEST(JSONModel, AppendSplicesArraysWherePushNests) {
  JSON::root array = arrayOf(makeNumber(1));
  array->push(arrayOf(makeNumber(2), makeNull()));
  array->append(arrayOf(makeNumber(3), makeNull()));
  array->append(makeString("s"));
  EXPECT_EQ(toJSONText(*array), R"([ 1, [ 2, null ], 3, null, "s" ])");
}

TEST(JSONModel, TakeLeavesHolesThatCloneSkips) {
  JSON::root array = arrayOf(makeNumber(1), makeNumber(2), makeNumber(3));
  EXPECT_EQ(array->take(1)->toNumber(), 2);
  EXPECT_EQ(array->at(3), nullptr);  // past the end: no read outside the vector
  array->slot(3) = makeNull();       // a scratch slot, not part of the array
  EXPECT_EQ(array->join(","), "1,null,3");
  EXPECT_EQ(toJSONText(*array), "[ 1, null, 3 ]");
  JSON::root object = makeObject();
  object->set("gone", nullptr);
  object->set("kept", std::move(array));
  EXPECT_EQ(toJSONText(*object->clone()), R"({ "kept": [ 1, 3 ] })");
}

TEST(JSONModel, EqualComparesDeeply) {
  const JSON::root list = arrayOf(makeString("a"), makeNumber(0.0), makeNull());
  JSON::root other = list->clone();
  other->slot(1) = makeNumber(-0.0);
  EXPECT_TRUE(equal(*list, *other));
  other->take(2);  // a hole differs from any value but equals a hole
  EXPECT_FALSE(equal(*list, *other));
  EXPECT_TRUE(equal(*other, *other));
  EXPECT_FALSE(equal(JSONNumber(NAN), JSONNumber(NAN)));
  EXPECT_FALSE(equal(JSONString("1"), JSONNumber(1)));
  JSONObject a, b;
  a.set("k", makeNull());
  b.set("j", makeNull());
  EXPECT_FALSE(equal(a, b));
}

TEST(JSONPath, CreatingWalkBuildsWhatIsMissing) {
  JSON::root root;
  JSON::root& slot = path(root, "a.2.b");
  EXPECT_EQ(slot, nullptr);
  EXPECT_EQ(toJSONText(*root), R"({ "a": [ null, null, { "b": null } ] })");
  slot = makeNumber(7);
  EXPECT_EQ(find(*root, "a.2.b")->toNumber(), 7);
  set(root, "a.x", makeString("s"));  // replaces the array: wrong kind
  set(root, "a..c", makeBoolean(1));  // replaces the object; "" is index 0
  EXPECT_EQ(toJSONText(*root), R"({ "a": [ { "c": true } ] })");
  set(root, "list.3", makeNumber(3));  // a last index past the end grows the array too
  EXPECT_EQ(toJSONText(*root->get("list")), "[ null, null, null, 3 ]");
  EXPECT_THROW(path(root, "list.99999999999999999999999.x"), std::length_error);
}

TEST(JSONPath, FindNeverCreates) {
  JSON::root root;
  set(root, "a.0", makeNumber(1));
  set(root, "s", makeString("text"));
  const std::pair<const char*, bool> cases[] = {
      {"a.0", true},  {"a", true},  {"a.5", false}, {"a.x", false}, {"s.0", false},
      {"s.x", false}, {"b", false}, {"", false},    {"a.", true},   {"a.0.0", false},
  };
  for (const auto& [dotted, present] : cases) {
    EXPECT_EQ(find(*root, dotted) != nullptr, present) << dotted;
  }
  EXPECT_EQ(toJSONText(*root), R"({ "a": [ 1 ], "s": "text" })");
}

TEST(JSONPath, TakeLeavesAnEmptySlot) {
  JSON::root root;
  set(root, "a.1.b", makeNumber(5));
  EXPECT_EQ(take(*root, "a.1.b")->toNumber(), 5);
  EXPECT_EQ(take(*root, "a.1.b"), nullptr);
  EXPECT_EQ(find(*root, "a.1.b"), nullptr);
  EXPECT_EQ(root->get("a")->at(1)->size(), 1u);  // the member stays, empty
  EXPECT_NE(take(*root, "a.0"), nullptr);
  EXPECT_EQ(find(*root, "a.0"), nullptr);  // an empty slot on the way
  EXPECT_EQ(take(*root, "a.9"), nullptr);
}

// A million levels deep: no whole-tree operation may recurse once per level.
class DeepDocument : public testing::TestWithParam<JSON::Type> {};

TEST_P(DeepDocument, DestroyCloneWriteAndCompare) {
  constexpr int kDepth = 1000000;
  const bool isArray = GetParam() == JSON::Array;
  JSON::root document = makeNumber(1);  // [[...[1]...]] or {"k":{"k":...{"k":1}...}}
  for (int level = 0; level < kDepth; ++level) {
    JSON::root outer = isArray ? makeArray() : makeObject();
    isArray ? outer->push(std::move(document)) : outer->set("k", std::move(document));
    document = std::move(outer);
  }
  JSON::root copy = document->clone();
  EXPECT_TRUE(equal(*document, *copy));
  const std::string text = toJSONText(*document);
  const std::string open = isArray ? "[ " : "{ \"k\": ";
  ASSERT_EQ(text.size(), kDepth * (open.size() + 2) + 1);
  EXPECT_EQ(text.find('1'), kDepth * open.size());
  // Change the innermost value: the trees now differ at the bottom only.
  JSON* node = copy.get();
  while (node->type != JSON::Number) node = isArray ? node->at(0) : node->get("k");
  static_cast<JSONNumber*>(node)->value = 2;
  EXPECT_FALSE(equal(*document, *copy));
}

INSTANTIATE_TEST_SUITE_P(Kinds, DeepDocument, testing::Values(JSON::Array, JSON::Object));

}  // namespace
}  // namespace qta
