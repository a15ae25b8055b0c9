// Where Windows keeps the switches of Task Manager and Settings, and their form: for those who read them,
// write them, or may undo them.
//
// A switch is a value of one of the lists, always in the 64-bit view, named as the entry: REG_BINARY of
// twelve bytes or more, a word of flags, of which the lowest bit of the first byte says "off", and a
// FILETIME, the time since when.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string_view>

namespace smh {

// Below both roots.
inline constexpr std::wstring_view kApprovedKey =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved";
// Its subkeys: of the Run keys, of the machine's Run key in the 32-bit view, of the Startup folders.
inline constexpr wchar_t kApprovedRun[] = L"Run";
inline constexpr wchar_t kApprovedRun32[] = L"Run32";
inline constexpr wchar_t kApprovedFolder[] = L"StartupFolder";
inline constexpr const wchar_t* kApprovedLists[] = {kApprovedRun, kApprovedRun32, kApprovedFolder};

inline constexpr std::byte kSwitchOffBit{1};
inline constexpr std::size_t kSwitchTimeAt = 4;
inline constexpr std::size_t kLeastSwitchBytes = kSwitchTimeAt + sizeof(FILETIME);

}  // namespace smh
