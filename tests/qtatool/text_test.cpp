// qtatool's commands of the text module: base64, utf8, utf16 and utf32.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_tool.h"

namespace qtatooltest {
namespace {

using namespace std::string_literals;

TEST(QtatoolText, ConvertsAndChecksStandardInput) {
  expectRuns({
      {{"base64", "encode"}, 0, "Zm9vYmFy\n", "foobar"},
      {{"base64", "encode", "--url"}, 0, "-_8\n", "\xFB\xFF"},
      {{"base64", "encode"}, 0, "\n", ""},
      {{"base64", "decode"}, 0, "foobar", "Zm9v\nYmFy\n"},
      {{"base64", "decode", "--url", "-"}, 0, "\xFB\xFF", "-_8"},
      {{"base64", "decode"}, 0, "\0\0\x7f"s, "AAB/"},  // NUL bytes pass through unchanged
      {{"utf8", "check"}, 0, "", "caf\xC3\xA9"},
      {{"utf8", "check", "-"}, 1, "", "\xC0\x80"},
      {{"utf8", "to-utf16"}, 0, "D83D DE00 0041\n", "\U0001F600A"},
      {{"utf8", "to-utf32"}, 0, "1F600 0041\n", "\U0001F600A"},
      {{"utf8", "to-utf32"}, 0, "\n", ""},
      {{"utf16", "to-utf8", "D83D", "de00", "41"}, 0, "\U0001F600A"},
      {{"utf32", "to-utf8", "E9", "110000", "0"}, 0, "\xC3\xA9\0"s},
  });
}

// Large inputs are encoded a piece at a time: no padding may show up between
// pieces, and the text, wrapped into lines, decodes back to the bytes.
TEST(QtatoolBase64, LargeInputsRoundTrip) {
  std::string bytes(300001, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  for (const std::string option : {"-", "--url"}) {
    const bool url = option == "--url";
    std::vector<std::string> args = {"base64", "encode", option};
    const std::string text = runTool(args, bytes).out;
    EXPECT_EQ(text.size(), (url ? (bytes.size() * 4 + 2) / 3 : (bytes.size() + 2) / 3 * 4) + 1);
    std::string wrapped;
    for (size_t at = 0; at < text.size(); at += 76) wrapped += text.substr(at, 76) + "\n";
    args[1] = "decode";
    EXPECT_TRUE(runTool(args, wrapped).out == bytes) << url;
  }
}

// Large inputs are converted and printed a piece at a time; pieces must join
// with one space and must not cut a sequence, valid or not.
TEST(QtatoolUnicode, LargeInputsConvertInPieces) {
  std::string text, utf16, utf32;
  for (int i = 0; i < 20000; ++i) {
    text += "\U0001F600\xC3";  // the lead byte lacks its continuation byte
    utf16 += "D83D DE00 003F ";
    utf32 += "1F600 003F ";
  }
  utf16.back() = utf32.back() = '\n';
  EXPECT_TRUE(runTool({"utf8", "to-utf16"}, text).out == utf16);
  EXPECT_TRUE(runTool({"utf8", "to-utf32"}, text).out == utf32);
}

}  // namespace
}  // namespace qtatooltest
