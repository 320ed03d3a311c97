// The parser: grammar, strings, numbers against the C library, depth, and the
// round trip through the writer. fuzz/json_parse.cpp runs the round trip and
// fuzz/json_number.cpp the number check on random input.
#include "qta/json/parser.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <cmath>
#include <cstring>
#include <string>
#include <utility>

#include "json/reference.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

namespace qta {
namespace {

// The one-line text of what `text` parses to, or "FAIL".
std::string reparsed(const std::string& text) {
  const JSON::root value = json::parse(text);
  return value ? json::toJSONText(*value) : "FAIL";
}

TEST(JSONParser, Grammar) {
  const std::pair<std::string, std::string> cases[] = {
      {R"( {"b":1, "a":[true,false,null]} )", R"({ "a": [ true, false, null ], "b": 1 })"},
      {"\t\r\n[ 1 ,\"x\" ]\n", R"([ 1, "x" ])"},
      {R"({"a":1,"a":2})", R"({ "a": 2 })"},
      {R"({"a":[1,2],"a":{}})", R"({ "a": { } })"},
      {R"({"a":{"b":[[],{}]},"c":"d"})", R"({ "a": { "b": [ [ ], { } ] }, "c": "d" })"},
      // After an inner container closes, the outer one's own closer and
      // separator rules apply again.
      {R"([[1],{"a":[2]},3])", R"([ [ 1 ], { "a": [ 2 ] }, 3 ])"},
      {R"([{"a":1}})", "FAIL"},
      {R"({"a":[1]])", "FAIL"},
      {R"([{"a":1},"b":2])", "FAIL"},
      // A key and a value that both need decoding are held apart.
      {R"({"k\n":"v\t","k\t":{"\"":"\\"}})", R"({ "k\t": { "\"": "\\" }, "k\n": "v\t" })"},
      {"{}", "{ }"},
      {"[]", "[ ]"},
      {"null", "null"},
      {"\"\"", "\"\""},
      {"-0", "-0"},
      // The end of the text after "[", "{" or a trailing comma completes the
      // container; anywhere else it is a failure, also one level further out.
      {"[", "[ ]"},
      {"[ \n", "[ ]"},
      {"{", "{ }"},
      {"[1,2,", "[ 1, 2 ]"},
      {R"({"a":1,)", R"({ "a": 1 })"},
      {"[1,2, ", "FAIL"},
      {"[1,2", "FAIL"},
      {R"({"a":1)", "FAIL"},
      {R"({"a":)", "FAIL"},
      {R"({"a")", "FAIL"},
      {"[[", "FAIL"},
      {"[[1,", "FAIL"},
      {R"({"a":[)", "FAIL"},
      {R"({"a":{)", "FAIL"},
      {"[1,]", "FAIL"},
      {"[,1]", "FAIL"},
      {R"({"a":1,})", "FAIL"},
      {"[1 2]", "FAIL"},
      {"[1}", "FAIL"},
      {R"({"a":1])", "FAIL"},
      {"]", "FAIL"},
      {R"({"":1})", "FAIL"},
      {R"({"a" 1})", "FAIL"},
      {R"({a:1})", "FAIL"},
      {R"({"a":1 "b":2})", "FAIL"},
      {"nul", "FAIL"},
      {"nulll", "FAIL"},
      {"True", "FAIL"},
      {"true false", "FAIL"},
      {"[truex]", "FAIL"},
      {"", "FAIL"},
      {" \t\r\n", "FAIL"},
      {"\xEF\xBB\xBF{}", "FAIL"},  // a byte order mark is not white space
      {"[1,\f2]", "FAIL"},
      {"[1,\v2]", "FAIL"},
      {"\x01", "FAIL"},
      // The text ends at its first NUL.
      {std::string("[1]\0garbage", 11), "[ 1 ]"},
      {std::string("[1,\0 2]", 7), "[ 1 ]"},
      {std::string("[1\0]", 4), "FAIL"},
      {std::string("\"a\0\"", 4), "FAIL"},
  };
  for (const auto& [input, expected] : cases) EXPECT_EQ(reparsed(input), expected) << input;
}

