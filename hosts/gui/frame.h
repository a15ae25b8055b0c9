// What the views need of the main window. For the window's thread.
#pragma once

#include "hosts/gui/account.h"
#include "hosts/gui/worker.h"

#include <functional>
#include <string>

namespace smh {

// References to what the main window has or was given; all of it outlives the views.
struct Frame {
  HWND window = nullptr;  // the owner of modal boxes; null until the window is made
  Worker& worker;
  const Account& account;
  // What can be done has changed, or what there is.
  std::function<void()> onChange;
  // For the status bar, until the next one.
  std::function<void(const std::wstring& text)> say;
};

// Modal boxes above the main window: messages are handled meanwhile, so whatever the caller holds may change.
void ShowError(const Frame& frame, const std::wstring& text);
bool Confirm(const Frame& frame, const std::wstring& question);
// Says how an operation went: "Disabled 3 entries." in the status bar, the first ten failures in a box.
void ShowOutcome(const Frame& frame, const std::wstring& done, const OperationReport& report);

// Replaces what is in the clipboard; false when that was not possible.
bool CopyToClipboard(HWND window, const std::wstring& text) noexcept;

}  // namespace smh
