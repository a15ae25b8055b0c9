#include "hosts/gui/menus.h"

#include "hosts/gui/access_keys.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/menu_texts.h"

#include <cstddef>
#include <span>

namespace smh {

namespace {

// A command, a menu of its own, or, without a text, a line.
struct MenuItem {
  UINT command = 0;
  const Text* text = nullptr;
  const MenuItem* below = nullptr;
  std::size_t count = 0;
};

consteval MenuItem Command(UINT command, const Text& text) {
  return {command, &text, nullptr, 0};
}
template <std::size_t kCount>
consteval MenuItem Below(const Text& text, const MenuItem (&items)[kCount]) {
  return {0, &text, items, kCount};
}
constexpr MenuItem kLine;

constexpr MenuItem kFileMenu[] = {
    Command(CMD_EXPORT, texts::kMenuExport),
    kLine,
    Command(CMD_SAVE_STATE, texts::kMenuSaveState),
    Command(CMD_COMPARE_STATE, texts::kMenuCompareState),
    Command(CMD_ONLY_DIFFERENT, texts::kMenuOnlyDifferent),
    Command(CMD_STOP_COMPARING, texts::kMenuStopComparing),
    kLine,
    Command(CMD_RESTART_ELEVATED, texts::kMenuRestartElevated),
    kLine,
    Command(CMD_EXIT, texts::kMenuExit),
};
constexpr MenuItem kEditMenu[] = {
    Command(CMD_UNDO, texts::kMenuUndo),
    Command(CMD_REDO, texts::kMenuRedo),
    kLine,
    Command(CMD_COPY, texts::kMenuCopy),
    Command(CMD_COPY_PATH, texts::kMenuCopyPath),
    Command(CMD_COPY_COMMAND, texts::kMenuCopyCommand),
    Command(CMD_COPY_HASH, texts::kMenuCopyHash),
    Command(CMD_SELECT_ALL, texts::kMenuSelectAll),
    kLine,
    Command(CMD_FIND, texts::kMenuFind),
    Command(CMD_SEARCH_EVERYWHERE, texts::kMenuFindEverywhere),
};
constexpr MenuItem kEntryMenu[] = {
    Command(CMD_ENABLE, texts::kMenuEnable),
    Command(CMD_DISABLE, texts::kMenuDisable),
    Command(CMD_SWITCH_OFF, texts::kMenuSwitchOff),
    Command(CMD_SWITCH_ON, texts::kMenuSwitchOn),
    Command(CMD_DELETE, texts::kMenuDelete),
    kLine,
    Command(CMD_ADD, texts::kMenuAdd),
    Command(CMD_MOVE, texts::kMenuMove),
    Command(CMD_CHANGE_COMMAND, texts::kMenuChangeCommand),
    kLine,
    Command(CMD_EXECUTE, texts::kMenuExecute),
    Command(CMD_SHOW_FILE, texts::kMenuShowFile),
    Command(CMD_SHOW_LOCATION, texts::kMenuShowLocation),
    Command(CMD_OPEN_FOLDER, texts::kMenuOpenFolder),
    Command(CMD_SEARCH_WEB, texts::kMenuSearchWeb),
};
constexpr MenuItem kLanguageMenu[] = {
    Command(CMD_LANGUAGE_SYSTEM, texts::kMenuSystemLanguage),
    kLine,
    Command(CMD_LANGUAGE_ENGLISH, texts::kMenuEnglish),
    Command(CMD_LANGUAGE_GERMAN, texts::kMenuGerman),
    Command(CMD_LANGUAGE_HEBREW, texts::kMenuHebrew),
};
constexpr MenuItem kViewMenu[] = {
    Command(CMD_ENTRIES, texts::kMenuEntries),
    Command(CMD_DEFAULT_PROGRAMS, texts::kMenuDefaultPrograms),
    Command(CMD_UNDO_HISTORY, texts::kMenuUndoHistory),
    kLine,
    Command(CMD_ALL_LOCATIONS, texts::kMenuAllLocations),
    kLine,
    Command(CMD_FILTER_NOT_STARTING, texts::kMenuNotStarting),
    Command(CMD_FILTER_MISSING, texts::kMenuMissing),
    Command(CMD_FILTER_UNSIGNED, texts::kMenuUnsigned),
    Command(CMD_FILTER_RISKY, texts::kMenuRisky),
    Command(CMD_HIDE_VERIFIED, texts::kMenuHideVerified),
    Command(CMD_CLEAR_FILTERS, texts::kMenuClearFilters),
    Command(CMD_SHOW_ALL, texts::kMenuShowAll),
    kLine,
    Command(CMD_COLUMNS, texts::kMenuColumns),
    Below(texts::kMenuLanguage, kLanguageMenu),
    Command(CMD_REFRESH, texts::kMenuRefresh),
};
constexpr MenuItem kHelpMenu[] = {
    Command(CMD_KEYS, texts::kMenuKeys),
    Command(CMD_ABOUT, texts::kMenuAbout),
};
constexpr MenuItem kBar[] = {
    Below(texts::kMenuFile, kFileMenu),   Below(texts::kMenuEdit, kEditMenu),
    Below(texts::kMenuEntry, kEntryMenu), Below(texts::kMenuView, kViewMenu),
    Below(texts::kMenuHelp, kHelpMenu),
};

constexpr MenuItem kEntryContext[] = {
    Command(CMD_DETAILS, texts::kMenuDetails),
    kLine,
    Command(CMD_ENABLE, texts::kMenuEnable),
    Command(CMD_DISABLE, texts::kMenuDisable),
    Command(CMD_SWITCH_OFF, texts::kMenuSwitchOff),
    Command(CMD_SWITCH_ON, texts::kMenuSwitchOn),
    Command(CMD_DELETE, texts::kMenuDelete),
    kLine,
    Command(CMD_MOVE, texts::kMenuMove),
    Command(CMD_CHANGE_COMMAND, texts::kMenuChangeCommand),
    kLine,
    Command(CMD_EXECUTE, texts::kMenuExecute),
    Command(CMD_SHOW_FILE, texts::kMenuShowFile),
    Command(CMD_SHOW_LOCATION, texts::kMenuShowLocation),
    Command(CMD_OPEN_FOLDER, texts::kMenuOpenFolder),
    Command(CMD_SEARCH_WEB, texts::kMenuSearchWeb),
    kLine,
    Command(CMD_COPY, texts::kMenuCopySelected),
    Command(CMD_COPY_PATH, texts::kMenuCopyPath),
    Command(CMD_COPY_COMMAND, texts::kMenuCopyCommand),
    Command(CMD_COPY_HASH, texts::kMenuCopyHash),
};
constexpr MenuItem kProgramContext[] = {
    Command(CMD_SHOW_FILE, texts::kMenuProgramFile), kLine,
    Command(CMD_COPY, texts::kMenuCopySelected),     Command(CMD_COPY_PATH, texts::kMenuCopyPath),
    Command(CMD_SELECT_ALL, texts::kMenuSelectAll),
};
constexpr MenuItem kChangeContext[] = {
    Command(CMD_UNDO, texts::kMenuUndo),
    Command(CMD_REDO, texts::kMenuRedo),
    kLine,
    Command(CMD_PARTS, texts::kMenuParts),
    kLine,
    Command(CMD_COPY, texts::kMenuCopySelected),
    Command(CMD_SELECT_ALL, texts::kMenuSelectAll),
};
constexpr MenuItem kTextContext[] = {
    Command(CMD_COPY, texts::kMenuCopySelected),
    Command(CMD_SELECT_ALL, texts::kMenuSelectAll),
};
constexpr MenuItem kTreeContext[] = {
    Command(CMD_ADD, texts::kMenuAddHere),
    kLine,
    Command(CMD_ALL_LOCATIONS, texts::kMenuAllLocations),
    Command(CMD_HIDE_VERIFIED, texts::kMenuHideVerified),
    Command(CMD_REFRESH, texts::kMenuRefresh),
    kLine,
    Command(CMD_COPY, texts::kMenuCopySelected),
};

struct ContextRow {
  ContextMenu which;
  std::span<const MenuItem> items;
};
constexpr ContextRow kContexts[] = {
    {ContextMenu::kEntry, kEntryContext},   {ContextMenu::kProgram, kProgramContext},
    {ContextMenu::kChange, kChangeContext}, {ContextMenu::kText, kTextContext},
    {ContextMenu::kTree, kTreeContext},
};

constexpr bool HaveOwnLetters(std::span<const MenuItem> items) {
  for (const MenuItem& item : items) {
    if (item.below != nullptr && !HaveOwnLetters({item.below, item.count})) return false;
  }
  return HaveOwnAccessKeys(items);
}
static_assert(HaveOwnLetters(kBar) && HaveOwnLetters(kEntryContext) && HaveOwnLetters(kProgramContext) &&
              HaveOwnLetters(kChangeContext) && HaveOwnLetters(kTextContext) && HaveOwnLetters(kTreeContext));

void Fill(HMENU menu, std::span<const MenuItem> items) {
  for (const MenuItem& item : items) {
    if (item.text == nullptr) {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    } else if (item.below == nullptr) {
      AppendMenuW(menu, MF_STRING, item.command, item.text->Get());
    } else {
      const HMENU below = CreatePopupMenu();
      Fill(below, {item.below, item.count});
      AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(below), item.text->Get());
    }
  }
}

}  // namespace

HMENU MakeMenuBar() {
  const HMENU menu = CreateMenu();
  Fill(menu, kBar);
  return menu;
}

HMENU MakeContextMenu(ContextMenu which) {
  const HMENU menu = CreatePopupMenu();
  for (const ContextRow& row : kContexts) {
    if (row.which == which) Fill(menu, row.items);
  }
  return menu;
}

void OpenMenu(HMENU menu, POINT point, HWND window) {
  const UINT layout = IsMirrored(CurrentLanguage()) ? TPM_LAYOUTRTL : 0;
  TrackPopupMenu(menu, TPM_RIGHTBUTTON | layout, point.x, point.y, 0, window, nullptr);
}

}  // namespace smh
