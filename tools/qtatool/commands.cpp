// The table of qtatool's subcommands. Each module's commands live in their own
// file (cmd_MODULE.cpp); this file only lists them.
#include "cli.h"

namespace qtatool {

int runDemo(Args args);
int runBase64(Args args);

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
  };
  return kCommands;
}

}  // namespace qtatool
