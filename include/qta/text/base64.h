// qta/text/base64.h: base64 (RFC 4648 section 4, padded) and base64url
// (section 5, unpadded) encoders and forgiving decoders.
//
// Every function is a pure function of its arguments: the result is a new
// string or vector owned by the caller, and any number of threads may call
// them at once. Inputs are pointer and length, so they may hold NUL bytes.
//
// Decoding never fails. Bytes outside the alphabet (white space, line breaks,
// "=", the other alphabet's two characters, bytes of 128 and above) are
// skipped wherever they stand, and a final lone character is ignored.
#ifndef QTA_TEXT_BASE64_H_
#define QTA_TEXT_BASE64_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qta/export.h"

namespace qta::text {

// Standard alphabet ("+", "/"), padded with "=" to a multiple of 4 characters.
QTA_EXPORT std::string base64Encode(const void* data, size_t size);
// URL-safe alphabet ("-", "_"), no padding.
QTA_EXPORT std::string base64UrlEncode(const void* data, size_t size);

// Standard alphabet; "-" and "_" are skipped like any other foreign byte.
QTA_EXPORT std::vector<uint8_t> base64Decode(const char* text, size_t size);
QTA_EXPORT std::string base64DecodeToString(const char* text, size_t size);
// URL-safe alphabet; "+" and "/" are skipped.
QTA_EXPORT std::vector<uint8_t> base64UrlDecode(const char* text, size_t size);
QTA_EXPORT std::string base64UrlDecodeToString(const char* text, size_t size);

inline std::string base64Encode(std::string_view bytes) {
  return base64Encode(bytes.data(), bytes.size());
}
inline std::string base64UrlEncode(std::string_view bytes) {
  return base64UrlEncode(bytes.data(), bytes.size());
}
inline std::vector<uint8_t> base64Decode(std::string_view text) {
  return base64Decode(text.data(), text.size());
}
inline std::string base64DecodeToString(std::string_view text) {
  return base64DecodeToString(text.data(), text.size());
}
inline std::vector<uint8_t> base64UrlDecode(std::string_view text) {
  return base64UrlDecode(text.data(), text.size());
}
inline std::string base64UrlDecodeToString(std::string_view text) {
  return base64UrlDecodeToString(text.data(), text.size());
}

}  // namespace qta::text

#endif  // QTA_TEXT_BASE64_H_
