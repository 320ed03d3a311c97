#include "qta/errors/error.h"

#include <apr_errno.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "qta/errors/catalogue.h"

namespace qta {
namespace {

using namespace errors;

TEST(QTAError, TextIsTheMessageAndTheDetail) {
  const QTAError error(kFileNotFound, "x\r\n");
  EXPECT_STREQ(error.what(), "File not found : x");
  EXPECT_EQ(error.code(), 30u);
  EXPECT_EQ(error.group(), 2u);
  EXPECT_EQ(QTAError(99).group(), 0u);
}

TEST(QTAError, FromErrnoNamesThePathAndTheSystemText) {
  const std::string system = std::strerror(ENOENT);
  EXPECT_EQ(QTAError(kFileNotFound, ENOENT, "/tmp/x").what(), "File not found : /tmp/x: " + system);
  EXPECT_EQ(QTAError(kFileNotFound, ENOENT, nullptr).what(), "File not found : " + system);
  const std::string longPath(150, 'p');
  EXPECT_EQ(QTAError(kFileError, EIO, longPath.c_str()).what(),
            "File Error : " + std::string(50, 'p') + "..." + std::string(50, 'p') + ": " +
                std::strerror(EIO));
}

TEST(QTAError, FromAprStatusByItsTable) {
  struct Row {
    apr_status_t status;
    uint32_t code;
  };
  const Row rows[] = {{13, 31}, {17, 33}, {36, 48}, {2, 30},   {20, 30},  {12, 19},
                      {88, 18}, {111, 7}, {71, 12}, {103, 12}, {104, 12}, {70007, 25}};
  for (const Row& row : rows) {
    const QTAError withPath(AprStatus{row.status}, "/d/f");
    EXPECT_EQ(withPath.code(), row.code) << row.status;
    EXPECT_EQ(withPath.what(), errorMessage(row.code) + " : /d/f") << row.status;
    EXPECT_EQ(QTAError(AprStatus{row.status}, nullptr).what(), errorMessage(row.code));
  }
  char text[64];  // a status with no row is an unknown system error
  apr_strerror(EPERM, text, sizeof text);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, "/d/f").what(),
            std::string("Unknown System Error : /d/f: ") + text);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, nullptr).what(),
            std::string("Unknown System Error : ") + text);
}

TEST(QTAError, RedirectKeepsItsValues) {
  const QTARedirectError redirect(kRedirect, URI("http://host/a"), URI("https://host/b"), -3,
                                  "moved\n");
  EXPECT_STREQ(redirect.what(), "Redirect : moved");
  EXPECT_EQ(redirect.from().toString(), "http://host/a");
  EXPECT_EQ(redirect.to().toString(), "https://host/b");
  EXPECT_EQ(redirect.value(), -3);
}

}  // namespace
}  // namespace qta
