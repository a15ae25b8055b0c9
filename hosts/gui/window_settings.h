// How the user left the window: kept per user, in the key of this program beside the other settings. A value
// is a REG_SZ of decimal numbers with a blank between two; their meaning and unit are the caller's.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace smh {

// The numbers under that name. Empty when they were never saved or are of no use: not `count` of them, or one
// beyond 100000.
std::vector<int> LoadNumbers(const wchar_t* name, std::size_t count);
// The same, however many they are; most of what fits in 512 characters.
std::vector<int> LoadNumbers(const wchar_t* name);
// A failure is ignored: the next start shows the old ones.
void SaveNumbers(const wchar_t* name, const std::vector<int>& numbers);

// Gives the window its saved place if that is on a screen by now, else `firstSize` in pixels, as far as the
// screen has room. A window that was maximized gets the place that it had before.
void LoadPlace(HWND window, SIZE firstSize);
// Whether it was maximized at the last SavePlace.
bool WasMaximized();
// As SaveNumbers.
void SavePlace(HWND window);

}  // namespace smh
