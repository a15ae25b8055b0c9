#include "hosts/gui/message_dialog.h"

#include "hosts/gui/clipboard.h"
#include "hosts/gui/control_direction.h"
#include "hosts/gui/dialog_place.h"
#include "hosts/gui/dialogs.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/texts/dialog_texts.h"

#include <commctrl.h>

#include <algorithm>

namespace smh {

namespace {

// At 96 DPI.
constexpr int kMargin = 14;
constexpr int kGap = 8;
constexpr int kIcon = 32;
constexpr int kTextWidth = 420;
constexpr int kMostTextHeight = 400;  // the buttons have to stay on the screen
constexpr int kButtonWidth = 80;
constexpr int kButtonHeight = 26;
constexpr UINT_PTR kSubclass = 1;

// How much room a text takes, in lines of `width` pixels at most.
SIZE Measure(HWND control, const std::wstring& text, int width) {
  RECT area = {0, 0, width, 0};
  const HDC canvas = GetDC(control);
  const HGDIOBJ before =
      SelectObject(canvas, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
  DrawTextW(canvas, text.c_str(), -1, &area,
            DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS);
  SelectObject(canvas, before);
  ReleaseDC(control, canvas);
  return {area.right, area.bottom};
}

int ButtonWidth(HWND button, int dpi) {
  wchar_t text[128] = L"";
  GetWindowTextW(button, text, ARRAYSIZE(text));
  return std::max(Scaled(kButtonWidth, dpi),
                  static_cast<int>(Measure(button, text, Scaled(kTextWidth, dpi)).cx) + Scaled(24, dpi));
}

void SetClientSize(HWND dialog, int width, int height) {
  RECT size = {0, 0, width, height};
  AdjustWindowRectEx(&size, static_cast<DWORD>(GetWindowLongW(dialog, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongW(dialog, GWL_EXSTYLE)));
  SetWindowPos(dialog, nullptr, 0, 0, size.right - size.left, size.bottom - size.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The buttons stand at the right, the verb before Cancel.
void Arrange(HWND dialog, const Message& message) {
  const int dpi = DpiOf(dialog);
  const int margin = Scaled(kMargin, dpi);
  const int gap = Scaled(kGap, dpi);
  const HWND label = GetDlgItem(dialog, IDC_PROMPT);
  const SIZE text = Measure(label, message.text, Scaled(kTextWidth, dpi));
  const int textLeft = margin + Scaled(kIcon, dpi) + margin;
  const int textHeight =
      std::clamp(static_cast<int>(text.cy), Scaled(kIcon, dpi), Scaled(kMostTextHeight, dpi));
  const HWND agree = GetDlgItem(dialog, IDOK);
  const HWND cancel = GetDlgItem(dialog, IDCANCEL);
  const int cancelWidth = ButtonWidth(cancel, dpi);
  const int agreeWidth = message.verb.empty() ? 0 : ButtonWidth(agree, dpi);
  const int width = std::max(textLeft + static_cast<int>(text.cx) + margin,
                             margin + agreeWidth + gap + cancelWidth + margin);
  const int buttonTop = margin + textHeight + 2 * margin;
  const int buttonHeight = Scaled(kButtonHeight, dpi);
  SetClientSize(dialog, width, buttonTop + buttonHeight + margin);
  MoveWindow(GetDlgItem(dialog, IDC_PICTURE), margin, margin, Scaled(kIcon, dpi), Scaled(kIcon, dpi), FALSE);
  MoveWindow(label, textLeft, margin, width - textLeft - margin, textHeight, FALSE);
  MoveWindow(cancel, width - margin - cancelWidth, buttonTop, cancelWidth, buttonHeight, FALSE);
  MoveWindow(agree, width - margin - cancelWidth - gap - agreeWidth, buttonTop, agreeWidth, buttonHeight,
             FALSE);
}

// As in the system's boxes.
LRESULT CALLBACK CopyByKey(HWND button, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                           DWORD_PTR text) noexcept {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(button, CopyByKey, id);
  if (message == WM_KEYDOWN && wParam == 'C' && GetKeyState(VK_CONTROL) < 0) {
    CopyToClipboard(button, *reinterpret_cast<const std::wstring*>(text));
    return 0;
  }
  return DefSubclassProc(button, message, wParam, lParam);
}

void Begin(HWND dialog, const Message& message) {
  SetWindowTextW(dialog, message.title.c_str());
  SetDlgItemTextW(dialog, IDC_PROMPT, Directed(message.text).c_str());
  SendDlgItemMessageW(
      dialog, IDC_PICTURE, STM_SETICON,
      reinterpret_cast<WPARAM>(LoadImageW(nullptr, message.icon, IMAGE_ICON, Scaled(kIcon, DpiOf(dialog)),
                                          Scaled(kIcon, DpiOf(dialog)), LR_SHARED)),
      0);
  KeepLeftToRight(GetDlgItem(dialog, IDC_PICTURE));
  const HWND agree = GetDlgItem(dialog, IDOK);
  const HWND cancel = GetDlgItem(dialog, IDCANCEL);
  SetWindowTextW(agree, message.verb.c_str());
  SetWindowTextW(cancel, (message.verb.empty() ? texts::kClose : texts::kCancel).Get());
  ShowWindow(agree, message.verb.empty() ? SW_HIDE : SW_SHOWNA);
  for (const HWND button : {agree, cancel}) {
    SetWindowSubclass(button, CopyByKey, kSubclass, reinterpret_cast<DWORD_PTR>(&message.text));
  }
  Arrange(dialog, message);
  BeginDialog(dialog, IDD_MESSAGE);
  SetFocus(cancel);
}

INT_PTR CALLBACK OnDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    Begin(dialog, *reinterpret_cast<const Message*>(lParam));
    // The focus is where it has to be.
    return FALSE;
  }
  if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return FALSE;
  EndDialog(dialog, LOWORD(wParam));
  return TRUE;
}

}  // namespace

bool ShowMessage(HWND owner, const Message& message) {
  return OpenDialog(owner, IDD_MESSAGE, OnDialog, reinterpret_cast<LPARAM>(&message)) == IDOK &&
         !message.verb.empty();
}

}  // namespace smh
