#include <ostream>

#include "demo.h"

namespace qtatool {

void demoUri(std::ostream& out) {
  out << "== URI\n(not built yet)\n";
}

}  // namespace qtatool
