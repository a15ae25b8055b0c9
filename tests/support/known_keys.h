// Keys whose entries the library lists, and where it keeps disabled ones.
#pragma once

#include <string>

namespace smh::test {

inline const std::wstring kRunKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
inline const std::wstring kRunSide = kRunKey + L"\\Disabled (Startup Manager)";
inline const std::wstring kMenusKey = L"Software\\Classes\\*\\shellex\\ContextMenuHandlers";
inline const std::wstring kObjectsKey =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects";
inline const std::wstring kApprovedKey =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved";
inline const std::wstring kHooksKey = L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks";
// Behind any key: where another tool keeps disabled entries, and the library those of shell extensions.
inline const std::wstring kAutorunsSide = L"\\AutorunsDisabled";

}  // namespace smh::test
