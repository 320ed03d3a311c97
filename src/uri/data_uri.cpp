// "data" URIs: the media type check and the payload decoding, and the HTTP
// token test the media type is checked with.
#include "uri/data_uri.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "qta/text/base64.h"
#include "qta/uri/escape.h"
#include "qta/uri/token.h"
#include "uri/escape_append.h"

namespace qta::uri {
namespace {

constexpr std::string_view kDefaultMediaType = "text/plain;charset=US-ASCII";
constexpr std::string_view kBase64Marker = ";base64";

constexpr CharSet tokenBytes() {
  const CharSet separators(tokenSeparators);
  CharSet set;
  for (int c = 33; c < 128; ++c) {
    if (!separators.contains(static_cast<unsigned char>(c))) set.add(static_cast<unsigned char>(c));
  }
  return set;
}

// A parameter value in double quotes: bytes below 128, and a double quote
// inside only doubled.
bool isQuotedString(std::string_view value) {
  if (value.size() < 2 || value.front() != '"' || value.back() != '"') return false;
  const std::string_view inner = value.substr(1, value.size() - 2);
  for (size_t i = 0; i < inner.size(); ++i) {
    if (static_cast<unsigned char>(inner[i]) >= 128) return false;
    if (inner[i] == '"' && (++i == inner.size() || inner[i] != '"')) return false;
  }
  return true;
}

// "type/subtype" followed by ";name=value" parameters, each value a token or
// a quoted string. Parameters are split at every ";", quoted or not.
bool isMediaType(std::string_view mediaType) {
  size_t end = mediaType.find(';');
  const std::string_view type = mediaType.substr(0, end);
  const size_t slash = type.find('/');
  if (slash == std::string_view::npos || !isToken(type.substr(0, slash)) ||
      !isToken(type.substr(slash + 1))) {
    return false;
  }
  while (end != std::string_view::npos) {
    const size_t start = end + 1;
    end = mediaType.find(';', start);
    const std::string_view parameter = mediaType.substr(start, end - start);
    const size_t equals = parameter.find('=');
    if (equals == std::string_view::npos || !isToken(parameter.substr(0, equals))) return false;
    const std::string_view value = parameter.substr(equals + 1);
    if (!isQuotedString(value) && !isToken(value)) return false;
  }
  return true;
}

}  // namespace

bool isToken(std::string_view text) {
  static constexpr CharSet kTokenBytes = tokenBytes();
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return kTokenBytes.contains(static_cast<unsigned char>(c));
  });
}

bool readDataURI(URI::Data& data, std::string_view text) {
  const size_t comma = text.find(',');
  if (comma == std::string_view::npos) return false;
  std::string_view mediaTypeText = text.substr(0, comma);
  // The marker is matched as written, in lower case only.
  const bool base64 = mediaTypeText.ends_with(kBase64Marker);
  if (base64) mediaTypeText.remove_suffix(kBase64Marker.size());

  std::string mediaType;
  if (mediaTypeText.empty()) {
    mediaType = kDefaultMediaType;
  } else {
    if (!detail::appendPercentDecoded(mediaType, mediaTypeText, TemplateMode::kOff)) return false;
    // A known producer writes JPEG images as "data:/jpg;base64,...".
    if (mediaType == "/jpg") mediaType = "image/jpeg";
    if (!isMediaType(mediaType)) return false;
  }

  std::string payload;
  if (!detail::appendPercentDecoded(payload, text.substr(comma + 1), TemplateMode::kOff)) {
    return false;
  }
  std::vector<uint8_t> bytes =
      base64 ? text::base64Decode(payload) : std::vector<uint8_t>(payload.begin(), payload.end());
  data.content = std::make_shared<DataURIContent>(std::move(bytes), std::move(mediaType));
  return true;
}

}  // namespace qta::uri
