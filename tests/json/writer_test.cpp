#include "qta/json/writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "qta/json/json.h"

namespace qta {
namespace {

// {"a": [1, 2], "b": {}, "c": [[], {"d": "x"}]}
JSON::root sampleDocument() {
  JSON::root document = json::makeObject();
  JSON* a = document->set("a", json::makeArray());
  a->push(json::makeNumber(1));
  a->push(json::makeNumber(2));
  document->set("b", json::makeObject());
  JSON* c = document->set("c", json::makeArray());
  c->push(json::makeArray());
  c->push(json::makeObject())->set("d", json::makeString("x"));
  return document;
}

TEST(JSONWriter, BothLayouts) {
  const JSON::root document = sampleDocument();
  EXPECT_EQ(json::toJSONText(*document, -1),
            R"({ "a": [ 1, 2 ], "b": { }, "c": [ [ ], { "d": "x" } ] })");
  EXPECT_EQ(json::toJSONText(*document, 0),
            "{\n\t\"a\": [\n\t\t1,\n\t\t2\n\t],\n\t\"b\": { },\n\t\"c\": [\n\t\t[ ],\n"
            "\t\t{\n\t\t\t\"d\": \"x\"\n\t\t}\n\t]\n}");
  // A nested start depth indents the children one deeper and appends.
  std::string out = "x";
  document->get("a")->write(out, 2);
  EXPECT_EQ(out, "x[\n\t\t\t1,\n\t\t\t2\n\t\t]");
  EXPECT_EQ(json::toJSONText(JSONArray(), 3), "[ ]");
  EXPECT_EQ(json::toJSONText(JSONObject(), -1), "{ }");
}

TEST(JSONWriter, ScalarsIgnoreTheIndent) {
  for (int indent : {-1, 0, 5}) {
    EXPECT_EQ(json::toJSONText(JSONNull(), indent), "null");
    EXPECT_EQ(json::toJSONText(JSONBoolean(1), indent), "true");
    EXPECT_EQ(json::toJSONText(JSONBoolean(0), indent), "false");
    EXPECT_EQ(json::toJSONText(JSONNumber(-1.5), indent), "-1.5");
    EXPECT_EQ(json::toJSONText(JSONString("s"), indent), "\"s\"");
  }
}

TEST(JSONWriter, EscapesStrings) {
  const std::pair<std::string, std::string> cases[] = {
      {std::string("\x01\t\x7f", 3), "\"\\u0001\\t\x7f\""},
      {"\"\\/", R"("\"\\/")"},
      {"\b\f\n\r\t\x1f", R"("\b\f\n\r\t\u001F")"},
      {std::string("ab\0cd", 5), R"("ab")"},
      {"caf\xc3\xa9 \xff", "\"caf\xc3\xa9 \xff\""},
      // Long plain runs around escapes exercise the word-at-a-time scan.
      {"0123456789abcdef\"0123456789abcdef\n01234567",
       R"("0123456789abcdef\"0123456789abcdef\n01234567")"},
  };
  for (const auto& [input, expected] : cases) {
    EXPECT_EQ(json::toJSONText(JSONString(input)), expected);
    std::string viaWriteString;
    json::writeString(viaWriteString, input.c_str());
    EXPECT_EQ(viaWriteString, expected);
  }
  // Every single byte: only controls, the quote and the backslash change.
  for (int c = 1; c < 256; ++c) {
    const std::string written = json::toJSONText(JSONString(std::string(1, static_cast<char>(c))));
    const bool escaped = c < 32 || c == '"' || c == '\\';
    EXPECT_EQ(written.size(), escaped ? (c < 32 && written[2] == 'u' ? 8u : 4u) : 3u) << c;
  }
}

TEST(JSONWriter, FindsAnEscapeAtEveryPositionOfShortAndMediumText) {
  // The plain-text scan tests whole and overlapping words; a byte to escape
  // must be found wherever it sits, in text of every length around them.
  for (std::size_t size = 1; size <= 25; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      for (const char special : {'"', '\\', '\x1f'}) {
        std::string text(size, 'a');
        text[at] = special;
        std::string expected(1, '"');
        expected.append(at, 'a');
        expected += special == '\x1f' ? "\\u001F" : std::string{'\\', special};
        expected += std::string(size - at - 1, 'a') + "\"";
        EXPECT_EQ(json::toJSONText(JSONString(text)), expected) << size << " " << at;
      }
    }
  }
}

TEST(JSONWriter, ManySmallAppendsToOneStringStayCheap) {
  // Each append must cost its own length, not the length of the whole string.
  std::string out;
  constexpr int kPieces = 200000;
  for (int i = 0; i < kPieces; ++i) {
    json::writeString(out, "ab");
  }
  EXPECT_EQ(out.size(), kPieces * 4u);
}

TEST(JSONWriter, KeysAreEscapedAndOrderedBytewise) {
  JSONObject object;
  object.set("b\n", json::makeNull());
  object.set("ab", json::makeNull());
  object.set("a", json::makeNull());
  object.set("\xc3", json::makeNull());
  EXPECT_EQ(json::toJSONText(object),
            "{ \"a\": null, \"ab\": null, \"b\\n\": null, \"\xc3\": null }");
}

}  // namespace
}  // namespace qta
