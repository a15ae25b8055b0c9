#include "hosts/gui/theme_menu.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/theme_paint.h"

#include <cwctype>
#include <iterator>

namespace smh {

namespace {

// At 96 DPI.
constexpr int kGutter = 24;
constexpr int kGap = 28;
constexpr int kLineMargin = 4;
constexpr int kSeparator = 7;
constexpr int kBarMargin = 4;

std::wstring ItemText(HMENU menu, UINT position) {
  wchar_t text[256] = L"";
  GetMenuStringW(menu, position, text, static_cast<int>(std::size(text)), MF_BYPOSITION);
  return text;
}

// Label and keys, which a tab parts.
std::wstring LabelOf(const std::wstring& text) {
  return text.substr(0, text.find(L'\t'));
}

std::wstring KeysOf(const std::wstring& text) {
  const std::size_t tab = text.find(L'\t');
  return tab == std::wstring::npos ? std::wstring() : text.substr(tab + 1);
}

void DrawPopupItem(const Painter& painter, const DRAWITEMSTRUCT& item, const std::wstring& text, int dpi) {
  const bool isGrey = (item.itemState & (ODS_GRAYED | ODS_DISABLED)) != 0;
  const bool isChosen = (item.itemState & ODS_SELECTED) != 0;
  const Role color = isGrey ? Role::kGreyText : Role::kButtonText;
  const RECT& area = item.rcItem;
  painter.Fill(area, isChosen ? Role::kButtonHot : Role::kBar);
  const int gutter = Scaled(kGutter, dpi);
  if (text.empty()) {
    const int middle = static_cast<int>(area.top + area.bottom) / 2;
    return painter.Fill({area.left + gutter, middle, area.right, middle + 1}, Role::kBorder);
  }
  if ((item.itemState & ODS_CHECKED) != 0)
    painter.Tick({area.left, area.top, area.left + gutter, area.bottom}, color);
  const RECT label = {area.left + gutter, area.top, area.right - gutter / 2, area.bottom};
  const UINT prefix = (item.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0;
  painter.Text(LabelOf(text), label, color, prefix);
  painter.Text(KeysOf(text), label, color, DT_RIGHT | DT_NOPREFIX);
}

void DrawBarItem(const Painter& painter, const DRAWITEMSTRUCT& item, const std::wstring& text) {
  const bool isChosen = (item.itemState & (ODS_SELECTED | ODS_HOTLIGHT)) != 0;
  const bool isGrey = (item.itemState & (ODS_GRAYED | ODS_DISABLED | ODS_INACTIVE)) != 0;
  painter.Fill(item.rcItem, isChosen ? Role::kButtonHot : Role::kBar);
  const UINT prefix = (item.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0;
  painter.Text(text, item.rcItem, isGrey ? Role::kGreyText : Role::kBarText, DT_CENTER | prefix);
}

// The items in the last line of a menu bar, at a place of the screen; how far to the right that is differs
// among systems where the bar is mirrored.
RECT LastLine(HWND window, HMENU bar) noexcept {
  RECT line = {};
  for (int i = GetMenuItemCount(bar) - 1; i >= 0; --i) {
    RECT item;
    if (!GetMenuItemRect(window, bar, static_cast<UINT>(i), &item)) break;
    if (!IsRectEmpty(&line) && item.top != line.top) break;
    UnionRect(&line, &line, &item);
  }
  return line;
}

}  // namespace

void ThemeMenus::DressItem(HMENU menu, UINT position, bool isBar) {
  MENUITEMINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = MIIM_FTYPE | MIIM_DATA | MIIM_SUBMENU;
  if (!GetMenuItemInfoW(menu, position, TRUE, &info)) return;
  if (info.hSubMenu != nullptr) Dress(info.hSubMenu, false);
  const bool wasDark = (info.fType & MFT_OWNERDRAW) != 0;
  if (!wasDark && !IsDark()) return;
  Item* const known = wasDark ? reinterpret_cast<Item*>(info.dwItemData) : nullptr;
  if (IsDark()) {
    Item& item = known != nullptr ? *known : items_.emplace_back();
    item.text = (info.fType & MFT_SEPARATOR) != 0 ? std::wstring() : ItemText(menu, position);
    item.menu = menu;
    item.isBar = isBar;
    item.forReaders = {MSAA_MENU_SIG, static_cast<DWORD>(item.text.size()), item.text.data()};
    info.dwItemData = reinterpret_cast<ULONG_PTR>(&item);
    info.fType |= MFT_OWNERDRAW;
  } else {
    items_.remove_if([known](const Item& item) { return &item == known; });
    info.dwItemData = 0;
    info.fType &= ~UINT{MFT_OWNERDRAW};
  }
  info.fMask = MIIM_FTYPE | MIIM_DATA;
  SetMenuItemInfoW(menu, position, TRUE, &info);
}

void ThemeMenus::Dress(HMENU menu, bool isBar) {
  // Menus that were made for one time have gone without a word.
  items_.remove_if([](const Item& item) { return !IsMenu(item.menu); });
  if (IsDark() && !back_) back_.Reset(CreateSolidBrush(ColorOf(Role::kBar)));
  MENUINFO look = {};
  look.cbSize = sizeof(look);
  look.fMask = MIM_BACKGROUND;
  look.hbrBack = IsDark() ? back_.Get() : nullptr;
  SetMenuInfo(menu, &look);
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) DressItem(menu, static_cast<UINT>(i), isBar);
}

void ThemeMenus::Measure(HWND window, MEASUREITEMSTRUCT& item) {
  const auto* const known = reinterpret_cast<const Item*>(item.itemData);
  if (known == nullptr) return;
  const int dpi = DrawingDpi(window);
  const ScopedFont font = MakeFont(dpi);
  const HDC canvas = GetDC(window);
  {
    const Painter painter(canvas, font.Get());
    const SIZE label = painter.Measure(LabelOf(known->text), 0);
    const std::wstring keys = KeysOf(known->text);
    const int right = keys.empty() ? 0 : static_cast<int>(painter.Measure(keys, DT_NOPREFIX).cx);
    const int margin = known->isBar ? 2 * Scaled(kBarMargin, dpi) : Scaled(kGutter + kGap + kGutter / 2, dpi);
    item.itemWidth = static_cast<UINT>(static_cast<int>(label.cx) + right + margin);
    item.itemHeight = static_cast<UINT>(known->text.empty() ? Scaled(kSeparator, dpi)
                                                            : label.cy + 2 * Scaled(kLineMargin, dpi));
  }
  ReleaseDC(window, canvas);
}

void ThemeMenus::Draw(HWND window, const DRAWITEMSTRUCT& item) {
  const auto* const known = reinterpret_cast<const Item*>(item.itemData);
  if (known == nullptr) return;
  const int dpi = DrawingDpi(window);
  const ScopedFont font = MakeFont(dpi);
  const Painter painter(item.hDC, font.Get());
  if (known->isBar) return DrawBarItem(painter, item, known->text);
  DrawPopupItem(painter, item, known->text, dpi);
}

LRESULT ThemeMenus::FindLetter(HMENU menu, wchar_t letter) {
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const std::wstring text = ItemText(menu, static_cast<UINT>(i));
    const std::size_t mark = text.find(L'&');
    if (mark != std::wstring::npos && mark + 1 < text.size() &&
        std::towlower(text[mark + 1]) == std::towlower(letter)) {
      return MAKELRESULT(i, MNC_EXECUTE);
    }
  }
  return MAKELRESULT(0, MNC_IGNORE);
}

void ThemeMenus::DrawBarEdge(HWND window) {
  const HMENU bar = GetMenu(window);
  if (bar == nullptr) return;
  RECT frame, client;
  GetWindowRect(window, &frame);
  GetClientRect(window, &client);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
  OffsetRect(&client, -frame.left, -frame.top);
  const HDC canvas = GetWindowDC(window);
  // These are places of the screen, which are not mirrored.
  const bool isMirrored = (GetLayout(canvas) & LAYOUT_RTL) != 0;
  SetLayout(canvas, 0);
  const auto fill = [canvas](const RECT& area) { Painter(canvas).Fill(area, Role::kBar); };
  fill({client.left, client.top - 1, client.right, client.top});
  const RECT last = LastLine(window, bar);
  const LONG width = last.right - last.left, top = last.top - frame.top;
  fill(isMirrored ? RECT{client.left, top, client.right - width, client.top}
                  : RECT{client.left + width, top, client.right, client.top});
  ReleaseDC(window, canvas);
}

}  // namespace smh
