#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <utility>

#include "json/number_reference.h"
#include "qta/json/json.h"
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

std::string text(const JSON& value) { return toJSONText(value); }

TEST(JSONModel, EveryKindConverts) {
  struct Row {
    JSON::root value;
    JSON::Type type;
    bool truth;
    double number;
    const char* asText;
  };
  Row rows[] = {
      {makeNull(), JSON::Null, false, 0, "null"},
      {makeBoolean(7), JSON::Boolean, true, 1, "true"},
      {makeBoolean(0), JSON::Boolean, false, 0, "false"},
      {makeNumber(3), JSON::Number, true, 3, "3"},
      {makeNumber(-0.0), JSON::Number, false, -0.0, "-0"},
      {makeNumber(NAN), JSON::Number, false, NAN, "nan"},
      {makeString("0"), JSON::String, true, 0, "0"},
      {makeString(""), JSON::String, false, 0, ""},
      {makeArray(), JSON::Array, true, NAN, "[object Array]"},
      {makeObject(), JSON::Object, true, NAN, "[object Object]"},
  };
  for (Row& row : rows) {
    SCOPED_TRACE(row.asText);
    JSON& value = *row.value;
    EXPECT_EQ(value.type, row.type);
    EXPECT_EQ(value.toBoolean(), row.truth);
    EXPECT_TRUE(numref::sameNumber(value.toNumber(), row.number));
    EXPECT_EQ(value.toString(), row.asText);
    EXPECT_EQ(value.asObject() != nullptr, row.type == JSON::Object);
    EXPECT_EQ(value.asArray() != nullptr, row.type == JSON::Array);
    // What applies to other kinds only answers null and changes nothing.
    EXPECT_EQ(value.get("a"), nullptr);
    EXPECT_EQ(value.take("a"), nullptr);
    EXPECT_EQ(value.at(0), nullptr);
    EXPECT_EQ(value.take(0), nullptr);
    if (row.type != JSON::Array) {
      EXPECT_EQ(value.push(makeNull()), nullptr);
      value.append(makeNull());
      value.reverse();
    }
    if (row.type != JSON::Object) {
      EXPECT_EQ(value.set("a", makeNull()), nullptr);
    }
    value.remove("a");
    EXPECT_TRUE(value.empty());
    EXPECT_EQ(value.size(), 0u);
    EXPECT_EQ(value.join(","), "");
  }
}

// Writes through every non-const default of `node`, a scalar.
void writeThroughDefaults(JSON& node, int mark) {
  node.members()["x"] = makeNumber(mark);
  node.elements().push_back(makeNumber(mark));
  node.slot(0) = makeNumber(mark);
}

// Whether every default of `node` (read as const and as mutable) is empty.
bool defaultsAreEmpty(JSON& node) {
  const JSON& readOnly = node;
  return readOnly.members().empty() && readOnly.constMembers().empty() &&
         readOnly.elements().empty() && node.members().empty() && node.elements().empty() &&
         !node.slot(0) && !node.emptySlot();
}

TEST(JSONModel, WritesThroughDefaultsReachNoOtherNode) {
  JSON::root number = makeNumber(1), string = makeString("s"), array = makeArray();
  writeThroughDefaults(*number, 1);
  array->slot(5) = makeNull();  // past the end
  EXPECT_TRUE(defaultsAreEmpty(*string));
  EXPECT_TRUE(defaultsAreEmpty(*number));
  EXPECT_TRUE(array->empty());
  EXPECT_EQ(array->slot(5), nullptr);
}

// Writes through a default from a destructor that runs late in its thread's
// exit, when that thread's scratch values may have been freed already.
struct LateWriter {
  ~LateWriter() { writeThroughDefaults(*makeNumber(1), 2); }
};
thread_local LateWriter lateWriter;

