#include "hosts/gui/clipboard.h"

#include <cstring>

namespace smh {

namespace {

// Programs that keep a history of the clipboard look at it just when something has come.
bool OpenClipboardSoon(HWND window) noexcept {
  constexpr int kTries = 20;
  constexpr DWORD kPause = 20;  // milliseconds
  for (int i = 0; i < kTries; ++i) {
    if (OpenClipboard(window)) return true;
    Sleep(kPause);
  }
  return false;
}

}  // namespace

bool CopyToClipboard(HWND window, const std::wstring& text) noexcept {
  const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
  if (block == nullptr) return false;
  std::memcpy(GlobalLock(block), text.c_str(), size);
  GlobalUnlock(block);
  if (!OpenClipboardSoon(window)) {
    GlobalFree(block);
    return false;
  }
  EmptyClipboard();
  const bool isSet = SetClipboardData(CF_UNICODETEXT, block) != nullptr;
  CloseClipboard();
  if (!isSet) GlobalFree(block);
  return isSet;
}

}  // namespace smh
