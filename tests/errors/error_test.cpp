// The error types, and what the translators of transfer results and HTTP
// statuses throw.
#include "qta/errors/error.h"

#include <apr_errno.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <span>
#include <string>
#include <tuple>

#include "qta/errors/catalogue.h"
#include "qta/errors/translate.h"

namespace qta::errors {
namespace {

TEST(QTAError, KeepsItsValuesAndTheDetailWithoutTrailingLineBreaks) {
  const QTAError error(kFileNotFound, "x\r\n");
  EXPECT_STREQ(error.what(), "File not found : x");
  EXPECT_EQ(error.code(), 30u);
  EXPECT_EQ(error.group(), 2u);
  const QTARedirectError redirect(kRedirect, URI("http://host/a"), URI("https://host/b"), -3,
                                  "moved\n");
  EXPECT_STREQ(redirect.what(), "Redirect : moved");
  EXPECT_EQ(redirect.from().toString(), "http://host/a");
  EXPECT_EQ(redirect.to().toString(), "https://host/b");
  EXPECT_EQ(redirect.value(), -3);
}

TEST(QTAError, FromErrnoNamesThePathAndTheSystemText) {
  const std::string system = std::strerror(ENOENT);
  EXPECT_EQ(QTAError(kFileNotFound, ENOENT, "/tmp/x").what(), "File not found : /tmp/x: " + system);
  EXPECT_EQ(QTAError(kFileNotFound, ENOENT, nullptr).what(), "File not found : " + system);
  EXPECT_EQ(QTAError(kFileError, EIO, std::string(150, 'p').c_str()).what(),
            "File Error : " + std::string(50, 'p') + "..." + std::string(50, 'p') + ": " +
                std::strerror(EIO));
}

TEST(QTAError, FromAprStatusByItsTable) {
  const std::tuple<apr_status_t, uint32_t> rows[] = {{13, 31}, {17, 33},  {36, 48},  {2, 30},
                                                     {20, 30}, {12, 19},  {88, 18},  {111, 7},
                                                     {71, 12}, {103, 12}, {104, 12}, {70007, 25}};
  for (const auto& [status, code] : rows) {
    const QTAError withPath(AprStatus{status}, "/d/f");
    EXPECT_EQ(withPath.code(), code) << status;
    EXPECT_EQ(withPath.what(), errorMessage(code) + " : /d/f") << status;
    EXPECT_EQ(QTAError(AprStatus{status}, nullptr).what(), errorMessage(code));
  }
  char text[64];  // a status with no row is an unknown system error
  const std::string system = apr_strerror(EPERM, text, sizeof text);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, "/d/f").what(), "Unknown System Error : /d/f: " + system);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, nullptr).what(), "Unknown System Error : " + system);
}

// What a translator threw; for an authentication error `auth` holds its
// detail and URL.
struct Thrown {
  uint32_t code = 0;
  std::string what, auth;
};

Thrown thrownBy(const std::function<void()>& translate) {
  try {
    translate();
  } catch (const QTAError& error) {
    const auto* auth = dynamic_cast<const QTAAuthError*>(&error);
    return {error.code(), error.what(),
            auth ? auth->authDetail() + " @ " + auth->url().toString() : ""};
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
    const uint32_t code = result >= 0 && result < std::ssize(codes) ? codes[result] : 1;
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
