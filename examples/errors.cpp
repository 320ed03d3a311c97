// Reports a failed request the way the library does: the HTTP status becomes
// a QTAError (or QTAAuthError) with a catalogue code, which the caller
// catches by reference and sorts by its code's group.
#include <cstdio>

#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/errors/translate.h"
#include "qta/uri/uri.h"

namespace {

void fetch(const qta::URI& url, int status) {
  // A real client would send the request here; the server's answer decides.
  qta::errors::throwHttpStatusError(status, "GET", url, "Basic realm=\"media\"", "");
}

}  // namespace

int main() {
  const qta::URI url("http://media.example/clips/intro.mp4");
  for (const int status : {404, 401, 503}) {
    try {
      fetch(url, status);
    } catch (const qta::QTAAuthError& error) {
      std::printf("log in again at %s (%s): %s\n", error.url().rootString().c_str(),
                  error.authDetail().c_str(), error.what());
    } catch (const qta::QTAError& error) {
      const bool retry = error.code() == qta::errors::kRetry;
      std::printf("code %u, group %u%s: %s\n", error.code(), error.group(),
                  retry ? ", retry later" : "", error.what());
    }
  }
  std::printf("code 47 reads \"%s\"\n", qta::errors::errorMessage(47).c_str());
  return 0;
}
