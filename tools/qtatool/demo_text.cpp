#include <ostream>

#include "demo.h"

namespace qtatool {

void demoText(std::ostream& out) {
  out << "== text codecs\n(not built yet)\n";
}

}  // namespace qtatool
