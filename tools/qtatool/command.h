// The registry of qtatool's subcommands and `qtatool demo` sections.
//
// Each module's file (cmd_MODULE.cpp) defines its entries and registers each
// with a RegisterCommand object at namespace scope, so adding a command or a
// demo section touches no other file. Registration runs during static
// initialisation, before main(); from then on the registry is only read, and
// qtatool runs on one thread. Entries are plain values with static texts and
// function pointers; the registry keeps its own copies.
#ifndef QTATOOL_COMMAND_H_
#define QTATOOL_COMMAND_H_

#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace qtatool {

enum ExitStatus : int {
  kSuccess = 0,   // the job was done
  kRejected = 1,  // the input was read but rejected (invalid text, bad UTF-8, ...)
  kUsage = 2,     // the command line itself was wrong, or an input could not be read
};

// The arguments that follow the subcommand's name.
using Args = std::span<const std::string>;

struct Command {
  // Where the entry stands in `qtatool --help` and in `qtatool demo`; entries
  // sort by order, then by name. `demo` is 0 and modules follow the library's
  // layering ten apart (json 10, Unicode 20, base64 30, uri 40, the next 50);
  // a module's further commands take the keys after its first.
  int order = 0;
  std::string_view name = {};
  std::string_view summary = {};  // one line for `qtatool --help`
  std::string_view usage = {};    // the whole text of `qtatool NAME --help`
  // Runs the subcommand on the arguments after its name and returns its exit
  // status; `self` is this entry, for usage errors. Null for an entry that
  // only adds a demo section: it is neither listed nor runnable.
  int (*run)(const Command& self, Args args) = nullptr;
  // Writes the module's section of `qtatool demo`; null when it has none.
  void (*demo)(std::ostream& out) = nullptr;
};

// Adds an entry to the registry: define one at namespace scope per entry.
class RegisterCommand {
 public:
  explicit RegisterCommand(const Command& command);
};

// Every registered entry, in order.
std::span<const Command> registeredCommands();

// The runnable entry called `name`, or null when there is none.
const Command* findCommand(std::string_view name);

// Prints "qtatool NAME: message" and a pointer to --help on stderr; returns kUsage.
int usageError(const Command& command, std::string_view message);

}  // namespace qtatool

#endif  // QTATOOL_COMMAND_H_
