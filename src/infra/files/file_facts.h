// What the system says about the names of files and folders: what is there, and the full path.
//
// Every function is one call of the system, keeps no state and may be called from any thread. All of them
// take a name as the system does:
// - An empty text and one that holds a NUL name nothing.
// - A symbolic link or junction is looked at itself and not followed: one that leads to a folder is a folder,
//   wherever it leads.
// - "folder\" is the folder. Dots and blanks at the end of a name are dropped, unless the path begins with
//   "\\?\", which takes it as it stands.
// - A relative name starts at the process's current folder.
// - A path of MAX_PATH units and more names nothing, unless it begins with "\\?\".
// But a device (con, nul, com1 and the like) is nothing here, in whatever folder this Windows takes its name
// for one, and neither is what stands behind "\\.\" without a drive: looking at a pipe would open it.
#pragma once

#include "infra/runtime/embedded_nul.h"

#include <windows.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace smh {

template <typename Text>
concept TerminatedText = requires(const Text& text) {
  requires std::same_as<decltype(text.c_str()), const wchar_t*>;
  requires std::same_as<decltype(text.size()), std::size_t>;
};

// A path as these functions take it: a terminated text of the caller's, whose length shows whether the system
// would see all of it. For arguments only.
class PathView {
 public:
  template <TerminatedText Text>
  PathView(const Text& text) noexcept : text_(text.c_str(), text.size()) {}

  const wchar_t* c_str() const noexcept { return text_.data(); }
  bool IsEmpty() const noexcept { return text_.empty(); }
  // Whether the system would see only a part of it.
  bool IsCut() const noexcept { return HoldsNul(text_); }

 private:
  std::wstring_view text_;
};

// Whether the text names a place by itself, whatever folder the process stands in: with a drive and its root,
// or with two separators at its beginning (a share, "\\?\" and "\\.\").
bool IsFullPath(std::wstring_view path) noexcept;
// Whether a name without its folder is a device's to any Windows, with or without an extension.
bool IsDeviceName(std::wstring_view name) noexcept;

// The attributes, INVALID_FILE_ATTRIBUTES for what cannot be looked at; then the thread's last error says
// why: ERROR_FILE_NOT_FOUND or ERROR_PATH_NOT_FOUND when nothing is there, ERROR_ACCESS_DENIED and others
// when that cannot be told, ERROR_INVALID_NAME for a text that holds a NUL and for a device.
DWORD AttributesOf(PathView path) noexcept;
// Whether a file, a folder, or any of the two is there and can be looked at. What cannot be looked at counts
// as missing; the thread's last error says why, as above.
bool IsFile(PathView path) noexcept;
bool IsFolder(PathView path) noexcept;
bool Exists(PathView path) noexcept;

// Two halves as the system gives sizes and times.
constexpr std::uint64_t JoinHalves(DWORD high, DWORD low) noexcept {
  return std::uint64_t{high} << 32 | low;
}

// The size in bytes out of WIN32_FIND_DATAW, WIN32_FILE_ATTRIBUTE_DATA or BY_HANDLE_FILE_INFORMATION.
template <typename Data>
constexpr std::uint64_t SizeIn(const Data& data) noexcept {
  return JoinHalves(data.nFileSizeHigh, data.nFileSizeLow);
}

// File times as one number: steps of 100 nanoseconds since 1601, UTC.
constexpr std::uint64_t NumberOf(const FILETIME& time) noexcept {
  return JoinHalves(time.dwHighDateTime, time.dwLowDateTime);
}
constexpr FILETIME FileTimeOf(std::uint64_t number) noexcept {
  return {static_cast<DWORD>(number), static_cast<DWORD>(number >> 32)};
}

// What tells a file from itself at another time.
struct FileStamp {
  bool isFolder = false;
  std::uint64_t size = 0;
  std::uint64_t lastWrite = 0;
  auto operator<=>(const FileStamp&) const = default;
};

// None for what does not exist or cannot be looked at.
std::optional<FileStamp> StampOf(PathView path) noexcept;
// Of a file that is open for reading, not of a folder; else none, and the thread's last error says why.
std::optional<FileStamp> StampOfOpenFile(HANDLE file) noexcept;

// The full path as the system would take the text now, with the process's current folder, without "." and
// ".." and without dots and blanks at the end; of any length, and whether or not anything is there. A
// trailing backslash stays. None for an empty text (ERROR_INVALID_NAME) and when the system gives none; the
// thread's last error says why. Raises std::bad_alloc.
std::optional<std::wstring> FullPathOf(const wchar_t* text);

// A folder of the shell by CSIDL, its flags included, without a trailing backslash; empty when the shell
// gives none, as for a folder that does not exist unless CSIDL_FLAG_CREATE or CSIDL_FLAG_DONT_VERIFY is among
// them. Raises std::bad_alloc.
std::wstring ShellFolder(int csidl);

// The folder for temporary shortcuts in a data folder; both with a trailing backslash. Shortcuts are made
// there before they are moved to their place: such a move makes a file, as far as an undo is concerned, and
// one back deletes it. Raises std::bad_alloc.
std::wstring TempShortcutsIn(std::wstring_view dataFolder);

}  // namespace smh
