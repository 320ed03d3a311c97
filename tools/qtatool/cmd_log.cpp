// qtatool log: configures logging as a program does and logs one message; and
// the logging section of `qtatool demo`, which writes the default
// configuration's files into a scratch folder and shows them.
#include <log4cxx/level.h>
#include <log4cxx/logmanager.h>
#include <stdlib.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

#include "args.h"
#include "command.h"
#include "qta/log/configure.h"
#include "qta/log/log.h"

namespace qtatool {
namespace {

// The level named `name` (any case), or null for a name log4cxx does not use.
log4cxx::LevelPtr levelNamed(std::string_view name) {
  std::string upper(name);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  for (const log4cxx::LevelPtr& level :
       {log4cxx::Level::getTrace(), log4cxx::Level::getDebug(), log4cxx::Level::getInfo(),
        log4cxx::Level::getWarn(), log4cxx::Level::getError(), log4cxx::Level::getFatal()}) {
    if (level->toString() == upper) return level;
  }
  return nullptr;
}

// Installs the configuration the options ask for; false when it failed (the
// library has said why on stderr).
bool configure(const ParsedArgs& parsed) {
  if (parsed.has("--default")) return qta::qtalog::configureDefault();
  if (!parsed.has("--config")) {
    qta::qtalog::startupConfigure(true, false);
    return true;
  }
  const std::string path(parsed.options.at("--config"));
  return path.ends_with(".xml") ? qta::qtalog::configureFromXML(path)
                                : qta::qtalog::configureFromINI(path);
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed =
      parseArgs(self, args, {.flags = {"--default"}, .valued = {"--config"}, .maxOperands = 3});
  if (!parsed) return kUsage;
  if (parsed->has("--default") && parsed->has("--config")) {
    return usageError(self, "--config and --default exclude each other");
  }
  if (parsed->operands.size() != 3) return usageError(self, "expected LOGGER LEVEL MESSAGE");
  const log4cxx::LevelPtr level = levelNamed(parsed->operands[1]);
  if (level == nullptr) {
    return usageError(self, "unknown level '" + std::string(parsed->operands[1]) + "'");
  }
  if (!configure(*parsed)) return kUsage;
  const log4cxx::LoggerPtr logger = log4cxx::Logger::getLogger(std::string(parsed->operands[0]));
  QTA_LOG(logger, level, parsed->operands[2]);
  log4cxx::LogManager::shutdown();
  return kSuccess;
}

void showFile(std::ostream& out, const std::filesystem::path& path) {
  std::ifstream in(path);
  out << path.filename().string() << ":\n";
  for (std::string line; std::getline(in, line);) out << "  " << line << "\n";
}

void demo(std::ostream& out) {
  out << "== logging\n";
  std::string folder = (std::filesystem::temp_directory_path() / "qtatool-demo-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    out << "no scratch folder for the log files\n";
    return;
  }
  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  qta::qtalog::configureDefault();
  QTA_LOG_INFO(qta::qtalog::getLogger("utils"), "player started");
  QTA_LOG_WARN(qta::qtalog::getLogger("device"), "no identifiers file, using defaults");
  QTA_LOG_DEBUG(qta::qtalog::getLogger("device"), "below INFO: dropped");
  QTA_LOG_INFO(qta::qtalog::getLogger("accounting"), "2024-05-01T10:00:00Z play intro.mp4 42s");
  log4cxx::LogManager::resetConfiguration();
  std::filesystem::current_path(previous);

  out << "the default configuration, run in " << folder << ", wrote:\n";
  showFile(out, std::filesystem::path(folder) / "log/player.log");
  showFile(out, std::filesystem::path(folder) / "log/accounting.log");
  out << "(the folder is removed again)\n";
  std::filesystem::remove_all(folder);
}

const RegisterCommand kLog({
    .order = 5,
    .name = "log",
    .summary = "configure logging and log one message",
    .usage = "Usage: qtatool log [--config FILE | --default] LOGGER LEVEL MESSAGE\n\n"
             "Configures logging, then logs MESSAGE at LEVEL (TRACE, DEBUG, INFO, WARN,\n"
             "ERROR or FATAL, any case) on the logger named LOGGER (for example\n"
             "qta.accounting). --config reads FILE, as XML when its name ends in \".xml\",\n"
             "else as properties; --default installs the default configuration, which\n"
             "writes log/player.log and log/accounting.log under the working directory;\n"
             "without either, messages of INFO and above go to stderr. Exits 2 when the\n"
             "configuration fails.\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
