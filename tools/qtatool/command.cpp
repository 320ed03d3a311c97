#include "command.h"

#include <algorithm>
#include <iostream>
#include <tuple>
#include <vector>

namespace qtatool {
namespace {

// A function-local static, so registrations from any file's static
// initialisation find it constructed.
struct Registry {
  std::vector<Command> entries;
  bool sorted = true;
};

Registry& registry() {
  static Registry instance;
  return instance;
}

}  // namespace

RegisterCommand::RegisterCommand(const Command& command) {
  registry().entries.push_back(command);
  registry().sorted = false;
}

std::span<const Command> registeredCommands() {
  Registry& all = registry();
  if (!all.sorted) {
    std::sort(all.entries.begin(), all.entries.end(), [](const Command& a, const Command& b) {
      return std::tie(a.order, a.name) < std::tie(b.order, b.name);
    });
    all.sorted = true;
  }
  return all.entries;
}

const Command* findCommand(std::string_view name) {
  for (const Command& command : registeredCommands()) {
    if (command.run != nullptr && command.name == name) return &command;
  }
  return nullptr;
}

int usageError(const Command& command, std::string_view message) {
  std::cerr << "qtatool " << command.name << ": " << message << "\n"
            << "Try 'qtatool " << command.name << " --help'.\n";
  return kUsage;
}

}  // namespace qtatool
