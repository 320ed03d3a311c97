// The table of qtatool's subcommands. Each module's commands live in their own
// file (cmd_MODULE.cpp); this file only lists them.
#include "cli.h"

namespace qtatool {

int runDemo(Args args);
int runUri(Args args);
int runBase64(Args args);
int runUtf8(Args args);
int runUtf16(Args args);
int runUtf32(Args args);

std::span<const Command> commands() {
  static const Command kCommands[] = {
      {"demo", "show what the library does, module by module",
       "Usage: qtatool demo\n\nBuilds values with each module of the library and prints them.\n",
       runDemo},
      {"base64", "encode bytes as base64 text or decode it back",
       "Usage: qtatool base64 encode [--url] [FILE]\n"
       "       qtatool base64 decode [--url] [FILE]\n\n"
       "Reads FILE, or standard input when FILE is omitted or \"-\".\n"
       "encode writes the bytes as base64 text padded with \"=\" (with --url: base64url,\n"
       "unpadded) and one newline. decode writes the bytes the text stands for, with\n"
       "nothing added; characters outside the alphabet (line breaks, \"=\", white space,\n"
       "the other alphabet's \"+/\" or \"-_\") are skipped, so decoding never fails.\n",
       runBase64},
      {"utf8", "check UTF-8 or show its UTF-16 or UTF-32 units",
       "Usage: qtatool utf8 check [FILE]\n"
       "       qtatool utf8 to-utf16 [FILE]\n"
       "       qtatool utf8 to-utf32 [FILE]\n\n"
       "Reads FILE, or standard input when FILE is omitted or \"-\".\n"
       "check exits with 0 when the bytes are valid UTF-8 and 1 when not. to-utf16 and\n"
       "to-utf32 print the converted units in upper-case hexadecimal, space-separated,\n"
       "on one line (for example \"D83D DE00\"); invalid sequences become \"?\".\n",
       runUtf8},
      {"utf16", "turn UTF-16 units given in hexadecimal into UTF-8",
       "Usage: qtatool utf16 to-utf8 UNIT...\n\n"
       "Writes the UTF-8 bytes of the UTF-16 units (1 to 4 hexadecimal digits each) to\n"
       "standard output. A surrogate pair becomes one character; unpaired surrogates are\n"
       "dropped.\n",
       runUtf16},
      {"utf32", "turn code points given in hexadecimal into UTF-8",
       "Usage: qtatool utf32 to-utf8 VALUE...\n\n"
       "Writes the UTF-8 bytes of the code points (1 to 8 hexadecimal digits each) to\n"
       "standard output. Surrogates and values above 10FFFF are dropped.\n",
       runUtf32},
      {"uri", "parse a URI and show its components and written forms",
       "Usage: qtatool uri parse [--template] TEXT\n\n"
       "Parses TEXT as a URI (with --template, \"[[\" ... \"]]\" placeholders are kept as\n"
       "they are) and prints one line of JSON: scheme, userInfo, host, port, path\n"
       "(absolute, trailingSlash, segments), query, fragment, and the full, display and\n"
       "root forms and the local file path. A text that is not a valid URI prints\n"
       "\"invalid URI\" on standard error and exits with 1.\n",
       runUri},
  };
  return kCommands;
}

}  // namespace qtatool
