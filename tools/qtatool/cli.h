// Shared plumbing of qtatool's subcommands: the command table, exit statuses,
// usage errors and input reading. Every subcommand writes its result to stdout
// and its messages to stderr.
#ifndef QTATOOL_CLI_H_
#define QTATOOL_CLI_H_

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
  const char* name;
  const char* summary;  // one line for `qtatool --help`
  const char* usage;    // the full text for `qtatool NAME --help`
  int (*run)(Args args);
};

// Every subcommand, in the order `qtatool --help` lists them.
std::span<const Command> commands();

// The command called `name`, or null when there is none.
const Command* findCommand(std::string_view name);

// True when the arguments ask for the command's help ("--help" or "-h").
bool wantsHelp(Args args);

// Prints "qtatool NAME: message" and a pointer to --help on stderr; returns kUsage.
int usageError(const Command& command, const std::string& message);

// Reads the whole of `path` ("-" is standard input) into `out`. On failure
// prints the reason on stderr and returns false.
bool readInput(const std::string& path, std::string& out);

// Writes bytes to stdout unchanged (no newline is added).
void writeBytes(const std::string& bytes);

}  // namespace qtatool

#endif  // QTATOOL_CLI_H_
