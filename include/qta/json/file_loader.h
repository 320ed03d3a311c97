// qta/json/file_loader.h: a JSON document read from a file.
//
// parseJSONFile reads the whole file and parses it with qta::json::parse (see
// qta/json/parser.h for the grammar). Each of its three failures (the file
// cannot be opened, reading it fails, its text is not JSON) is logged at ERROR
// on the "qta.json" logger with the path, and gives an empty root.
//
// Ownership: the caller owns the returned tree. Threads: any number of threads
// may load files at once.
#ifndef QTA_JSON_FILE_LOADER_H_
#define QTA_JSON_FILE_LOADER_H_

#include <string>

#include "qta/export.h"
#include "qta/json/json.h"

namespace qta::json {

// The document held by the file at `path`, or an empty root (logged).
QTA_EXPORT JSON::root parseJSONFile(const std::string& path);

}  // namespace qta::json

#endif  // QTA_JSON_FILE_LOADER_H_
