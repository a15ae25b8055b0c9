// What the views need of the main window.
#pragma once

#include "hosts/gui/account.h"
#include "hosts/gui/worker.h"

#include <functional>
#include <string>

namespace smh {

struct Frame {
  HWND window = nullptr;
  Worker& worker;
  const Account& account;
  // What can be done has changed, or what there is.
  std::function<void()> onChange;
  // For the status bar, until the next one.
  std::function<void(const std::wstring& text)> say;
};

// Modal boxes above the main window.
void ShowError(const Frame& frame, const std::wstring& text);
bool Confirm(const Frame& frame, const std::wstring& question);
// Says how an operation went: "Disabled 3 entries.", failures in a box.
void ShowOutcome(const Frame& frame, const std::wstring& done, const OperationReport& report);

// False when that was not possible.
bool CopyToClipboard(HWND window, const std::wstring& text) noexcept;

}  // namespace smh
