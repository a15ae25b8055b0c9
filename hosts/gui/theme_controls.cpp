#include "hosts/gui/theme_controls.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/theme_paint.h"
#include "hosts/gui/window.h"

#include <commctrl.h>
#include <richedit.h>
#include <uxtheme.h>

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr UINT_PTR kEdgeSubclass = 0x534D03;
constexpr UINT_PTR kEditSubclass = 0x534D04;
constexpr UINT_PTR kButtonSubclass = 0x534D05;
constexpr UINT_PTR kComboSubclass = 0x534D06;

// The system has drawn it light already.
void DrawEdge(HWND control) {
  const bool isSunken = (GetWindowLongW(control, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0;
  const bool hasLine = (GetWindowLongW(control, GWL_STYLE) & WS_BORDER) != 0;
  if (!isSunken && !hasLine) return;
  const HDC canvas = GetWindowDC(control);
  RECT area;
  GetWindowRect(control, &area);
  OffsetRect(&area, -area.left, -area.top);
  {
    const Painter painter(canvas);
    painter.Frame(area, GetFocus() == control ? Role::kFocus : Role::kBorder);
    for (int i = 1; isSunken && i < GetSystemMetrics(SM_CXEDGE); ++i) {
      InflateRect(&area, -1, -1);
      painter.Frame(area, Role::kWindow);
    }
  }
  ReleaseDC(control, canvas);
}

LRESULT CALLBACK EdgeProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR) noexcept {
  const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
  if (IsDark() && (message == WM_NCPAINT || message == WM_SETFOCUS || message == WM_KILLFOCUS))
    DrawEdge(control);
  if (message == WM_NCDESTROY) RemoveWindowSubclass(control, EdgeProcedure, id);
  return result;
}

// What an empty field is for. The system's own grey is too dark for a dark field.
void DrawCue(HWND edit) {
  wchar_t cue[128] = L"";
  if (GetFocus() == edit || GetWindowTextLengthW(edit) > 0 ||
      !SendMessageW(edit, EM_GETCUEBANNER, reinterpret_cast<WPARAM>(cue), std::size(cue))) {
    return;
  }
  RECT area;
  SendMessageW(edit, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
  const HDC canvas = GetDC(edit);
  {
    const Painter painter(canvas, FontOf(edit));
    painter.Fill(area, Role::kWindow);
    painter.Text(cue, area, Role::kGreyText, DT_NOPREFIX | DT_END_ELLIPSIS);
  }
  ReleaseDC(edit, canvas);
}

LRESULT CALLBACK EditProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR) noexcept {
  const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
  if (IsDark() && (message == WM_PAINT || message == WM_KILLFOCUS)) DrawCue(edit);
  if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, EditProcedure, id);
  return result;
}

enum class ButtonKind { kPush, kCheck, kRadio, kGroup };

ButtonKind KindOf(HWND button) noexcept {
  const LONG style = GetWindowLongW(button, GWL_STYLE);
  if ((style & BS_PUSHLIKE) != 0) return ButtonKind::kPush;
  switch (style & BS_TYPEMASK) {
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_3STATE:
    case BS_AUTO3STATE:
      return ButtonKind::kCheck;
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
      return ButtonKind::kRadio;
    case BS_GROUPBOX:
      return ButtonKind::kGroup;
    default:
      return ButtonKind::kPush;
  }
}

