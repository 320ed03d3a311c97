// qta/text/base64.h: base64 (RFC 4648 section 4, padded) and base64url
// (section 5, unpadded) encoders and forgiving decoders.
//
// Every function is a pure function of its arguments: the result is a new
// string or vector owned by the caller, or, in the "...To" forms, bytes
// written to memory the caller owns and lends for the call. Any number of
// threads may call them at once. Inputs are pointer and length, so they may
// hold NUL bytes.
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

// Characters base64Encode gives for `size` bytes.
constexpr size_t base64EncodedSize(size_t size) { return (size + 2) / 3 * 4; }
// Characters base64UrlEncode gives for `size` bytes.
constexpr size_t base64UrlEncodedSize(size_t size) {
  return size / 3 * 4 + (size % 3 == 0 ? 0 : size % 3 + 1);
}
// Most bytes a text of `size` characters decodes to, reached when every
// character is in the alphabet.
constexpr size_t base64DecodedSizeMax(size_t size) {
  return size / 4 * 3 + (size % 4 == 0 ? 0 : size % 4 - 1);
}

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

// Caller-buffer forms: each writes the same result as the form above to `out`
// and returns its length when that is at most `capacity`. A longer result is
// not written at all; the return is then its length, which is more than
// `capacity`, so a call with capacity 0 asks for the length. Capacities of
// base64EncodedSize / base64UrlEncodedSize / base64DecodedSizeMax always do;
// a decoder given less counts the text's alphabet characters first.
QTA_EXPORT size_t base64EncodeTo(const void* data, size_t size, char* out, size_t capacity);
QTA_EXPORT size_t base64UrlEncodeTo(const void* data, size_t size, char* out, size_t capacity);
QTA_EXPORT size_t base64DecodeTo(const char* text, size_t size, void* out, size_t capacity);
QTA_EXPORT size_t base64UrlDecodeTo(const char* text, size_t size, void* out, size_t capacity);

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

inline size_t base64EncodeTo(std::string_view bytes, char* out, size_t capacity) {
  return base64EncodeTo(bytes.data(), bytes.size(), out, capacity);
}
inline size_t base64UrlEncodeTo(std::string_view bytes, char* out, size_t capacity) {
  return base64UrlEncodeTo(bytes.data(), bytes.size(), out, capacity);
}
inline size_t base64DecodeTo(std::string_view text, void* out, size_t capacity) {
  return base64DecodeTo(text.data(), text.size(), out, capacity);
}
inline size_t base64UrlDecodeTo(std::string_view text, void* out, size_t capacity) {
  return base64UrlDecodeTo(text.data(), text.size(), out, capacity);
}

}  // namespace qta::text

#endif  // QTA_TEXT_BASE64_H_
