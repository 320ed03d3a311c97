// The catalogue's entries and its lookups.
#include "qta/errors/catalogue.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace qta::errors {
namespace {

struct CatalogueEntry {
  uint32_t code;
  uint32_t group;
  const char* message;  // null ends the list
};

// The messages are shown to users exactly as written, misspelling included.
constexpr CatalogueEntry kEntries[] = {
    {kNetworkError, 0, "Network Error"},
    {kUnknownNetworkError, 0, "Unknown Network Error"},
    {kHostLookupFailed, 0, "Server or proxy hostname lookup failed"},
    {kServerAuthFailed, 0, "User authentication failed on server"},
    {kSrpAuthFailed, 0, "SRP User authentication failed on server"},
    {kPskAuthFailed, 0, "PSK authentication failed on server"},
    {kProxyAuthFailed, 0, "User authentication failed on proxy"},
    {kConnectFailed, 0, "Could not connect to server"},
    {kConnectionTimedOut, 0, "Connection timed out"},
    {kPreconditionFailed, 0, "Precondition failed"},
    {kMustRetry, 0, "Must retry request"},
    {kRedirect, 0, "Redirect"},
    {kConnectionLost, 0, "Connection lost"},
    {kNoNetworkResource, 0, "No Network Resource available"},
    {kSslUpgradeFailed, 0, "SSL upgrade failed"},
    {kTooManyRedirects, 0, "Too many redirects"},
    {kSystemError, 1, "System Error"},
    {kUnknownSystemError, 1, "Unknown System Error"},
    {kSocketFailed, 1, "Cannot open TCP Socket"},
    {kNoMemory, 1, "No Memory"},
    {kNullPointer, 1, "Null pointer unexpected"},
    {kDirectXError, 1, "DirectX error"},
    {kOpenGLError, 1, "OpenGL error"},
    {kWindowsError, 1, "Windows specific error"},
    {kCairoError, 1, "Cairo error"},
    {kTimedOut, 1, "Timed out"},
    {kSystemNotSupported, 1, "Not Supported"},
    {kFileError, 2, "File Error"},
    {kUnknownFileError, 2, "Unknown File Error"},
    {kHttpError, 2, "HTTP Error"},
    {kFileNotFound, 2, "File not found"},
    {kFileNotAccessible, 2, "File cannot be accessed"},
    {kFileReadOnly, 2, "File is read only"},
    {kFileExists, 2, "File Exist"},
    {kFileContentIncorrect, 2, "File content is incorrect"},
    {kBadFileName, 2, "Filename or path is incorrect"},
    {kFileReadError, 2, "File read error"},
    {kFileWriteError, 2, "File write error"},
    {kRetry, 2, "Retry"},
    {kFileNotSupported, 2, "Not Supported"},
    {kAuthenticationFailed, 2, "Authentication failed"},
    {kMethodNotAllowed, 2, "Method not allowed"},
    {kBadRequest, 2, "Bad request"},
    {kInsufficientStorage, 2, "Insufficient Storage"},
    {kInternalServerError, 2, "Internal Server Error"},
    {kInputError, 3, "Input Error"},
    {kUnknownInputError, 3, "Unknown Input Error"},
    {kEmptyInput, 3, "Empthy input string not allowed"},
    {kStringTooLong, 3, "String too long"},
    {kStringNotValid, 3, "String not valid"},
    {kWrongState, 3, "The operation cannot be executed in the current state"},
    {kCanceledByUser, 5, "Canceled by user"},
    {kClosingEntry, 6, "Unknown Network Error"},
    {0, 0, nullptr},
};

// One slot per entry and two more; an entry whose code lies beyond that
// (none does) widens the table rather than being lost.
Catalogue buildCatalogue(const CatalogueEntry* entries) {
  size_t count = 0;
  size_t size = 0;
  for (const CatalogueEntry* entry = entries; entry->message != nullptr; ++entry) {
    ++count;
    size = std::max<size_t>(size, size_t{entry->code} + 1);
  }
  Catalogue table(std::max(size, count + 2));
  for (const CatalogueEntry* entry = entries; entry->message != nullptr; ++entry) {
    table[entry->code] = {entry->group, entry->message};
  }
  return table;
}

// Built on first use. kBuiltBeforeMain makes the first use happen during
// static initialisation, so no thread can race to build it, while code that
// runs even earlier still finds it.
const Catalogue& theCatalogue() {
  static const Catalogue table = buildCatalogue(kEntries);
  return table;
}

[[maybe_unused]] const Catalogue& kBuiltBeforeMain = theCatalogue();

const CatalogueSlot& slotOf(uint32_t code) {
  const Catalogue& table = theCatalogue();
  return code < table.size() ? table[code] : table[kNetworkError];
}

}  // namespace

const Catalogue& catalogue() { return theCatalogue(); }

uint32_t errorGroup(uint32_t code) { return slotOf(code).group; }

uint32_t errorGroup(const Catalogue& table, uint32_t code) {
  if (code < table.size()) return table[code].group;
  return table.empty() ? 0 : table[kNetworkError].group;
}

std::string errorMessage(uint32_t code) { return slotOf(code).message; }

std::string errorMessage(uint32_t code, std::string_view detail) {
  const size_t kept = detail.find_last_not_of("\r\n");
  if (kept == std::string_view::npos) return errorMessage(code);
  return errorMessage(code) + " : " + std::string(detail.substr(0, kept + 1));
}

}  // namespace qta::errors