UINT PrefixFormat(HWND button) noexcept {
  const bool hides = (SendMessageW(button, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) != 0;
  return hides ? DT_HIDEPREFIX : 0;
}

void DrawPushButton(HWND button, const Painter& painter, const RECT& area, UINT state) {
  const bool isDisabled = !IsWindowEnabled(button);
  const bool isDown = (state & (BST_PUSHED | BST_CHECKED)) != 0;
  const bool isDefault = (GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
  const bool isHot = (state & BST_HOT) != 0 && !isDisabled;
  painter.Fill(area, isDown ? Role::kButtonPressed : isHot ? Role::kButtonHot : Role::kButton);
  const bool hasFocus = (state & BST_FOCUS) != 0;
  painter.Frame(area, hasFocus || isDefault ? Role::kFocus : Role::kBorder);
  if (hasFocus) {
    RECT inner = area;
    InflateRect(&inner, -3, -3);
    DrawFocusRect(painter.Canvas(), &inner);
  }
  painter.Text(TextOf(button), area, isDisabled ? Role::kGreyText : Role::kButtonText,
               DT_CENTER | PrefixFormat(button));
}

void DrawCheckButton(HWND button, const Painter& painter, const RECT& area, UINT state, bool isRadio) {
  const int side = Scaled(13, DrawingDpi(button));
  const int top = static_cast<int>(area.top + area.bottom - side) / 2;
  const RECT box = {area.left, top, area.left + side, top + side};
  const bool isChecked = (state & BST_CHECKED) != 0;
  painter.Fill(area, Role::kBar);
  painter.Fill(box, isChecked && !isRadio ? Role::kCheckFill : Role::kCheckPaper);
  painter.Frame(box, Role::kCheckFrame);
  if (isChecked && !isRadio) painter.Tick(box, Role::kCheckMark);
  if (isChecked && isRadio) {
    RECT dot = box;
    InflateRect(&dot, -side / 4, -side / 4);
    painter.Fill(dot, Role::kCheckFill);
  }
  RECT label = {box.right + side / 3, area.top, area.right, area.bottom};
  const std::wstring text = TextOf(button);
  painter.Text(text, label, IsWindowEnabled(button) ? Role::kBarText : Role::kGreyText, PrefixFormat(button));
  if ((state & BST_FOCUS) == 0) return;
  const SIZE size = painter.Measure(text, 0);
  label.right = std::min(label.right, label.left + size.cx + 2);
  label.top = (area.top + area.bottom - size.cy) / 2 - 1;
  label.bottom = label.top + size.cy + 2;
  InflateRect(&label, 1, 0);
  painter.Frame(label, Role::kFocus);
}

void DrawGroup(HWND button, const Painter& painter, const RECT& area) {
  const std::wstring text = TextOf(button);
  const SIZE size = painter.Measure(text, 0);
  painter.Frame({area.left, area.top + size.cy / 2, area.right, area.bottom}, Role::kBorder);
  const RECT label = {area.left + 8, area.top, area.left + 12 + size.cx, area.top + size.cy};
  painter.Fill(label, Role::kBar);
  painter.Text(text, label, Role::kBarText, DT_CENTER | PrefixFormat(button));
}

void DrawButton(HWND button) {
  const PaintScope paint(button);
  const Painter painter(paint.Canvas(), FontOf(button));
  const auto state = static_cast<UINT>(SendMessageW(button, BM_GETSTATE, 0, 0));
  painter.Fill(paint.Area(), Role::kBar);
  const ButtonKind kind = KindOf(button);
  switch (kind) {
    case ButtonKind::kPush:
      return DrawPushButton(button, painter, paint.Area(), state);
    case ButtonKind::kCheck:
    case ButtonKind::kRadio:
      return DrawCheckButton(button, painter, paint.Area(), state, kind == ButtonKind::kRadio);
    case ButtonKind::kGroup:
      return DrawGroup(button, painter, paint.Area());
  }
}

// Buttons draw themselves at once when one of these changes them.
bool ChangesButton(UINT message) noexcept {
  constexpr UINT kMessages[] = {BM_SETSTATE,    BM_SETCHECK,  BM_SETSTYLE,  WM_ENABLE,     WM_SETTEXT,
                                WM_SETFOCUS,    WM_KILLFOCUS, WM_MOUSEMOVE, WM_MOUSELEAVE, WM_UPDATEUISTATE,
                                WM_LBUTTONDOWN, WM_LBUTTONUP, WM_KEYDOWN,   WM_KEYUP};
  return std::find(std::begin(kMessages), std::end(kMessages), message) != std::end(kMessages);
}

LRESULT CALLBACK ButtonProcedure(HWND button, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                 DWORD_PTR) noexcept {
  if (IsDark() && message == WM_PAINT) {
    DrawButton(button);
    return 0;
  }
  if (IsDark() && message == WM_ERASEBKGND) return TRUE;
  const bool isMove = message == WM_MOUSEMOVE;
  const LRESULT before = isMove ? DefSubclassProc(button, BM_GETSTATE, 0, 0) : 0;
  const LRESULT result = DefSubclassProc(button, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(button, ButtonProcedure, id);
  } else if (IsDark() && ChangesButton(message) &&
             (!isMove || before != DefSubclassProc(button, BM_GETSTATE, 0, 0))) {
    InvalidateRect(button, nullptr, FALSE);
  }
  return result;
}

void DrawComboBox(HWND box) {
  const PaintScope paint(box);
  const Painter painter(paint.Canvas(), FontOf(box));
  const int arrow = Scaled(18, DrawingDpi(box));
  const RECT& area = paint.Area();
  const bool hasFocus = GetFocus() == box;
  painter.Fill(area, Role::kWindow);
  painter.Frame(area, hasFocus ? Role::kFocus : Role::kBorder);
  const RECT text = {area.left + 5, area.top, area.right - arrow, area.bottom};
  painter.Text(TextOf(box), text, IsWindowEnabled(box) ? Role::kText : Role::kGreyText,
               DT_END_ELLIPSIS | DT_NOPREFIX);
  painter.Triangle({area.right - arrow, area.top, area.right, area.bottom}, Painter::Arrow::kDown, arrow / 4,
                   Role::kText);
}

// Only boxes without a field are drawn here; what changes the choice makes them draw themselves at once.
LRESULT CALLBACK ComboProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                DWORD_PTR) noexcept {
  const bool isOwn = IsDark() && (GetWindowLongW(box, GWL_STYLE) & 3) == CBS_DROPDOWNLIST;
  if (isOwn && message == WM_PAINT) {
    DrawComboBox(box);
    return 0;
  }
  if (isOwn && message == WM_ERASEBKGND) return TRUE;
  const LRESULT result = DefSubclassProc(box, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(box, ComboProcedure, id);
  } else if (isOwn && (message == CB_SETCURSEL || message == WM_SETFOCUS || message == WM_KILLFOCUS ||
                       message == WM_COMMAND || message == WM_KEYDOWN || message == WM_ENABLE)) {
    InvalidateRect(box, nullptr, FALSE);
  }
  return result;
}

}  // namespace

