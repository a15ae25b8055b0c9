#include "hosts/gui/theme_window.h"

#include "hosts/gui/system_library.h"
#include "hosts/gui/theme_bars.h"
#include "hosts/gui/theme_controls.h"
#include "hosts/gui/theme_list.h"
#include "hosts/gui/theme_menu.h"
#include "hosts/gui/theme_paint.h"
#include "infra/runtime/import_function.h"

#include <commctrl.h>
#include <richedit.h>

#include <iterator>
#include <memory>
#include <utility>

namespace smh {

namespace {

constexpr UINT_PTR kFrameSubclass = 0x534D00;
constexpr wchar_t kRolesProperty[] = L"StartupManagerRoles";

// What is kept for a top-level window, as long as it exists.
struct ThemeFrame {
  std::function<void()> onChange;
  ThemeMenus menus;
  Appearance appearance;
};

struct Dresser {
  const wchar_t* className;
  void (*dress)(HWND control);
  bool hasEdge;
};
constexpr Dresser kDressers[] = {
    {WC_LISTVIEWW, DressList, true},
    {WC_TREEVIEWW, DressTree, true},
    {WC_EDITW, DressEdit, true},
    {MSFTEDIT_CLASS, DressRichEdit, true},
    {WC_BUTTONW, DressButton, false},
    {WC_COMBOBOXW, DressComboBox, false},
    {STATUSCLASSNAMEW, DressStatusBar, false},
    {PROGRESS_CLASSW, DressProgressBar, false},
};

bool IsOfClass(HWND window, const wchar_t* wanted) noexcept {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  return lstrcmpiW(name, wanted) == 0;
}

BOOL CALLBACK Dress(HWND control, LPARAM) {
  for (const Dresser& dresser : kDressers) {
    if (!IsOfClass(control, dresser.className)) continue;
    dresser.dress(control);
    if (dresser.hasEdge) DressEdge(control);
  }
  return TRUE;
}

// The title bar, since Windows 10; the number of the attribute was another one at first.
void DressTitle(HWND window) noexcept {
  using SetAttribute = HRESULT(WINAPI*)(HWND, DWORD, LPCVOID, DWORD);
  constexpr DWORD kNumbers[] = {20, 19};
  const ScopedModule library = LoadSystemLibrary(L"dwmapi.dll");
  const auto set = ImportFunction<SetAttribute>(library.Get(), "DwmSetWindowAttribute");
  if (set == nullptr) return;
  const BOOL isDark = IsDark() ? TRUE : FALSE;
  for (const DWORD number : kNumbers) {
    if (SUCCEEDED(set(window, number, &isDark, sizeof(isDark)))) return;
  }
}

void DressAll(HWND window, ThemeFrame& frame) {
  frame.appearance = CurrentAppearance();
  DressTitle(window);
  if (const HMENU bar = GetMenu(window)) {
    frame.menus.DressBar(bar);
    DrawMenuBar(window);
  }
  EnumChildWindows(window, Dress, 0);
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

BOOL CALLBACK TellColors(HWND control, LPARAM) {
  SendMessageW(control, WM_SYSCOLORCHANGE, 0, 0);
  return TRUE;
}

// Windows tells every top-level window of each of these.
bool TellsOfSettings(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED) return true;
  if (message != WM_SETTINGCHANGE) return false;
  const auto* const area = reinterpret_cast<const wchar_t*>(lParam);
  return wParam == SPI_SETHIGHCONTRAST || (area != nullptr && lstrcmpW(area, L"ImmersiveColorSet") == 0);
}

void Follow(HWND window, ThemeFrame& frame, UINT message) {
  SetAppearance(WantedAppearance());
  if (message == WM_SYSCOLORCHANGE) EnumChildWindows(window, TellColors, 0);
  const bool hasNewColors = message == WM_SYSCOLORCHANGE && CurrentAppearance() != Appearance::kDark;
  if (frame.appearance == CurrentAppearance() && !hasNewColors) return;
  if (frame.onChange) frame.onChange();
  DressAll(window, frame);
}

// The brush behind a control, with the colours of its text; none leaves them to the system.
HBRUSH Background(UINT message, HDC canvas, HWND control) noexcept {
  const auto roles = reinterpret_cast<UINT_PTR>(GetPropW(control, kRolesProperty));
  const bool isField =
      message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX || IsOfClass(control, WC_EDITW);
  if (roles == 0 && !IsDark()) return nullptr;
  Role text = isField ? Role::kText : Role::kBarText;
  Role back = isField ? Role::kWindow : Role::kBar;
  if (roles != 0) {
    text = static_cast<Role>(LOWORD(roles) - 1);
    back = static_cast<Role>(HIWORD(roles));
  }
  if (!IsWindowEnabled(control)) text = Role::kGreyText;
  SetTextColor(canvas, ColorOf(text));
  // In light the system paints its own dialogs.
  if (back == Role::kBar && !IsDark()) {
    SetBkColor(canvas, GetSysColor(COLOR_BTNFACE));
    return GetSysColorBrush(COLOR_BTNFACE);
  }
  SetBkColor(canvas, ColorOf(back));
  return BrushOf(canvas, back);
}

// Custom drawing that a control asks its parent for; false where this program does not draw it.
bool DrawControl(NMHDR& header, LRESULT& result) {
  if (header.code != NM_CUSTOMDRAW) return false;
  const auto& draw = reinterpret_cast<const NMCUSTOMDRAW&>(header);
  if (draw.dwDrawStage == CDDS_PREPAINT) KeepPictures(draw.hdc);
  if (!IsDark()) return false;
  if (IsOfClass(header.hwndFrom, TOOLBARCLASSNAMEW)) {
    result = DrawToolBar(reinterpret_cast<const NMTBCUSTOMDRAW&>(header));
    return true;
  }
  if (IsOfClass(header.hwndFrom, WC_TREEVIEWW)) {
    result = DrawTree(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    return true;
  }
  return false;
}

// What is drawn for the menus and by them; true when `result` is the answer.
bool OnMenuMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (!IsDark()) return false;
  result = TRUE;
  switch (message) {
    case WM_MEASUREITEM: {
      auto& item = *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
      if (item.CtlType != ODT_MENU) return false;
      ThemeMenus::Measure(window, item);
      return true;
    }
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item.CtlType != ODT_MENU) return false;
      ThemeMenus::Draw(window, item);
      return true;
    }
    case WM_MENUCHAR:
      if ((HIWORD(wParam) & MF_SYSMENU) != 0) return false;
      result = ThemeMenus::FindLetter(reinterpret_cast<HMENU>(lParam), static_cast<wchar_t>(LOWORD(wParam)));
      return true;
    default:
      return false;
  }
}

