// Holds the host conversion (whose plain-ASCII names never reach libidn) to
// libidn's own answer for every input: the same names are accepted, and they
// are rewritten to the same lower-case text.
#include <idn-free.h>
#include <idna.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "qta/uri/host.h"

namespace {

std::optional<std::string> libidnAnswer(const std::string& host) {
  char* converted = nullptr;
  const int status =
      idna_to_ascii_8z(host.c_str(), &converted, IDNA_ALLOW_UNASSIGNED | IDNA_USE_STD3_ASCII_RULES);
  std::optional<std::string> answer;
  if (status == IDNA_SUCCESS) {
    answer = converted;
    for (char& c : *answer) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
  }
  idn_free(converted);
  return answer;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string host(reinterpret_cast<const char*>(data), size);
  if (std::memchr(host.data(), '\0', host.size()) != nullptr) return 0;  // C strings only
  std::string converted = host;
  const bool accepted = qta::uri::toAsciiHost(converted, false);
  const std::optional<std::string> answer = libidnAnswer(host);
  if (accepted != answer.has_value() || (accepted && converted != *answer) ||
      (!accepted && converted != host)) {
    std::abort();
  }
  return 0;
}
