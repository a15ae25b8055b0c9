// What the main window says around its views: caption, tree, status bar, notices, progress, and what screen
// readers are told of its parts.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kElevatedCaption{L"%1 – Administrator %2", L"%1 – Administrator %2",
                                       L"%1 – מנהל מערכת %2"};

// The tree.
inline constexpr Text kAllEntries{L"All entries", L"Alle Einträge", L"כל הפריטים"};
inline constexpr Text kDefaultPrograms{L"Default programs", L"Standardprogramme", L"תוכניות ברירת מחדל"};
inline constexpr Text kUndoHistory{L"Undo history", L"Änderungsverlauf", L"היסטוריית השינויים"};

// The search box.
inline constexpr Text kSearchInAll{L"Search in all entries", L"In allen Einträgen suchen",
                                   L"חיפוש בכל הפריטים"};
inline constexpr Text kSearchIn{L"Search in %1", L"Suchen in: %1", L"חיפוש במיקום: %1"};

// The status bar.
inline constexpr Text kReady{L"Ready", L"Bereit", L"מוכן"};
inline constexpr Text kReadingLocations{L"Reading the locations…", L"Die Orte werden gelesen…",
                                        L"קריאת המיקומים…"};
inline constexpr Text kReadingDetails{L"Reading the details of the files…",
                                      L"Die Details der Dateien werden gelesen…", L"קריאת פרטי הקבצים…"};
inline constexpr Text kReadingAll{L"Reading all locations…", L"Alle Orte werden gelesen…",
                                  L"קריאת כל המיקומים…"};
inline constexpr Text kLockedHint{
    L"Locked entries can be changed by an administrator: use the shield in the tool bar.",
    L"Gesperrte Einträge kann ein Administrator ändern: mit dem Schild in der Symbolleiste.",
    L"מנהל מערכת יכול לשנות פריטים נעולים: באמצעות המגן שבסרגל הכלים."};
inline constexpr CountText kStateSaved{
    {L"Saved the state of %1 entries to %2", L"Der Stand von %1 Eintrag wurde gespeichert: %2",
     L"המצב של פריט אחד (%1) נשמר: %2"},
    {L"Saved the state of %1 entries to %2", L"Der Stand von %1 Einträgen wurde gespeichert: %2",
     L"המצב של %1 פריטים נשמר: %2"}};
// A saved state: its file, its machine if that is known, and its time.
inline constexpr Text kStateOfMachine{L"“%1” (%2, %3 UTC)", L"„%1“ (%2, %3 UTC)", L"\"%1\" (%2, %3 UTC)"};
inline constexpr Text kStateOfTime{L"“%1” (%2 UTC)", L"„%1“ (%2 UTC)", L"\"%1\" (%2 UTC)"};

// Notices.
inline constexpr Text kForeignNotice{
    L"The entries of “this user” are those of %1, not of %2, who is logged on.",
    L"Die Einträge „dieses Benutzers“ sind die von %1, nicht die von %2, der angemeldet ist.",
    L"הפריטים של \"משתמש זה\" הם של %1, ולא של %2, שמחובר כעת."};
inline constexpr Text kWelcomeNotice{
    L"This is what Windows starts by itself: clear the check box of what you do not need, and take any "
    L"change back with Undo.",
    L"Das startet Windows von selbst: Entfernen Sie das Häkchen bei dem, was Sie nicht brauchen. Jede "
    L"Änderung lässt sich rückgängig machen.",
    L"אלה הפריטים שמופעלים אוטומטית ב-Windows: אפשר לבטל את הסימון של מה שאין בו צורך, וכל שינוי ניתן "
    L"לביטול."};
inline constexpr Text kWelcomeRead{L"Got it", L"Verstanden", L"הבנתי"};
inline constexpr Text kRightsNotice{
    L"You can change the entries of this user. Those of all users need the rights of an administrator.",
    L"Sie können die Einträge dieses Benutzers ändern. Die aller Benutzer erfordern Administratorrechte.",
    L"אפשר לשנות את הפריטים של משתמש זה. לפריטים של כל המשתמשים נדרשות הרשאות של מנהל מערכת."};
inline constexpr Text kRestartElevated{L"Restart as administrator", L"Als Administrator neu starten",
                                       L"הפעלה מחדש כמנהל מערכת"};
inline constexpr Text kHide{L"Hide", L"Ausblenden", L"הסתרה"};

// What lasts: what is done, to how many, of how many.
inline constexpr Text kActionWhole{L"%1 %2 entries", L"%1: %2 Einträge", L"%1: %2 פריטים"};
inline constexpr Text kActionOngoing{L"%1…", L"%1…", L"%1…"};
inline constexpr Text kActionProgress{L"%1 %2 of %3 entries", L"%1: %2 von %3 Einträgen",
                                      L"%1: %2 מתוך %3 פריטים"};
inline constexpr Text kActionCancelling{L"Cancelling after %1 of %2 entries",
                                        L"Abbruch nach %1 von %2 Einträgen",
                                        L"הביטול מתבצע לאחר %1 מתוך %2 פריטים"};
inline constexpr Text kActionFirst{L"Not done: first let “%1” end.",
                                   L"Nicht ausgeführt: Warten Sie, bis „%1“ abgeschlossen ist.",
                                   L"לא בוצע: יש להמתין לסיום של \"%1\"."};
inline constexpr Text kActionFirstOrCancel{
    L"Not done: first let “%1” end, or cancel it with Esc.",
    L"Nicht ausgeführt: Warten Sie, bis „%1“ abgeschlossen ist, oder brechen Sie es mit Esc ab.",
    L"לא בוצע: יש להמתין לסיום של \"%1\", או לבטל באמצעות Esc."};
inline constexpr Text kActionCancelTip{L"Leaves the rest as it is", L"Lässt die übrigen, wie sie sind",
                                       L"משאיר את השאר כפי שהם"};

// For screen readers.
inline constexpr Text kNameCommands{L"Commands", L"Befehle", L"פקודות"};
inline constexpr Text kNameSearch{L"Search", L"Suche", L"חיפוש"};
inline constexpr Text kNameSearchKeys{L"Ctrl+F", L"Strg+F", L"Ctrl+F"};
inline constexpr Text kNameTree{L"Locations and views", L"Orte und Ansichten", L"מיקומים ותצוגות"};
inline constexpr Text kNameDetails{L"Details", L"Details", L"פרטים"};
inline constexpr Text kActPress{L"Press", L"Drücken", L"לחיצה"};
inline constexpr Text kActExpand{L"Expand", L"Erweitern", L"הרחבה"};
inline constexpr Text kActCollapse{L"Collapse", L"Reduzieren", L"כיווץ"};

}  // namespace smh::texts
