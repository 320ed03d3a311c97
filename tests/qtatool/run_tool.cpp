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

File temporaryFile(const std::string& contents = "") {
  File file(std::tmpfile(), &std::fclose);
  if (!file) throw std::runtime_error("tmpfile failed");
  std::fwrite(contents.data(), 1, contents.size(), file.get());
  std::fflush(file.get());
  std::rewind(file.get());
  return file;
}

// Reads the file afresh from its start through the descriptor's name.
std::string contents(FILE* file) {
  std::ifstream in("/proc/self/fd/" + std::to_string(fileno(file)), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

ToolResult runTool(const std::vector<std::string>& args, const std::string& input) {
  const File in = temporaryFile(input), out = temporaryFile(), err = temporaryFile();
  std::vector<std::string> argv{QTATOOL_PATH};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<char*> pointers;
  for (std::string& arg : argv) pointers.push_back(arg.data());
  pointers.push_back(nullptr);

  const pid_t pid = fork();
  if (pid < 0) throw std::runtime_error("fork failed");
  if (pid == 0) {
    dup2(fileno(in.get()), 0);
    dup2(fileno(out.get()), 1);
    dup2(fileno(err.get()), 2);
    execv(pointers[0], pointers.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  ToolResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(out.get()),
                    contents(err.get())};
  if (result.err.find("runtime error:") != std::string::npos) {
    ADD_FAILURE() << "undefined behaviour in qtatool " << testing::PrintToString(args) << ":\n"
                  << result.err;
  }
  return result;
}

}  // namespace qtatooltest
