// The product's names, and the folders that lie under them.
#pragma once

#include <string>
#include <string_view>

namespace smh {

// The caption of message boxes and the levels of the data folder and the settings key. Never change them:
// settings and journals of earlier versions lie under these names.
inline constexpr std::wstring_view kVendorName = L"Quillmark";
inline constexpr std::wstring_view kProductName = L"Startup Manager";

// The data folder "<application data>\Quillmark\Startup Manager\", with its trailing backslash, whether it
// exists or not; empty when the user has no application data folder. The shell is asked, here and below: not
// while a module is loaded or unloaded. Any thread may call. Raises std::bad_alloc.
std::wstring DataFolder();
// The same below another folder of the shell, by CSIDL.
std::wstring ProductFolder(int csidl);

}  // namespace smh
