// The product's folder below the user's application data. The shell is asked for folders: not while a module
// is loaded or unloaded. Any thread may call.
#pragma once

#include <string>

namespace smh {

// "<application data>\Quillmark\Startup Manager\", with its trailing backslash, whether it exists or not;
// empty when the user has no application data folder.
std::wstring DataFolder();
// The same below another folder of the shell, by CSIDL.
std::wstring ProductFolder(int csidl);

}  // namespace smh
