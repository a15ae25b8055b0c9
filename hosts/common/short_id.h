// Short ids: what people type, and scripts keep, in place of an entry's full name. Pure functions, for any
// thread.
//
// The whole id has sixteen hexadecimal digits in small letters and is the same on every machine and in every
// version: FNV-1a of 64 bits over the location (four bytes, little-endian) and the code units of the name
// (two bytes each), then x ^= x >> 32, x *= 0xD6E8FEB86659FD93, x ^= x >> 32. It changes with the place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// Digits of a short id, where no other entry's begins alike.
inline constexpr std::size_t kShortIdDigits = 8;

// All digits of the id.
std::wstring WholeId(std::int32_t location, std::wstring_view name);
// Of each the shortest id that no other one begins with, in their order.
std::vector<std::wstring> ShortIds(const std::vector<std::wstring>& wholeIds);
// Whether the text can be an id: eight to sixteen hexadecimal digits.
bool IsIdText(std::wstring_view text) noexcept;

}  // namespace smh
