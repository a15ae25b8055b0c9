// The folders that lie under the product's names.
#pragma once

#include "core/contracts/product_names.h"

#include <string>

namespace smh {

// The data folder "<application data>\Quillmark\Startup Manager\", with its trailing backslash, whether it
// exists or not; empty when the user has no application data folder. The shell is asked, here and below: not
// while a module is loaded or unloaded. Any thread may call. Raises std::bad_alloc.
std::wstring DataFolder();
// The same below another folder of the shell, by CSIDL.
std::wstring ProductFolder(int csidl);

}  // namespace smh
