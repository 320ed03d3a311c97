// Matching log lines whose time stamps change from run to run.
#ifndef QTA_TESTS_LOG_TEXT_SHAPE_H_
#define QTA_TESTS_LOG_TEXT_SHAPE_H_

#include <string_view>

namespace qta::testing {

// True when `text` has the length of `shape` and matches it character by
// character, where '#' in the shape stands for any decimal digit.
inline bool matchesShape(std::string_view text, std::string_view shape) {
  if (text.size() != shape.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (shape[i] == '#' ? !digit : text[i] != shape[i]) return false;
  }
  return true;
}

// The time stamp of a player-log line, "dd-MM-yyyy HH:mm:ss ".
inline constexpr std::string_view kPlayerStamp = "##-##-#### ##:##:## ";

}  // namespace qta::testing

#endif  // QTA_TESTS_LOG_TEXT_SHAPE_H_
