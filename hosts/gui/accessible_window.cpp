#include "hosts/gui/accessible_window.h"

#include "hosts/gui/system_accessibility.h"

#include <commctrl.h>

#include <utility>

namespace smh {

namespace {

constexpr UINT_PTR kSubclass = 2;
constexpr UINT kAnnounce = WM_APP + 0x100;

// After these a control may have another focus, selection or state; a paint shows what became known
// elsewhere.
bool MayChange(UINT message) noexcept {
  constexpr UINT kMessages[] = {WM_SETFOCUS,    WM_KEYDOWN,     WM_CHAR,       WM_LBUTTONDOWN,
                                WM_LBUTTONUP,   WM_RBUTTONDOWN, WM_PAINT,      LVM_SETITEMSTATE,
                                TVM_SELECTITEM, TVM_EXPAND,     TB_SETHOTITEM, BM_SETCHECK};
  for (const UINT each : kMessages) {
    if (each == message) return true;
  }
  return false;
}

bool HasListener() noexcept {
  return IsWinEventHookInstalled(EVENT_OBJECT_FOCUS) != FALSE ||
         IsWinEventHookInstalled(EVENT_OBJECT_SELECTION) != FALSE ||
         IsWinEventHookInstalled(EVENT_OBJECT_STATECHANGE) != FALSE;
}

}  // namespace

void AccessibleWindow::Attach(HWND control, std::unique_ptr<AccessibleModel> model) {
  window_ = control;
  model_ = std::move(model);
  SetWindowSubclass(control, Procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this));
}

void AccessibleWindow::Detach() noexcept {
  if (pane_) pane_->Disconnect();
  pane_.Reset();
  if (window_ != nullptr) RemoveWindowSubclass(window_, Procedure, kSubclass);
  window_ = nullptr;
}

LRESULT CALLBACK AccessibleWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR, DWORD_PTR self) noexcept {
  auto& owner = *reinterpret_cast<AccessibleWindow*>(self);
  try {
    if (message == WM_NCDESTROY) owner.Detach();
    if (message == WM_GETOBJECT && static_cast<LONG>(lParam) == OBJID_CLIENT) {
      if (const LRESULT answer = owner.Answer(wParam); answer != 0) return answer;
    }
    if (message == kAnnounce) {
      owner.Announce();
      return 0;
    }
    const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
    if (MayChange(message) && owner.window_ != nullptr) owner.AnnounceLater(message == WM_SETFOCUS);
    return result;
  } catch (...) {
    // Who reads the screen gets the system's answer.
    return DefSubclassProc(window, message, wParam, lParam);
  }
}

LRESULT AccessibleWindow::Answer(WPARAM wParam) {
  if (!pane_) pane_ = MakeComObject<AccessiblePane>(window_, *model_);
  return AccessibleAnswer(wParam, pane_.Get());
}

// A thousand rows that are selected one by one are one piece of news. Without a listener nothing is asked of
// the model.
void AccessibleWindow::AnnounceLater(bool gotFocus) noexcept {
  if (!HasListener()) return;
  gotFocus_ = gotFocus_ || gotFocus;
  if (!isPosted_) isPosted_ = PostMessageW(window_, kAnnounce, 0, 0) != FALSE;
}

void AccessibleWindow::Announce() {
  isPosted_ = false;
  const bool gotFocus = std::exchange(gotFocus_, false) && GetFocus() == window_;
  Told now;
  now.focused = model_->Focused();
  now.selected = model_->Selected();
  now.name = model_->Name(now.focused);
  now.state = model_->State(now.focused);
  const Told before = std::exchange(told_, std::move(now));
  const auto tell = [&](DWORD event, int child) { NotifyWinEvent(event, window_, OBJID_CLIENT, child); };
  const bool isOther = before.focused != told_.focused;
  if (gotFocus || (isOther && GetFocus() == window_)) tell(EVENT_OBJECT_FOCUS, told_.focused);
  if (before.selected != told_.selected) {
    if (told_.selected.size() == 1) {
      tell(EVENT_OBJECT_SELECTION, told_.selected.front());
    } else {
      tell(EVENT_OBJECT_SELECTIONWITHIN, CHILDID_SELF);
    }
  }
  constexpr DWORD kPlain = STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED | STATE_SYSTEM_OFFSCREEN;
  if (isOther) return;
  if ((before.state & ~kPlain) != (told_.state & ~kPlain)) tell(EVENT_OBJECT_STATECHANGE, told_.focused);
  if (before.name != told_.name) tell(EVENT_OBJECT_NAMECHANGE, told_.focused);
}

}  // namespace smh
