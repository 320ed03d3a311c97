#include <gtest/gtest.h>

#include <string>

#include "qta/uri/uri.h"

namespace {

using qta::TemplateMode;

struct WriteCase {
  const char* text;
  const char* full;
  const char* display;
  const char* root;
  const char* localPath;
};

const WriteCase kWriteCases[] = {
    {"HTTP://Server1", "http://server1/", "http://server1/", "http://server1/", ""},
    {"http://h/a+b@c", "http://h/a%2Bb%40c", "http://h/a+b@c", "http://h/", ""},
    {"http://h/a%09b%25c%2Fd%3f%23e%20f%C3%A9", "http://h/a%09b%25c%2Fd%3F%23e%20f%C3%A9",
     "http://h/a%09b%25c%2Fd%3F%23e f\xC3\xA9", "http://h/", ""},
    {"file:///tmp/x%20y", "file:/tmp/x%20y", "file:/tmp/x y", "file:", "/tmp/x y"},
    {"file://server/x", "file://server/x", "file://server/x", "file://server/", ""},
    {"file://localhost/x/", "file://localhost/x/", "file://localhost/x/", "file://localhost/",
     "/x/"},
    {"a/./b/../c/", "a/c/", "a/c/", "", "a/c/"},
    {".", "./", "./", "", "./"},
    {"../x?q", "../x?q", "../x?q", "", "../x"},
    {"http://[fe80::1%25eth0]:8080/x", "http://[fe80::1%25eth0]:8080/x",
     "http://[fe80::1%25eth0]:8080/x", "http://[fe80::1%25eth0]:8080/", ""},
    {"udp://@:1234", "udp://@:1234/", "udp://@:1234/", "udp:", ""},
    {"qta://Some Name:1/", "qta://Some%20Name%3A1/", "qta://Some%20Name%3A1/",
     "qta://Some%20Name%3A1/", ""},
    {"ftp://us%65r:p%40ss@h/d%3F/?a%3db%26%41#x%23y%2F",
     "ftp://user:p%40ss@h/d%3F/?a%3Db%26A#x%23y/", "ftp://user:p@ss@h/d%3F/?a=b&A#x#y/", "ftp://h/",
     ""},
    {"?q", "?q", "?q", "", ""},
};

TEST(URIWrite, FullDisplayRootAndLocalForms) {
  for (const WriteCase& c : kWriteCases) {
    SCOPED_TRACE(c.text);
    const qta::URI uri(c.text);
    EXPECT_EQ(uri.toString(), c.full);
    EXPECT_EQ(uri.toDisplayString(), c.display);
    EXPECT_EQ(uri.rootString(), c.root);
    EXPECT_EQ(uri.localPath(), c.localPath);
  }
}

TEST(URIWrite, TemplatePlaceholdersAreCopiedVerbatim) {
  const qta::URI uri("http://h/[[a/b?c]]/d%20e?x=[[y z]]&[[#]]#[[f g]]", TemplateMode::kOn);
  EXPECT_EQ(uri.toString(TemplateMode::kOn), "http://h/[[a/b?c]]/d%20e?x=[[y z]]&[[#]]#[[f g]]");
  EXPECT_EQ(uri.toDisplayString(TemplateMode::kOn),
            "http://h/[[a/b?c]]/d e?x=[[y z]]&[[#]]#[[f g]]");
  EXPECT_EQ(uri.toString(), "http://h/%5B%5Ba%2Fb%3Fc%5D%5D/d%20e?x=[[y z]]&[[#]]#[[f g]]");
}

TEST(URIWrite, DataURIsAreWrittenInBase64AndDisplayedWithoutPayload) {
  const qta::URI note = qta::URI::fromData({'h', 'i'}, "text/plain");
  EXPECT_EQ(note.toString(), "data:text/plain;base64,aGk=");
  EXPECT_EQ(note.toDisplayString(), "data:text/plain,[...]");
  EXPECT_EQ(qta::URI::fromData({}, "").toString(), "data:text/plain;charset=US-ASCII;base64,");
  EXPECT_EQ(qta::URI::fromData({0xFF}, "a b/c;n=\"q\"").toString(),
            "data:a%20b/c;n=\"q\";base64,/w==");
  // A "data" URI without a payload is written as its scheme alone: the other
  // components never follow a "data:".
  qta::URI bare("http://u@h/a?q#f");
  bare.setScheme("data");
  EXPECT_EQ(bare.toString(), "data:");
  EXPECT_EQ(bare.toDisplayString(), "data:");
}

}  // namespace
