#include <ostream>

#include "demo.h"

namespace qtatool {

void demoJson(std::ostream& out) {
  out << "== JSON\n(the JSON module is not built yet)\n";
}

}  // namespace qtatool
