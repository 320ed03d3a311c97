// The vector kernels of the UTF-8 validity check, one per instruction set; the
// caller picks one the processor has (cpu_features.h). Each takes `size`
// readable bytes at `text` and reads nothing outside them.
#ifndef QTA_TEXT_UTF8_VALIDATE_KERNELS_H_
#define QTA_TEXT_UTF8_VALIDATE_KERNELS_H_

#include <cstddef>
#include <cstdint>

namespace qta::text::detail {

bool validUtf8Ssse3(const uint8_t* text, size_t size);
bool validUtf8Avx2(const uint8_t* text, size_t size);

}  // namespace qta::text::detail

#endif  // QTA_TEXT_UTF8_VALIDATE_KERNELS_H_
