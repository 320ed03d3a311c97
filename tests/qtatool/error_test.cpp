// qtatool error: catalogue lookups and the errors the translators throw.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "run_tool.h"

namespace qtatooltest {
namespace {

TEST(QtatoolError, PrintsCodesAndThrownErrors) {
  expectRuns({
      {{"error", "47"}, 0, "3\tEmpthy input string not allowed\n"},
      {{"error", "54"}, 0, "0\t\n"},
      {{"error", "4294967295"}, 0, "0\tNetwork Error\n"},
      {{"error", "http", "405", "MKCOL", "http://h/d"},
       0,
       "QTAError\t33\tFile Exist : HTTP MKCOL http://h/d -> 405\n"},
      {{"error", "http", "407", "GET", "http://h/", "Proxy Authentication Required"},
       0,
       "QTAAuthError\t6\tUser authentication failed on proxy : HTTP GET http://h/ -> 407 Proxy "
       "Authentication Required\n"},
      {{"error", "transfer", "ftp", "67", "USER", "ftp://h/"},
       0,
       "QTAAuthError\t3\tUser authentication failed on server : FTP USER ftp://h/ -> failed\n"},
      {{"error", "transfer", "http", "73", "PUT", "http://h/f", "exists\r\n"},
       0,
       "QTAError\t33\tFile Exist : HTTP PUT http://h/f -> exists\n"},
      {{"error", "errno", "36", "2", "/no/file"},
       0,
       "QTAError\t36\tFile read error : /no/file: " + std::string(std::strerror(2)) + "\n"},
      {{"error", "apr", "70007"}, 0, "QTAError\t25\tTimed out\n"},
      {{"error", "apr", "104", "/sock"}, 0, "QTAError\t12\tConnection lost : /sock\n"},
  });
}

}  // namespace
}  // namespace qtatooltest
