// What the stand-ins of the registry editor and the tests tell each other, below HKEY_CURRENT_USER.
#pragma once

namespace smh::test {

inline constexpr wchar_t kEditorTestKey[] = L"Software\\Startup Manager Display Tests";
// For the starter: the editor to start; without it the system's own.
inline constexpr wchar_t kEditorValue[] = L"Editor";
// By the starter: its command line.
inline constexpr wchar_t kStarterValue[] = L"Starter";
// For the editor: a number other than 0 makes it stay when it is asked to close.
inline constexpr wchar_t kStaysValue[] = L"Stays";

}  // namespace smh::test
