// qtatool error: looks up a catalogue code, or builds the error the library
// throws for an HTTP status, a failed transfer, an errno value or an APR
// status and prints it; and the errors section of `qtatool demo`.
#include <apr_errno.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "args.h"
#include "command.h"
#include "qta/errors/catalogue.h"
#include "qta/errors/error.h"
#include "qta/errors/translate.h"

namespace qtatool {
namespace {

// The optional last operand at `at` as a C string: null when it is absent.
const char* optionalText(const std::vector<std::string>& operands, size_t at) {
  return at < operands.size() ? operands[at].c_str() : nullptr;
}

// Each translator throws the error the library throws for its operands (the
// ones after its name), or returns what is wrong with them.
using Operands = std::vector<std::string>;

std::string httpStatus(const Operands& op) {  // STATUS METHOD URL [REASON]
  const std::optional<int> status = number<int>(op[0]);
  if (!status) return notANumber(op[0]);
  qta::errors::throwHttpStatusError(*status, op[1].c_str(), qta::URI(op[2]), "",
                                    op.size() > 3 ? op[3] : "");
}

std::string transfer(const Operands& op) {  // ftp|http RESULT METHOD URL [TEXT]
  if (op[0] != "ftp" && op[0] != "http") return "unknown transfer '" + op[0] + "'";
  const std::optional<int> result = number<int>(op[1]);
  if (!result) return notANumber(op[1]);
  const qta::URI url(op[3]);
  if (op[0] == "ftp")
    qta::errors::throwFtpTransferError(*result, op[2].c_str(), url, optionalText(op, 4));
  qta::errors::throwHttpTransferError(*result, op[2].c_str(), url, optionalText(op, 4));
}

std::string errnoValue(const Operands& op) {  // CODE ERRNO [PATH]
  const std::optional<uint32_t> code = number<uint32_t>(op[0]);
  if (!code) return notANumber(op[0]);
  const std::optional<int> errnum = number<int>(op[1]);
  if (!errnum) return notANumber(op[1]);
  throw qta::QTAError(*code, *errnum, optionalText(op, 2));
}

std::string aprStatus(const Operands& op) {  // STATUS [PATH]
  const std::optional<apr_status_t> status = number<apr_status_t>(op[0]);
  if (!status) return notANumber(op[0]);
  throw qta::QTAError(qta::AprStatus{*status}, optionalText(op, 1));
}

struct Translator {
  std::string_view name;
  size_t minOperands;
  size_t maxOperands;
  std::string (*build)(const Operands& operands);
};

constexpr Translator kTranslators[] = {
    {"http", 3, 4, httpStatus},
    {"transfer", 4, 5, transfer},
    {"errno", 2, 3, errnoValue},
    {"apr", 1, 2, aprStatus},
};

// Prints the class name, code and text of an error.
void printError(std::ostream& out, const qta::QTAError& error) {
  const bool auth = dynamic_cast<const qta::QTAAuthError*>(&error) != nullptr;
  out << (auth ? "QTAAuthError" : "QTAError") << "\t" << error.code() << "\t" << error.what()
      << "\n";
}

int printCode(const Command& self, std::string_view text) {
  const std::optional<uint32_t> code = number<uint32_t>(text);
  if (!code) return usageError(self, notANumber(text));
  std::cout << qta::errors::errorGroup(*code) << "\t" << qta::errors::errorMessage(*code) << "\n";
  return kSuccess;
}

int run(const Command& self, Args args) {
  const std::optional<ParsedArgs> parsed = parseArgs(self, args, {.maxOperands = 6});
  if (!parsed) return kUsage;
  const std::vector<std::string_view>& operands = parsed->operands;
  if (operands.empty()) return usageError(self, "missing CODE or translator");
  for (const Translator& translator : kTranslators) {
    if (translator.name != operands[0]) continue;
    const Operands rest(operands.begin() + 1, operands.end());
    if (rest.size() < translator.minOperands || rest.size() > translator.maxOperands) {
      return usageError(self, "wrong number of arguments for " + std::string(translator.name));
    }
    try {
      return usageError(self, translator.build(rest));
    } catch (const qta::QTAError& error) {
      printError(std::cout, error);
      return kSuccess;
    }
  }
  if (operands.size() > 1) {
    return usageError(self, "unknown translator '" + std::string(operands[0]) + "'");
  }
  return printCode(self, operands[0]);
}

// Prints the error `thrower` throws.
template <typename Thrower>
void printThrown(std::ostream& out, Thrower thrower) {
  try {
    thrower();
  } catch (const qta::QTAError& error) {
    printError(out, error);
  }
}

void demo(std::ostream& out) {
  using namespace qta::errors;
  out << "== errors\n";
  const uint32_t codes[] = {kFileNotFound, kEmptyInput, kClosingEntry, 53, 99};
  for (const uint32_t code : codes) {
    out << "code " << code << ": group " << errorGroup(code) << ", \"" << errorMessage(code)
        << "\"\n";
  }
  // A request's failures as the library throws them, caught and printed.
  const qta::URI media("http://media.example/clips/intro%20cut.mp4");
  printThrown(out, [&] { throwHttpStatusError(404, "GET", media, "", "Not Found"); });
  printThrown(out, [&] { throwHttpStatusError(412, "PUT", media, "", "Precondition Failed"); });
  printThrown(out, [&] { throwHttpStatusError(401, "GET", media, "Basic realm=\"media\"", ""); });
  const qta::URI archive("ftp://archive.example/pub/intro.mp4");
  printThrown(out, [&] { throwFtpTransferError(28, "RETR", archive, "Operation timed out\r\n"); });
  printThrown(out, [&] { throwHttpTransferError(6, "GET", media, nullptr); });
  const qta::URI longUrl("http://cdn.example/" + std::string(60, 'a') + "/" + std::string(60, 'z') +
                         ".mp4");
  printThrown(out, [&] { throwHttpTransferError(7, "GET", longUrl, "refused"); });
  printThrown(out, [] { throw qta::QTAError(kFileReadError, ENOENT, "/media/missing.mp4"); });
  printThrown(out, [] { throw qta::QTAError(qta::AprStatus{13}, "/media/locked.mp4"); });
}

const RegisterCommand kError({
    .order = 50,
    .name = "error",
    .summary = "look up an error code, or build the error thrown for a failure",
    .usage = "Usage: qtatool error CODE\n"
             "       qtatool error http STATUS METHOD URL [REASON]\n"
             "       qtatool error transfer ftp|http RESULT METHOD URL [TEXT]\n"
             "       qtatool error errno CODE ERRNO [PATH]\n"
             "       qtatool error apr STATUS [PATH]\n\n"
             "With CODE alone prints the code's group, a tab and its message. Otherwise\n"
             "builds the error the library throws for an HTTP status answering METHOD on URL,\n"
             "for a failed transfer (RESULT is the transfer library's result code, TEXT its\n"
             "error text), for an errno value with error CODE, or for an APR status, with the\n"
             "path PATH; then prints its class name, a tab, its code, a tab and its text.\n"
             "Numbers are decimal; put \"--\" before the operands when one starts with \"-\".\n",
    .run = run,
    .demo = demo,
});

}  // namespace
}  // namespace qtatool
