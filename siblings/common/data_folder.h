// The product's folder below the user's application data. The shell is asked for folders: not while a module
// is loaded or unloaded. Any thread may call.
#pragma once

#include <string>

namespace smh {

// A folder of the shell by CSIDL, its flags included, without a trailing backslash; empty when the shell
// gives none.
std::wstring ShellFolder(int csidl);
// "<application data>\Quillmark\Startup Manager\", with its trailing backslash, whether it exists or not;
// empty when the user has no application data folder.
std::wstring DataFolder();
// The same below another folder of the shell, by CSIDL.
std::wstring ProductFolder(int csidl);
// Makes every missing folder of a path that ends in a backslash, with the rights that each inherits. A
// failure shows in the first use of the folder.
void MakeFolders(const std::wstring& folder);

}  // namespace smh
