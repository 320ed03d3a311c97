// qtatool demo: runs every module's demo section, in registry order.
#include <iostream>

#include "args.h"
#include "command.h"

namespace qtatool {
namespace {

int run(const Command& self, Args args) {
  if (!parseArgs(self, args, {})) return kUsage;
  bool first = true;
  for (const Command& command : registeredCommands()) {
    if (command.demo == nullptr) continue;
    if (!first) std::cout << "\n";
    first = false;
    command.demo(std::cout);
  }
  return kSuccess;
}

const RegisterCommand kDemo({
    .order = 0,
    .name = "demo",
    .summary = "show what the library does, module by module",
    .usage =
        "Usage: qtatool demo\n\nBuilds values with each module of the library and prints them.\n",
    .run = run,
});

}  // namespace
}  // namespace qtatool
