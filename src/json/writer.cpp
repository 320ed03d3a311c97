// JSON text output: strings, numbers and the iterative container writer.
#include "qta/json/writer.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "json/number_text.h"
#include "json/tree_ops.h"
#include "qta/utils/format.h"

namespace qta::json {
namespace {

// The bytes a string cannot hold as they are: NUL (where the text ends),
// other control bytes, the double quote and the backslash.
constexpr std::array<bool, 256> kSpecial = [] {
  std::array<bool, 256> special{};
  for (int c = 0; c < 32; ++c) special[c] = true;
  special['"'] = true;
  special['\\'] = true;
  return special;
}();

constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;

// A word with the high bit set in each byte of `word` that is zero, and
// possibly in higher bytes after one (only "any" is reliable).
constexpr std::uint64_t zeroBytes(std::uint64_t word) { return (word - kOnes) & ~word & kHighBits; }

// True when any of the eight bytes of `word` is special (see kSpecial).
bool hasSpecialByte(std::uint64_t word) {
  const std::uint64_t controls = (word - kOnes * 0x20) & ~word & kHighBits;
  return (controls | zeroBytes(word ^ (kOnes * '"')) | zeroBytes(word ^ (kOnes * '\\'))) != 0;
}

// The length of the leading run of `[text, end)` that needs no escaping.
std::size_t plainRun(const char* text, const char* end) {
  const char* cursor = text;
  while (end - cursor >= 8) {
    std::uint64_t word;
    std::memcpy(&word, cursor, 8);
    if (hasSpecialByte(word)) break;
    cursor += 8;
  }
  while (cursor != end && !kSpecial[static_cast<unsigned char>(*cursor)]) ++cursor;
  return static_cast<std::size_t>(cursor - text);
}

void appendEscape(std::string& out, unsigned char c) {
  switch (c) {
    case '"':
      out.append("\\\"", 2);
      break;
    case '\\':
      out.append("\\\\", 2);
      break;
    case '\b':
      out.append("\\b", 2);
      break;
    case '\f':
      out.append("\\f", 2);
      break;
    case '\n':
      out.append("\\n", 2);
      break;
    case '\r':
      out.append("\\r", 2);
      break;
    case '\t':
      out.append("\\t", 2);
      break;
    default:
      out += formatString("\\u%04X", c);
      break;
  }
}

// Quotes and escapes `[text, end)`, stopping early at a NUL byte.
void appendQuoted(std::string& out, const char* text, const char* end) {
  out.push_back('"');
  while (text != end) {
    const std::size_t run = plainRun(text, end);
    out.append(text, run);
    text += run;
    if (text == end || *text == '\0') break;
    appendEscape(out, static_cast<unsigned char>(*text++));
  }
  out.push_back('"');
}

// Writes one array or object and everything below it, keeping the open
// containers on an explicit stack instead of the machine stack.
class TreeWriter {
 public:
  TreeWriter(std::string& out, int indent) : out_(out), multiLine_(indent >= 0) {}

  void run(const JSON& top, int indent) {
    writeValue(top, indent);
    while (!open_.empty()) step();
  }

 private:
  struct Open {
    const JSON* container;
    std::size_t next;                      // the next element (arrays)
    JSON::Members::const_iterator member;  // the next member (objects)
    int indent;
  };

  void writeValue(const JSON* value, int indent) {
    if (value == nullptr) {
      out_.append("null", 4);  // an empty slot left by take()
    } else {
      writeValue(*value, indent);
    }
  }

  void writeValue(const JSON& value, int indent) {
    switch (value.type) {
      case JSON::Array:
        if (value.empty()) {
          out_.append("[ ]", 3);
        } else {
          openContainer('[', value, indent);
        }
        break;
      case JSON::Object:
        if (value.empty()) {
          out_.append("{ }", 3);
        } else {
          openContainer('{', value, indent);
          open_.back().member = value.members().begin();
        }
        break;
      case JSON::Number:
        writeNumber(out_, static_cast<const JSONNumber&>(value).value);
        break;
      case JSON::String:
        detail::writeText(out_, static_cast<const JSONString&>(value).text());
        break;
      default:
        value.write(out_, indent);
        break;
    }
  }

  void openContainer(char bracket, const JSON& container, int indent) {
    out_.push_back(bracket);
    out_.push_back(multiLine_ ? '\n' : ' ');
    open_.push_back(Open{&container, 0, {}, multiLine_ ? indent : -1});
  }

  // Writes the next child of the innermost open container, or closes it.
  void step() {
    Open& top = open_.back();
    const int indent = top.indent;
    const JSON* child;
    if (top.container->type == JSON::Array) {
      const JSON::Elements& elements = top.container->elements();
      if (top.next == elements.size()) return close(']');
      startItem(top.next != 0, indent);
      child = elements[top.next++].get();
    } else {
      if (top.member == top.container->members().end()) return close('}');
      startItem(top.member != top.container->members().begin(), indent);
      appendQuoted(out_, top.member->first.data(),
                   top.member->first.data() + top.member->first.size());
      out_.append(": ", 2);
      child = (top.member++)->second.get();
    }
    writeValue(child, multiLine_ ? indent + 1 : -1);  // may push: `top` is stale now
  }

  void startItem(bool separated, int indent) {
    if (multiLine_) {
      if (separated) out_.append(",\n", 2);
      out_.append(static_cast<std::size_t>(indent) + 1, '\t');
    } else if (separated) {
      out_.append(", ", 2);
    }
  }

  void close(char bracket) {
    if (multiLine_) {
      out_.push_back('\n');
      out_.append(static_cast<std::size_t>(open_.back().indent), '\t');
    } else {
      out_.push_back(' ');
    }
    out_.push_back(bracket);
    open_.pop_back();
  }

  std::string& out_;
  const bool multiLine_;
  std::vector<Open> open_;
};

}  // namespace

void writeString(std::string& out, const char* text) {
  appendQuoted(out, text, text + std::strlen(text));
}

void writeNumber(std::string& out, double value) {
  char buffer[detail::kNumberTextMax];
  out.append(buffer, detail::formatNumber(value, buffer));
}

std::string toJSONText(const JSON& value, int indent) {
  std::string out;
  value.write(out, indent);
  return out;
}

namespace detail {

void writeText(std::string& out, const std::string& text) {
  appendQuoted(out, text.data(), text.data() + text.size());
}

void writeTree(std::string& out, const JSON& value, int indent) {
  TreeWriter(out, indent).run(value, indent);
}

}  // namespace detail
}  // namespace qta::json
