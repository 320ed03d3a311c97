#include <ostream>

#include "demo.h"

namespace qtatool {

void demoBase64(std::ostream& out) {
  out << "== base64\n(not built yet)\n";
}

}  // namespace qtatool
