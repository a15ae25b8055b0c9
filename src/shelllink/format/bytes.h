// Bytes of a file and the integers in them: little-endian, at any alignment.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace smh {

static_assert(std::endian::native == std::endian::little);

// Borrowed; whoever makes one says how long the bytes live.
using Bytes = std::span<const std::byte>;

// The integer at the start of `bytes`, which holds at least its size.
template <typename Integer>
Integer LoadInteger(Bytes bytes) noexcept {
  Integer value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

}  // namespace smh
