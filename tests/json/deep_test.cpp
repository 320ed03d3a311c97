// Documents nested a million levels deep: none of the whole-tree operations
// may recurse once per level.
#include <gtest/gtest.h>

#include <string>

#include "qta/json/json.h"
#include "qta/json/writer.h"

namespace qta {
namespace {

constexpr int kDepth = 1000000;

// [[[...[1]...]]] or {"k":{"k":...{"k":1}...}}, `kDepth` containers deep.
JSON::root deepDocument(JSON::Type kind) {
  JSON::root inner = json::makeNumber(1);
  for (int level = 0; level < kDepth; ++level) {
    JSON::root outer = kind == JSON::Array ? json::makeArray() : json::makeObject();
    if (kind == JSON::Array) {
      outer->push(std::move(inner));
    } else {
      outer->set("k", std::move(inner));
    }
    inner = std::move(outer);
  }
  return inner;
}

class DeepDocument : public testing::TestWithParam<JSON::Type> {};

TEST_P(DeepDocument, DestroyCloneWriteAndCompare) {
  const bool isArray = GetParam() == JSON::Array;
  JSON::root document = deepDocument(GetParam());
  JSON::root copy = document->clone();
  EXPECT_TRUE(json::equal(*document, *copy));

  const std::string text = json::toJSONText(*document);
  const std::string open = isArray ? "[ " : "{ \"k\": ";
  ASSERT_EQ(text.size(), kDepth * (open.size() + 2) + 1);
  EXPECT_EQ(text.compare(0, open.size(), open), 0);
  EXPECT_EQ(text.find('1'), kDepth * open.size());
  EXPECT_EQ(text.substr(text.size() - 3), isArray ? "] ]" : "} }");

  // Change the innermost value: the trees now differ at the bottom only.
  JSON* node = copy.get();
  while (node->type != JSON::Number) node = isArray ? node->at(0) : node->get("k");
  static_cast<JSONNumber*>(node)->value = 2;
  EXPECT_FALSE(json::equal(*document, *copy));
  document.reset();
  copy.reset();
}

INSTANTIATE_TEST_SUITE_P(Kinds, DeepDocument, testing::Values(JSON::Array, JSON::Object));

}  // namespace
}  // namespace qta
