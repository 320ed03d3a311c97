// The sections of `qtatool demo`: each module shows its main job on stdout.
#ifndef QTATOOL_DEMO_H_
#define QTATOOL_DEMO_H_

#include <ostream>

namespace qtatool {

void demoJson(std::ostream& out);
void demoBase64(std::ostream& out);
void demoUnicode(std::ostream& out);
void demoUri(std::ostream& out);

}  // namespace qtatool

#endif  // QTATOOL_DEMO_H_
