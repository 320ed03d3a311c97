// Runs the built qtatool binary with arguments and standard input, and
// captures its exit status, stdout and stderr. A run whose stderr reports
// undefined behaviour ("runtime error:") fails the calling test.
#ifndef QTA_TESTS_QTATOOL_RUN_TOOL_H_
#define QTA_TESTS_QTATOOL_RUN_TOOL_H_

#include <string>
#include <vector>

namespace qtatooltest {

struct ToolResult {
  int status = -1;  // exit status, or -1 when the tool did not exit normally
  std::string out;
  std::string err;
};

ToolResult runTool(const std::vector<std::string>& args, const std::string& input = "");

}  // namespace qtatooltest

#endif  // QTA_TESTS_QTATOOL_RUN_TOOL_H_
