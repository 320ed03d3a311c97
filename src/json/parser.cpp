// The JSON parser: one pass over the text with a single cursor. Open arrays
// and objects are kept on an explicit stack instead of the machine stack, so
// any depth of nesting costs heap only.
#include "qta/json/parser.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "json/number_text.h"
#include "json/string_literal.h"

namespace qta::json {
namespace {

bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The first byte at or after `cursor`, which stands on white space, that is
// not white space; `end` is the text's terminating NUL. Indented text has
// long runs (a line feed and the next line's indentation), which are skipped
// 16 bytes at a time where SSE2 is there.
[[gnu::noinline]] const char* skipWhiteSpaceRun(const char* cursor, const char* end) {
#ifdef __SSE2__
  for (; end - cursor >= 16; cursor += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cursor));
    const __m128i spaces = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' ')),
                                        _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')));
    const __m128i controls = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\t')),
                                          _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\r')));
    const auto white = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(spaces, controls)));
    if (white != 0xFFFF) return cursor + __builtin_ctz(~white);
  }
#endif
  while (isWhiteSpace(*cursor)) ++cursor;
  return cursor;
}

// The first byte at or after `cursor` that is not white space. Compact text
// has none to skip and indented text mostly a single space (after ":"),
// which the inlined first tests settle without a call.
inline const char* skipWhiteSpace(const char* cursor, const char* end) {
  if (*cursor == ' ') ++cursor;
  return isWhiteSpace(*cursor) ? skipWhiteSpaceRun(cursor, end) : cursor;
}

// True when the text at `cursor` starts with `word`; compares byte by byte,
// so it stops at the end of the text.
bool startsWith(const char* cursor, std::string_view word) {
  for (const char c : word) {
    if (*cursor++ != c) return false;
  }
  return true;
}

class Parser {
 public:
  // `end` is the text's terminating NUL.
  Parser(const char* text, const char* end) : cursor_(text), end_(end) {}

  const char* cursor() const { return cursor_; }

  void skipWhiteSpace() { cursor_ = qta::json::skipWhiteSpace(cursor_, end_); }

  JSON::root parseValue() {
    skipWhiteSpace();
    if (*cursor_ != '[' && *cursor_ != '{') return parseScalar();
    JSON::root top = create();
    enter(top.get());
    return parseContainers() ? std::move(top) : nullptr;
  }

 private:
  // An array or object whose closing bracket has not been reached. It is
  // owned by its parent already (an object's member, an entry of elements_ or
  // the top value), so a failure anywhere frees it with the rest.
  struct Open {
    JSON* container;
    std::size_t firstElement;  // arrays: where their elements start in elements_
  };

  // The new container whose opening bracket is at the cursor; passes it.
  JSON::root create() {
    if (*cursor_++ == '[') return std::make_unique<JSONArray>();
    return std::make_unique<JSONObject>();
  }

  // Makes `container`, already owned by its parent, the innermost open one.
  void enter(JSON* container) { open_.push_back({container, elements_.size()}); }

  // Runs until the container opened last and all inside it are closed. After
  // a value the innermost container expects a separator or its closing
  // bracket; after its opening bracket, a value or the closing bracket. The
  // innermost container and its kind are kept at hand, and looked up again
  // only when a container opens or closes.
  bool parseContainers() {
    JSON* innermost = nullptr;
    bool isArray = false;
    const auto focusOn = [&](JSON* container) {
      innermost = container;
      isArray = container->type == JSON::Array;
    };
    const auto closeInnermost = [&] {
      if (close()) return true;
      focusOn(open_.back().container);
      return false;
    };
    focusOn(open_.back().container);
    bool afterValue = false;
    for (;;) {
      skipWhiteSpace();
      if (*cursor_ == (isArray ? ']' : '}')) {
        ++cursor_;
        if (closeInnermost()) return true;
        afterValue = true;
        continue;
      }
      if (afterValue) {
        if (*cursor_ != ',') return false;
        ++cursor_;  // the end of the text right after a comma ends the container
      }
      if (*cursor_ == '\0') {
        // The container stands as it is. The cursor stays on the end, so an
        // enclosing container then fails for want of its closing bracket.
        if (closeInnermost()) return true;
        afterValue = true;
        continue;
      }
      if (!isArray && !parseKey()) return false;
      skipWhiteSpace();
      JSON::root value;
      const bool opens = *cursor_ == '[' || *cursor_ == '{';
      if (opens) {
        value = create();
      } else {
        value = parseScalar();
        if (!value) return false;
      }
      JSON* const child = value.get();
      if (isArray) {
        // An array's element waits in elements_ until the array closes.
        elements_.push_back(std::move(value));
      } else {
        storeMember(*innermost, std::move(value));
      }
      afterValue = !opens;
      if (opens) {
        enter(child);
        focusOn(child);
      }
    }
  }

