// What the box of all keys says of those that no menu names.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kKeysEverywhere{L"Everywhere", L"Überall", L"בכל מקום"};

inline constexpr Text kKeyNextPane{L"Next pane", L"Nächster Bereich", L"החלונית הבאה"};
inline constexpr Text kKeysNextPane{L"Tab or F6", L"Tab oder F6", L"Tab או F6"};
inline constexpr Text kKeyPreviousPane{L"Previous pane", L"Vorheriger Bereich", L"החלונית הקודמת"};
inline constexpr Text kKeysPreviousPane{L"Shift+Tab or Shift+F6", L"Umschalt+Tab oder Umschalt+F6",
                                        L"Shift+Tab או Shift+F6"};
inline constexpr Text kKeyBack{L"Back to the list, cancel what lasts",
                               L"Zurück zur Liste, Laufendes abbrechen", L"חזרה לרשימה, ביטול פעולה ממושכת"};
inline constexpr Text kKeysBack{L"Esc", L"Esc", L"Esc"};
inline constexpr Text kKeySwitch{L"Switch the entry on or off", L"Eintrag ein- oder ausschalten",
                                 L"הפעלה או השבתה של הפריט"};
inline constexpr Text kKeysSwitch{L"Space", L"Leertaste", L"רווח"};
inline constexpr Text kKeyDetails{L"Details of the entry, parts of the change",
                                  L"Details des Eintrags, Teile der Änderung", L"פרטי הפריט, חלקי השינוי"};
inline constexpr Text kKeysDetails{L"Enter", L"Eingabe", L"Enter"};
inline constexpr Text kKeyFold{L"Show or hide what is below", L"Untergeordnetes ein- oder ausblenden",
                               L"הצגה או הסתרה של מה שמתחת"};
// Lines that run from right to left open to the left.
inline constexpr Text kKeysFold{L"Right, Left", L"Rechts, Links", L"שמאלה, ימינה"};
inline constexpr Text kKeyMenu{L"Menu of what is selected", L"Menü des Ausgewählten", L"התפריט של מה שנבחר"};
inline constexpr Text kKeysMenu{L"Shift+F10", L"Umschalt+F10", L"Shift+F10"};
inline constexpr Text kKeyMenuBar{L"Menu bar", L"Menüleiste", L"שורת התפריטים"};
inline constexpr Text kKeysMenuBar{L"Alt or F10", L"Alt oder F10", L"Alt או F10"};

}  // namespace smh::texts
