// The vector kernels of UTF-16 and UTF-32 to UTF-8, one per instruction set;
// the caller picks one the processor has (cpu_features.h). Each converts whole
// blocks from `p` and stops at the first it does not handle, where the scalar
// code goes on. They run only while kEncodeBlocksMinUnits units remain and
// `room`, the bytes that may be written at `out`, is at least
// kEncodeBlocksMinRoom. Their wide stores may write scratch bytes past the
// bytes they return, but never past `room` nor past the output that the units
// after them are sure to give, so a buffer of exactly the result's size
// suffices. Each advances `p` and returns the bytes written.
#ifndef QTA_TEXT_UTF8_ENCODE_KERNELS_H_
#define QTA_TEXT_UTF8_ENCODE_KERNELS_H_

#include <cstddef>

namespace qta::text::detail {

// Below these the kernels return at once: callers skip the call.
inline constexpr size_t kEncodeBlocksMinUnits = 24;
inline constexpr size_t kEncodeBlocksMinRoom = 40;

size_t encodeUtf8BlocksSsse3(const char16_t*& p, const char16_t* end, char* out, size_t room);
size_t encodeUtf8BlocksSsse3(const char32_t*& p, const char32_t* end, char* out, size_t room);
size_t encodeUtf8BlocksAvx2(const char16_t*& p, const char16_t* end, char* out, size_t room);
size_t encodeUtf8BlocksAvx2(const char32_t*& p, const char32_t* end, char* out, size_t room);

// Narrow runs of kAsciiRunUnits ASCII units after one test, and take the odd
// block with other units among them (a dash, an accented name) through the
// kernels' mixed step; they stop at longer text of another script, at units
// that are not plain and near the end, with the kernels' rules on scratch
// bytes. Each advances `p` and returns the bytes written.
inline constexpr size_t kAsciiRunUnits = 64;
size_t narrowAsciiAvx2(const char16_t*& p, const char16_t* end, char* out, size_t room);
size_t narrowAsciiSsse3(const char16_t*& p, const char16_t* end, char* out, size_t room);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_ENCODE_KERNELS_H_
