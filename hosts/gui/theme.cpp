#include "hosts/gui/theme.h"

#include <iterator>

namespace smh {

namespace {

struct ColorRow {
  Role role;
  COLORREF light;
  COLORREF dark;
  int contrast;  // COLOR_ of the system
};

// As colours are written elsewhere.
constexpr COLORREF Hex(unsigned value) noexcept {
  return RGB((value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF);
}

constexpr ColorRow kColors[] = {
    {Role::kWindow, Hex(0xFFFFFF), Hex(0x1E1E1E), COLOR_WINDOW},
    {Role::kText, Hex(0x000000), Hex(0xE6E6E6), COLOR_WINDOWTEXT},
    {Role::kGreyText, Hex(0x5C6066), Hex(0xB0B6BD), COLOR_GRAYTEXT},
    {Role::kAlarmText, Hex(0xA82A1A), Hex(0xFF9488), COLOR_WINDOWTEXT},
    {Role::kLinkText, Hex(0x0B55A0), Hex(0x8CC4FF), COLOR_HOTLIGHT},
    {Role::kAddedText, Hex(0x17602E), Hex(0x7FD99A), COLOR_WINDOWTEXT},
    {Role::kRemovedText, Hex(0x8C2B6B), Hex(0xFFA6CC), COLOR_WINDOWTEXT},
    {Role::kChangedText, Hex(0x6E4A00), Hex(0xF0C060), COLOR_WINDOWTEXT},
    {Role::kSwitchedText, Hex(0x0B55A0), Hex(0x8CC4FF), COLOR_WINDOWTEXT},
    {Role::kSelection, Hex(0xCCE8FF), Hex(0x1F3F62), COLOR_HIGHLIGHT},
    {Role::kSelectionText, Hex(0x000000), Hex(0xFFFFFF), COLOR_HIGHLIGHTTEXT},
    {Role::kQuietSelection, Hex(0xDCDCDC), Hex(0x37393D), COLOR_HIGHLIGHT},
    {Role::kQuietSelectionText, Hex(0x000000), Hex(0xFFFFFF), COLOR_HIGHLIGHTTEXT},
    {Role::kBar, Hex(0xF0F0F0), Hex(0x2B2B2B), COLOR_BTNFACE},
    {Role::kBarText, Hex(0x000000), Hex(0xE6E6E6), COLOR_BTNTEXT},
    {Role::kHeader, Hex(0xF7F7F7), Hex(0x262626), COLOR_BTNFACE},
    {Role::kHeaderText, Hex(0x303030), Hex(0xDADADA), COLOR_BTNTEXT},
    {Role::kBanner, Hex(0xFFF4CE), Hex(0x463B14), COLOR_WINDOW},
    {Role::kBannerText, Hex(0x000000), Hex(0xF7EBC4), COLOR_WINDOWTEXT},
    {Role::kButton, Hex(0xE1E1E1), Hex(0x3A3A3A), COLOR_BTNFACE},
    {Role::kButtonHot, Hex(0xE5F1FB), Hex(0x444444), COLOR_BTNFACE},
    {Role::kButtonPressed, Hex(0xCCE4F7), Hex(0x2A4A6B), COLOR_BTNFACE},
    {Role::kButtonText, Hex(0x000000), Hex(0xF0F0F0), COLOR_BTNTEXT},
    {Role::kBorder, Hex(0x8A9099), Hex(0x5A5D61), COLOR_WINDOWFRAME},
    {Role::kFocus, Hex(0x1A5FA8), Hex(0x7CC0FF), COLOR_WINDOWTEXT},
    {Role::kSplitter, Hex(0xE4E6E9), Hex(0x38383A), COLOR_BTNFACE},
    {Role::kGreen, Hex(0x2A8050), Hex(0x5FC98A), COLOR_BTNTEXT},
    {Role::kRed, Hex(0xC0392B), Hex(0xF07868), COLOR_BTNTEXT},
    {Role::kBlue, Hex(0x2468B0), Hex(0x6DB2F5), COLOR_BTNTEXT},
    {Role::kOrange, Hex(0xB0700E), Hex(0xE8B050), COLOR_BTNTEXT},
    {Role::kGrey, Hex(0x6B7480), Hex(0xA8AEB5), COLOR_BTNTEXT},
    {Role::kFaded, Hex(0xB4B8BD), Hex(0x5C6066), COLOR_GRAYTEXT},
    {Role::kCheckPaper, Hex(0xFFFFFF), Hex(0x1E1E1E), COLOR_WINDOW},
    {Role::kCheckFrame, Hex(0x7A8089), Hex(0x9AA0A8), COLOR_WINDOWTEXT},
    {Role::kCheckFill, Hex(0x2468B0), Hex(0x4C9BE8), COLOR_WINDOWTEXT},
    {Role::kCheckMark, Hex(0xFFFFFF), Hex(0x101010), COLOR_WINDOW},
};

constexpr bool StandsInOrder() noexcept {
  for (int i = 0; i < kRoleCount; ++i) {
    if (kColors[i].role != static_cast<Role>(i)) return false;
  }
  return true;
}
static_assert(std::size(kColors) == kRoleCount && StandsInOrder());

constexpr ColorPair kTextPairs[] = {
    {Role::kText, Role::kWindow},
    {Role::kGreyText, Role::kWindow},
    {Role::kAlarmText, Role::kWindow},
    {Role::kLinkText, Role::kWindow},
    {Role::kAddedText, Role::kWindow},
    {Role::kRemovedText, Role::kWindow},
    {Role::kChangedText, Role::kWindow},
    {Role::kSwitchedText, Role::kWindow},
    {Role::kSelectionText, Role::kSelection},
    {Role::kGreyText, Role::kSelection},
    {Role::kAlarmText, Role::kSelection},
    {Role::kAddedText, Role::kSelection},
    {Role::kRemovedText, Role::kSelection},
    {Role::kChangedText, Role::kSelection},
    {Role::kSwitchedText, Role::kSelection},
    {Role::kQuietSelectionText, Role::kQuietSelection},
    {Role::kGreyText, Role::kQuietSelection},
    {Role::kAlarmText, Role::kQuietSelection},
    {Role::kAddedText, Role::kQuietSelection},
    {Role::kRemovedText, Role::kQuietSelection},
    {Role::kChangedText, Role::kQuietSelection},
    {Role::kSwitchedText, Role::kQuietSelection},
    {Role::kBarText, Role::kBar},
    {Role::kGreyText, Role::kBar},
    {Role::kAlarmText, Role::kBar},
    {Role::kLinkText, Role::kBar},
    {Role::kHeaderText, Role::kHeader},
    {Role::kBannerText, Role::kBanner},
    {Role::kLinkText, Role::kBanner},
    {Role::kButtonText, Role::kButton},
    {Role::kButtonText, Role::kButtonHot},
    {Role::kButtonText, Role::kButtonPressed},
    {Role::kGreyText, Role::kButton},
    {Role::kGreyText, Role::kButtonHot},
};

constexpr ColorPair kPicturePairs[] = {
    {Role::kGreen, Role::kBar},
    {Role::kRed, Role::kBar},
    {Role::kBlue, Role::kBar},
    {Role::kOrange, Role::kBar},
    {Role::kGrey, Role::kBar},
    {Role::kCheckFrame, Role::kWindow},
    {Role::kCheckMark, Role::kCheckFill},
    {Role::kFocus, Role::kSelection},
    {Role::kFocus, Role::kButton},
};

// Constant before anything runs.
constinit Appearance g_appearance = Appearance::kLight;

}  // namespace

Appearance WantedAppearance() noexcept {
  HIGHCONTRASTW contrast = {};
  contrast.cbSize = sizeof(contrast);
  if (SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) &&
      (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0) {
    return Appearance::kHighContrast;
  }
  DWORD isLight = 1;
  DWORD size = sizeof(isLight);
  RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
               L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &isLight, &size);
  return isLight == 0 ? Appearance::kDark : Appearance::kLight;
}

Appearance CurrentAppearance() noexcept {
  return g_appearance;
}

void SetAppearance(Appearance appearance) noexcept {
  g_appearance = appearance;
}

bool IsDark() noexcept {
  return g_appearance == Appearance::kDark;
}

COLORREF ColorOf(Role role) noexcept {
  return ColorOf(role, g_appearance);
}

COLORREF ColorOf(Role role, Appearance appearance) noexcept {
  const ColorRow& row = kColors[static_cast<int>(role)];
  if (appearance == Appearance::kHighContrast) return GetSysColor(row.contrast);
  return appearance == Appearance::kDark ? row.dark : row.light;
}

HBRUSH BrushOf(HDC canvas, Role role) noexcept {
  SetDCBrushColor(canvas, ColorOf(role));
  return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
}

std::span<const ColorPair> TextPairs() noexcept {
  return kTextPairs;
}

std::span<const ColorPair> PicturePairs() noexcept {
  return kPicturePairs;
}

}  // namespace smh
