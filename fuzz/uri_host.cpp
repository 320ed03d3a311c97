// Holds the host conversion (whose plain-ASCII names never reach libidn) to
// libidn's own answer for every input: the same names are accepted, and they
// are rewritten to the same lower-case text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "uri/host_detail.h"
#include "uri/libidn_reference.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string host(reinterpret_cast<const char*>(data), size);
  if (std::memchr(host.data(), '\0', host.size()) != nullptr) return 0;  // C strings only
  std::string converted = host;
  const bool accepted = qta::uri::toAsciiHost(converted, false);
  const std::optional<std::string> answer = qtatest::libidnToAscii(host);
  if (accepted != answer.has_value() || (accepted && converted != *answer) ||
      (!accepted && converted != host)) {
    std::abort();
  }
  return 0;
}
