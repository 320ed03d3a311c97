#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "qta/uri/escape.h"
#include "uri/escape_append.h"
#include "uri/placeholder.h"

namespace qta::uri {
namespace detail {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// Copies `text` to `out`. Runs of bytes for which isPlain() holds, and in
// template mode whole placeholders, are copied as they are; at any other byte
// special(out, position) writes what belongs there and returns the position
// after what it consumed.
template <typename IsPlain, typename Special>
void rewrite(std::string& out, std::string_view text, TemplateMode templateMode, IsPlain isPlain,
             Special special) {
  PlaceholderFinder placeholders(text);
  const size_t size = text.size();
  size_t runStart = 0;
  size_t i = 0;
  while (i < size) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (templateMode == TemplateMode::kOn && c == '[') {
      const size_t end = placeholders.endAt(i);
      if (end != std::string_view::npos) {
        i = end;
        continue;
      }
    }
    if (isPlain(c)) {
      ++i;
      continue;
    }
    out.append(text.data() + runStart, i - runStart);
    i = special(out, i);
    runStart = i;
  }
  out.append(text.data() + runStart, size - runStart);
}

}  // namespace

int escapeAt(std::string_view text, size_t pos) {
  if (pos + 2 >= text.size() || text[pos] != '%') return -1;
  const int high = hexValue(text[pos + 1]);
  const int low = hexValue(text[pos + 2]);
  if (high < 0 || low < 0) return -1;
  return high * 16 + low;
}

void appendEscaped(std::string& out, unsigned char byte) {
  const char escape[3] = {'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
  out.append(escape, 3);
}

bool appendPercentDecoded(std::string& out, std::string_view text, TemplateMode templateMode) {
  if (std::memchr(text.data(), '%', text.size()) == nullptr) {
    out.append(text);
    return true;
  }
  bool ok = true;
  rewrite(
      out, text, templateMode, [](unsigned char c) { return c != '%'; },
      [&](std::string& to, size_t pos) {
        const int byte = escapeAt(text, pos);
        if (byte < 0) {
          ok = false;
          to += '%';
          return pos + 1;
        }
        to += static_cast<char>(byte);
        return pos + 3;
      });
  return ok;
}

void appendNormalized(std::string& out, std::string_view text, const CharSet& decodeSet,
                      const CharSet& keepSet, TemplateMode templateMode) {
  const auto isLiteral = [&](unsigned char c) {
    return decodeSet.contains(c) || keepSet.contains(c);
  };
  // "%" is never copied in a run: it may begin an escape.
  const auto isPlain = [&](unsigned char c) {
    return kUnreserved.contains(c) || (c != '%' && isLiteral(c));
  };
  rewrite(out, text, templateMode, isPlain, [&](std::string& to, size_t pos) {
    const unsigned char c = static_cast<unsigned char>(text[pos]);
    const int byte = escapeAt(text, pos);
    if (byte >= 0) {
      const auto b = static_cast<unsigned char>(byte);
      if (kUnreserved.contains(b) || decodeSet.contains(b)) {
        to += static_cast<char>(b);
      } else {
        appendEscaped(to, b);
      }
      return pos + 3;
    }
    if (isLiteral(c)) {
      to += static_cast<char>(c);
    } else {
      appendEscaped(to, c);
    }
    return pos + 1;
  });
}

void appendPercentEncoded(std::string& out, std::string_view text, const CharSet& keepSet,
                          TemplateMode templateMode) {
  rewrite(
      out, text, templateMode,
      [&](unsigned char c) { return kUnreserved.contains(c) || keepSet.contains(c); },
      [&](std::string& to, size_t pos) {
        appendEscaped(to, static_cast<unsigned char>(text[pos]));
        return pos + 1;
      });
}

void appendDisplayDecoded(std::string& out, std::string_view text, const CharSet& decodeSet,
                          TemplateMode templateMode) {
  rewrite(
      out, text, templateMode, [](unsigned char c) { return c != '%'; },
      [&](std::string& to, size_t pos) {
        const int byte = escapeAt(text, pos);
        if (byte > 32 && byte != '%' && decodeSet.contains(static_cast<unsigned char>(byte))) {
          to += static_cast<char>(byte);
          return pos + 3;
        }
        to += '%';
        return pos + 1;
      });
}

}  // namespace detail

bool hasValidEscapes(std::string_view text, TemplateMode templateMode) {
  detail::PlaceholderFinder placeholders(text);
  const CharSet percent("%");
  size_t i = 0;
  while ((i = detail::findStop(text, i, percent, templateMode, placeholders)) < text.size()) {
    if (detail::escapeAt(text, i) < 0) return false;
    i += 3;
  }
  return true;
}

std::optional<std::string> percentDecode(std::string_view text, TemplateMode templateMode) {
  std::string out;
  out.reserve(text.size());
  if (!detail::appendPercentDecoded(out, text, templateMode)) return std::nullopt;
  return out;
}

std::string percentDecodeLeniently(std::string_view text, TemplateMode templateMode) {
  std::string out;
  out.reserve(text.size());
  detail::appendPercentDecoded(out, text, templateMode);
  return out;
}

size_t findOutsidePlaceholder(std::string_view text, char ch, size_t from) {
  detail::PlaceholderFinder placeholders(text);
  // Placeholders are found from the start of the text, so a `from` inside one
  // resumes after its "]]".
  for (size_t open = text.find("[["); open < from; open = text.find("[[", open)) {
    const size_t end = placeholders.endAt(open);
    if (end == std::string_view::npos) break;  // an unclosed "[[" hides nothing
    if (end > from) from = end;
    open = end;
  }
  CharSet stop;
  stop.add(static_cast<unsigned char>(ch));
  const size_t pos = detail::findStop(text, from, stop, TemplateMode::kOn, placeholders);
  return pos < text.size() ? pos : std::string_view::npos;
}

size_t findOutsidePlaceholder(const char* text, char ch, size_t from) {
  return findOutsidePlaceholder(std::string_view(text), ch, from);
}

std::string normalizeComponent(std::string_view text, const CharSet& decodeSet,
                               const CharSet& keepSet, TemplateMode templateMode) {
  std::string out;
  out.reserve(text.size());
  detail::appendNormalized(out, text, decodeSet, keepSet, templateMode);
  return out;
}

std::string percentEncode(std::string_view text, const CharSet& keepSet,
                          TemplateMode templateMode) {
  std::string out;
  out.reserve(text.size());
  detail::appendPercentEncoded(out, text, keepSet, templateMode);
  return out;
}

std::string displayDecode(std::string_view text, const CharSet& decodeSet,
                          TemplateMode templateMode) {
  std::string out;
  out.reserve(text.size());
  detail::appendDisplayDecoded(out, text, decodeSet, templateMode);
  return out;
}

}  // namespace qta::uri
