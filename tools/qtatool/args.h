// The option parser every qtatool subcommand shares.
//
// After the subcommand's name a command line reads: a MODE word first when
// the command has modes, then options and operands in any order. An argument
// that starts with "-" and is not "-" itself is an option; "--" ends the
// options, so what follows it is an operand even when it starts with "-".
// The parsed result points into the arguments it was given, which must
// outlive it.
#ifndef QTATOOL_ARGS_H_
#define QTATOOL_ARGS_H_

#include <charconv>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"

namespace qtatool {

// What a subcommand accepts; pass it as a braced temporary.
struct Grammar {
  std::initializer_list<std::string_view> modes = {};   // empty when the command has none
  std::initializer_list<std::string_view> flags = {};   // options without a value ("--url")
  std::initializer_list<std::string_view> valued = {};  // options followed by a value ("--file")
  std::string_view operand = "argument";                // what operands are called in messages
  size_t maxOperands = 0;
};

struct ParsedArgs {
  std::string_view mode;
  std::map<std::string_view, std::string_view> options;  // a flag maps to ""
  std::vector<std::string_view> operands;

  bool has(std::string_view option) const { return options.contains(option); }
};

// Parses `args` by `grammar`. On a mistake prints it as a usage error of
// `command` and returns nothing; the caller then exits with kUsage.
std::optional<ParsedArgs> parseArgs(const Command& command, Args args, const Grammar& grammar);

// True when an option before any "--" asks for help ("--help" or "-h").
bool asksForHelp(Args args);

// An operand read as a whole decimal number of type T (a "-" only where T is
// signed), by the C locale's rules; nothing when it is not one or out of range.
template <typename T>
std::optional<T> number(std::string_view text) {
  T value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// The usage message for an operand that `number` refused.
inline std::string notANumber(std::string_view text) {
  return "not a number: '" + std::string(text) + "'";
}

}  // namespace qtatool

#endif  // QTATOOL_ARGS_H_
