// Commands that start a library through rundll: which file they really run.
//
// Pure: what is asked of the disk comes in as a function.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace smh {

// Whether `shortName` is that of the rundll program.
bool IsRundll(std::wstring_view shortName) noexcept;

// The last existing file among the command's arguments, the entry-point name after the library left out;
// empty when there is none. `existingFile` answers the existing file that an argument names, or "".
std::wstring RundllTarget(std::wstring_view command,
                          const std::function<std::wstring(std::wstring_view)>& existingFile);

}  // namespace smh
