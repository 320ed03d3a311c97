#include "qta/json/file_loader.h"

#include <fstream>

#include "qta/json/parser.h"
#include "qta/log/log.h"

namespace qta::json {
namespace {

// The location every loader message names, whatever the compiler calls it.
constexpr const char* kLoaderSignature = "JSON::root parseJSONFile(const string&)";

void logFailure(int line, const char* format, const std::string& path) {
  static const log4cxx::LoggerPtr logger = qtalog::getLogger("json");
  qtalog_logger_log(logger, log4cxx::Level::ERROR_INT, __FILE__, kLoaderSignature, line, format,
                    path.c_str());
}

}  // namespace

JSON::root parseJSONFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    logFailure(__LINE__, "failed to open %s", path);
    return nullptr;
  }
  // A read error (a directory, an I/O fault) sets badbit; the end of the file
  // only eofbit and failbit.
  std::string text;
  char block[64 * 1024];
  while (in.read(block, sizeof block) || in.gcount() > 0) text.append(block, in.gcount());
  if (in.bad()) {
    logFailure(__LINE__, "failed reading from %s", path);
    return nullptr;
  }
  JSON::root document = parse(text);
  if (document == nullptr) logFailure(__LINE__, "failed parsing %s as JSON", path);
  return document;
}

}  // namespace qta::json
