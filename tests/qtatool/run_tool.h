// Runs the built qtatool binary with arguments and standard input, and
// captures its exit status, stdout and stderr. A run whose stderr reports
// undefined behaviour ("runtime error:") fails the calling test.
#ifndef QTA_TESTS_QTATOOL_RUN_TOOL_H_
#define QTA_TESTS_QTATOOL_RUN_TOOL_H_

#include <string>
#include <utility>
#include <vector>

namespace qtatooltest {

struct ToolResult {
  int status = -1;  // exit status, or -1 when the tool did not exit normally
  std::string out;
  std::string err;
};

ToolResult runTool(const std::vector<std::string>& args, const std::string& input = "");

// One run of the tool and what it must give: the exit status, the whole
// standard output and, when given, the whole standard error. Without it, a
// failing run (status other than 0) must still explain itself there.
struct ToolCase {
  ToolCase(std::vector<std::string> args, int status = 0, std::string out = "",
           std::string input = "", const char* err = nullptr)
      : args(std::move(args)),
        status(status),
        out(std::move(out)),
        input(std::move(input)),
        err(err) {}

  std::vector<std::string> args;
  int status;
  std::string out;
  std::string input;  // standard input
  const char* err;
};

// Runs every case and checks it, naming the arguments of any that fails.
void expectRuns(const std::vector<ToolCase>& cases);

}  // namespace qtatooltest

#endif  // QTA_TESTS_QTATOOL_RUN_TOOL_H_
