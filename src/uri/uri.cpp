#include "qta/uri/uri.h"

#include <memory>
#include <string>
#include <utility>

#include "qta/uri/escape.h"
#include "qta/uri/host.h"

namespace qta {
namespace {

const std::shared_ptr<URI::Data>& emptyData() {
  static const std::shared_ptr<URI::Data> kEmpty = std::make_shared<URI::Data>();
  return kEmpty;
}

}  // namespace

DataURIContent::DataURIContent(std::vector<uint8_t>&& payload, std::string&& type)
    : mediaType(std::move(type)), bytes(std::move(payload)) {
  if (mediaType.empty()) mediaType = "text/plain;charset=US-ASCII";
}

URI::URI() : data_(emptyData()) {}

URI::URI(std::string_view text, bool templateMode) {
  auto data = std::make_shared<Data>();
  data_ = parse(text, templateMode, *data) ? std::move(data) : emptyData();
}

URI::URI(std::string scheme, std::string host, uint32_t port) : data_(std::make_shared<Data>()) {
  data_->scheme = std::move(scheme);
  data_->host = std::move(host);
  data_->port = port != 0 ? port : uri::defaultPort(data_->scheme);
}

std::optional<URI> URI::tryParse(std::string_view text, bool templateMode) {
  auto data = std::make_shared<Data>();
  if (!parse(text, templateMode, *data)) return std::nullopt;
  return URI(std::move(data));
}

URI URI::fromData(std::vector<uint8_t> bytes, std::string mediaType) {
  auto data = std::make_shared<Data>();
  data->scheme = "data";
  data->content = std::make_shared<DataURIContent>(std::move(bytes), std::move(mediaType));
  return URI(std::move(data));
}

URI::Data& URI::mutableData() {
  // A URI::Data is never changed while another URI can see it.
  if (data_.use_count() != 1) data_ = std::make_shared<Data>(*data_);
  return *data_;
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
  probe.scheme = data_->scheme;
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
  mutableData().userInfo =
      uri::normalizeComponent(userInfo, uri::kUserInfoDecodeSet, uri::kUserInfoKeepSet, false);
}

void URI::setQuery(std::string_view query, bool templateMode) {
  mutableData().query =
      uri::normalizeComponent(query, uri::kQueryDecodeSet, uri::kQueryKeepSet, templateMode);
}

void URI::setFragment(std::string_view fragment, bool templateMode) {
  mutableData().fragment = uri::normalizeComponent(fragment, uri::kFragmentDecodeSet,
                                                   uri::kFragmentKeepSet, templateMode);
}

}  // namespace qta
