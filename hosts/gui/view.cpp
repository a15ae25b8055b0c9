#include "hosts/gui/view.h"

#include "hosts/gui/window.h"

#include <cstring>

namespace smh {

namespace {

constexpr std::size_t kMostFailures = 10;

std::wstring Entries(std::size_t count) {
  return std::to_wstring(count) + (count == 1 ? L" entry" : L" entries");
}

}  // namespace

void ShowError(const Frame& frame, const std::wstring& text) {
  MessageBoxW(frame.window, text.c_str(), kProgramTitle, MB_OK | MB_ICONERROR);
}

bool Confirm(const Frame& frame, const std::wstring& question) {
  return MessageBoxW(frame.window, question.c_str(), kProgramTitle, MB_OKCANCEL | MB_ICONQUESTION) == IDOK;
}

void ShowOutcome(const Frame& frame, const std::wstring& done, const OperationReport& report) {
  frame.say(report.done > 0 ? done + L" " + Entries(report.done) + L"." : L"Nothing was changed.");
  if (report.failures.empty()) return;
  std::wstring text;
  for (std::size_t i = 0; i < report.failures.size() && i < kMostFailures; ++i) {
    text += report.failures[i] + L"\n";
  }
  if (report.failures.size() > kMostFailures) {
    text += L"and " + std::to_wstring(report.failures.size() - kMostFailures) + L" more.";
  }
  ShowError(frame, text);
}

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
