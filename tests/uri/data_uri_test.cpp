#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "qta/uri/token.h"
#include "qta/uri/uri.h"

namespace {

struct DataCase {
  const char* text;
  const char* mediaType;
  std::string bytes;
  const char* written;
};

const DataCase kDataCases[] = {
    {"data:,A%20brief%20note", "text/plain;charset=US-ASCII", "A brief note",
     "data:text/plain;charset=US-ASCII;base64,QSBicmllZiBub3Rl"},
    {"data:text/plain;base64,aGk=", "text/plain", "hi", "data:text/plain;base64,aGk="},
    {"DATA:;base64,aGk=", "text/plain;charset=US-ASCII", "hi",
     "data:text/plain;charset=US-ASCII;base64,aGk="},
    {"data:/jpg;base64,aGk=", "image/jpeg", "hi", "data:image/jpeg;base64,aGk="},
    {"data:%2Fjpg;base64,aGk=", "image/jpeg", "hi", "data:image/jpeg;base64,aGk="},
    {"data:Text/X-Y;A=B;base64,aG%6B=", "Text/X-Y;A=B", "hi", "data:Text/X-Y;A=B;base64,aGk="},
    // Quoted parameter values: a doubled quote stands for one; "," may be escaped.
    {"data:t/s;p=\"x\"\"y\";q=\"\",z", "t/s;p=\"x\"\"y\";q=\"\"", "z",
     "data:t/s;p=\"x\"\"y\";q=\"\";base64,eg=="},
    {"data:t/s;p=\"%2C%01\",z", "t/s;p=\",\x01\"", "z", "data:t/s;p=\"%2C%01\";base64,eg=="},
    // The braces and DEL pass as token bytes.
    {"data:{t}/%7F,", "{t}/\x7F", "", "data:%7Bt%7D/%7F;base64,"},
    // The payload is everything after the first ",", escapes decoded; base64
    // decoding skips foreign bytes.
    {"data:,a,b?c#d%00", "text/plain;charset=US-ASCII", std::string("a,b?c#d\0", 8),
     "data:text/plain;charset=US-ASCII;base64,YSxiP2MjZAA="},
    {"data:;base64,a%20G k=\n", "text/plain;charset=US-ASCII", "hi",
     "data:text/plain;charset=US-ASCII;base64,aGk="},
    {"data:;base64,", "text/plain;charset=US-ASCII", "",
     "data:text/plain;charset=US-ASCII;base64,"},
};

const char* const kInvalidDataTexts[] = {
    "data:text/plain",               // no ","
    "data:text;base64,aGk=",         // no "/" in the type
    "data:/plain,x",                 // empty type
    "data:text/,x",                  // empty subtype
    "data:text/plain/x,x",           // "/" in the subtype
    "data:te xt/plain,x",            // space
    "data:t\xC3\xA9/plain,x",        // bytes of 128 and above
    "data:text/plain;charset,x",     // parameter without "="
    "data:text/plain;,x",            // empty parameter
    "data:text/plain;=x,x",          // empty parameter name
    "data:text/plain;a=,x",          // empty value
    "data:text/plain;a=b=c,x",       // "=" in a token value
    "data:text/plain;a=\"x\"y\",x",  // a lone quote inside a quoted value
    "data:text/plain;a=\"\"\",x",    // three quotes
    "data:text/plain;a=\"\xC3\xA9\",x",
    "data:text/plain;a=\"x;y\",x",  // parameters are split at every ";"
    "data:text/plain;BASE64,aGk=",  // the marker is case-sensitive: a parameter without "="
    "data:%zz/plain,x",             // bad escape in the media type
    "data:,a%zz",                   // bad escape in the payload
    "data://x/y,z",                 // an authority with a host
    "data://u@/y,z",                // or user info
    "data:/jpg%00,x",               // only the exact "/jpg" is fixed up
};

TEST(DataURI, ReadsMediaTypeAndPayloadAndWritesBase64) {
  for (const DataCase& c : kDataCases) {
    SCOPED_TRACE(c.text);
    const std::optional<qta::URI> uri = qta::URI::tryParse(c.text);
    ASSERT_TRUE(uri.has_value());
    ASSERT_NE(uri->content(), nullptr);
    EXPECT_EQ(uri->mediaType(), c.mediaType);
    EXPECT_EQ(std::string(uri->bytes().begin(), uri->bytes().end()), c.bytes);
    EXPECT_EQ(uri->toString(), c.written);
    const qta::URI again(uri->toString());
    EXPECT_EQ(again.mediaType(), c.mediaType);
    EXPECT_EQ(again.bytes(), uri->bytes());
  }
}

TEST(DataURI, InvalidTextsFailTheWholeParse) {
  for (const char* text : kInvalidDataTexts) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(qta::URI::tryParse(text).has_value());
  }
}

TEST(DataURI, CopiesShareOneContent) {
  const qta::URI made = qta::URI::fromData({1, 2}, "");
  const qta::URI copy = made;
  EXPECT_EQ(copy.content(), made.content());
  EXPECT_EQ(copy.bytes(), (std::vector<uint8_t>{1, 2}));
  EXPECT_EQ(qta::URI("http://h/").content(), nullptr);
}

TEST(DataURI, TokensHoldNoSeparatorSpaceControlOrHighByte) {
  EXPECT_EQ(qta::uri::tokenSeparators.size(), 15u);
  for (char separator : qta::uri::tokenSeparators) {
    EXPECT_FALSE(qta::uri::isToken(std::string("a") + separator)) << separator;
  }
  for (const char* text : {"", " ", "a\tb", "\x1F", "\x80", "\xFF"}) {
    EXPECT_FALSE(qta::uri::isToken(text)) << text;
  }
  for (const char* text : {"text", "x-y.z+w", "{}", "\x7F", "!#$%&'*^_`|~"}) {
    EXPECT_TRUE(qta::uri::isToken(text)) << text;
  }
}

}  // namespace
