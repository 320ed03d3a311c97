// Wraps a URI::Data that an operation of the library has built in a URI,
// without checking or normalising it again.
#ifndef QTA_SRC_URI_DATA_ACCESS_H_
#define QTA_SRC_URI_DATA_ACCESS_H_

#include "qta/uri/uri.h"

namespace qta::uri::detail {

struct DataAccess {
  static URI wrap(URI::Data&& data);
};

}  // namespace qta::uri::detail

#endif  // QTA_SRC_URI_DATA_ACCESS_H_