TEST(ConcurrentJSONDefaults, EachThreadWritesOnlyItsOwn) {
  const JSON::root shared = makeNumber(1);
  auto writeAndCheck = [&shared](int mark, bool& isolated) {
    (void)&lateWriter;  // made before the scratch values, so destroyed after them
    isolated = true;
    for (int round = 0; round < 2000; ++round) {
      JSON::Members& members = shared->members();
      isolated &= members.empty();
      members["x"] = makeNumber(mark);
      writeThroughDefaults(*shared, mark);
      isolated &= std::as_const(*shared).members().empty();
    }
  };
  bool isolated[2];
  std::thread other(writeAndCheck, 1, std::ref(isolated[1]));
  writeAndCheck(0, isolated[0]);
  other.join();
  EXPECT_TRUE(isolated[0] && isolated[1]);
  EXPECT_TRUE(defaultsAreEmpty(*shared));
}

TEST(JSONModel, ObjectSetReplacesAndKeepsKeyOrder) {
  JSON::root object = makeObject();
  JSON* stored = object->set("b", makeNumber(1));
  EXPECT_EQ(object->get("b"), stored);
  object->set("a", makeNumber(2));
  object->set("b", makeString("x"));
  EXPECT_EQ(text(*object), R"({ "a": 2, "b": "x" })");
  EXPECT_EQ(object->take("a")->toNumber(), 2);
  EXPECT_EQ(object->take("a"), nullptr);
  object->remove("b");
  EXPECT_TRUE(object->empty());
}

TEST(JSONModel, AppendSplicesArraysWherePushNests) {
  JSON::root pushed = arrayOf(makeNumber(1));
  JSON::root appended = pushed->clone();
  pushed->push(arrayOf(makeNumber(4), makeNumber(5), makeNull()));
  appended->append(arrayOf(makeNumber(4), makeNumber(5), makeNull()));
  appended->append(makeString("s"));
  EXPECT_EQ(text(*pushed), "[ 1, [ 4, 5, null ] ]");
  EXPECT_EQ(text(*appended), R"([ 1, 4, 5, null, "s" ])");
  appended->reverse();
  EXPECT_EQ(appended->join("|"), "s|null|5|4|1");
}

TEST(JSONModel, TakeLeavesHolesThatCloneSkips) {
  JSON::root array = arrayOf(makeNumber(1), makeNumber(2), makeNumber(3));
  EXPECT_EQ(array->take(1)->toNumber(), 2);
  EXPECT_EQ(array->at(1), nullptr);
  // Indexes past the end answer like the defaults instead of reading past.
  EXPECT_EQ(array->at(3), nullptr);
  EXPECT_EQ(array->take(3), nullptr);
  EXPECT_EQ(array->join(","), "1,null,3");
  EXPECT_EQ(text(*array), "[ 1, null, 3 ]");  // a hole is written as null
  JSON::root object = makeObject();
  object->set("gone", nullptr);
  object->set("kept", std::move(array));
  EXPECT_EQ(text(*object->clone()), R"({ "kept": [ 1, 3 ] })");
}

TEST(JSONModel, EqualComparesDeeply) {
  auto build = [](double last) {
    JSON::root object = makeObject();
    object->set("list", arrayOf(makeString("a"), makeBoolean(1), makeNumber(last)));
    object->set("none", makeNull());
    return object;
  };
  EXPECT_TRUE(equal(*build(1), *build(1)));
  EXPECT_FALSE(equal(*build(1), *build(2)));
  EXPECT_FALSE(equal(*build(NAN), *build(NAN)));
  EXPECT_TRUE(equal(JSONNumber(0.0), JSONNumber(-0.0)));
  EXPECT_FALSE(equal(JSONString("1"), JSONNumber(1)));
  JSON::root renamed = build(1);
  renamed->set("nonf", renamed->take("none"));
  EXPECT_FALSE(equal(*build(1), *renamed));
  JSON::root holed = build(1);
  holed->get("list")->take(0);
  EXPECT_FALSE(equal(*build(1), *holed));
  EXPECT_TRUE(equal(*holed, *holed));
}

}  // namespace
}  // namespace qta
