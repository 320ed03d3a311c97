// Large and adversarial texts: each must be handled in linear time. A
// quadratic step would take minutes on these sizes; the bound is generous so
// that sanitizer builds on a busy machine pass.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "qta/uri/escape.h"
#include "qta/uri/query.h"
#include "qta/uri/uri.h"

namespace {

using qta::TemplateMode;

std::string repeat(const std::string& piece, size_t count) {
  std::string out;
  out.reserve(piece.size() * count);
  for (size_t i = 0; i < count; ++i) out += piece;
  return out;
}

void expectQuick(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(URIHostile, OneMebibytePath) {
  expectQuick([] {
    const qta::URI uri("http://h/" + std::string(1 << 20, 'a') + "/b");
    ASSERT_EQ(uri.path().segments.size(), 2u);
    EXPECT_EQ(uri.path().segments[0].size(), 1u << 20);
    EXPECT_EQ(uri.toString().size(), (1u << 20) + 11);
  });
}

TEST(URIHostile, HundredThousandSegments) {
  expectQuick([] {
    const qta::URI many("http://h/" + repeat("s/", 100000));
    EXPECT_EQ(many.path().segments.size(), 100000u);
    const qta::URI climbing("http://h/" + repeat("a/", 50000) + repeat("../", 100000) + "x");
    EXPECT_EQ(climbing.toString(), "http://h/x");
    const qta::URI relative(repeat("../", 100000) + "x");
    EXPECT_EQ(relative.path().segments.size(), 100001u);
  });
}

TEST(URIHostile, TenThousandEscapes) {
  expectQuick([] {
    const std::string escapes = repeat("%41", 10000);
    const qta::URI uri("http://h/" + escapes + "?" + escapes + "#" + escapes);
    EXPECT_EQ(uri.path().segments[0], std::string(10000, 'A'));
    EXPECT_EQ(uri.query(), std::string(10000, 'A'));
    EXPECT_FALSE(qta::URI::tryParse("http://h/" + repeat("%", 10000)).has_value());
    EXPECT_EQ(qta::uri::normalizeComponent(repeat("%", 10000), qta::uri::kQueryDecodeSet,
                                           qta::uri::kQueryKeepSet),
              repeat("%25", 10000));
  });
}

TEST(URIHostile, UnclosedPlaceholdersInTemplateMode) {
  expectQuick([] {
    const std::string opens = repeat("[[/", 100000);
    const qta::URI uri("http://h/" + opens + "?" + repeat("[[&[[=", 100000) + "#" + opens,
                       TemplateMode::kOn);
    EXPECT_EQ(uri.path().segments.size(), 100000u);
    EXPECT_FALSE(uri.toString(TemplateMode::kOn).empty());
    qta::uri::QueryParameters parameters;
    qta::uri::parseQuery(repeat("[[=&", 100000), TemplateMode::kOn, parameters);
    EXPECT_EQ(parameters.size(), 1u);
    EXPECT_EQ(qta::uri::findOutsidePlaceholder(std::string(1 << 20, '['), '/'), std::string::npos);
    EXPECT_TRUE(qta::uri::hasValidEscapes(std::string(1 << 20, '['), TemplateMode::kOn));
  });
}

}  // namespace
