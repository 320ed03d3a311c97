#include "uri/host_detail.h"

#include <idn-free.h>
#include <idna.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "uri/escape_append.h"

namespace qta::uri {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Label bytes, ".", and every byte of 128 and above.
constexpr CharSet hostNameBytes() {
  CharSet set = detail::kLabelBytes | CharSet(".");
  for (int c = 128; c < 256; ++c) set.add(static_cast<unsigned char>(c));
  return set;
}
constexpr CharSet kHostNameBytes = hostNameBytes();

void lowerCaseAscii(std::string& text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
}

enum class AsciiVerdict { kValid, kInvalid, kNeedsIdna };

// What IDNA ToASCII with the STD3 rules says about a name that is plain ASCII,
// so that such names need not go through libidn (which converts every name to
// UCS-4 and allocates). ASCII labels skip nameprep and punycode; they must
// hold only letters, digits and "-", must not begin or end with "-", and must
// be 1 to 63 characters long. The empty name and a single final empty label
// (a trailing dot, or the name ".") are valid. Names with bytes of 128 and
// above are left to libidn.
AsciiVerdict checkAsciiName(std::string_view name) {
  if (name.empty() || name == ".") return AsciiVerdict::kValid;
  bool valid = true;
  size_t labelStart = 0;
  for (size_t i = 0; i <= name.size(); ++i) {
    if (i == name.size() || name[i] == '.') {
      const size_t length = i - labelStart;
      if (length == 0) {
        valid &= i == name.size() && labelStart > 0;  // only after a final dot
      } else {
        valid &= length <= 63 && name[labelStart] != '-' && name[i - 1] != '-';
      }
      labelStart = i + 1;
    } else if (static_cast<unsigned char>(name[i]) >= 128) {
      return AsciiVerdict::kNeedsIdna;
    } else {
      valid &= detail::isLabelByte(name[i]);
    }
  }
  return valid ? AsciiVerdict::kValid : AsciiVerdict::kInvalid;
}

struct IdnFree {
  void operator()(char* text) const { idn_free(text); }
};

bool convertWithIdna(std::string& name) {
  char* converted = nullptr;
  const int status =
      idna_to_ascii_8z(name.c_str(), &converted, IDNA_ALLOW_UNASSIGNED | IDNA_USE_STD3_ASCII_RULES);
  const std::unique_ptr<char, IdnFree> owner(converted);
  if (status != IDNA_SUCCESS || converted == nullptr) return false;
  name.assign(converted);
  return true;
}

// Converts `name` (lower-cased on success); false leaves it unchanged.
bool convertName(std::string& name) {
  switch (checkAsciiName(name)) {
    case AsciiVerdict::kValid:
      lowerCaseAscii(name);
      return true;
    case AsciiVerdict::kInvalid:
      return false;
    case AsciiVerdict::kNeedsIdna:
      break;
  }
  if (std::memchr(name.data(), '\0', name.size()) != nullptr) return false;  // C strings only
  std::string converted = name;
  if (!convertWithIdna(converted)) return false;
  lowerCaseAscii(converted);
  name = std::move(converted);
  return true;
}

}  // namespace

uint32_t defaultPort(std::string_view scheme) {
  struct Entry {
    std::string_view scheme;
    uint32_t port;
  };
  static constexpr Entry kPorts[] = {
      {"http", 80},    {"https", 443},      {"ws", 80},     {"wss", 443},    {"rtsp", 554},
      {"ftp", 21},     {"ftpes", 21},       {"ftps", 990},  {"coap", 5683},  {"coap+tcp", 5683},
      {"coaps", 5684}, {"coaps+tcp", 5684}, {"mqtt", 1883}, {"mqtts", 8883},
  };
  for (const Entry& entry : kPorts) {
    if (entry.scheme == scheme) return entry.port;
  }
  return 0;
}

bool hasOpaqueAuthority(std::string_view scheme) { return scheme == "qta" || scheme == "project"; }