  // An object member's key and the ":" after it.
  bool parseKey() {
    skipWhiteSpace();
    if (!detail::readString(cursor_, end_, keyScratch_, key_) || key_.empty()) return false;
    skipWhiteSpace();
    if (*cursor_ != ':') return false;
    ++cursor_;
    return true;
  }

  // Stores `value` in `object` under key_ at once, the last of equal keys
  // replacing the others. The key is built in its map node straight from the
  // text. With the end as hint a key above all present ones (documents
  // written in key order) costs one comparison; any other key is looked up
  // once, and an equal key already present is the member returned, whose
  // value is replaced.
  void storeMember(JSON& object, JSON::root value) {
    JSON::Members& members = static_cast<JSONObject&>(object);
    const auto member = members.emplace_hint(members.end(), std::piecewise_construct,
                                             std::forward_as_tuple(key_), std::forward_as_tuple());
    member->second = std::move(value);
  }

  // Closes the innermost container; true when it was the outermost one. An
  // array receives its elements in one allocation of the exact size.
  bool close() {
    const Open closing = open_.back();
    open_.pop_back();
    if (closing.container->type == JSON::Array) {
      auto& elements = static_cast<JSONArray&>(*closing.container);
      const auto first = elements_.begin() + static_cast<std::ptrdiff_t>(closing.firstElement);
      elements.reserve(static_cast<std::size_t>(elements_.end() - first));
      elements.insert(elements.end(), std::make_move_iterator(first),
                      std::make_move_iterator(elements_.end()));
      elements_.erase(first, elements_.end());
    }
    return open_.empty();
  }

  // A value that is not a container, at the cursor (white space skipped).
  JSON::root parseScalar() {
    switch (*cursor_) {
      case 'n':
        return literal("null", [] { return std::make_unique<JSONNull>(); });
      case 't':
        return literal("true", [] { return std::make_unique<JSONBoolean>(1); });
      case 'f':
        return literal("false", [] { return std::make_unique<JSONBoolean>(0); });
      case '"': {
        std::string_view text;
        if (!detail::readString(cursor_, end_, scratch_, text)) return nullptr;
        return std::make_unique<JSONString>(std::string(text));
      }
      case '-':
      case '0':
      case '1':
      case '2':
      case '3':
      case '4':
      case '5':
      case '6':
      case '7':
      case '8':
      case '9': {
        double value;
        const char* end = detail::scanNumberPrefix(cursor_, end_, value);
        if (end == nullptr) return nullptr;
        cursor_ = end;
        return std::make_unique<JSONNumber>(value);
      }
      default:
        return nullptr;
    }
  }

  template <typename Make>
  JSON::root literal(std::string_view word, Make make) {
    if (!startsWith(cursor_, word)) return nullptr;
    cursor_ += word.size();
    return make();
  }

  const char* cursor_;
  const char* const end_;
  std::vector<Open> open_;
  std::vector<JSON::root> elements_;  // the elements of the open arrays, innermost last
  std::string_view key_;              // the key of the member being parsed
  std::string keyScratch_;            // key_'s bytes when the key has escapes
  std::string scratch_;               // a string value's bytes when it has escapes
};

}  // namespace

JSON::root parse(const std::string& text) {
  Parser parser(text.c_str(), text.c_str() + text.size());
  JSON::root value = parser.parseValue();
  if (!value || *skipWhiteSpace(parser.cursor(), text.c_str() + text.size()) != '\0')
    return nullptr;
  return value;
}

JSON::root parseValue(const char*& cursor) {
  Parser parser(cursor, cursor + std::strlen(cursor));
  JSON::root value = parser.parseValue();
  cursor = parser.cursor();
  return value;
}

bool parseString(const char*& cursor, std::string& out) {
  if (*cursor != '"') return false;
  ++cursor;
  return detail::decodeStringRest(cursor, cursor + std::strlen(cursor), out);
}

}  // namespace qta::json
