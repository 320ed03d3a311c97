// JSON text on edge cases; fuzz/json_string.cpp and json_number.cpp run the checkers at random.
#include <gtest/gtest.h>
#include <locale.h>

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>

#include "json/reference.h"
#include "qta/json/json.h"
#include "qta/json/writer.h"

namespace qta {
namespace {

TEST(JSONWriter, BothLayouts) {
  const JSON::root document = json::makeObject();  // {"a": [1, {"d": "x"}], "b": {}, "c": []}
  JSON* a = document->set("a", json::makeArray());
  a->push(json::makeNumber(1));
  a->push(json::makeObject())->set("d", json::makeString("x"));
  document->set("b", json::makeObject());
  document->set("c", json::makeArray());
  EXPECT_EQ(json::toJSONText(*document, -1), R"({ "a": [ 1, { "d": "x" } ], "b": { }, "c": [ ] })");
  EXPECT_EQ(json::toJSONText(*document, 0),
            "{\n\t\"a\": [\n\t\t1,\n\t\t{\n\t\t\t\"d\": \"x\"\n\t\t}\n\t],\n\t\"b\": { },\n"
            "\t\"c\": [ ]\n}");
  std::string out = "x";  // a nested start depth indents one deeper, and appends
  a->write(out, 1);
  EXPECT_EQ(out, "x[\n\t\t1,\n\t\t{\n\t\t\t\"d\": \"x\"\n\t\t}\n\t]");
}

TEST(JSONWriter, EscapesStringsAndKeys) {
  const std::pair<std::string, std::string> cases[] = {
      {"\x01\t\x7f\"\\/", "\"\\u0001\\t\x7f\\\"\\\\/\""},
      {"\b\f\n\r\x1f caf\xc3\xa9 \xff", "\"\\b\\f\\n\\r\\u001F caf\xc3\xa9 \xff\""},
      {std::string("ab\0cd", 5), R"("ab")"},  // the text ends at the NUL
  };
  for (const auto& [input, expected] : cases) {
    EXPECT_EQ(json::toJSONText(JSONString(input)), expected);
    EXPECT_EQ(jsonref::quotedText(input), expected);
    JSONObject object;
    object.set(input, json::makeNull());
    EXPECT_EQ(json::toJSONText(object), "{ " + expected + ": null }");
  }
}

TEST(JSONNumberText, WritesAsPrintfDoes) {
  // Rounding ties of the 16th digit, the switch to exponents, range edges.
  std::istringstream cases(
      "0.5 -0 100 1e300 1e21 1e16 1e-5 0.0001 1e-7 9.999999999999999e-8 9.3 0.30000000000000004 "
      "12345678901234567890 9999999999999998 4503599627370496.5 4503599627370497.5 "
      "1000000000000001.5 999999999999999.94 123456.78901234567 4.9406564584124654e-324 "
      "1.7976931348623157e308 inf -inf nan -nan");
  for (std::string text; cases >> text;) {
    const double value = std::strtod(text.c_str(), nullptr);
    EXPECT_EQ(JSONNumber(value).toString(), jsonref::printfText(value));
    EXPECT_EQ(json::toJSONText(JSONNumber(value)), jsonref::printfText(value));
  }
}

TEST(JSONNumberText, StringsScanAsPercentLg) {
  const std::string cases[] = {
      "",          " ",   "  12.5 \n", "12abc",  "-0x10", "1e3\t\r",  "inf",
      "-infinity", "1 2", "1e",        "0x",     "0x1p3", "nan(123)", "nan(",
      "-nan",      "1.",  ".5",        "1e+",    "  -0 ", "0x.8p1",   "1e99999",
      "INF ",      "in",  "1,5",       "1e-400", "00012", "--1",      std::string("1\0", 2)};
  for (const std::string& text : cases) {
    EXPECT_TRUE(jsonref::sameNumber(JSONString(text).toNumber(), jsonref::scanfNumber(text)))
        << "'" << text << "'";
  }
}

TEST(JSONNumberText, IgnoresTheProgramsLocale) {
  const std::string previous = setlocale(LC_ALL, nullptr);
  ASSERT_NE(setlocale(LC_ALL, "de_DE.UTF-8"), nullptr) << "the de_DE.UTF-8 locale is not installed";
  EXPECT_EQ(jsonref::printfText(0.5), "0,5");  // the C library itself now writes a comma
  JSONArray array;
  array.push(json::makeNumber(0.5));
  array.push(json::makeNumber(-1234.25e10));
  EXPECT_EQ(json::toJSONText(array), "[ 0.5, -12342500000000 ]");
  EXPECT_EQ(JSONString("0.5").toNumber(), 0.5);
  EXPECT_TRUE(std::isnan(JSONString("0,5").toNumber()));
  setlocale(LC_ALL, previous.c_str());
}

}  // namespace
}  // namespace qta
