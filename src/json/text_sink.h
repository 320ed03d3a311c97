// An append-only cursor into a std::string for the JSON writer: appends are
// plain copies into room made ahead, instead of a capacity check and call per
// append. The sink keeps its own pointers to the next byte and the end of the
// room, so an append loads neither the string's size nor its data pointer.
// The string's size is set back to the text written when the sink is
// destroyed, on every path.
#ifndef QTA_JSON_TEXT_SINK_H_
#define QTA_JSON_TEXT_SINK_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

namespace qta::json::detail {

class TextSink {
 public:
  explicit TextSink(std::string& out)
      : out_(out), start_(out.size()), next_(out.data() + start_), end_(next_) {}
  ~TextSink() { out_.resize(used()); }
  TextSink(const TextSink&) = delete;
  TextSink& operator=(const TextSink&) = delete;

  // Makes room for `count` more bytes; returns where they go. Commit them
  // with advance().
  char* room(std::size_t count) {
    if (static_cast<std::size_t>(end_ - next_) < count) grow(count);
    return next_;
  }
  void advance(std::size_t count) { next_ += count; }

  void put(char c) {
    *room(1) = c;
    ++next_;
  }
  void put(const char* text, std::size_t count) {
    copy(room(count), text, count);
    next_ += count;
  }
  template <std::size_t N>
  void put(const char (&literal)[N]) {
    put(literal, N - 1);
  }
  // Copies `count` bytes into room made before.
  static void copy(char* to, const char* from, std::size_t count) {
    if (count <= 16) {
      copyShort(to, from, count);
    } else {
      std::memcpy(to, from, count);
    }
  }

  void repeat(char c, std::size_t count) {
    std::memset(room(count), c, count);
    next_ += count;
  }

 private:
  // Copies up to 16 bytes with two overlapping fixed-size moves, cheaper than
  // a call to memcpy for the short keys and strings that dominate documents.
  static void copyShort(char* to, const char* from, std::size_t count) {
    if (count >= 8) {
      std::uint64_t head, tail;
      std::memcpy(&head, from, 8);
      std::memcpy(&tail, from + count - 8, 8);
      std::memcpy(to, &head, 8);
      std::memcpy(to + count - 8, &tail, 8);
    } else if (count >= 4) {
      std::uint32_t head, tail;
      std::memcpy(&head, from, 4);
      std::memcpy(&tail, from + count - 4, 4);
      std::memcpy(to, &head, 4);
      std::memcpy(to + count - 4, &tail, 4);
    } else if (count != 0) {
      to[0] = from[0];
      to[count / 2] = from[count / 2];
      to[count - 1] = from[count - 1];
    }
  }

  // Kept out of line so that the appends above stay small enough to inline.
  // The room made beyond `count` grows with what this sink has written, so a
  // short append zero-fills little and a long one grows geometrically (the
  // string's own capacity doubles underneath).
  [[gnu::noinline]] void grow(std::size_t count) {
    const std::size_t used = this->used();
    const std::size_t limit = out_.max_size();
    if (count > limit - used) throw std::length_error("basic_string::append");
    const std::size_t needed = used + count;
    const std::size_t slack = std::max({used - start_, count, kMinimumSlack});
    out_.resize(slack > limit - needed ? limit : needed + slack);
    next_ = out_.data() + used;
    end_ = out_.data() + out_.size();
  }

  // The size of the string with the text written so far.
  std::size_t used() const { return static_cast<std::size_t>(next_ - out_.data()); }

  static constexpr std::size_t kMinimumSlack = 64;

  std::string& out_;
  const std::size_t start_;  // the size of the string before this sink
  char* next_;               // where the next byte goes
  char* end_;                // the end of the room made so far
};

}  // namespace qta::json::detail

#endif  // QTA_JSON_TEXT_SINK_H_
