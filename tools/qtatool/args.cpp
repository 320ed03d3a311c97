#include "args.h"

#include <algorithm>
#include <string>

namespace qtatool {
namespace {

bool isOption(std::string_view arg) { return arg.size() > 1 && arg[0] == '-'; }

bool contains(std::initializer_list<std::string_view> list, std::string_view word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

// "expected 'a', 'b' or 'c'"
std::string expected(std::initializer_list<std::string_view> words) {
  std::string text = "expected";
  size_t index = 0;
  for (std::string_view word : words) {
    text += index == 0 ? " '" : index + 1 == words.size() ? " or '" : ", '";
    text.append(word).append("'");
    ++index;
  }
  return text;
}

}  // namespace

std::optional<ParsedArgs> parseArgs(const Command& command, Args args, const Grammar& grammar) {
  const auto fail = [&command](const std::string& problem) {
    usageError(command, problem);
    return std::nullopt;
  };
  ParsedArgs parsed;
  size_t next = 0;
  if (grammar.modes.size() > 0) {
    if (args.empty()) return fail("missing mode: " + expected(grammar.modes));
    if (!contains(grammar.modes, args[0])) {
      return fail("unknown mode '" + args[0] + "': " + expected(grammar.modes));
    }
    parsed.mode = args[next++];
  }
  bool optionsEnded = false;
  for (; next < args.size(); ++next) {
    const std::string& arg = args[next];
    if (!optionsEnded && arg == "--") {
      optionsEnded = true;
    } else if (!optionsEnded && isOption(arg)) {
      const bool valued = contains(grammar.valued, arg);
      if (!valued && !contains(grammar.flags, arg)) return fail("unknown option '" + arg + "'");
      if (parsed.has(arg)) return fail("option '" + arg + "' given twice");
      if (valued && next + 1 == args.size()) return fail("option '" + arg + "' needs a value");
      parsed.options[arg] = valued ? std::string_view(args[++next]) : std::string_view();
    } else if (parsed.operands.size() < grammar.maxOperands) {
      parsed.operands.push_back(arg);
    } else if (grammar.maxOperands == 0) {
      return fail("unexpected argument '" + arg + "'");
    } else {
      return fail("unexpected argument '" + arg + "' (at most " +
                  std::to_string(grammar.maxOperands) + " " + std::string(grammar.operand) + ")");
    }
  }
  return parsed;
}

bool asksForHelp(Args args) {
  for (const std::string& arg : args) {
    if (arg == "--") break;
    if (arg == "--help" || arg == "-h") return true;
  }
  return false;
}

}  // namespace qtatool
