// Texts of the system whose length is known only when they have been asked for.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Fills a text by `call(buffer, units)`, which answers the needed size, terminator included, when the buffer
// is too small, else the length without it. Both may change between two calls. Empty when the call answers 0;
// the thread's last error is that of the last call then. Raises std::bad_alloc.
template <typename Call>
std::wstring GrowingText(Call&& call) {
  // Nearly all texts fit here.
  wchar_t usual[MAX_PATH];
  const DWORD usualLength = call(usual, MAX_PATH);
  if (usualLength <= MAX_PATH) return std::wstring(usual, usualLength);
  std::wstring text(usualLength, L'\0');
  for (;;) {
    const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
    if (length <= text.size()) {
      text.resize(length);
      return text;
    }
    text.resize(length);
  }
}

}  // namespace smh
