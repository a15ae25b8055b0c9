// Reads a file's bytes in order. Whatever is asked for beyond their end raises one fault, at one place: that
// also refuses every section whose stated size is larger than the whole file.
#pragma once

#include "shelllink/format/bytes.h"

namespace smh {

class ByteCursor {
 public:
  explicit ByteCursor(Bytes bytes) noexcept : rest_(bytes) {}

  std::uint64_t Remaining() const noexcept { return rest_.size(); }

  // The next `count` bytes. Raises LinkFault::kSizeOrData, and stays where it is, when fewer are left.
  Bytes Take(std::uint64_t count) {
    if (count > Remaining()) FailShort();
    const Bytes taken = rest_.first(static_cast<std::size_t>(count));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }
  std::uint16_t U16() { return LoadInteger<std::uint16_t>(Take(sizeof(std::uint16_t))); }
  std::uint32_t U32() { return LoadInteger<std::uint32_t>(Take(sizeof(std::uint32_t))); }

 private:
  [[noreturn]] static void FailShort();

  Bytes rest_;
};

}  // namespace smh
