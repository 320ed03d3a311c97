// Placeholder spans of template mode ("[[" up to the next "]]") and the scan
// for separator bytes that skips them.
#ifndef QTA_SRC_URI_PLACEHOLDER_H_
#define QTA_SRC_URI_PLACEHOLDER_H_

#include <cstddef>
#include <string_view>

#include "qta/uri/escape.h"

namespace qta::uri::detail {

// Finds where placeholders end in one text. A failed search for "]]" is
// remembered, so a text full of unclosed "[[" is still scanned in linear time.
class PlaceholderFinder {
 public:
  explicit PlaceholderFinder(std::string_view text) : text_(text) {}

  // When a placeholder starts at `pos`, the position just after its "]]";
  // otherwise std::string_view::npos.
  size_t endAt(size_t pos) {
    if (pos + 1 >= text_.size() || text_[pos] != '[' || text_[pos + 1] != '[') {
      return std::string_view::npos;
    }
    if (pos + 2 >= noCloseFrom_) return std::string_view::npos;
    const size_t close = text_.find("]]", pos + 2);
    if (close == std::string_view::npos) {
      noCloseFrom_ = pos + 2;
      return std::string_view::npos;
    }
    return close + 2;
  }

 private:
  std::string_view text_;
  size_t noCloseFrom_ = std::string_view::npos;  // no "]]" starts at or after this
};

// The first position at or after `from` that holds a byte of `stops` (outside
// placeholders in template mode), or text.size() when there is none.
inline size_t findStop(std::string_view text, size_t from, const CharSet& stops,
                       TemplateMode templateMode, PlaceholderFinder& placeholders) {
  const size_t size = text.size();
  size_t i = from;
  while (i < size) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (stops.contains(c)) return i;
    if (templateMode == TemplateMode::kOn && c == '[') {
      const size_t end = placeholders.endAt(i);
      if (end != std::string_view::npos) {
        i = end;
        continue;
      }
    }
    ++i;
  }
  return size;
}

}  // namespace qta::uri::detail

#endif  // QTA_SRC_URI_PLACEHOLDER_H_
