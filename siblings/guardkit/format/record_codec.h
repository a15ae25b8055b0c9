// The fields of a record: little-endian integers, texts as a count and UTF-16 units, blocks as a count and
// bytes.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <cstring>
#include <span>
#include <string_view>

namespace smh {

class RecordWriter {
 public:
  void U8(std::uint8_t value) { Put(value, 1); }
  void U32(std::uint32_t value) { Put(value, 4); }
  void U64(std::uint64_t value) { Put(value, 8); }
  void Bytes(std::span<const std::byte> bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void Block(std::span<const std::byte> bytes);
  void Text(std::wstring_view text);

  const ByteVector& Written() const noexcept { return bytes_; }

 private:
  void Put(std::uint64_t value, int width);

  ByteVector bytes_;
};

// Reads fields in order. What is asked for beyond the end gives zeros and empty texts, and Ok is false from
// then on: a reader checks once, at its end. Nothing is allocated for a count that the rest cannot hold.
class RecordCursor {
 public:
  explicit RecordCursor(std::span<const std::byte> bytes) noexcept : rest_(bytes) {}

  bool Ok() const noexcept { return ok_; }
  bool AtEnd() const noexcept { return ok_ && rest_.empty(); }
  std::size_t Remaining() const noexcept { return rest_.size(); }
  // For a field with an impossible value.
  void Fail() noexcept;

  std::span<const std::byte> Take(std::uint64_t count) noexcept;
  std::uint8_t U8() noexcept { return Integer<std::uint8_t>(); }
  std::uint32_t U32() noexcept { return Integer<std::uint32_t>(); }
  std::uint64_t U64() noexcept { return Integer<std::uint64_t>(); }
  ByteVector Block();
  std::wstring Text();

 private:
  template <typename Type>
  Type Integer() noexcept {
    Type value = 0;
    const std::span<const std::byte> bytes = Take(sizeof(value));
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), sizeof(value));
    return value;
  }

  std::span<const std::byte> rest_;
  bool ok_ = true;
};

// The CRC-32 of IEEE 802.3.
std::uint32_t Checksum(std::span<const std::byte> bytes) noexcept;

}  // namespace smh
