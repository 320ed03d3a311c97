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
  const QTAError plain(kFileNotFound);
  EXPECT_STREQ(plain.what(), "File not found");
  EXPECT_EQ(plain.code(), 30u);
  EXPECT_EQ(plain.group(), 2u);
  EXPECT_STREQ(QTAError(kFileNotFound, "x\r\n\r\n").what(), "File not found : x");
  EXPECT_STREQ(QTAError(kFileNotFound, "\r\n").what(), "File not found");
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
  char text[64];
  apr_strerror(EPERM, text, sizeof text);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, "/d/f").code(), kUnknownSystemError);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, "/d/f").what(),
            std::string("Unknown System Error : /d/f: ") + text);
  EXPECT_EQ(QTAError(AprStatus{EPERM}, nullptr).what(),
            std::string("Unknown System Error : ") + text);
}

TEST(QTAError, SubclassesKeepTheirValuesAndCatchAsTheBase) {
  const URI from("http://host/a"), to("https://host/b");
  try {
    throw QTARedirectError(kRedirect, from, to, -3, "moved\n");
  } catch (const QTAError& error) {
    const auto* redirect = dynamic_cast<const QTARedirectError*>(&error);
    ASSERT_NE(redirect, nullptr);
    EXPECT_STREQ(error.what(), "Redirect : moved");
    EXPECT_EQ(redirect->from().toString(), from.toString());
    EXPECT_EQ(redirect->to().toString(), to.toString());
    EXPECT_EQ(redirect->value(), -3);
  }
  const QTAAuthError auth(kAuthenticationFailed, from, "", "realm=x");
  EXPECT_STREQ(auth.what(), "Authentication failed");
  EXPECT_EQ(auth.url().host(), "host");
  EXPECT_EQ(auth.authDetail(), "realm=x");
}

}  // namespace
}  // namespace qta
