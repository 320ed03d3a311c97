#include "qta/uri/query.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using qta::TemplateMode;
using qta::uri::QueryParameters;

TEST(URIQuery, ReadsParametersOfAURI) {
  const qta::URI uri("http://h/?b=2&a=1&&=skipped&a=again&flag&e=&p=%41+&x=y=z");
  const QueryParameters expected = {{"a", "1"},   {"b", "2"},  {"e", ""},
                                    {"flag", ""}, {"p", "A+"}, {"x", "y=z"}};
  EXPECT_EQ(qta::uri::queryParameters(uri), expected);
}

TEST(URIQuery, ParseQueryClearsTheMapDecodesLenientlyAndHonoursPlaceholders) {
  QueryParameters parameters = {{"stale", "x"}};
  qta::uri::parseQuery("p=%zz%4&%=%", TemplateMode::kOff, parameters);
  EXPECT_EQ(parameters, (QueryParameters{{"%", "%"}, {"p", "%zz%4"}}));
  qta::uri::parseQuery("a=[[x&y=z]]&[[n=m]]=%41&k=[[%41]]", TemplateMode::kOn, parameters);
  EXPECT_EQ(parameters, (QueryParameters{{"a", "[[x&y=z]]"}, {"[[n=m]]", "A"}, {"k", "[[%41]]"}}));
  qta::uri::parseQuery("a=[[x&y=z]]", TemplateMode::kOff, parameters);
  EXPECT_EQ(parameters, (QueryParameters{{"a", "[[x"}, {"y", "z]]"}}));
}

TEST(URIQuery, BuiltQueryReadsBack) {
  QueryParameters parameters = {
      {"name", "a b&c=d#e+f%g"}, {"path", "/x/y?z"}, {"", "dropped"}, {"k", ""}, {"é", "[1]"}};
  const std::string query = qta::uri::buildQuery(parameters);
  EXPECT_EQ(query, "k=&name=a%20b%26c%3Dd%23e%2Bf%25g&path=/x/y?z&%C3%A9=[1]");
  parameters.erase("");
  EXPECT_EQ(qta::uri::queryParameters(qta::URI("http://h/?" + query)), parameters);
  EXPECT_EQ(qta::uri::buildQuery({{"t", "[[a b]]"}}, TemplateMode::kOn), "t=[[a b]]");
}

}  // namespace
