// The transfer and HTTP status translators and their tables.
#include "qta/errors/translate.h"

#include <initializer_list>
#include <string>
#include <string_view>

#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"

namespace qta::errors {
namespace {

// What a row of a table throws: a QTAAuthError (with the URL) or a QTAError.
struct Outcome {
  uint32_t code;
  bool auth = false;
};

constexpr Outcome authError(uint32_t code) { return {code, true}; }

// A transfer table row: the transfer library's result codes and their outcome.
struct TransferRow {
  std::initializer_list<int> results;
  Outcome outcome;
};

constexpr Outcome kTransferDefault{kUnknownNetworkError};

constexpr TransferRow kFtpRows[] = {
    {{5, 6, 15}, {kHostLookupFailed}},           {{7, 10, 35, 59}, {kConnectFailed}},
    {{9, 25}, authError(kAuthenticationFailed)}, {{12, 28}, {kConnectionTimedOut}},
    {{18, 19, 23, 26}, {kPreconditionFailed}},   {{64}, {kSslUpgradeFailed}},
    {{67}, authError(kServerAuthFailed)},        {{78}, {kFileNotFound}},
};

constexpr TransferRow kHttpTransferRows[] = {
    {{1, 3, 43, 48, 54}, {kStringNotValid}},
    {{2, 93}, {kWrongState}},
    {{4, 41, 53, 63}, {kSystemNotSupported}},
    {{5, 6}, {kHostLookupFailed}},
    {{7, 35}, {kConnectFailed}},
    {{8, 16, 18, 23, 26, 34, 42, 52, 55, 56, 61, 75, 76, 88, 92}, {kPreconditionFailed}},
    {{9, 25}, authError(kAuthenticationFailed)},
    {{27}, {kNoMemory}},
    {{28}, {kConnectionTimedOut}},
    {{33, 36}, {kFileNotSupported}},
    {{47}, {kTooManyRedirects}},
    {{51, 58, 59, 60, 64, 77, 82, 83, 90, 91}, {kSslUpgradeFailed}},
    {{65, 81}, {kMustRetry}},
    {{67}, authError(kServerAuthFailed)},
    {{70}, {kInsufficientStorage}},
    {{73}, {kFileExists}},
    {{78}, {kFileNotFound}},
    {{80}, {kConnectionLost}},
};

// An HTTP status row: the statuses it matches, the methods it is limited to
// (none: any method) and its outcome. Rows are tried in order.
struct StatusRow {
  std::initializer_list<int> statuses;
  std::initializer_list<const char*> methods;
  Outcome outcome;
};

constexpr StatusRow kStatusRows[] = {
    {{404, 410}, {}, {kFileNotFound}},
    {{400}, {}, {kBadRequest}},
    {{405}, {"MKCOL"}, {kFileExists}},
    {{405}, {}, {kFileNotSupported}},
    {{403}, {}, {kMethodNotAllowed}},
    {{401}, {}, authError(kAuthenticationFailed)},
    {{407}, {}, authError(kProxyAuthFailed)},
    {{412}, {"COPY", "MOVE", "PUT"}, {kFileExists}},
    {{412}, {}, {kHttpError}},
    {{501}, {}, {kFileNotSupported}},
    {{500}, {}, {kInternalServerError}},
    {{408, 409, 421, 429, 502, 503, 504}, {}, {kRetry}},
    {{507}, {}, {kInsufficientStorage}},
};

constexpr Outcome kStatusDefault{kHttpError};

template <typename T, typename Value>
bool contains(std::initializer_list<T> list, const Value& value) {
  for (const T& item : list) {
    if (value == item) return true;
  }
  return false;
}

Outcome transferOutcome(const auto& rows, int result) {
  for (const TransferRow& row : rows) {
    if (contains(row.results, result)) return row.outcome;
  }
  return kTransferDefault;
}

Outcome statusOutcome(int status, std::string_view method) {
  for (const StatusRow& row : kStatusRows) {
    if (contains(row.statuses, status) &&
        (row.methods.size() == 0 || contains(row.methods, method))) {
      return row.outcome;
    }
  }
  return kStatusDefault;
}

// "FTP GET <url> -> " or the same with "HTTP ": the start of every detail.
std::string startDetail(std::string_view protocol, std::string_view method, const URI& url) {
  std::string detail(protocol);
  detail.append(" ").append(method).append(" ");
  return detail.append(shortenForMessage(url.toDisplayString())).append(" -> ");
}

[[noreturn]] void throwOutcome(Outcome outcome, const URI& url, const std::string& detail,
                               std::string_view authDetail) {
  if (outcome.auth) throw QTAAuthError(outcome.code, url, detail, std::string(authDetail));
  throw QTAError(outcome.code, detail);
}

[[noreturn]] void throwTransferError(std::string_view protocol, const auto& rows, int result,
                                     const char* method, const URI& url, const char* errorText) {
  std::string detail = startDetail(protocol, method == nullptr ? "" : method, url);
  const std::string_view text = errorText == nullptr ? "" : errorText;
  const size_t kept = text.find_last_not_of("\r\n");
  detail.append(text.empty() ? "failed" : text.substr(0, kept == text.npos ? 0 : kept + 1));
  throwOutcome(transferOutcome(rows, result), url, detail, {});
}

}  // namespace

void throwFtpTransferError(int result, const char* method, const URI& url, const char* errorText) {
  throwTransferError("FTP", kFtpRows, result, method, url, errorText);
}

void throwHttpTransferError(int result, const char* method, const URI& url, const char* errorText) {
  throwTransferError("HTTP", kHttpTransferRows, result, method, url, errorText);
}

void throwHttpStatusError(int status, const char* method, const URI& url,
                          std::string_view authDetail, std::string_view reason) {
  const std::string_view methodText = method == nullptr ? "" : method;
  // std::to_string writes the status in the C locale's digits, without grouping.
  std::string detail = startDetail("HTTP", methodText, url) + std::to_string(status);
  if (!reason.empty()) detail.append(" ").append(reason);
  throwOutcome(statusOutcome(status, methodText), url, detail, authDetail);
}

}  // namespace qta::errors
