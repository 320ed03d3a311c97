#include "qta/errors/translate.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "qta/errors/error.h"

namespace qta::errors {
namespace {

// What a translator threw.
struct Thrown {
  bool auth = false;
  uint32_t code = 0;
  std::string what;
  std::string authDetail;
  std::string url;
};

Thrown thrownBy(const std::function<void()>& translate) {
  try {
    translate();
  } catch (const QTAAuthError& error) {
    return {true, error.code(), error.what(), error.authDetail(), error.url().toString()};
  } catch (const QTAError& error) {
    return {false, error.code(), error.what(), "", ""};
  }
  ADD_FAILURE() << "nothing thrown";
  return {};
}

// A row of a table: the inputs it covers and what they throw.
struct Row {
  std::vector<int> inputs;
  uint32_t code;
  bool auth = false;
};

using TransferTranslator = void (*)(int, const char*, const URI&, const char*);

void expectTable(TransferTranslator translate, const std::vector<Row>& rows,
                 const std::vector<int>& defaults) {
  const URI url("ftp://h/f");
  for (const Row& row : rows) {
    for (int result : row.inputs) {
      const Thrown thrown = thrownBy([&] { translate(result, "GET", url, "oops"); });
      EXPECT_EQ(thrown.code, row.code) << result;
      EXPECT_EQ(thrown.auth, row.auth) << result;
      EXPECT_EQ(thrown.authDetail, "") << result;
    }
  }
  for (int result : defaults) {
    const Thrown thrown = thrownBy([&] { translate(result, "GET", url, "oops"); });
    EXPECT_EQ(thrown.code, 1u) << result;
    EXPECT_FALSE(thrown.auth) << result;
  }
}

TEST(TransferTranslators, FtpTable) {
  expectTable(throwFtpTransferError,
              {{{5, 6, 15}, 2},
               {{7, 10, 35, 59}, 7},
               {{9, 25}, 40, true},
               {{12, 28}, 8},
               {{18, 19, 23, 26}, 9},
               {{64}, 14},
               {{67}, 3, true},
               {{78}, 30}},
              {-1, 0, 1, 4, 8, 27, 47, 73, 77, 79, 80, 1000});
}

TEST(TransferTranslators, HttpTable) {
  expectTable(throwHttpTransferError,
              {{{1, 3, 43, 48, 54}, 49},
               {{2, 93}, 50},
               {{4, 41, 53, 63}, 26},
               {{5, 6}, 2},
               {{7, 35}, 7},
               {{8, 16, 18, 23, 26, 34, 42, 52, 55, 56, 61, 75, 76, 88, 92}, 9},
               {{9, 25}, 40, true},
               {{27}, 19},
               {{28}, 8},
               {{33, 36}, 39},
               {{47}, 15},
               {{51, 58, 59, 60, 64, 77, 82, 83, 90, 91}, 14},
               {{65, 81}, 10},
               {{67}, 3, true},
               {{70}, 43},
               {{73}, 33},
               {{78}, 30},
               {{80}, 12}},
              {-1, 0, 10, 15, 19, 94, 95, 1000});
}

TEST(TransferTranslators, DetailNamesTheRequestAndTheError) {
  const URI url("http://h/a%20b");
  EXPECT_EQ(thrownBy([&] { throwHttpTransferError(28, "PUT", url, "slow\r\n"); }).what,
            "Connection timed out : HTTP PUT http://h/a b -> slow");
  for (const char* text : {static_cast<const char*>(nullptr), ""}) {
    EXPECT_EQ(thrownBy([&] { throwFtpTransferError(78, "RETR", url, text); }).what,
              "File not found : FTP RETR http://h/a b -> failed");
  }
  EXPECT_EQ(thrownBy([&] { throwFtpTransferError(0, nullptr, URI(), "\n"); }).what,
            "Unknown Network Error : FTP   -> ");
  // 150 code points, shown as the first 50, "..." and the last 50.
  const std::string display = "http://h/" + std::string(70, 'a') + std::string(71, 'z');
  EXPECT_EQ(thrownBy([&] { throwHttpTransferError(7, "GET", URI(display), "x"); }).what,
            "Could not connect to server : HTTP GET " + display.substr(0, 50) + "..." +
                std::string(50, 'z') + " -> x");
}

// Status rows in the order they are tried: a method limits the first of two
// rows for the same status.
TEST(HttpStatusTranslator, StatusTableInOrder) {
  struct StatusCase {
    int status;
    const char* method;
    uint32_t code;
    bool auth = false;
  };
  const StatusCase cases[] = {
      {404, "GET", 30},      {410, "GET", 30},   {400, "GET", 42},  {405, "MKCOL", 33},
      {405, "mkcol", 39},    {405, "PUT", 39},   {403, "GET", 41},  {401, "GET", 40, true},
      {407, "GET", 6, true}, {412, "COPY", 33},  {412, "MOVE", 33}, {412, "PUT", 33},
      {412, "GET", 29},      {412, "MKCOL", 29}, {501, "GET", 39},  {500, "GET", 44},
      {408, "GET", 38},      {409, "GET", 38},   {421, "GET", 38},  {429, "GET", 38},
      {502, "GET", 38},      {503, "GET", 38},   {504, "GET", 38},  {507, "GET", 43},
      {200, "GET", 29},      {402, "GET", 29},   {-1, nullptr, 29},
  };
  const URI url("http://h/d/");
  for (const StatusCase& c : cases) {
    const Thrown thrown =
        thrownBy([&] { throwHttpStatusError(c.status, c.method, url, "ad", ""); });
    EXPECT_EQ(thrown.code, c.code) << c.status << c.method;
    EXPECT_EQ(thrown.auth, c.auth) << c.status << c.method;
    if (c.auth) {
      EXPECT_EQ(thrown.authDetail, "ad");
      EXPECT_EQ(thrown.url, "http://h/d/");
    }
  }
}

TEST(HttpStatusTranslator, DetailEndsInTheStatusAndReason) {
  const URI url("http://h/x");
  EXPECT_EQ(thrownBy([&] { throwHttpStatusError(404, "GET", url, "", "Not Found"); }).what,
            "File not found : HTTP GET http://h/x -> 404 Not Found");
  EXPECT_EQ(thrownBy([&] { throwHttpStatusError(412, "PROPFIND", url, "", ""); }).what,
            "HTTP Error : HTTP PROPFIND http://h/x -> 412");
}

}  // namespace
}  // namespace qta::errors
