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
  EXPECT_TRUE(qta::uri::queryParameters(qta::URI("http://h/")).empty());

  QueryParameters lenient;
  qta::uri::parseQuery("p=%zz%4&%=%", TemplateMode::kOff, lenient);
  EXPECT_EQ(lenient, (QueryParameters{{"%", "%"}, {"p", "%zz%4"}}));
}

TEST(URIQuery, ParseQueryClearsTheMapAndHonoursPlaceholders) {
  QueryParameters parameters = {{"stale", "x"}};
  qta::uri::parseQuery("a=[[x&y=z]]&[[n=m]]=%41&k=[[%41]]", TemplateMode::kOn, parameters);
  const QueryParameters templated = {{"a", "[[x&y=z]]"}, {"[[n=m]]", "A"}, {"k", "[[%41]]"}};
  EXPECT_EQ(parameters, templated);

  qta::uri::parseQuery("a=[[x&y=z]]", TemplateMode::kOff, parameters);
  const QueryParameters plain = {{"a", "[[x"}, {"y", "z]]"}};
  EXPECT_EQ(parameters, plain);
}

TEST(URIQuery, BuiltQueryReadsBack) {
  const QueryParameters parameters = {
      {"name", "a b&c=d#e+f%g"}, {"path", "/x/y?z"}, {"", "dropped"}, {"k", ""}, {"é", "[1]"}};
  const std::string query = qta::uri::buildQuery(parameters);
  EXPECT_EQ(query, "k=&name=a%20b%26c%3Dd%23e%2Bf%25g&path=/x/y?z&%C3%A9=[1]");

  qta::URI uri("http://h/");
  uri.setQuery(query);
  QueryParameters expected = parameters;
  expected.erase("");
  EXPECT_EQ(qta::uri::queryParameters(uri), expected);

  EXPECT_EQ(qta::uri::buildQuery({{"t", "[[a b]]"}}, TemplateMode::kOn), "t=[[a b]]");
}

}  // namespace
