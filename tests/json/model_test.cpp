#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "qta/json/json.h"
#include "qta/json/writer.h"

namespace qta {
namespace {

using json::makeArray;
using json::makeBoolean;
using json::makeNull;
using json::makeNumber;
using json::makeObject;
using json::makeString;

template <typename... Values>
JSON::root arrayOf(Values... values) {
  JSON::root array = makeArray();
  (array->push(std::move(values)), ...);
  return array;
}

std::string text(const JSON& value) { return json::toJSONText(value); }

TEST(JSONModel, EveryKindAnswersTheWholeInterface) {
  struct Row {
    JSON::root value;
    JSON::Type type;
    bool truth;
    double number;  // NaN stands for "is NaN"
    const char* asText;
    bool empty;
  };
  Row rows[] = {
      {makeNull(), JSON::Null, false, 0, "null", true},
      {makeBoolean(7), JSON::Boolean, true, 1, "true", true},
      {makeBoolean(0), JSON::Boolean, false, 0, "false", true},
      {makeNumber(3), JSON::Number, true, 3, "3", true},
      {makeNumber(0.1 + 0.2), JSON::Number, true, 0.1 + 0.2, "0.3", true},
      {makeNumber(-0.0), JSON::Number, false, -0.0, "-0", true},
      {makeNumber(NAN), JSON::Number, false, NAN, "nan", true},
      {makeString("0"), JSON::String, true, 0, "0", true},
      {makeString(""), JSON::String, false, 0, "", true},
      {makeArray(), JSON::Array, true, NAN, "[object Array]", true},
      {makeObject(), JSON::Object, true, NAN, "[object Object]", true},
  };
  for (Row& row : rows) {
    SCOPED_TRACE(row.asText);
    JSON& value = *row.value;
    EXPECT_EQ(value.type, row.type);
    EXPECT_EQ(value.toBoolean(), row.truth);
    if (std::isnan(row.number)) {
      EXPECT_TRUE(std::isnan(value.toNumber()));
    } else {
      EXPECT_EQ(value.toNumber(), row.number);
    }
    EXPECT_EQ(value.toString(), row.asText);
    EXPECT_EQ(value.empty(), row.empty);
    EXPECT_EQ(value.size(), 0u);
    EXPECT_EQ(value.join(","), "");
    EXPECT_EQ(value.get("a"), nullptr);
    EXPECT_EQ(value.take("a"), nullptr);
    EXPECT_EQ(value.emptySlot(), nullptr);
    if (row.type != JSON::Array) {
      EXPECT_EQ(value.at(0), nullptr);
      EXPECT_EQ(value.take(0), nullptr);
      EXPECT_EQ(value.slot(0), nullptr);
      EXPECT_EQ(value.push(makeNull()), nullptr);
      value.append(makeNull());
      value.reverse();
      EXPECT_TRUE(value.elements().empty());
    }
    if (row.type != JSON::Object) {
      EXPECT_EQ(value.set("a", makeNull()), nullptr);
      value.remove("a");
      EXPECT_TRUE(value.members().empty());
      EXPECT_TRUE(value.constMembers().empty());
    }
  }
}

TEST(JSONModel, StringToNumberScansLikeTheCLibrary) {
  const std::pair<const char*, double> cases[] = {
      {"  12.5 \n", 12.5}, {"", 0},    {"12abc", NAN}, {"-0x10", -16}, {"1e3\t\r", 1000},
      {"inf", INFINITY},   {" ", NAN}, {"abc", NAN},   {"1 2", NAN},   {"-infinity", -INFINITY},
  };
  for (const auto& [input, expected] : cases) {
    SCOPED_TRACE(input);
    const double value = JSONString(input).toNumber();
    if (std::isnan(expected)) {
      EXPECT_TRUE(std::isnan(value));
    } else {
      EXPECT_EQ(value, expected);
    }
  }
  EXPECT_TRUE(std::isnan(JSONString(std::string("1\0", 2)).toNumber()));
}

TEST(JSONModel, ObjectSetReplacesAndKeepsKeyOrder) {
  JSON::root object = makeObject();
  JSON* stored = object->set("b", makeNumber(1));
  EXPECT_EQ(object->get("b"), stored);
  object->set("a", makeNumber(2));
  object->set("b", makeString("x"));
  EXPECT_EQ(object->size(), 2u);
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
  EXPECT_EQ(array->size(), 3u);
  // Indexes past the end answer like the defaults instead of reading past.
  EXPECT_EQ(array->at(3), nullptr);
  EXPECT_EQ(array->take(3), nullptr);
  EXPECT_EQ(&array->slot(3), &array->emptySlot());
  EXPECT_EQ(array->at(1), nullptr);
  EXPECT_EQ(array->join(","), "1,null,3");
  EXPECT_EQ(text(*array), "[ 1, null, 3 ]");  // a hole is written as null
  JSON::root object = makeObject();
  object->set("gone", nullptr);
  object->set("kept", std::move(array));
  const JSON::root copy = object->clone();
  EXPECT_EQ(text(*copy), R"({ "kept": [ 1, 3 ] })");
  // Room is made for the source's length, holes included.
  EXPECT_EQ(copy->get("kept")->elements().capacity(), 3u);
}

TEST(JSONModel, EqualComparesDeeply) {
  auto build = [](double last) {
    JSON::root object = makeObject();
    object->set("list", arrayOf(makeString("a"), makeBoolean(1), makeNumber(last)));
    object->set("none", makeNull());
    return object;
  };
  EXPECT_TRUE(json::equal(*build(1), *build(1)));
  EXPECT_FALSE(json::equal(*build(1), *build(2)));
  EXPECT_FALSE(json::equal(*build(NAN), *build(NAN)));
  EXPECT_TRUE(json::equal(JSONNumber(0.0), JSONNumber(-0.0)));
  EXPECT_FALSE(json::equal(JSONString("1"), JSONNumber(1)));
  JSON::root renamed = build(1);
  renamed->set("nonf", renamed->take("none"));
  EXPECT_FALSE(json::equal(*build(1), *renamed));
  JSON::root holed = build(1);
  holed->get("list")->take(0);
  EXPECT_FALSE(json::equal(*build(1), *holed));
  EXPECT_TRUE(json::equal(*holed, *holed));
}

}  // namespace
}  // namespace qta
