// The fields of a record: little-endian integers, texts as a count and UTF-16 code units, blocks as a count
// and bytes.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "siblings/guardkit/format/journal_steps.h"

#include <string_view>

namespace smh {

// Appends fields to bytes that it owns. Everything but Written raises std::bad_alloc. No state but its own:
// any thread, one object at a time.
class RecordWriter {
 public:
  void U8(std::uint8_t value) { PutInteger(value); }
  void U32(std::uint32_t value) { PutInteger(value); }
  void U64(std::uint64_t value) { PutInteger(value); }
  // Without a count.
  void Put(Bytes bytes);
  void Block(Bytes bytes);
  void Text(std::wstring_view text);

  // Valid until the next field or the writer's end.
  const ByteVector& Written() const noexcept { return bytes_; }

 private:
  template <typename Integer>
  void PutInteger(Integer value) {
    Put(std::as_bytes(std::span(&value, 1)));
  }

  ByteVector bytes_;
};

// The field at the cursor. Beyond its end both are empty, the cursor fails, and nothing was allocated for a
// count that the rest cannot hold. Raise std::bad_alloc. Any thread.
ByteVector ReadBlock(ByteCursor& in);
std::wstring ReadText(ByteCursor& in);
// A byte of 0 or 1; the cursor fails at any other.
bool ReadFlag(ByteCursor& in) noexcept;

// The CRC-32 of IEEE 802.3. Any thread.
std::uint32_t Checksum(Bytes bytes) noexcept;

}  // namespace smh
