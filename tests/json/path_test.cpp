#include "qta/json/path.h"

#include <gtest/gtest.h>

#include "qta/json/writer.h"

namespace qta {
namespace {

TEST(JSONPath, CreatingWalkBuildsWhatIsMissing) {
  JSON::root root;
  JSON::root& slot = json::path(root, "a.2.b");
  EXPECT_EQ(slot, nullptr);
  EXPECT_EQ(json::toJSONText(*root), R"({ "a": [ null, null, { "b": null } ] })");
  slot = json::makeNumber(7);
  EXPECT_EQ(json::find(*root, "a.2.b")->toNumber(), 7);

  // Nodes of the wrong kind are replaced; the empty component is index 0.
  json::set(root, "a.x", json::makeString("s"));
  json::set(root, "a..c", json::makeBoolean(1));
  EXPECT_EQ(json::toJSONText(*root), R"({ "a": [ { "c": true } ] })");

  // A last index past the end grows the array the same way.
  json::set(root, "list.3", json::makeNumber(3));
  EXPECT_EQ(json::toJSONText(*root->get("list")), "[ null, null, null, 3 ]");
  json::set(root, "list.1", json::makeNumber(1));
  EXPECT_EQ(json::toJSONText(*root->get("list")), "[ null, 1, null, 3 ]");
  EXPECT_THROW(json::path(root, "list.99999999999999999999999.x"), std::length_error);
}

TEST(JSONPath, FindNeverCreates) {
  JSON::root root;
  json::set(root, "a.0", json::makeNumber(1));
  json::set(root, "s", json::makeString("text"));
  const std::pair<const char*, bool> cases[] = {
      {"a.0", true},  {"a", true},  {"a.5", false}, {"a.x", false}, {"s.0", false},
      {"s.x", false}, {"b", false}, {"", false},    {"a.", true},   {"a.0.0", false},
  };
  for (const auto& [dotted, present] : cases) {
    EXPECT_EQ(json::find(*root, dotted) != nullptr, present) << dotted;
  }
  EXPECT_EQ(json::toJSONText(*root), R"({ "a": [ 1 ], "s": "text" })");
}

TEST(JSONPath, TakeLeavesAnEmptySlot) {
  JSON::root root;
  json::set(root, "a.1.b", json::makeNumber(5));
  EXPECT_EQ(json::take(*root, "a.1.b")->toNumber(), 5);
  EXPECT_EQ(json::take(*root, "a.1.b"), nullptr);
  EXPECT_EQ(json::find(*root, "a.1.b"), nullptr);
  EXPECT_EQ(root->get("a")->at(1)->size(), 1u);  // the member stays, empty
  EXPECT_NE(json::take(*root, "a.0"), nullptr);
  EXPECT_EQ(json::find(*root, "a.0"), nullptr);  // an empty slot on the way
  EXPECT_EQ(json::take(*root, "a.0.x"), nullptr);
  EXPECT_EQ(json::take(*root, "a.9"), nullptr);
  EXPECT_EQ(root->get("a")->size(), 2u);
}

}  // namespace
}  // namespace qta
