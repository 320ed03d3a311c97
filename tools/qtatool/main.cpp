// qtatool: the command-line face of the qta library. The subcommands register
// themselves (see command.h); this file only dispatches to them.
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "args.h"
#include "command.h"

namespace {

void printHelp(std::ostream& out) {
  out << "Usage: qtatool COMMAND [ARGS...]\n"
         "       qtatool --help | --version\n\n"
         "Commands:\n";
  for (const qtatool::Command& command : qtatool::registeredCommands()) {
    if (command.run == nullptr) continue;
    std::string name(command.name);
    name.resize(std::max<size_t>(name.size() + 1, 10), ' ');
    out << "  " << name << command.summary << "\n";
  }
  out << "\nRun 'qtatool COMMAND --help' for a command's arguments.\n"
         "Exit status: 0 success, 1 rejected input, 2 usage error.\n";
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  if (argc < 2) {
    printHelp(std::cerr);
    return qtatool::kUsage;
  }
  const std::string first = argv[1];
  if (first == "--help" || first == "-h") {
    printHelp(std::cout);
    return qtatool::kSuccess;
  }
  if (first == "--version") {
    std::cout << "qtatool " << QTA_VERSION << "\n";
    return qtatool::kSuccess;
  }
  const qtatool::Command* command = qtatool::findCommand(first);
  if (command == nullptr) {
    std::cerr << "qtatool: unknown command '" << first << "'\n"
              << "Try 'qtatool --help'.\n";
    return qtatool::kUsage;
  }
  const std::vector<std::string> args(argv + 2, argv + argc);
  if (qtatool::asksForHelp(args)) {
    std::cout << command->usage;
    return qtatool::kSuccess;
  }
  try {
    return command->run(*command, args);
  } catch (const std::exception& error) {
    std::cerr << "qtatool " << command->name << ": " << error.what() << "\n";
    return qtatool::kRejected;
  }
}
