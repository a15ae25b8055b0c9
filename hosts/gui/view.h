// One of the views that share the right side of the main window, and what it needs of that window. Everything
// here is for the window's thread.
#pragma once

#include "hosts/common/text.h"
#include "hosts/gui/account.h"
#include "hosts/gui/clipboard.h"
#include "hosts/gui/running_actions.h"
#include "hosts/gui/trust_checker.h"
#include "hosts/gui/worker.h"

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// References to what the main window has or was given; all of it outlives the views.
struct Frame {
  HWND window = nullptr;  // the owner of modal boxes; null until the window is made
  Worker& worker;
  TrustChecker& trust;
  const Account& account;
  // What may last goes to the worker through these.
  RunningActions& actions;
  // What can be done has changed, or what there is.
  std::function<void()> onChange;
  // For the status bar, until the next one.
  std::function<void(const std::wstring& text)> say;
};

// Modal boxes above the main window or its dialog: messages are handled meanwhile, so whatever the caller
// holds may change.
void ShowError(const Frame& frame, const std::wstring& text);
// True when the user chose `verb` ("Delete 3 entries"); Enter means Cancel.
bool Confirm(const Frame& frame, const std::wstring& question, const std::wstring& verb);
// Says how an operation went: "Disabled 3 entries." in the status bar, the first ten failures in a box.
void ShowOutcome(const Frame& frame, const CountText& done, const OperationReport& report);

// Owned by the main window, valid until the next SetDpi.
struct ViewFonts {
  HFONT normal;
  HFONT heading;
};

// Called by the main window only. The controls are its children, and it destroys them.
class View {
 public:
  virtual ~View() = default;
  // Shows or hides all controls of the view; hidden views still get news and notifications.
  virtual void Show(bool show) = 0;
  // Takes the view's area in pixels of the main window's client area; called before the view is seen and
  // whenever that area changes.
  virtual void Place(const RECT& area) = 0;
  // Called once before the first Place, and whenever the resolution changes.
  virtual void SetDpi(int dpi, const ViewFonts& fonts) = 0;
  // The control that gets the focus with the view; borrowed.
  virtual HWND MainControl() const = 0;
  // Its controls that take the focus, in their order on the screen; borrowed.
  virtual std::vector<HWND> Panes() const { return {MainControl()}; }
  // True when the notification was of one of the view's controls; `result` is then the answer to it.
  virtual bool OnNotify(const NMHDR& header, LRESULT& result) = 0;
  // Whether a command (CMD_ in resource.h) means something now; asked often, so it only looks at what is
  // shown.
  virtual bool CanRun(UINT command) const = 0;
  // CanRun has said yes. May ask the user in a dialog; what takes time is posted to the worker.
  virtual void Run(UINT command) = 0;
  // Shows what has `text` in it, case ignored; everything for an empty text.
  virtual void Search(std::wstring_view text) = 0;
  // For the status bar: "3 of 40 entries, 2 selected".
  virtual std::wstring CountText() const = 0;
};

}  // namespace smh
