#include "qta/uri/uri.h"

#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "qta/uri/escape.h"
#include "qta/uri/host.h"
#include "uri/data_access.h"
#include "uri/host_detail.h"

namespace qta {

DataURIContent::DataURIContent(std::vector<uint8_t>&& payload, std::string&& type)
    : mediaType(std::move(type)), bytes(std::move(payload)) {
  if (mediaType.empty()) mediaType = "text/plain;charset=US-ASCII";
}

URI::URI() noexcept : shared_(empty()) {}

URI::URI(const URI& other) noexcept : shared_(hold(other.shared_)) {}

URI::URI(URI&& other) noexcept : shared_(std::exchange(other.shared_, empty())) {}

URI& URI::operator=(const URI& other) noexcept {
  Shared* const previous = shared_;
  shared_ = hold(other.shared_);
  release(previous);
  return *this;
}

URI& URI::operator=(URI&& other) noexcept {
  if (this != &other) {
    release(shared_);
    shared_ = std::exchange(other.shared_, empty());
  }
  return *this;
}

URI::~URI() { release(shared_); }

// Every empty URI holds this one Shared. It lives in static storage, is never
// destroyed and is never counted, so empty URIs cost no allocation, may
// outlive other static objects, and making or moving one does no atomic
// operation on a counter that every thread would share.
URI::Shared* URI::empty() noexcept {
  alignas(Shared) static unsigned char storage[sizeof(Shared)];
  static Shared* const kEmpty = new (storage) Shared();
  return kEmpty;
}

URI::Shared* URI::hold(Shared* shared) noexcept {
  if (shared != empty()) shared->holders.fetch_add(1, std::memory_order_relaxed);
  return shared;
}

// The release half of the count: a holder's reads of the data happen before
// the decrement that drops its hold.
void URI::release(Shared* shared) noexcept {
  if (shared != empty() && shared->holders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete shared;
  }
}

URI::Data& URI::mutableData() {
  // Seeing a count of 1 with acquire ordering makes every former holder's
  // reads happen before the change below.
  if (shared_ == empty() || shared_->holders.load(std::memory_order_acquire) != 1) {
    Shared* const own = new Shared(shared_->data);
    release(shared_);
    shared_ = own;
  }
  return shared_->data;
}

URI::URI(std::string_view text, TemplateMode templateMode) {
  auto shared = std::make_unique<Shared>();
  shared_ = parse(text, templateMode, shared->data) ? shared.release() : empty();
}

URI::URI(std::string scheme, std::string host, uint32_t port) : shared_(new Shared()) {
  Data& data = shared_->data;
  data.scheme = std::move(scheme);
  data.host = std::move(host);
  data.port = port != 0 ? port : uri::defaultPort(data.scheme);
}

std::optional<URI> URI::tryParse(std::string_view text, TemplateMode templateMode) {
  auto shared = std::make_unique<Shared>();
  if (!parse(text, templateMode, shared->data)) return std::nullopt;
  return URI(shared.release());
}

URI URI::fromData(std::vector<uint8_t> bytes, std::string mediaType) {
  auto shared = std::make_unique<Shared>();
  shared->data.scheme = "data";
  shared->data.content = std::make_shared<DataURIContent>(std::move(bytes), std::move(mediaType));
  return URI(shared.release());
}

URI uri::detail::DataAccess::wrap(URI::Data&& data) {
  return URI(new URI::Shared(std::move(data)));
}

const std::string& URI::mediaType() const {
  static const std::string kNone;
  return content() != nullptr ? content()->mediaType : kNone;
}

const std::vector<uint8_t>& URI::bytes() const {
  static const std::vector<uint8_t> kNone;
  return content() != nullptr ? content()->bytes : kNone;
}

void URI::setScheme(std::string_view scheme) {
  std::string lower(scheme);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  mutableData().scheme = std::move(lower);
}

bool URI::setHost(std::string_view host) {
  Data probe;
  probe.scheme = shared_->data.scheme;
  probe.host = host;
  if (!uri::checkHost(probe, false)) return false;
  Data& data = mutableData();
  data.host = std::move(probe.host);
  if (!data.host.empty() && data.port == 0) data.port = uri::defaultPort(data.scheme);
  return true;
}

void URI::setPort(uint32_t port) {
  Data& data = mutableData();
  data.port = port != 0 ? port : uri::defaultPort(data.scheme);
}

void URI::setPath(Path path) { mutableData().path = std::move(path); }

void URI::setUserInfo(std::string_view userInfo) {
  mutableData().userInfo = uri::normalizeComponent(userInfo, uri::kUserInfoDecodeSet,
                                                   uri::kUserInfoKeepSet, TemplateMode::kOff);
}

void URI::setQuery(std::string_view query, TemplateMode templateMode) {
  mutableData().query =
      uri::normalizeComponent(query, uri::kQueryDecodeSet, uri::kQueryKeepSet, templateMode);
}

void URI::setFragment(std::string_view fragment, TemplateMode templateMode) {
  mutableData().fragment = uri::normalizeComponent(fragment, uri::kFragmentDecodeSet,
                                                   uri::kFragmentKeepSet, templateMode);
}

}  // namespace qta
