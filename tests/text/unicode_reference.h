// A plain, byte-at-a-time model of the Unicode conversion rules, written
// straight from the rules with no fast paths. The differential tests and the
// fuzz harnesses compare the library against it.
#ifndef QTA_TESTS_TEXT_UNICODE_REFERENCE_H_
#define QTA_TESTS_TEXT_UNICODE_REFERENCE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace unicoderef {

// A lead byte with the top bits, then 6 bits per continuation byte.
inline void encode(std::string& out, uint32_t c) {
  if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) return;
  const int extra = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
  constexpr uint32_t kLead[] = {0x00, 0xC0, 0xE0, 0xF0};
  out.push_back(static_cast<char>(kLead[extra] | c >> 6 * extra));
  for (int k = extra - 1; k >= 0; --k) out.push_back(static_cast<char>(0x80 | (c >> 6 * k & 0x3F)));
}

inline std::string utf32ToUtf8(std::u32string_view src) {
  std::string out;
  for (char32_t c : src) encode(out, c);
  return out;
}

// The UTF-32 length rule: an estimate that counts 0 from 0x10FFFF up.
inline size_t utf32ToUtf8Estimate(std::u32string_view src) {
  size_t n = 0;
  for (char32_t c : src) n += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : c < 0x10FFFF ? 4 : 0;
  return n;
}

inline std::string utf16ToUtf8(std::u16string_view src) {
  std::string out;
  for (size_t i = 0; i < src.size(); ++i) {
    const uint32_t u = src[i];
    if (u < 0xD800 || u > 0xDFFF) {
      encode(out, u);
    } else if (u <= 0xDBFF && i + 1 < src.size() && src[i + 1] >= 0xDC00 && src[i + 1] <= 0xDFFF) {
      encode(out, 0x10000 + ((u & 0x3FF) << 10 | (src[i + 1] & 0x3FF)));
      ++i;
    }
  }
  return out;
}

// What one step of the UTF-8 decoder read: the bytes it consumed and either a
// code point or a failure. Steps over stray continuation bytes have no output.
struct Step {
  size_t consumed;
  bool output;
  bool failed;
  bool fourByteLead;
  uint32_t value;
};

inline Step decodeStep(std::string_view s, size_t i) {
  auto byte = [&](size_t k) { return static_cast<uint8_t>(s[k]); };
  auto cont = [&](size_t k) { return k < s.size() && (byte(k) & 0xC0) == 0x80; };
  const uint32_t b = byte(i);
  if (b < 0x80) return {1, true, false, false, b};
  if (b < 0xC0) return {1, false, false, false, 0};
  if (b < 0xE0) {
    if (!cont(i + 1)) return {1, true, true, false, 0};
    const uint32_t v = (b & 0x1F) << 6 | (byte(i + 1) & 0x3F);
    return {2, true, v < 0x80, false, v};
  }
  if (b < 0xF0) {
    if (!cont(i + 1) || !cont(i + 2)) return {1, true, true, false, 0};
    const uint32_t v = (b & 0x0F) << 12 | (byte(i + 1) & 0x3F) << 6 | (byte(i + 2) & 0x3F);
    return {3, true, v < 0x800, false, v};
  }
  if (b >= 0xF8 || !cont(i + 1) || !cont(i + 2) || !cont(i + 3)) return {1, true, true, true, 0};
  const uint32_t v = (b & 0x07) << 18 | (byte(i + 1) & 0x3F) << 12 | (byte(i + 2) & 0x3F) << 6 |
                     (byte(i + 3) & 0x3F);
  return {4, true, v < 0x10000 || v > 0x10FFFF, true, v};
}

inline std::u16string utf8ToUtf16(std::string_view s) {
  std::u16string out;
  for (size_t i = 0; i < s.size();) {
    const Step st = decodeStep(s, i);
    i += st.consumed;
    if (!st.output) continue;
    if (st.failed) {
      out += st.fourByteLead ? u"??" : u"?";
    } else if (st.value >= 0x10000) {
      out.push_back(static_cast<char16_t>(0xD800 + ((st.value - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((st.value - 0x10000) & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(st.value));
    }
  }
  return out;
}

inline std::u32string utf8ToUtf32(std::string_view s) {
  std::u32string out;
  for (size_t i = 0; i < s.size();) {
    const Step st = decodeStep(s, i);
    i += st.consumed;
    if (st.output) out.push_back(st.failed ? U'?' : static_cast<char32_t>(st.value));
  }
  return out;
}

inline bool isValidUtf8(std::string_view s) {
  for (size_t i = 0; i < s.size();) {
    const Step st = decodeStep(s, i);
    if (st.failed) return false;
    i += st.consumed;
  }
  return true;
}

}  // namespace unicoderef

#endif  // QTA_TESTS_TEXT_UNICODE_REFERENCE_H_