TEST(JSONParser, StringsAndEscapes) {
  const char* const kFail = "\x01";  // stands for a failure below
  const std::pair<std::string, std::string> cases[] = {
      {R"("plain text")", "plain text"},
      {R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
      {R"("\u00e9\u00E9")", "\xC3\xA9\xC3\xA9"},
      {R"("\u0041\u07FF\uFFFF")", "A\xDF\xBF\xEF\xBF\xBF"},
      {R"("\uD83D\uDE00")", "\xF0\x9F\x98\x80"},
      {R"("\uD83D x")", "? x"},
      {R"("\uD83D\n")", "?\n"},
      {R"("\uD83D\u0041")", "A"},       // a high surrogate before a non-low unit is dropped
      {R"("\uD83D\uD83D\uDE00")", ""},  // two highs pair with each other and vanish
      {R"("\uDE00")", ""},
      {R"("\uDE00\uD83D")", "?"},
      {"\"raw \xFF\xC0 bytes\"", "raw \xFF\xC0 bytes"},
      {R"("a\u0000b")", kFail},
      {R"("\uD83D\u0000")", std::string(1, '\0')},
      {R"("\q")", kFail},
      {R"("\u12")", kFail},
      {R"("\u12G4")", kFail},
      {R"("\x41")", kFail},
      {"\"tab\there\"", kFail},
      {"\"line\nbreak\"", kFail},
      {"\"unterminated", kFail},
      {"\"ends in escape\\", kFail},
  };
  for (const auto& [input, expected] : cases) {
    const JSON::root value = json::parse(input);
    if (expected == kFail) {
      EXPECT_EQ(value, nullptr) << input;
    } else {
      ASSERT_NE(value, nullptr) << input;
      EXPECT_EQ(value->toString(), expected) << input;
      // As a key the same bytes come out, unless they are empty.
      const JSON::root object = json::parse("{" + input + ":1}");
      EXPECT_EQ(object == nullptr, expected.empty()) << input;
      if (object) {
        EXPECT_NE(object->get(expected), nullptr) << input;
      }
    }
  }
}

// Plain string bytes and white space are tested many bytes at a time: runs of
// every length up to a few blocks must end exactly where they end, also right
// before the end of the text.
TEST(JSONParser, RunsOfEveryLengthEndWhereTheyShould) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string run(length, 'a');
    std::string space;
    for (std::size_t i = 0; i < length; ++i) space += " \t\r\n"[i % 4];
    const std::string quoted = "\"" + run + "\"";
    EXPECT_EQ(reparsed(quoted), quoted) << length;
    EXPECT_EQ(reparsed("[" + quoted + "]"), "[ " + quoted + " ]") << length;
    const JSON::root escaped = json::parse("\"" + run + "\\n" + run + "\"");
    ASSERT_NE(escaped, nullptr) << length;
    EXPECT_EQ(escaped->toString(), run + "\n" + run) << length;
    EXPECT_EQ(reparsed("\"" + run + "\x1F\""), "FAIL") << length;
    EXPECT_EQ(reparsed("\"" + run), "FAIL") << length;
    EXPECT_EQ(reparsed(space + "[" + space + "1" + space + "," + space + "2]" + space), "[ 1, 2 ]")
        << length;
    EXPECT_EQ(reparsed(space + "[1," + space + "\v2]"), "FAIL") << length;
    EXPECT_EQ(reparsed("[1" + space), "FAIL") << length;
  }
}

TEST(JSONParser, ParseStringAppendsAndStopsAfterTheQuote) {
  const char* text = R"("a\tb" rest)";
  std::string out = ">";
  EXPECT_TRUE(json::parseString(text, out));
  EXPECT_EQ(out, ">a\tb");
  EXPECT_STREQ(text, " rest");

  text = R"("ab\q")";
  out.clear();
  EXPECT_FALSE(json::parseString(text, out));
  EXPECT_EQ(out, "ab");  // what was decoded before the bad escape

  text = "x";
  EXPECT_FALSE(json::parseString(text, out));
}

TEST(JSONParser, ParseValueLeavesTheCursorAfterTheValue) {
  const std::pair<std::string, std::string> cases[] = {
      {"  12,3", ",3"},  {"true]", "]"}, {"[1, 2] x", " x"}, {"{}}", "}"},
      {"\"s\"\"", "\""}, {"-inf,", ","}, {"[", ""},          {"[1,", ""},
  };
  for (const auto& [input, rest] : cases) {
    const char* cursor = input.c_str();
    EXPECT_NE(json::parseValue(cursor), nullptr) << input;
    EXPECT_EQ(cursor, rest) << input;
  }
  const char* cursor = "[1 x";
  EXPECT_EQ(json::parseValue(cursor), nullptr);
}

// The value and length of a number are those of sscanf("%lg%n") in the C
// locale: what starts with a digit or "-" is scanned, and fails where the scan
// converts nothing.
void expectScannedAsCLibraryDoes(const std::string& text) {
  double expected = 0;
  const std::size_t consumed = jsonref::scanfPrefix(text.c_str(), expected);
  const char* cursor = text.c_str();
  const JSON::root value = json::parseValue(cursor);
  if (consumed == 0) {
    EXPECT_EQ(value, nullptr) << text;
    return;
  }
  ASSERT_NE(value, nullptr) << text;
  ASSERT_EQ(value->type, JSON::Number) << text;
  EXPECT_TRUE(jsonref::sameNumber(value->toNumber(), expected)) << text;
  EXPECT_EQ(static_cast<std::size_t>(cursor - text.c_str()), consumed) << text;
}

