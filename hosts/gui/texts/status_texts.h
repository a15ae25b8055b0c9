// Counts and outcomes in the status bar, and what the lists are called.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr CountText kEntries{{L"1 entry", L"1 Eintrag", L"פריט אחד"},
                                    {L"%1 entries", L"%1 Einträge", L"%1 פריטים"}};
// By the second number, which is how many there are in all.
inline constexpr CountText kEntriesOf{{L"%1 of 1 entry", L"%1 von 1 Eintrag", L"%1 מתוך פריט אחד"},
                                      {L"%1 of %2 entries", L"%1 von %2 Einträgen", L"%1 מתוך %2 פריטים"}};
inline constexpr Text kAndSelected{L"%1, %2 selected", L"%1, %2 ausgewählt", L"%1, נבחרו %2"};
inline constexpr Text kManySelected{L"%1 entries selected", L"%1 Einträge ausgewählt", L"נבחרו %1 פריטים"};
inline constexpr Text kSelectOne{L"Select an entry to see what it is",
                                 L"Wählen Sie einen Eintrag aus, um zu sehen, was er ist",
                                 L"יש לבחור פריט כדי לראות מהו"};
inline constexpr Text kSignaturesLeft{L"Checking signatures: %1 to go…",
                                      L"Signaturen werden geprüft: noch %1…", L"בודק חתימות: נותרו %1…"};
inline constexpr CountText kPrograms{
    {L"1 default program", L"1 Standardprogramm", L"תוכנית ברירת מחדל אחת"},
    {L"%1 default programs", L"%1 Standardprogramme", L"%1 תוכניות ברירת מחדל"}};
inline constexpr Text kEntriesList{L"Start-up entries", L"Starteinträge", L"פריטי הפעלה"};
inline constexpr Text kShowDetails{L"Show details", L"Details anzeigen", L"הצג פרטים"};
inline constexpr Text kProgramsList{L"Default programs", L"Standardprogramme", L"תוכניות ברירת מחדל"};
inline constexpr Text kShowFileProperties{L"Show file properties", L"Dateieigenschaften anzeigen",
                                          L"הצג מאפייני קובץ"};
inline constexpr Text kShowedProperties{L"Showed the properties of “%1”.",
                                        L"Die Eigenschaften von „%1“ wurden angezeigt.",
                                        L"הוצגו המאפיינים של “%1”."};
inline constexpr Text kCannotShowProperties{L"The system cannot show the properties of “%1”.",
                                            L"Das System kann die Eigenschaften von „%1“ nicht anzeigen.",
                                            L"המערכת אינה יכולה להציג את המאפיינים של “%1”."};
// The number of changes; the latest of them.
inline constexpr CountText kUndoLoss{
    {L"To keep it for undo, 1 older change will be dropped and can no longer be undone, up to “%2”.",
     L"Damit sie rückgängig gemacht werden kann, wird 1 ältere Änderung verworfen, die dann nicht mehr "
     L"rückgängig zu machen ist, bis „%2“.",
     L"כדי שניתן יהיה לבטל את השינוי, שינוי ישן אחד יימחק ולא ניתן יהיה עוד לבטלו, עד “%2”."},
    {L"To keep it for undo, %1 older changes will be dropped and can no longer be undone, up to “%2”.",
     L"Damit sie rückgängig gemacht werden kann, werden %1 ältere Änderungen verworfen, die dann nicht mehr "
     L"rückgängig zu machen sind, bis „%2“.",
     L"כדי שניתן יהיה לבטל את השינוי, %1 שינויים ישנים יימחקו ולא ניתן יהיה עוד לבטלם, עד “%2”."}};
inline constexpr Text kNotRecorded{
    L"Changes are not recorded now: undo cannot bring back what is deleted.",
    L"Änderungen werden zurzeit nicht aufgezeichnet: Gelöschtes kann nicht wiederhergestellt werden.",
    L"השינויים אינם נרשמים כעת: לא ניתן יהיה לשחזר את מה שיימחק."};
inline constexpr Text kUndoBringsBack{L"Undo brings back what was deleted.",
                                      L"Rückgängig stellt Gelöschtes wieder her.",
                                      L"ביטול הפעולה משחזר את מה שנמחק."};

}  // namespace smh::texts
