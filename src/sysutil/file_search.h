// The search for a program that is named without its folder, as the command interpreter and the shell do it.
//
// Any thread may call any operation; the search holds no lock while it reads disk and registry. A missing
// file, key or value, and one that cannot be read, is an entry that is not there; nothing raises but
// std::bad_alloc and EAbort (network_roots.h). `name` has no extension unless it says otherwise; `extension`
// has its dot or is empty, and then every executable extension is tried.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

class TRegistryEx;

namespace FileUtils {

// In the search folders. Empty when nothing is found, as for the following.
std::wstring SearchInPath(std::wstring_view name, std::wstring_view extension);
// The path that one key below "App Paths" names, whether or not it exists. Opens the key in `registry`, which
// the caller owns, and closes it again.
std::wstring ReadAppPathKey(TRegistryEx& registry, std::wstring_view key, std::wstring_view name,
                            std::wstring_view extension);
// Among the registered programs and the shared libraries. `view` is 0 or KEY_WOW64_64KEY.
std::wstring SearchAppPaths(REGSAM view, std::wstring_view name, std::wstring_view extension);
// Among the files that installers count as shared ("SharedDLLs").
std::wstring SearchSharedDlls(REGSAM view, std::wstring_view name, std::wstring_view extension);
// The full search for a name, with or without extension. False and an empty path when nothing is found, and
// for a name with a folder, which is not searched.
bool FindFileByName(std::wstring_view name, std::wstring& path);

}  // namespace FileUtils

}  // namespace smh
