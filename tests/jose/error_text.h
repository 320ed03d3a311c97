// Refusals of the jose calls as one comparable text.
#ifndef QTA_TESTS_JOSE_ERROR_TEXT_H_
#define QTA_TESTS_JOSE_ERROR_TEXT_H_

#include <string>

#include "qta/errors/error.h"

namespace qtajosetest {

// Runs `action` and returns the QTAError it throws as "code text", or "" when
// it throws none.
template <typename Action>
std::string errorText(Action action) {
  try {
    action();
  } catch (const qta::QTAError& error) {
    return std::to_string(error.code()) + " " + error.what();
  }
  return "";
}

}  // namespace qtajosetest

#endif  // QTA_TESTS_JOSE_ERROR_TEXT_H_
