// Menus in the colours of the theme: in dark their items are drawn by their owner. For the window's thread.
#pragma once

#include "infra/runtime/handle.h"

#include <windows.h>
#include <oleacc.h>

#include <list>
#include <string>

namespace smh {

// The menus of one top-level window, which asks it how their items are measured and drawn.
class ThemeMenus {
 public:
  // Gives the items of a menu and of all below it the current appearance; text, marks and state of an item
  // stay what they are. Called for the menu bar with every appearance, and for a menu that is about to open.
  void DressBar(HMENU menu) { Dress(menu, true); }
  void DressPopup(HMENU menu) { Dress(menu, false); }

  // Answer WM_MEASUREITEM and WM_DRAWITEM of a menu's item, the latter also for the item of a bar.
  static void Measure(HWND window, MEASUREITEMSTRUCT& item);
  static void Draw(HWND window, const DRAWITEMSTRUCT& item);
  // Answers WM_MENUCHAR: which item the typed letter stands for.
  static LRESULT FindLetter(HMENU menu, wchar_t letter);
  // Covers what the system leaves light of the menu bar of `window`: behind its last item, and a line below
  // it.
  static void DrawBarEdge(HWND window);

 private:
  // What an item's data points to: in the form that screen readers know.
  struct Item {
    MSAAMENUINFO forReaders;
    std::wstring text;
    HMENU menu;
    bool isBar;
  };
  void Dress(HMENU menu, bool isBar);
  void DressItem(HMENU menu, UINT position, bool isBar);

  struct BrushTraits {
    using Type = HBRUSH;
    static constexpr Type kNone = nullptr;
    static bool IsValid(Type value) noexcept { return value != nullptr; }
    static void Close(Type value) noexcept { DeleteObject(value); }
  };

  std::list<Item> items_;
  ScopedResource<BrushTraits> back_;
};

}  // namespace smh
