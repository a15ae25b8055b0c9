#include "hosts/gui/progress_bar.h"

#include "hosts/gui/accessible_button.h"
#include "hosts/gui/accessible_progress.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/texts/frame_texts.h"

#include <commctrl.h>

#include <algorithm>

namespace smh {

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kInterval = 100;        // milliseconds
constexpr UINT kMarqueeInterval = 30;  // milliseconds
constexpr int kGap = 6;
constexpr int kButtonWidth = 90;
constexpr int kMostCountWidth = 300;

int WidthOf(const RECT& area) noexcept {
  return static_cast<int>(area.right - area.left);
}

// A third of the bar, behind the text and before the button.
int CountWidth(int width, int dpi) noexcept {
  return std::min(Scaled(kMostCountWidth, dpi), width / 3);
}

}  // namespace

void ProgressBar::Open(HWND parent, RunningActions& actions, std::function<void(bool show)> onShow) {
  actions_ = &actions;
  onShow_ = std::move(onShow);
  Create({.className = L"StartupManagerProgressBar",
          .style = WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN,
          .exStyle = WS_EX_CONTROLPARENT,
          .parent = parent});
  SetWindowLongW(Handle(), GWL_ID, IDC_PROGRESS);
  count_ = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, Handle(),
                           reinterpret_cast<HMENU>(IDC_PROGRESS_COUNT), nullptr, nullptr);
  cancel_ = CreateWindowExW(0, WC_BUTTONW, texts::kCancel.Get(), WS_CHILD | WS_TABSTOP | BS_PUSHBUTTON, 0, 0,
                            0, 0, Handle(), reinterpret_cast<HMENU>(IDCANCEL), nullptr, nullptr);
  accessibleCount_.Attach(count_, std::make_unique<AccessibleProgress>(count_));
  accessibleCancel_.Attach(cancel_,
                           std::make_unique<AccessibleButton>(cancel_, texts::kActionCancelTip.Get()));
  actions.Listen([this] { Follow(); });
}

void ProgressBar::SetDpi(int dpi, HFONT font) {
  dpi_ = dpi;
  font_ = font;
  SendMessageW(cancel_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  Arrange();
}

int ProgressBar::Height() const {
  return FontHeight(Handle(), font_) + Scaled(8 + kGap, dpi_);
}

void ProgressBar::Place(const RECT& area) const {
  MoveWindow(Handle(), area.left, area.bottom - Height(), WidthOf(area), Height(), TRUE);
}

void ProgressBar::Arrange() {
  RECT area;
  GetClientRect(Handle(), &area);
  const int gap = Scaled(kGap, dpi_);
  const int line = static_cast<int>(area.bottom) - gap;
  const int button = Scaled(kButtonWidth, dpi_);
  const int width = CountWidth(WidthOf(area), dpi_);
  const int left = WidthOf(area) - gap - button;
  MoveWindow(cancel_, left, gap / 2, button, line, TRUE);
  MoveWindow(count_, left - gap - width, gap / 2 + line / 4, width, line / 2, TRUE);
}

// The bar comes for what lasts, and goes with it.
void ProgressBar::Follow() {
  if (Handle() == nullptr) return;
  if (actions_->IsAny()) {
    SetTimer(Handle(), kTimer, kInterval, nullptr);
  } else {
    KillTimer(Handle(), kTimer);
  }
  const RunningAction* const action = actions_->Long();
  if (action != nullptr) Update(*action);
  const bool isShown = (GetWindowLongW(Handle(), GWL_STYLE) & WS_VISIBLE) != 0;
  if (isShown != (action != nullptr)) onShow_(action != nullptr);
}

void ProgressBar::Update(const RunningAction& action) {
  ShowCount(action.progress->Done(), action.CanBeCancelled() ? action.title.entries : 0);
  ShowWindow(cancel_, action.CanBeCancelled() ? SW_SHOWNA : SW_HIDE);
  const std::wstring text = ProgressText(action);
  if (text == TextOf(Handle())) return;
  SetWindowTextW(Handle(), text.c_str());
  InvalidateRect(Handle(), nullptr, FALSE);
  NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, count_, OBJID_CLIENT, CHILDID_SELF);
}

// Without a number of all, the control only shows that there is work.
void ProgressBar::ShowCount(std::size_t done, std::size_t all) {
  const LONG style = GetWindowLongW(count_, GWL_STYLE);
  const bool isMarquee = (style & PBS_MARQUEE) != 0;
  if (isMarquee != (all == 0)) {
    SetWindowLongW(count_, GWL_STYLE, style ^ PBS_MARQUEE);
    SendMessageW(count_, PBM_SETMARQUEE, all == 0, kMarqueeInterval);
  }
  if (all == 0) return;
  SendMessageW(count_, PBM_SETRANGE32, 0, static_cast<LPARAM>(all));
  SendMessageW(count_, PBM_SETPOS, static_cast<WPARAM>(done), 0);
}

void ProgressBar::Cancel() {
  actions_->Cancel();
  Follow();
}

bool ProgressBar::TakesKey(const MSG& message, HWND search) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_ESCAPE) return false;
  const RunningAction* const action = actions_->Long();
  if (action == nullptr || !action->CanBeCancelled() || !IsChild(GetParent(Handle()), message.hwnd))
    return false;
  if (message.hwnd == search && GetWindowTextLengthW(search) > 0) return false;
  Cancel();
  return true;
}

void ProgressBar::Paint(const PaintScope& paint) const {
  const Painter painter(paint.Canvas(), font_);
  painter.Fill(paint.Area(), Role::kBar);
  RECT line = paint.Area();
  const int gap = Scaled(kGap, dpi_);
  line.left += gap;
  line.right -= CountWidth(WidthOf(paint.Area()), dpi_) + Scaled(kButtonWidth, dpi_) + 3 * gap;
  painter.Text(TextOf(Handle()), line, Role::kBarText, DT_NOPREFIX | DT_END_ELLIPSIS);
}

LRESULT ProgressBar::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_TIMER:
      Follow();
      return 0;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDCANCEL) Cancel();
      return 0;
    default:
      return PaintedWindow::OnMessage(message, wParam, lParam);
  }
}

}  // namespace smh
