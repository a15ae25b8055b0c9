// File times as the journal keeps them: one number of 100-nanosecond steps since 1601, UTC.
#pragma once

#include <windows.h>

#include <cstdint>

namespace smh {

// FILETIME is that number in two halves; every value has one of the other kind.
inline std::uint64_t NumberOf(const FILETIME& time) noexcept {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

// The way back.
inline FILETIME FileTimeOf(std::uint64_t number) noexcept {
  return {static_cast<DWORD>(number), static_cast<DWORD>(number >> 32)};
}

}  // namespace smh
