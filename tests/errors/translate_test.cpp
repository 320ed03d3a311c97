#include "qta/errors/translate.h"

#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string>
#include <tuple>

#include "qta/errors/error.h"

namespace qta::errors {
namespace {

// What a translator threw; for an authentication error `auth` holds its
// detail and URL.
struct Thrown {
  uint32_t code = 0;
  std::string what, auth;
};

Thrown thrownBy(const std::function<void()>& translate) {
  try {
    translate();
  } catch (const QTAAuthError& error) {
    return {error.code(), error.what(), error.authDetail() + " @ " + error.url().toString()};
  } catch (const QTAError& error) {
    return {error.code(), error.what(), ""};
  }
  ADD_FAILURE() << "nothing thrown";
  return {};
}

// Codes 3, 6 and 40 are the authentication failures.
bool isAuthCode(uint32_t code) { return code == 3 || code == 6 || code == 40; }

// A transfer translator's table as the code each result from 0 on throws;
// every other result throws code 1.
using TransferTranslator = void (*)(int, const char*, const URI&, const char*);

void expectTable(TransferTranslator translate, std::span<const uint32_t> codes) {
  for (int result = -2; result < 1000; ++result) {
    const auto at = static_cast<size_t>(result);
    const uint32_t code = result >= 0 && at < codes.size() ? codes[at] : 1;
    const Thrown thrown = thrownBy([&] { translate(result, "GET", URI("ftp://h/f"), "oops"); });
    EXPECT_EQ(thrown.code, code) << result;
    EXPECT_EQ(thrown.auth, isAuthCode(code) ? " @ ftp://h/f" : "") << result;
  }
}

TEST(TransferTranslators, FtpAndHttpTables) {
  constexpr uint32_t kFtp[] = {
      1, 1, 1, 1, 1,  2,  2, 7, 1, 40, 7, 1, 8, 1, 1, 2, 1, 1, 9,  9,  // 0..19
      1, 1, 1, 9, 1,  40, 9, 1, 8, 1,  1, 1, 1, 1, 1, 7, 1, 1, 1,  1,  // 20..39
      1, 1, 1, 1, 1,  1,  1, 1, 1, 1,  1, 1, 1, 1, 1, 1, 1, 1, 1,  7,  // 40..59
      1, 1, 1, 1, 14, 1,  1, 3, 1, 1,  1, 1, 1, 1, 1, 1, 1, 1, 30, 1,  // 60..79
  };
  constexpr uint32_t kHttp[] = {
      1,  49, 50, 49, 26, 2,  2, 7,  9,  40, 1,  1,  1, 1,  1,  1, 9,  1,  9,  1,   // 0..19
      1,  1,  1,  9,  1,  40, 9, 19, 8,  1,  1,  1,  1, 39, 9,  7, 39, 1,  1,  1,   // 20..39
      1,  26, 9,  49, 1,  1,  1, 15, 49, 1,  1,  14, 9, 26, 49, 9, 9,  1,  14, 14,  // 40..59
      14, 9,  1,  26, 14, 10, 1, 3,  1,  1,  43, 1,  1, 33, 1,  9, 9,  14, 30, 1,   // 60..79
      12, 10, 14, 14, 1,  1,  1, 1,  9,  1,  14, 14, 9, 50, 1,  1,                  // 80..95
  };
  expectTable(throwFtpTransferError, kFtp);
  expectTable(throwHttpTransferError, kHttp);
}

// Status rows in the order they are tried: a method limits the first of two
// rows for the same status.
TEST(HttpStatusTranslator, StatusTableInOrder) {
  const std::tuple<int, const char*, uint32_t> cases[] = {
      {404, "GET", 30},   {410, "GET", 30},   {400, "GET", 42},  {405, "MKCOL", 33},
      {405, "mkcol", 39}, {405, "PUT", 39},   {403, "GET", 41},  {401, "GET", 40},
      {407, "GET", 6},    {412, "COPY", 33},  {412, "MOVE", 33}, {412, "PUT", 33},
      {412, "GET", 29},   {412, "MKCOL", 29}, {501, "GET", 39},  {500, "GET", 44},
      {408, "GET", 38},   {409, "GET", 38},   {421, "GET", 38},  {429, "GET", 38},
      {502, "GET", 38},   {503, "GET", 38},   {504, "GET", 38},  {507, "GET", 43},
      {200, "GET", 29},   {402, "GET", 29},   {-1, nullptr, 29},
  };
  for (const auto& [status, method, code] : cases) {
    const Thrown thrown =
        thrownBy([&] { throwHttpStatusError(status, method, URI("http://h/d/"), "ad", ""); });
    EXPECT_EQ(thrown.code, code) << status << method;
    EXPECT_EQ(thrown.auth, isAuthCode(code) ? "ad @ http://h/d/" : "") << status << method;
  }
}

TEST(Translators, DetailNamesTheRequestAndTheOutcome) {
  const URI url("http://h/a%20b");
  EXPECT_EQ(thrownBy([&] { throwHttpTransferError(28, "PUT", url, "slow\r\n"); }).what,
            "Connection timed out : HTTP PUT http://h/a b -> slow");
  for (const char* text : {static_cast<const char*>(nullptr), ""}) {
    EXPECT_EQ(thrownBy([&] { throwFtpTransferError(78, "RETR", url, text); }).what,
              "File not found : FTP RETR http://h/a b -> failed");
  }
  EXPECT_EQ(thrownBy([&] { throwFtpTransferError(0, nullptr, URI(), "\n"); }).what,
            "Unknown Network Error : FTP   -> ");
  EXPECT_EQ(thrownBy([&] { throwHttpStatusError(404, "GET", url, "", "Not Found"); }).what,
            "File not found : HTTP GET http://h/a b -> 404 Not Found");
  EXPECT_EQ(thrownBy([&] { throwHttpStatusError(412, "PROPFIND", url, "", ""); }).what,
            "HTTP Error : HTTP PROPFIND http://h/a b -> 412");
  // 150 code points, shown as the first 50, "..." and the last 50.
  const std::string display = "http://h/" + std::string(70, 'a') + std::string(71, 'z');
  EXPECT_EQ(thrownBy([&] { throwHttpTransferError(7, "GET", URI(display), "x"); }).what,
            "Could not connect to server : HTTP GET " + display.substr(0, 50) + "..." +
                std::string(50, 'z') + " -> x");
}

}  // namespace
}  // namespace qta::errors
