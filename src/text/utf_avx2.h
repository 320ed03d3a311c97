// Block converters for processors with AVX2, chosen at run time. They handle
// the common shapes of text sixteen bytes (or eight units) at a time and stop
// at the first block they do not handle; the portable converters go on from
// there and give the same result for everything either of them does.
#ifndef QTA_TEXT_UTF_AVX2_H_
#define QTA_TEXT_UTF_AVX2_H_

#include <cstddef>
#include <cstdint>

#include "text/cpu_features.h"  // callers ask avx2Enabled() before using these

namespace qta::text::detail {

// UTF-16 to UTF-8 over blocks: 16 units that are eight surrogate pairs, 16
// units below 0x800, or 8 units without surrogates; the last two only when the
// 24 units from the block's start hold no surrogates, so that the output still
// to come covers the blocks' wider stores. Works while at least 24 units remain
// and `room` is at least 32. Advances `p`; returns bytes written.
size_t encodeBlocksAvx2(const char16_t*& p, const char16_t* end, char* out, size_t room);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF_AVX2_H_
