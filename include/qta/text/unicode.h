// qta/text/unicode.h: conversion between UTF-8, UTF-16 and UTF-32, and the
// UTF-8 validity check.
//
// UTF-8 is bytes (char), UTF-16 is char16_t units in the machine's byte order,
// UTF-32 is char32_t code points. Conversions never fail: what cannot be
// converted is dropped or replaced by '?' by the fixed rules below. Functions
// that write into a caller's buffer only write; the caller owns every buffer
// and every returned string. All functions are pure over their arguments and
// may run on any number of threads at once.
//
// Every direction comes in the same forms:
//   terminated   f(src, dst, terminate)          source ends at its first 0 unit
//   counted      f(src, count, dst, terminate)   source is `count` units
//   incremental  fPartial(src, remaining, dst, capacity)
//   string       f(view)                         returns std::string / u16string / u32string
//   length       fLength(view)                   units the conversion produces
// Terminated and counted forms write into `dst`, which must hold the result
// (the length form tells how much) plus one unit when `terminate` asks for a 0
// after it; they return the number of units written, the 0 not counted.
// The incremental form reads from `src` (`remaining` units left), writes at most
// `capacity` units (the units of `dst` past those it returns may be
// overwritten as scratch), never splits a sequence, advances `src` and
// `remaining` past what it consumed and returns the number of units written; the caller
// calls again with a fresh buffer until `remaining` is 0. It always makes
// progress when `capacity` is at least 4 (UTF-8 output) or 2 (UTF-16 output).
// Views (string and length forms) accept a NUL-terminated pointer as well as a
// pointer and a count or a string object.
//
// Rules when producing UTF-8: surrogate code points (0xD800 to 0xDFFF) and
// values above 0x10FFFF are dropped without replacement. From UTF-16 a high
// surrogate followed by a low one makes one four-byte sequence; every unpaired
// surrogate is dropped.
// Rules when reading UTF-8 (to UTF-16 and UTF-32 alike):
//   - a continuation byte (0x80 to 0xBF) where a lead byte is expected is skipped;
//   - a two- or three-byte sequence that is overlong, or whose lead byte lacks its
//     continuation bytes, gives one '?'; surrogates in three bytes pass through;
//   - a lead byte 0xF0 to 0xFF that does not start a four-byte sequence of
//     0x10000 to 0x10FFFF gives "??" in UTF-16 and '?' in UTF-32;
//   - after a failed lead byte the following bytes are read afresh.
#ifndef QTA_TEXT_UNICODE_H_
#define QTA_TEXT_UNICODE_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "qta/export.h"

namespace qta::text {

// Appends the UTF-8 form of one code point to `out`; surrogates and values above
// 0x10FFFF append nothing.
QTA_EXPORT void appendUtf8(std::string& out, char32_t codePoint);

// --- UTF-32 to UTF-8 ------------------------------------------------------
// `dst` needs up to 4 bytes per code point: the length form is only an estimate
// (it counts 0 for 0x10FFFF and above, although 0x10FFFF itself is written).
QTA_EXPORT size_t utf32ToUtf8(const char32_t* src, char* dst, bool terminate);
QTA_EXPORT size_t utf32ToUtf8(const char32_t* src, size_t count, char* dst, bool terminate);
QTA_EXPORT size_t utf32ToUtf8Partial(const char32_t*& src, size_t& remaining, char* dst,
                                     size_t capacity);
QTA_EXPORT std::string utf32ToUtf8(std::u32string_view src);
// Estimate: 1, 2 or 3 bytes by value (surrogates 3), 4 from 0x10000 to 0x10FFFE,
// 0 from 0x10FFFF up.
QTA_EXPORT size_t utf32ToUtf8Length(std::u32string_view src);

// --- UTF-16 to UTF-8 ------------------------------------------------------
QTA_EXPORT size_t utf16ToUtf8(const char16_t* src, char* dst, bool terminate);
QTA_EXPORT size_t utf16ToUtf8(const char16_t* src, size_t count, char* dst, bool terminate);
QTA_EXPORT size_t utf16ToUtf8Partial(const char16_t*& src, size_t& remaining, char* dst,
                                     size_t capacity);
QTA_EXPORT std::string utf16ToUtf8(std::u16string_view src);
// Exact: a surrogate pair counts 4, an unpaired surrogate 0.
QTA_EXPORT size_t utf16ToUtf8Length(std::u16string_view src);

// --- UTF-8 to UTF-16 ------------------------------------------------------
// The incremental form stops before a lead byte 0xF0 to 0xFF when fewer than
// two units of room are left.
QTA_EXPORT size_t utf8ToUtf16(const char* src, char16_t* dst, bool terminate);
QTA_EXPORT size_t utf8ToUtf16(const char* src, size_t count, char16_t* dst, bool terminate);
QTA_EXPORT size_t utf8ToUtf16Partial(const char*& src, size_t& remaining, char16_t* dst,
                                     size_t capacity);
QTA_EXPORT std::u16string utf8ToUtf16(std::string_view src);
QTA_EXPORT size_t utf8ToUtf16Length(std::string_view src);

// --- UTF-8 to UTF-32 ------------------------------------------------------
QTA_EXPORT size_t utf8ToUtf32(const char* src, char32_t* dst, bool terminate);
QTA_EXPORT size_t utf8ToUtf32(const char* src, size_t count, char32_t* dst, bool terminate);
QTA_EXPORT size_t utf8ToUtf32Partial(const char*& src, size_t& remaining, char32_t* dst,
                                     size_t capacity);
QTA_EXPORT std::u32string utf8ToUtf32(std::string_view src);
QTA_EXPORT size_t utf8ToUtf32Length(std::string_view src);

// --- UTF-8 validity ---------------------------------------------------------
// True when every lead byte has its continuation bytes, no two- or three-byte
// form is overlong and every four-byte form is in 0x10000 to 0x10FFFF. Stray
// continuation bytes and surrogates in three bytes are accepted (the converters
// drop and pass them); bytes 0xF8 to 0xFF are not. Empty text is valid.
QTA_EXPORT bool isValidUtf8(std::string_view src);

}  // namespace qta::text

#endif  // QTA_TEXT_UNICODE_H_
