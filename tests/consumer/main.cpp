// Uses one public function of each module, so linking it proves that the
// installed headers, the exported symbols and the third-party libraries a
// consumer is told about (CMake package or pkg-config) fit together.
#include <cstdio>
#include <string>

#include "qta/json/json.h"
#include "qta/pools/apr_pool.h"
#include "qta/text/base64.h"
#include "qta/uri/uri.h"
#include "qta/utils/format.h"

int main() {
  // The pool's header includes APR's: the package must hand APR on.
  qta::APRPool pool("consumer");
  if (pool.handle() == nullptr || pool.tag() != "0-consumer") {
    std::fprintf(stderr, "pool tag %s\n", pool.tag().c_str());
    return 1;
  }
  qta::JSON::root object = qta::json::makeObject();
  object->set("host", qta::json::makeString(qta::URI("http://B\xC3\xBC"
                                                     "cher.example/")
                                                .host()));
  object->set("data", qta::json::makeString(qta::text::base64Encode(std::string("qta"))));
  std::string text;
  object->write(text, -1);
  const std::string expected =
      qta::formatString("{ \"data\": \"%s\", \"host\": \"%s\" }", "cXRh", "xn--bcher-kva.example");
  if (text != expected) {
    std::fprintf(stderr, "got %s, expected %s\n", text.c_str(), expected.c_str());
    return 1;
  }
  std::puts(text.c_str());
  return 0;
}
