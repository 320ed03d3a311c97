#include "run_tool.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace qtatooltest {
namespace {

// A temporary file that is removed when it goes out of scope.
class TempFile {
 public:
  TempFile() {
    char name[] = "/tmp/qtatool-test-XXXXXX";
    fd_ = mkstemp(name);
    if (fd_ < 0) throw std::runtime_error("mkstemp failed");
    path_ = name;
  }
  ~TempFile() {
    close(fd_);
    unlink(path_.c_str());
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  int fd() const { return fd_; }
  std::string contents() const {
    std::ifstream file(path_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  void write(const std::string& text) const {
    std::ofstream(path_, std::ios::binary)
        .write(text.data(), static_cast<std::streamsize>(text.size()));
  }

 private:
  int fd_;
  std::string path_;
};

}  // namespace

ToolResult runTool(const std::vector<std::string>& args, const std::string& input) {
  TempFile in, out, err;
  in.write(input);
  std::vector<char*> argv;
  std::string program = QTATOOL_PATH;
  argv.push_back(program.data());
  std::vector<std::string> copies(args);
  for (std::string& arg : copies) argv.push_back(arg.data());
  argv.push_back(nullptr);

  const pid_t pid = fork();
  if (pid < 0) throw std::runtime_error("fork failed");
  if (pid == 0) {
    lseek(in.fd(), 0, SEEK_SET);
    dup2(in.fd(), 0);
    dup2(out.fd(), 1);
    dup2(err.fd(), 2);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  ToolResult result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.out = out.contents();
  result.err = err.contents();
  return result;
}

}  // namespace qtatooltest
