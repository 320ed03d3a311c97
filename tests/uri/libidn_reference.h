// libidn's answer for a host name (ToASCII, unassigned code points allowed, STD3
// rules, lower-cased; nothing when rejected): the host conversion's reference.
#ifndef QTA_TESTS_URI_LIBIDN_REFERENCE_H_
#define QTA_TESTS_URI_LIBIDN_REFERENCE_H_

#include <idn-free.h>
#include <idna.h>

#include <optional>
#include <string>

namespace qtatest {

inline std::optional<std::string> libidnToAscii(const std::string& host) {
  char* converted = nullptr;
  const int status =
      idna_to_ascii_8z(host.c_str(), &converted, IDNA_ALLOW_UNASSIGNED | IDNA_USE_STD3_ASCII_RULES);
  std::optional<std::string> result;
  if (status == IDNA_SUCCESS) {
    result = converted;
    for (char& c : *result) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
  }
  idn_free(converted);
  return result;
}

}  // namespace qtatest

#endif  // QTA_TESTS_URI_LIBIDN_REFERENCE_H_
