#include "cli.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>

namespace qtatool {

const Command* findCommand(std::string_view name) {
  for (const Command& command : commands()) {
    if (name == command.name) return &command;
  }
  return nullptr;
}

bool wantsHelp(Args args) {
  for (const std::string& arg : args) {
    if (arg == "--help" || arg == "-h") return true;
  }
  return false;
}

int usageError(const Command& command, const std::string& message) {
  std::cerr << "qtatool " << command.name << ": " << message << "\n"
            << "Try 'qtatool " << command.name << " --help'.\n";
  return kUsage;
}

bool readInput(const std::string& path, std::string& out) {
  if (path == "-") {
    out.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    if (std::cin.bad()) {
      std::cerr << "qtatool: cannot read standard input\n";
      return false;
    }
    return true;
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::cerr << "qtatool: cannot open " << path << ": " << std::strerror(errno) << "\n";
    return false;
  }
  out.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  if (file.bad()) {
    std::cerr << "qtatool: cannot read " << path << "\n";
    return false;
  }
  return true;
}

void writeBytes(const std::string& bytes) {
  std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace qtatool