bool isIPv6Address(std::string_view text) {
  size_t i = 0;
  const size_t size = text.size();
  bool compressed = false;
  int groups = 0;
  if (size > 0 && text[0] == ':') {
    if (size < 2 || text[1] != ':') return false;
    compressed = true;
    i = 2;
  }
  while (i < size && text[i] != '%') {
    const size_t groupStart = i;
    while (i < size && i - groupStart < 5 && isHexDigit(text[i])) ++i;
    const size_t digits = i - groupStart;
    if (digits == 0 || digits > 4) return false;  // a group holds 1 to 4 hex digits
    if (i < size && text[i] == '.') {
      if (!isIPv4Address(text.substr(groupStart), '%')) return false;
      groups += 2;
      break;
    }
    ++groups;
    if (i == size || text[i] == '%') break;
    if (text[i] != ':') return false;
    ++i;
    if (i < size && text[i] == ':') {
      if (compressed) return false;
      compressed = true;
      ++i;
      if (i == size || text[i] == '%') break;
      if (text[i] == ':') return false;
    } else if (i == size || text[i] == '%') {
      return false;  // a single ":" at the end
    }
  }
  if (groups == 0 || groups > 8) return false;
  return compressed ? groups < 8 : groups == 8;
}

bool isIPv4Address(std::string_view text, char terminator) {
  if (text.empty() || text[0] == terminator) return false;
  int dots = 0;
  size_t i = 0;
  while (true) {
    uint32_t value = 0;
    size_t digits = 0;
    while (i < text.size() && isDigit(text[i])) {
      value = value * 10 + static_cast<uint32_t>(text[i] - '0');
      if (value > 255) return false;
      ++i;
      ++digits;
    }
    if (digits == 0) return false;
    if (i == text.size() || text[i] == terminator) return dots == 3;
    if (text[i] != '.' || ++dots > 3) return false;
    ++i;
  }
}

bool toAsciiHost(std::string& host, bool keepTrailingHyphen) {
  if (keepTrailingHyphen && host.size() >= 2 && host.back() == '-') {
    std::string name = host.substr(0, host.size() - 1);
    if (!convertName(name)) return false;
    host = std::move(name);
    host += '-';
    return true;
  }
  return convertName(host);
}

bool checkHost(URI::Data& data, bool keepTrailingHyphen) {
  std::string& host = data.host;
  if (host.empty()) return true;
  if (hasOpaqueAuthority(data.scheme)) {
    for (char c : host) {
      if (static_cast<unsigned char>(c) < 32) return false;
    }
    return true;
  }
  if (host[0] == '[') {
    if (host.size() < 2) return false;
    std::string address = host.substr(1, host.size() - 2);
    if (!isIPv6Address(address)) return false;
    const size_t percent = address.find('%');
    if (percent != std::string::npos) {
      if (percent + 1 == address.size()) return false;
      for (size_t i = percent + 1; i < address.size(); ++i) {
        if (!detail::isLabelByte(address[i])) return false;
      }
    }
    host = std::move(address);
    return true;
  }
  return detail::isHostName(host, keepTrailingHyphen) && toAsciiHost(host, keepTrailingHyphen);
}

namespace detail {

bool isHostName(std::string_view host, bool allowTrailingHyphen) {
  if (host.empty() || host.front() == '-' || (!allowTrailingHyphen && host.back() == '-')) {
    return false;
  }
  return std::all_of(host.begin(), host.end(),
                     [](char c) { return kHostNameBytes.contains(static_cast<unsigned char>(c)); });
}

void appendHostForOutput(std::string& out, const URI::Data& data) {
  const std::string& host = data.host;
  if (hasOpaqueAuthority(data.scheme)) {
    appendPercentEncoded(out, host, CharSet(), TemplateMode::kOff);
  } else if (isIPv6Address(host)) {
    const size_t percent = host.find('%');
    out += '[';
    if (percent == std::string::npos) {
      out += host;
    } else {
      out.append(host, 0, percent);
      out += "%25";
      appendPercentEncoded(out, std::string_view(host).substr(percent + 1), CharSet(),
                           TemplateMode::kOff);
    }
    out += ']';
  } else {
    out += host;
  }
}

void appendHostAndPort(std::string& out, const URI::Data& data) {
  appendHostForOutput(out, data);
  if (data.port != defaultPort(data.scheme) && !hasOpaqueAuthority(data.scheme)) {
    char digits[16];
    const auto result = std::to_chars(digits, digits + sizeof digits, data.port);
    out += ':';
    out.append(digits, result.ptr);
  }
}

}  // namespace detail
}  // namespace qta::uri
