#include <ostream>

#include "demo.h"

namespace qtatool {

void demoUnicode(std::ostream& out) {
  out << "== Unicode text\n(not built yet)\n";
}

}  // namespace qtatool