// Messages that are answered here; false for all others.
bool Answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_ERASEBKGND: {
      if (!IsDark()) return false;
      RECT area;
      GetClientRect(window, &area);
      Painter(reinterpret_cast<HDC>(wParam)).Fill(area, Role::kBar);
      result = TRUE;
      return true;
    }
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX: {
      const HBRUSH brush = Background(message, reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
      result = reinterpret_cast<LRESULT>(brush);
      return brush != nullptr;
    }
    case WM_NOTIFY:
      return DrawControl(*reinterpret_cast<NMHDR*>(lParam), result);
    default:
      return OnMenuMessage(window, message, wParam, lParam, result);
  }
}

LRESULT CALLBACK FrameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                DWORD_PTR data) noexcept {
  auto* const frame = reinterpret_cast<ThemeFrame*>(data);
  LRESULT result = 0;
  if (Answer(window, message, wParam, lParam, result)) return result;
  if (message == WM_DPICHANGED) KeepDpi(window, HIWORD(wParam));
  result = DefSubclassProc(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(window, FrameProcedure, id);
    delete frame;
    return result;
  }
  if (message == WM_PARENTNOTIFY && LOWORD(wParam) == WM_CREATE) Dress(reinterpret_cast<HWND>(lParam), 0);
  // Only now its owner has put it into order.
  if (message == WM_INITMENUPOPUP && HIWORD(lParam) == 0)
    frame->menus.DressPopup(reinterpret_cast<HMENU>(wParam));
  if (TellsOfSettings(message, wParam, lParam)) Follow(window, *frame, message);
  const bool paintsFrame = message == WM_NCPAINT || message == WM_NCACTIVATE;
  if (paintsFrame && IsDark()) ThemeMenus::DrawBarEdge(window);
  return result;
}

}  // namespace

void ThemeWindow(HWND window, std::function<void()> onChange) {
  SetAppearance(WantedAppearance());
  auto frame = std::make_unique<ThemeFrame>(ThemeFrame{std::move(onChange), {}, CurrentAppearance()});
  ThemeFrame& kept = *frame;
  if (!SetWindowSubclass(window, FrameProcedure, kFrameSubclass, reinterpret_cast<DWORD_PTR>(frame.get())))
    return;
  // FrameProcedure deletes it with the window.
  static_cast<void>(frame.release());
  DressAll(window, kept);
}

void ThemeDialog(HWND dialog) {
  ThemeWindow(dialog);
}

void SetThemeRoles(HWND control, Role text, Role back) {
  const auto roles = static_cast<UINT_PTR>(MAKELONG(static_cast<int>(text) + 1, static_cast<int>(back)));
  SetPropW(control, kRolesProperty, reinterpret_cast<HANDLE>(roles));
}

}  // namespace smh
