// How the user left the window: kept per user, beside the other settings of this program.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace smh {

// Numbers under a name; sizes are for 96 DPI. Empty when they were never saved or are of no use.
std::vector<int> LoadNumbers(const wchar_t* name, std::size_t count);
// A failure only means that the next start shows the old ones.
void SaveNumbers(const wchar_t* name, const std::vector<int>& numbers);

}  // namespace smh
