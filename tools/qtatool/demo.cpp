#include "demo.h"

#include <iostream>

#include "cli.h"

namespace qtatool {

int runDemo(Args args) {
  if (!args.empty()) {
    std::cerr << "qtatool demo: takes no arguments\n";
    return kUsage;
  }
  using Section = void (*)(std::ostream&);
  static constexpr Section kSections[] = {demoJson, demoUnicode, demoBase64, demoUri};
  bool first = true;
  for (Section section : kSections) {
    if (!first) std::cout << "\n";
    first = false;
    section(std::cout);
  }
  return kSuccess;
}

}  // namespace qtatool
