#include "shelllink/format/byte_cursor.h"

#include "shelllink/format/link_format_error.h"

namespace smh {

void ByteCursor::FailShort() {
  throw LinkFormatError(LinkFault::kSizeOrData);
}

}  // namespace smh
