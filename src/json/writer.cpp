// JSON text output: strings, numbers and the iterative container writer.
#include "qta/json/writer.h"

#include <cstring>
#include <vector>

#include "json/number_text.h"
#include "json/string_stop_bytes.h"
#include "json/text_sink.h"
#include "json/tree_ops.h"
#include "qta/utils/format.h"

namespace qta::json {
namespace {

using detail::plainRun;
using detail::TextSink;

void putEscape(TextSink& sink, unsigned char c) {
  switch (c) {
    case '"':
      return sink.put("\\\"");
    case '\\':
      return sink.put("\\\\");
    case '\b':
      return sink.put("\\b");
    case '\f':
      return sink.put("\\f");
    case '\n':
      return sink.put("\\n");
    case '\r':
      return sink.put("\\r");
    case '\t':
      return sink.put("\\t");
    default: {
      const std::string escape = formatString("\\u%04X", c);
      return sink.put(escape.data(), escape.size());
    }
  }
}

// Quotes and escapes `[text, end)`, stopping early at a NUL byte, and then
// appends `tail`: the closing quote, and for a key the ": " after it.
template <std::size_t N>
void putQuoted(TextSink& sink, const char* text, const char* end, const char (&tail)[N]) {
  constexpr std::size_t kTail = N - 1;
  std::size_t run = plainRun(text, end);
  if (text + run == end) {  // nothing to escape: one copy
    char* to = sink.room(run + 1 + kTail);
    to[0] = '"';
    TextSink::copy(to + 1, text, run);
    std::memcpy(to + 1 + run, tail, kTail);
    return sink.advance(run + 1 + kTail);
  }
  sink.put('"');
  for (;;) {
    sink.put(text, run);
    text += run;
    if (text == end || *text == '\0') break;
    putEscape(sink, static_cast<unsigned char>(*text++));
    run = plainRun(text, end);
  }
  sink.put(tail);
}

void putString(TextSink& sink, const std::string& text) {
  putQuoted(sink, text.data(), text.data() + text.size(), "\"");
}

void putNumber(TextSink& sink, double value) {
  sink.advance(detail::formatNumber(value, sink.room(detail::kNumberTextMax)));
}

// Writes one array or object and everything below it, keeping the open
// containers on an explicit stack instead of the machine stack.
class TreeWriter {
 public:
  // A negative `indent` chooses the one-line layout.
  TreeWriter(std::string& out, int indent)
      : sink_(out),
        multiLine_(indent >= 0),
        topDepth_(multiLine_ ? static_cast<std::size_t>(indent) : 0) {}

  void run(const JSON& top) {
    writeValue(&top, topDepth_);
    while (!open_.empty()) step();
  }

 private:
  struct Open {
    const JSON* container;
    std::size_t next;                      // the next element (arrays)
    JSON::Members::const_iterator member;  // the next member (objects)
    std::size_t depth;                     // tabs before the closing bracket (multi-line layout)
  };

  static const JSON::Elements& elementsOf(const JSON& array) {
    return static_cast<const JSONArray&>(array);
  }
  static const JSON::Members& membersOf(const JSON& object) {
    return static_cast<const JSONObject&>(object);
  }

  static bool hasChildren(const JSON* value) {
    return value != nullptr && detail::hasChildren(*value);
  }

  // Writes a value that is not a container with children.
  void writeLeaf(const JSON* value) {
    if (value == nullptr) return sink_.put("null");  // an empty slot left by take()
    switch (value->type) {
      case JSON::Null:
        return sink_.put("null");
      case JSON::Boolean:
        if (static_cast<const JSONBoolean*>(value)->value) return sink_.put("true");
        return sink_.put("false");
      case JSON::Number:
        return putNumber(sink_, static_cast<const JSONNumber*>(value)->value);
      case JSON::String:
        return putString(sink_, *static_cast<const JSONString*>(value));
      case JSON::Array:
        return sink_.put("[ ]");
      case JSON::Object:
        return sink_.put("{ }");
    }
  }

  void writeValue(const JSON* value, std::size_t depth) {
    if (!hasChildren(value)) return writeLeaf(value);
    char* text = sink_.room(2);
    text[0] = value->type == JSON::Array ? '[' : '{';
    text[1] = multiLine_ ? '\n' : ' ';
    sink_.advance(2);
    const JSON::Members::const_iterator firstMember =
        value->type == JSON::Object ? membersOf(*value).begin() : JSON::Members::const_iterator();
    // Filled field by field: a whole-struct copy from the stack would wait on
    // the stores that built it.
    Open& frame = open_.emplace_back();
    frame.container = value;
    frame.next = 0;
    frame.member = firstMember;
    frame.depth = depth;
  }

  // Writes the children of the innermost open container up to the first one
  // that has children of its own, which is opened; or closes the container.
  // The position is kept in locals while the children are written (bytes
  // stored through char pointers could alias the frame and the container,
  // forcing reloads) and stored back before a child is opened.
  void step() {
    Open& top = open_.back();
    const std::size_t depth = top.depth;
    if (top.container->type == JSON::Array) {
      const JSON::Elements& elements = elementsOf(*top.container);
      const std::unique_ptr<JSON>* const first = elements.data();
      const std::unique_ptr<JSON>* const end = first + elements.size();
      for (const std::unique_ptr<JSON>* element = first + top.next; element != end;) {
        startItem(element != first, depth);
        const JSON* child = (element++)->get();
        // Start loading the next node while this one is written.
        if (element != end) __builtin_prefetch(element->get());
        if (hasChildren(child)) {
          top.next = static_cast<std::size_t>(element - first);
          return writeValue(child, depth + 1);  // `top` is stale now
        }
        writeLeaf(child);
      }
      return close(']');
    }
    const JSON::Members& members = membersOf(*top.container);
    const JSON::Members::const_iterator first = members.begin();
    const JSON::Members::const_iterator end = members.end();
    for (JSON::Members::const_iterator member = top.member; member != end;) {
      startItem(member != first, depth);
      const std::string& key = member->first;
      putQuoted(sink_, key.data(), key.data() + key.size(), "\": ");
      const JSON* child = (member++)->second.get();
      if (member != end) __builtin_prefetch(member->second.get());
      if (hasChildren(child)) {
        top.member = member;
        return writeValue(child, depth + 1);  // `top` is stale now
      }
      writeLeaf(child);
    }
    close('}');
  }

  void startItem(bool separated, std::size_t depth) {
    if (multiLine_) {
      if (separated) sink_.put(",\n");
      sink_.repeat('\t', depth + 1);
    } else if (separated) {
      sink_.put(", ");
    }
  }

  void close(char bracket) {
    if (multiLine_) {
      sink_.put('\n');
      sink_.repeat('\t', open_.back().depth);
    } else {
      sink_.put(' ');
    }
    sink_.put(bracket);
    open_.pop_back();
  }

  TextSink sink_;
  const bool multiLine_;
  const std::size_t topDepth_;
  std::vector<Open> open_;
};

}  // namespace

void writeString(std::string& out, const char* text) {
  TextSink sink(out);
  putQuoted(sink, text, text + std::strlen(text), "\"");
}

std::string toJSONText(const JSON& value, int indent) {
  std::string out;
  value.write(out, indent);
  return out;
}

namespace detail {

void writeText(std::string& out, const std::string& text) {
  TextSink sink(out);
  putString(sink, text);
}

void writeTree(std::string& out, const JSON& value, int indent) {
  TreeWriter(out, indent).run(value);
}

}  // namespace detail
}  // namespace qta::json
