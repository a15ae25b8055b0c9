// What the library and its icon program have in common. The program asks the shell for the icons of files in
// a process of its own: a file that makes the shell fault, or wait for ever, costs its icon and nothing else.
#pragma once

#include <windows.h>

#include <cstdint>

namespace smh {

// Lies where the siblings do. Its arguments are the numbers of handles that it inherits: the section with the
// IconExchange, the event of a request, the event of an answer (both reset themselves), and the library's
// process, with which it ends.
inline constexpr wchar_t kIconProgram[] = L"startupicons.exe";
// It ends as well when nothing was requested for so long: whoever started it has gone without it.
inline constexpr DWORD kIconProgramIdleMs = 60'000;

inline constexpr int kSmallIconSide = 16;
inline constexpr int kLargeIconSide = 32;

// One icon, its rows from the top down.
template <int side>
struct IconPixels {
  std::uint32_t isThere;              // 0: there is none, and the rest is undefined
  std::uint32_t colors[side * side];  // 0xAARRGGBB
  // One bit a pixel, that of the first one the highest of the first byte: 1 keeps what is behind the icon.
  std::uint8_t mask[side][4];
};

enum class IconRequest : std::uint32_t {
  kOfFile,    // the icon `index` of the file, negative for a resource's number
  kOfShell,   // the icon with which the shell shows the file
  kOfEither,  // the first, or without it the second
};

// Written by the library before a request, and by the program before its answer.
struct IconExchange {
  static constexpr std::uint32_t kFileUnits = 32'768;

  IconRequest request;
  std::int32_t index;
  wchar_t file[kFileUnits];  // ended by a NUL
  IconPixels<kLargeIconSide> large;
  IconPixels<kSmallIconSide> small;
};

}  // namespace smh
