// Checks that a comparison is a strict weak ordering on three values, as
// ordered containers need. Shared by the unit tests and the fuzz harness.
#ifndef QTA_TESTS_URI_WEAK_ORDER_H_
#define QTA_TESTS_URI_WEAK_ORDER_H_

#include <string>

namespace qtatest {

// What is wrong with `compare` (negative, zero or positive, like a three-way
// comparison) on a, b and c, or "" when nothing is: every value equals
// itself, swapping the arguments flips the sign, and "not greater" is
// transitive over the triple in every order, staying "less" when either step
// is (so less-than, equality, and their mixes are transitive).
template <typename T, typename Compare>
std::string weakOrderViolation(const T& a, const T& b, const T& c, Compare compare) {
  const T* values[] = {&a, &b, &c};
  const auto sign = [&](int i, int j) {
    const int result = compare(*values[i], *values[j]);
    return (result > 0) - (result < 0);
  };
  for (int i = 0; i < 3; ++i) {
    if (sign(i, i) != 0) return "value " + std::to_string(i) + " differs from itself";
    for (int j = 0; j < 3; ++j) {
      if (sign(i, j) != -sign(j, i)) {
        return "swapping " + std::to_string(i) + " and " + std::to_string(j) +
               " does not flip the sign";
      }
      for (int k = 0; k < 3; ++k) {
        const std::string order =
            std::to_string(i) + "," + std::to_string(j) + "," + std::to_string(k);
        if (sign(i, j) > 0 || sign(j, k) > 0) continue;
        const int expected = sign(i, j) < 0 || sign(j, k) < 0 ? -1 : 0;
        if (sign(i, k) != expected) return "the order is not transitive over " + order;
      }
    }
  }
  return "";
}

}  // namespace qtatest

#endif  // QTA_TESTS_URI_WEAK_ORDER_H_
