// The colours of the window, and which set of them the user's settings ask for. For the window's thread, but
// for the table itself, which is for any.
#pragma once

#include <windows.h>

#include <span>

namespace smh {

// What a colour is for. Texts and backgrounds stand in the order of the table.
enum class Role {
  kWindow,  // behind lists, trees and fields
  kText,
  kGreyText,
  kAlarmText,
  kLinkText,
  kAddedText,  // what a comparison found: in one state only, changed, switched
  kRemovedText,
  kChangedText,
  kSwitchedText,
  kSelection,
  kSelectionText,
  kQuietSelection,  // in a list without the focus
  kQuietSelectionText,
  kBar,  // behind bars, headings and dialogs
  kBarText,
  kHeader,
  kHeaderText,
  kBanner,
  kBannerText,
  kButton,
  kButtonHot,
  kButtonPressed,
  kButtonText,
  kBorder,
  kFocus,
  kSplitter,
  kGreen,  // of pictures
  kRed,
  kBlue,
  kOrange,
  kGrey,
  kFaded,
  kCheckPaper,
  kCheckFrame,
  kCheckFill,
  kCheckMark
};
inline constexpr int kRoleCount = static_cast<int>(Role::kCheckMark) + 1;

// High contrast takes the system's own colours.
enum class Appearance { kLight, kDark, kHighContrast };

// What the user's settings ask for now: high contrast first, then the choice for programs. Light where the
// system has no such choice.
Appearance WantedAppearance() noexcept;
// What the window is drawn in; light until it is set. Whoever sets it has everything drawn anew.
Appearance CurrentAppearance() noexcept;
void SetAppearance(Appearance appearance) noexcept;
// Whether controls are drawn by this program: in dark, which most of them do not know.
bool IsDark() noexcept;

// In the current appearance, or in a given one.
COLORREF ColorOf(Role role) noexcept;
COLORREF ColorOf(Role role, Appearance appearance) noexcept;
// A brush of that colour for `canvas`, until the next call for it; the system owns it.
HBRUSH BrushOf(HDC canvas, Role role) noexcept;

// Which text or picture stands on which background somewhere in the window.
struct ColorPair {
  Role front;
  Role back;
};
std::span<const ColorPair> TextPairs() noexcept;
std::span<const ColorPair> PicturePairs() noexcept;

}  // namespace smh
