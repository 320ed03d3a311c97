// qtatool base64: encodes bytes as base64 or base64url text, or decodes such
// text back to bytes.
#include <string>
#include <string_view>

#include "cli.h"
#include "qta/text/base64.h"

namespace qtatool {

int runBase64(Args args) {
  const Command& command = *findCommand("base64");
  if (args.empty()) return usageError(command, "missing 'encode' or 'decode'");
  const std::string& mode = args[0];
  if (mode != "encode" && mode != "decode") {
    return usageError(command, "expected 'encode' or 'decode', not '" + mode + "'");
  }
  bool url = false;
  bool havePath = false;
  std::string path = "-";
  for (const std::string& arg : args.subspan(1)) {
    if (arg == "--url") {
      url = true;
    } else if (arg.size() > 1 && arg[0] == '-') {
      return usageError(command, "unknown option '" + arg + "'");
    } else if (havePath) {
      return usageError(command, "more than one FILE");
    } else {
      path = arg;
      havePath = true;
    }
  }

  std::string input;
  if (!readInput(path, input)) return kUsage;
  if (mode == "encode") {
    writeBytes(url ? qta::text::base64UrlEncode(input) : qta::text::base64Encode(input));
    writeBytes("\n");
  } else {
    writeBytes(url ? qta::text::base64UrlDecodeToString(input)
                   : qta::text::base64DecodeToString(input));
  }
  return kSuccess;
}

}  // namespace qtatool