void DressEdge(HWND control) {
  SetWindowSubclass(control, EdgeProcedure, kEdgeSubclass, 0);
}

void DressEdit(HWND edit) {
  DressEdge(edit);
  SetWindowSubclass(edit, EditProcedure, kEditSubclass, 0);
  SetWindowTheme(edit, IsDark() ? L"DarkMode_Explorer" : nullptr, nullptr);
}

void DressRichEdit(HWND edit) {
  SetWindowTheme(edit, IsDark() ? L"DarkMode_Explorer" : nullptr, nullptr);
  SendMessageW(edit, EM_SETBKGNDCOLOR, IsDark() ? FALSE : TRUE, static_cast<LPARAM>(ColorOf(Role::kWindow)));
  CHARFORMAT2W format = {};
  format.cbSize = sizeof(format);
  format.dwMask = CFM_COLOR;
  format.dwEffects = IsDark() ? 0 : CFE_AUTOCOLOR;
  format.crTextColor = ColorOf(Role::kText);
  for (const WPARAM part : {SCF_DEFAULT, SCF_ALL}) {
    SendMessageW(edit, EM_SETCHARFORMAT, part, reinterpret_cast<LPARAM>(&format));
  }
}

void DressButton(HWND button) {
  SetWindowSubclass(button, ButtonProcedure, kButtonSubclass, 0);
}

void DressComboBox(HWND box) {
  SetWindowSubclass(box, ComboProcedure, kComboSubclass, 0);
}

}  // namespace smh
