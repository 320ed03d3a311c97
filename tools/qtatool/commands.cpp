// The table of qtatool's subcommands. Each module's commands live in their own
// file (cmd_MODULE.cpp); this file only lists them.
#include "cli.h"

namespace qtatool {

int runDemo(Args args);

std::span<const Command> commands() {
  static const Command kCommands[] = {
      {"demo", "show what the library does, module by module",
       "Usage: qtatool demo\n\nBuilds values with each module of the library and prints them.\n",
       runDemo},
  };
  return kCommands;
}

}  // namespace qtatool
