// The reader of "data" URIs that the parser calls.
#ifndef QTA_SRC_URI_DATA_URI_H_
#define QTA_SRC_URI_DATA_URI_H_

#include <string_view>

#include "qta/uri/uri.h"

namespace qta::uri {

// Reads `text`, the part of a "data" URI after "data:" ("[mediatype][;base64],
// payload"), checks the media type and decodes the payload into a new
// data.content. Returns false, leaving `data` alone, when the text is not a
// valid data URI.
bool readDataURI(URI::Data& data, std::string_view text);

}  // namespace qta::uri

#endif  // QTA_SRC_URI_DATA_URI_H_
