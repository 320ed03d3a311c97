#include "run_tool.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace qtatooltest {
namespace {

// Anonymous temporary files, gone once closed, stand in for the child's
// standard streams: unlike pipes they take any amount without deadlock.
using File = std::unique_ptr<FILE, int (*)(FILE*)>;

File temporaryFile(const std::string& contents) {
  File file(std::tmpfile(), &std::fclose);
  if (!file) throw std::runtime_error("tmpfile failed");
  std::fwrite(contents.data(), 1, contents.size(), file.get());
  std::fflush(file.get());
  std::rewind(file.get());
  return file;
}

// Reads the file afresh from its start through the descriptor's name.
std::string contents(const File& file) {
  std::ifstream in("/proc/self/fd/" + std::to_string(fileno(file.get())), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

ToolResult runTool(const std::vector<std::string>& args, const std::string& input) {
  const File streams[] = {temporaryFile(input), temporaryFile(""), temporaryFile("")};
  // execv takes the arguments as char* but leaves them alone.
  std::vector<char*> argv{const_cast<char*>(QTATOOL_PATH)};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  const pid_t pid = fork();
  if (pid < 0) throw std::runtime_error("fork failed");
  if (pid == 0) {
    for (int fd = 0; fd < 3; ++fd) dup2(fileno(streams[fd].get()), fd);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  ToolResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(streams[1]),
                    contents(streams[2])};
  if (result.err.find("runtime error:") != std::string::npos) {
    ADD_FAILURE() << "undefined behaviour in qtatool " << testing::PrintToString(args) << ":\n"
                  << result.err;
  }
  return result;
}

void expectRuns(const std::vector<ToolCase>& cases) {
  for (const ToolCase& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.args));
    const ToolResult result = runTool(c.args, c.input);
    EXPECT_EQ(result.status, c.status) << result.err;
    EXPECT_EQ(result.out, c.out);
    if (c.err != nullptr) {
      EXPECT_EQ(result.err, c.err);
    } else if (c.status != 0) {
      EXPECT_FALSE(result.err.empty());
    }
  }
}

}  // namespace qtatooltest
