#include "qta/json/file_loader.h"

#include <gtest/gtest.h>
#include <log4cxx/level.h>

#include <fstream>
#include <memory>
#include <string>

#include "log/log_test_support.h"
#include "qta/json/parser.h"
#include "qta/log/log.h"

namespace qta::json {
namespace {

// Each test in a scratch directory, with the loader's logger captured.
class FileLoaderTest : public testing::LogDirectoryTest {
 protected:
  void SetUp() override {
    LogDirectoryTest::SetUp();
    logger_->removeAllAppenders();
    logger_->setAdditivity(false);
    logger_->addAppender(capture_);
  }
  void TearDown() override {
    logger_->removeAllAppenders();
    LogDirectoryTest::TearDown();
  }

  static void writeFile(const std::string& name, const std::string& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
  }

  // The one ERROR message the loader logged, checked for its location.
  std::string loggedMessage() {
    const auto events = capture_->takeEvents();
    if (events.size() != 1) return "events: " + std::to_string(events.size());
    EXPECT_EQ(events[0]->getLevel(), log4cxx::Level::getError());
    EXPECT_STREQ(events[0]->getLocationInformation().getShortFileName(), "file_loader.cpp");
    return events[0]->getMessage();
  }

  const log4cxx::LoggerPtr logger_ = qtalog::getLogger("json");
  const std::shared_ptr<testing::CaptureAppender> capture_ =
      std::make_shared<testing::CaptureAppender>();
};

TEST_F(FileLoaderTest, ReadsTheWholeFile) {
  // Larger than one read block, so the pieces must be joined.
  const std::string text = "{\"b\": [1, 2],\n \"a\": \"" + std::string(100000, 'x') + "\"}\n";
  writeFile("doc.json", text);
  const JSON::root document = parseJSONFile("doc.json");
  ASSERT_NE(document, nullptr);
  EXPECT_TRUE(equal(*document, *parse(text)));
  EXPECT_TRUE(capture_->takeEvents().empty());
}

TEST_F(FileLoaderTest, EachFailureIsLoggedWithThePathAndGivesNothing) {
  writeFile("bad.json", "[1,");
  writeFile("trailing.json", "{} x");
  std::filesystem::create_directory("folder");
  const struct {
    std::string path;
    std::string message;
  } kCases[] = {
      {"missing.json", "failed to open missing.json"},
      {"folder", "failed reading from folder"},
      {"trailing.json", "failed parsing trailing.json as JSON"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(parseJSONFile(c.path), nullptr) << c.path;
    EXPECT_EQ(loggedMessage(), c.message) << c.path;
  }
  // "[1," is a complete array at the end of the text.
  EXPECT_NE(parseJSONFile("bad.json"), nullptr);
}

}  // namespace
}  // namespace qta::json
