#include "shelllink/byte_cursor.h"

#include "shelllink/link_format_error.h"

namespace smh {

void ByteCursor::FailShort() {
  throw LinkFormatError(LinkFault::kSizeOrData);
}

}  // namespace smh
