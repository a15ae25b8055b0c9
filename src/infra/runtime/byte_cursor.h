// Reads foreign bytes in order: little-endian integers at any alignment, and runs of bytes. Every reader of a
// binary format goes through it, so that no offset from a file is ever followed unchecked. Portable.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace smh {

static_assert(std::endian::native == std::endian::little);

// Borrowed; whoever makes one says how long the bytes live.
using Bytes = std::span<const std::byte>;

// An error sticks: what is asked for beyond the end gives zeros and empty spans, and so does every read after
// it, whatever is left. So a reader checks Ok once, where it matters. Counts are compared with what is left
// before they are followed and nothing is allocated: any count may be passed.
//
// Borrows the bytes that it reads; the spans that it gives live as long as they. A copy reads on by itself,
// which is how to look ahead. No state but its own: any thread, one object at a time.
class ByteCursor {
 public:
  explicit ByteCursor(Bytes bytes) noexcept : rest_(bytes) {}

  // Whether everything asked for so far was there.
  bool Ok() const noexcept { return ok_; }
  // Whether everything was there and nothing is left.
  bool AtEnd() const noexcept { return ok_ && rest_.empty(); }
  // In bytes; 0 after an error.
  std::size_t Remaining() const noexcept { return rest_.size(); }
  // For a field with an impossible value: as if it had not been there.
  void Fail() noexcept {
    ok_ = false;
    rest_ = {};
  }

  // The next `count` bytes.
  Bytes Take(std::uint64_t count) noexcept {
    if (count > rest_.size()) {
      Fail();
      return {};
    }
    const Bytes taken = rest_.first(static_cast<std::size_t>(count));
    rest_ = rest_.subspan(taken.size());
    position_ += taken.size();
    return taken;
  }
  // The next `count` bytes, or as many as are left: never an error.
  Bytes TakeAtMost(std::uint64_t count) noexcept {
    return Take(std::min<std::uint64_t>(count, rest_.size()));
  }
  void Skip(std::uint64_t count) noexcept { Take(count); }
  // Moves to the next multiple of `alignment` (a power of two), counted from the start of the outermost
  // cursor. Padding that the end cuts off is no error: formats leave it out behind their last field.
  void Align(std::size_t alignment) noexcept { TakeAtMost((alignment - position_ % alignment) % alignment); }

  // A cursor over the next `count` bytes and nothing behind them, which this one skips; failed when this one
  // is. An error in it does not reach this one.
  ByteCursor Sub(std::uint64_t count) noexcept {
    ByteCursor part = *this;
    part.rest_ = Take(count);
    part.ok_ = ok_;
    return part;
  }
  // The same with what is left when that is less.
  ByteCursor SubAtMost(std::uint64_t count) noexcept {
    return Sub(std::min<std::uint64_t>(count, rest_.size()));
  }

  std::uint8_t U8() noexcept { return Value<std::uint8_t>(); }
  std::uint16_t U16() noexcept { return Value<std::uint16_t>(); }
  std::uint32_t U32() noexcept { return Value<std::uint32_t>(); }
  std::uint64_t U64() noexcept { return Value<std::uint64_t>(); }
  template <std::size_t kSize>
  std::array<std::byte, kSize> Array() noexcept {
    return Value<std::array<std::byte, kSize>>();
  }

 private:
  template <typename Type>
  Type Value() noexcept {
    Type value{};
    const Bytes bytes = Take(sizeof(value));
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), sizeof(value));
    return value;
  }

  Bytes rest_;
  std::size_t position_ = 0;
  bool ok_ = true;
};

}  // namespace smh
