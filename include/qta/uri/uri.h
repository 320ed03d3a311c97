// qta/uri/uri.h: the URI value type.
//
// A URI holds its normalised components (scheme, user info, host, port, path,
// query, fragment, and for "data" URIs a decoded payload) in one URI::Data
// that copies of the URI share through a reference count. A URI::Data is never
// changed while another URI holds it: a setter copies it first when it is
// shared, so copies of a URI never see each other's changes, and copies may be
// made, changed and dropped on different threads. A URI may be read from any
// number of threads at once; changing one object needs the usual exclusive
// access to that object.
//
// Parsing never throws. A text with any defect yields the empty URI (no
// scheme, no host, port 0, empty path); URI::parse and URI::tryParse tell a
// failure from a text that really is empty (such as "" or "?"). A "data" URI
// holds its media type and decoded payload in a DataURIContent that copies
// share and nothing changes; it is always written in base64 form.
//
// URIs compare by uri::compare (qta/uri/compare.h): == and <=> make URI usable
// as the key of ordered containers. The order is weak: the payload of a
// "data" URI takes no part in it.
#ifndef QTA_URI_URI_H_
#define QTA_URI_URI_H_

#include <atomic>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "qta/export.h"
#include "qta/uri/template_mode.h"

namespace qta {

namespace uri::detail {
struct DataAccess;
}

// The decoded payload of a "data" URI.
struct QTA_EXPORT DataURIContent {
  // An empty media type becomes "text/plain;charset=US-ASCII".
  DataURIContent(std::vector<uint8_t>&& bytes, std::string&& mediaType);

  std::string mediaType;
  std::vector<uint8_t> bytes;
};

class QTA_EXPORT URI {
 public:
  struct Path {
    bool absolute = false;              // began with "/"
    bool trailingSlash = false;         // ended with "/" (or lost its last segment to "." or "..")
    std::vector<std::string> segments;  // percent-decoded; empty segments kept

    bool empty() const { return segments.empty() && !trailingSlash; }
    bool operator==(const Path&) const = default;
  };

  struct Data {
    std::string scheme;  // lower case, without ":"; empty for a relative reference
    std::string host;    // lower-case ASCII, an IPv6 address (with "%" zone), or opaque text
    uint32_t port = 0;   // 0 means none; the scheme's default port when a host is present
    Path path;
    std::string userInfo;                     // normalised escaped form
    std::string query;                        // normalised escaped form, without "?"
    std::string fragment;                     // normalised escaped form, without "#"
    std::shared_ptr<DataURIContent> content;  // "data" URIs only
  };

  // The empty URI.
  URI() noexcept;
  URI(const URI& other) noexcept;
  // Leaves `other` empty.
  URI(URI&& other) noexcept;
  URI& operator=(const URI& other) noexcept;
  URI& operator=(URI&& other) noexcept;
  ~URI();
  // Parses `text`; the empty URI when the text is not a valid URI.
  explicit URI(std::string_view text, TemplateMode templateMode = TemplateMode::kOff);
  // From components copied unchanged; a port of 0 becomes the scheme's default.
  URI(std::string scheme, std::string host, uint32_t port);

  // Parses `text` into `out`. On failure returns false and leaves `out` empty.
  // `text` must not point into `out`, which is cleared first.
  static bool parse(std::string_view text, TemplateMode templateMode, Data& out);
  // The parsed URI, or nothing when the text is not a valid URI.
  static std::optional<URI> tryParse(std::string_view text,
                                     TemplateMode templateMode = TemplateMode::kOff);
  // A "data" URI holding `bytes` (empty media type: "text/plain;charset=US-ASCII").
  // The media type is not checked: the written form reads back only when it
  // is a valid one.
  static URI fromData(std::vector<uint8_t> bytes, std::string mediaType);

  const Data& data() const { return shared_->data; }
  const std::string& scheme() const { return shared_->data.scheme; }
  const std::string& host() const { return shared_->data.host; }
  uint32_t port() const { return shared_->data.port; }
  const Path& path() const { return shared_->data.path; }
  const std::string& userInfo() const { return shared_->data.userInfo; }
  const std::string& query() const { return shared_->data.query; }
  const std::string& fragment() const { return shared_->data.fragment; }
  const DataURIContent* content() const { return shared_->data.content.get(); }
  // The media type and the decoded payload of a "data" URI; empty for others.
  const std::string& mediaType() const;
  const std::vector<uint8_t>& bytes() const;

  // The scheme is stored in lower case.
  void setScheme(std::string_view scheme);
  // Validates and normalises the host (IDNA for names, brackets for IPv6
  // literals); returns false and keeps the old host when it is not valid.
  bool setHost(std::string_view host);
  // A port of 0 becomes the scheme's default port.
  void setPort(uint32_t port);
  void setPath(Path path);
  // User info, query and fragment are given in escaped form and stored
  // normalised as the parser stores them; an invalid "%" becomes "%25".
  void setUserInfo(std::string_view userInfo);
  void setQuery(std::string_view query, TemplateMode templateMode = TemplateMode::kOff);
  void setFragment(std::string_view fragment, TemplateMode templateMode = TemplateMode::kOff);

  // The full text form, which parses back to this URI.
  std::string toString(TemplateMode templateMode = TemplateMode::kOff) const;
  // The readable form for messages: escapes decoded where that stays
  // unambiguous, user info kept, a data URI's payload shown as "[...]".
  std::string toDisplayString(TemplateMode templateMode = TemplateMode::kOff) const;
  // Scheme and authority only: "http://host:8080/".
  std::string rootString() const;
  // The file path of a local file URI ("file:" with no host or "localhost",
  // or a reference without scheme); empty for any other URI.
  std::string localPath() const;

 private:
  // Lets the library's own operations wrap a URI::Data they built.
  friend struct uri::detail::DataAccess;

  // One allocation holds the data and the number of URIs that hold it.
  struct Shared {
    Shared() = default;
    explicit Shared(const Data& from) : data(from) {}
    explicit Shared(Data&& from) noexcept : data(std::move(from)) {}

    std::atomic<size_t> holders{1};
    Data data;
  };

  // Takes over `shared`, whose count already includes this URI.
  explicit URI(Shared* shared) noexcept : shared_(shared) {}
  // The data, first copied when another URI holds it too.
  Data& mutableData();
  static Shared* empty() noexcept;
  static Shared* hold(Shared* shared) noexcept;
  static void release(Shared* shared) noexcept;

  Shared* shared_;
};

// Equal when uri::compare gives 0: two "data" URIs are equal whatever their
// payloads.
QTA_EXPORT bool operator==(const URI& a, const URI& b);
QTA_EXPORT std::weak_ordering operator<=>(const URI& a, const URI& b);

}  // namespace qta

#endif  // QTA_URI_URI_H_
