// qta/uri/escape.h: percent-escaping primitives of URI components.
//
// Character sets for the components, the escape checker and decoder, the
// normaliser the parser applies to user info, query and fragment, the encoder
// the writers use, and the decoder of the display form. Escapes are always
// written with upper-case hexadecimal digits.
//
// In template mode (qta/uri/template_mode.h) placeholders are copied verbatim
// and never split, decoded or escaped.
//
// Every function is pure: results are new strings owned by the caller, and
// any number of threads may call them at once.
#ifndef QTA_URI_ESCAPE_H_
#define QTA_URI_ESCAPE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "qta/export.h"
#include "qta/uri/template_mode.h"

namespace qta::uri {

// A set of byte values, usable in constant expressions. A table of 256 flags
// makes the membership test one load in the escaping loops.
class CharSet {
 public:
  constexpr CharSet() = default;
  constexpr explicit CharSet(std::string_view chars) {
    for (char c : chars) add(static_cast<unsigned char>(c));
  }

  constexpr bool contains(unsigned char c) const { return members_[c]; }
  constexpr void add(unsigned char c) { members_[c] = true; }

  constexpr CharSet operator|(const CharSet& other) const {
    CharSet both;
    for (int i = 0; i < 256; ++i) both.members_[i] = members_[i] || other.members_[i];
    return both;
  }

 private:
  bool members_[256] = {};
};

// Letters, digits, "-", ".", "_", "~": never escaped, decoded when escaped.
inline constexpr CharSet kUnreserved{
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~"};

// Sets the parser normalises with: escapes of the decode set are decoded,
// characters of the keep set stay as they are, literal or escaped.
inline constexpr CharSet kUserInfoDecodeSet{"!$&'()*+;="};
inline constexpr CharSet kUserInfoKeepSet{":,"};
inline constexpr CharSet kQueryDecodeSet{"*:/?@"};
inline constexpr CharSet kQueryKeepSet{"+;&=[]"};
inline constexpr CharSet kFragmentDecodeSet{"!$&'()*+,;=:/?@"};
inline constexpr CharSet kFragmentKeepSet{"[]"};

// True when every "%" (outside placeholders in template mode) is followed by
// two hexadecimal digits.
QTA_EXPORT bool hasValidEscapes(std::string_view text,
                                TemplateMode templateMode = TemplateMode::kOff);

// Replaces each "%" and two hexadecimal digits by the byte they denote; in
// template mode placeholders are copied verbatim. Nothing when a "%" begins no
// such escape.
QTA_EXPORT std::optional<std::string> percentDecode(std::string_view text,
                                                    TemplateMode templateMode = TemplateMode::kOff);
// The same, except that a "%" that begins no escape is copied as it is.
QTA_EXPORT std::string percentDecodeLeniently(std::string_view text,
                                              TemplateMode templateMode = TemplateMode::kOff);

// The position of the first `ch` at or after `from` that is not inside a
// placeholder, or std::string_view::npos.
QTA_EXPORT size_t findOutsidePlaceholder(std::string_view text, char ch, size_t from = 0);
// The same over a NUL-terminated text.
QTA_EXPORT size_t findOutsidePlaceholder(const char* text, char ch, size_t from = 0);

// The normalised escaped form of a component: unreserved characters are
// copied; an escape of an unreserved or decode-set byte is decoded, other
// escapes are kept with upper-case digits; any other literal character is kept
// when it is in the keep or decode set and escaped otherwise ("%" that begins
// no valid escape becomes "%25").
QTA_EXPORT std::string normalizeComponent(std::string_view text, const CharSet& decodeSet,
                                          const CharSet& keepSet,
                                          TemplateMode templateMode = TemplateMode::kOff);

// Escapes every byte that is neither unreserved nor in `keepSet`. Nothing is
// decoded.
QTA_EXPORT std::string percentEncode(std::string_view text, const CharSet& keepSet = CharSet(),
                                     TemplateMode templateMode = TemplateMode::kOff);

// Decodes the escapes of bytes in `decodeSet` that are above 32 and not "%";
// every other escape, valid or not, is copied unchanged.
QTA_EXPORT std::string displayDecode(std::string_view text, const CharSet& decodeSet,
                                     TemplateMode templateMode = TemplateMode::kOff);

}  // namespace qta::uri

#endif  // QTA_URI_ESCAPE_H_