TEST(JSONParserNumbers, ScanAsTheCLibraryDoes) {
  const char* const cases[] = {"0",
                               "-0",
                               "007",
                               "1.",
                               "1.e5",
                               "-0x10",
                               "0x1A",
                               "0X1p-2",
                               "0x",
                               "0x.p1",
                               "00x1",
                               "1e",
                               "1e+",
                               "1E-",
                               "1e5e",
                               "1e5.",
                               "1.5.",
                               "1e999",
                               "-1e999",
                               "1e-400",
                               "-inf",
                               "-Infinity",
                               "-infin",
                               "-nan",
                               "-NAN",
                               "-nan(12)",
                               "-nan(",
                               "-",
                               "-.5",
                               "-+1",
                               "--1",
                               "12abc",
                               "1_000",
                               "1,5",
                               "5e-324",
                               "2.4703282292062328e-324",
                               "1.7976931348623159e308",
                               "9007199254740993",
                               "0.1e-307",
                               "123456789012345678901234567890e-20"};
  for (const char* text : cases) expectScannedAsCLibraryDoes(text);
  // Where a number cannot start, there is none.
  for (const char* text : {"+1", ".5", "inf", "nan", "x1"}) EXPECT_EQ(json::parse(text), nullptr);
}

TEST(JSONParserNumbers, MatchTheCLibraryOnAMillionCornerTexts) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  constexpr int kCount = 100000;  // the sanitizers slow the C library's scan down
#else
  constexpr int kCount = 1000000;
#endif
  jsonref::NumberTexts texts(20240611);
  for (int i = 0; i < kCount; ++i) {
    const std::string text = texts.next();
    expectScannedAsCLibraryDoes(text);
    if (testing::Test::HasFailure()) break;  // one wrong text tells enough
  }
}

TEST(JSONParserNumbers, IgnoreTheProgramsLocale) {
  const std::string previous = setlocale(LC_ALL, nullptr);
  ASSERT_NE(setlocale(LC_ALL, "de_DE.UTF-8"), nullptr) << "the de_DE.UTF-8 locale is not installed";
  EXPECT_EQ(reparsed("[0,5]"), "[ 0, 5 ]");  // the comma is a separator, never a point
  EXPECT_EQ(reparsed("[0.5, 1e3, -0x1.8p1]"), "[ 0.5, 1000, -3 ]");
  setlocale(LC_ALL, previous.c_str());
}

TEST(JSONParser, NestsAMillionLevelsDeep) {
  constexpr std::size_t kDepth = 1000000;
  const std::string arrays(kDepth, '[');
  const JSON::root open = json::parse(arrays);  // only the innermost may meet the end
  EXPECT_EQ(open, nullptr);
  const JSON::root closed = json::parse(arrays + std::string(kDepth, ']'));
  ASSERT_NE(closed, nullptr);
  std::string path;
  for (std::size_t i = 1; i < kDepth; ++i) path += "0.";
  path.pop_back();
  const JSON* innermost = json::find(*closed, path);
  ASSERT_NE(innermost, nullptr);
  EXPECT_TRUE(innermost->empty());

  std::string objects;
  for (std::size_t i = 0; i < kDepth; ++i) objects += "{\"a\":";
  EXPECT_EQ(json::parse(objects), nullptr);
  EXPECT_EQ(json::parse(objects + "{"), nullptr);
  const JSON::root nested = json::parse(objects + "1" + std::string(kDepth, '}'));
  ASSERT_NE(nested, nullptr);
  const std::string text = json::toJSONText(*nested);
  EXPECT_EQ(text.size(), kDepth * std::strlen("{ \"a\":  }") + 1);
}

// Every value written in either layout parses back to an equal tree.
TEST(JSONParser, ReadsWhatTheWriterWrites) {
  JSON::root document;
  json::set(document, "name", json::makeString("caf\xC3\xA9 \"quoted\" \\ \x01\x1F\t/"));
  json::set(document, "list.0", json::makeNumber(-0.0));
  json::set(document, "list.1", json::makeNumber(1e300));
  json::set(document, "list.2", json::makeNumber(4.9406564584124654e-324));
  json::set(document, "list.3.deep.0", json::makeBoolean(1));
  json::set(document, "empty.array", json::makeArray());
  json::set(document, "empty.object", json::makeObject());
  json::set(document, "none", json::makeNull());
  for (const int indent : {-1, 0, 3}) {
    const JSON::root again = json::parse(json::toJSONText(*document, indent));
    ASSERT_NE(again, nullptr) << indent;
    EXPECT_TRUE(json::equal(*document, *again)) << indent;
  }
}

}  // namespace
}  // namespace qta
