// The filters of the list, and what it says when it shows nothing.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kNotStarting{L"Not starting", L"Nicht startend", L"לא מופעלים"};
inline constexpr Text kNotStartingTip{L"Only entries that Windows does not start",
                                      L"Nur Einträge, die Windows nicht startet",
                                      L"רק פריטים ש-Windows אינו מפעיל"};
inline constexpr Text kMissing{L"Missing", L"Fehlend", L"חסרים"};
inline constexpr Text kMissingTip{L"Only entries whose file is missing or out of reach",
                                  L"Nur Einträge, deren Datei fehlt oder nicht erreichbar ist",
                                  L"רק פריטים שהקובץ שלהם חסר או שאין אליו גישה"};
inline constexpr Text kUnsigned{L"Unsigned or broken", L"Unsigniert oder ungültig", L"לא חתומים או פגומים"};
inline constexpr Text kUnsignedTip{
    L"Only entries whose file is not signed, or whose signature does not hold",
    L"Nur Einträge, deren Datei nicht signiert oder deren Signatur nicht gültig ist",
    L"רק פריטים שהקובץ שלהם אינו חתום, או שהחתימה שלו אינה תקפה"};
inline constexpr Text kRiskyFilter{L"Risky", L"Riskant", L"מסוכנים"};
inline constexpr Text kRiskyTip{
    L"Only entries that are a danger: risky, or with a broken or withdrawn signature",
    L"Nur Einträge, die eine Gefahr sind: riskant oder mit ungültiger oder widerrufener Signatur",
    L"רק פריטים מסוכנים: רשומים כמסוכנים, או בעלי חתימה פגומה או שבוטלה"};
inline constexpr Text kHideVerified{L"Hide verified", L"Geprüfte ausblenden", L"הסתר מאומתים"};
inline constexpr Text kHideVerifiedTip{
    L"Without entries that are signed by a maker who is known to be trusted",
    L"Ohne Einträge, die von einem als vertrauenswürdig bekannten Hersteller signiert sind",
    L"ללא פריטים החתומים על ידי יצרן הידוע כמהימן"};

inline constexpr Text kQuoted{L"“%1”", L"„%1“", L"“%1”"};
inline constexpr Text kListComma{L"%1, %2", L"%1, %2", L"%1, %2"};
inline constexpr Text kListAnd{L"%1 and %2", L"%1 und %2", L"%1 וכן %2"};

// The number; the filters; the search.
inline constexpr CountText kHidden{
    {L"1 entry is hidden by %2.", L"1 Eintrag ist ausgeblendet durch %2.", L"פריט אחד מוסתר על ידי %2."},
    {L"%1 entries are hidden by %2.", L"%1 Einträge sind ausgeblendet durch %2.",
     L"%1 פריטים מוסתרים על ידי %2."}};
inline constexpr CountText kHiddenMatch{
    {L"1 entry that matches %3 is hidden by %2.", L"1 Eintrag, der zu %3 passt, ist ausgeblendet durch %2.",
     L"פריט אחד התואם ל-%3 מוסתר על ידי %2."},
    {L"%1 entries that match %3 are hidden by %2.",
     L"%1 Einträge, die zu %3 passen, sind ausgeblendet durch %2.",
     L"%1 פריטים התואמים ל-%3 מוסתרים על ידי %2."}};
inline constexpr Text kShowAllEntries{L"Show all entries", L"Alle Einträge anzeigen", L"הצג את כל הפריטים"};
inline constexpr Text kNoEntry{L"There is no entry.", L"Es gibt keinen Eintrag.", L"אין פריטים."};
inline constexpr Text kNoEntryIn{L"There is no entry in %1.", L"Es gibt keinen Eintrag in %1.",
                                 L"אין פריטים ב-%1."};
inline constexpr Text kSameAsSaved{L"Nothing differs from the saved state.",
                                   L"Nichts weicht vom gespeicherten Stand ab.", L"אין הבדל מהמצב השמור."};
inline constexpr Text kSameAsSavedIn{L"Nothing in %1 differs from the saved state.",
                                     L"Nichts in %1 weicht vom gespeicherten Stand ab.",
                                     L"אין ב-%1 הבדל מהמצב השמור."};
inline constexpr Text kShowSame{L"Show what is the same", L"Gleiches anzeigen", L"הצג גם ללא הבדל"};
inline constexpr Text kStopComparing{L"Stop comparing", L"Vergleich beenden", L"הפסק השוואה"};
inline constexpr Text kOnlyDifferences{L"Only differences", L"Nur Unterschiede", L"הבדלים בלבד"};
inline constexpr Text kFiltersOff{L"Switch the filters off", L"Filter ausschalten", L"כבה את המסננים"};
inline constexpr Text kNoMatch{L"No entry matches %1.", L"Kein Eintrag passt zu %1.",
                               L"אין פריט התואם ל-%1."};
inline constexpr Text kNoMatchIn{L"No entry in %2 matches %1.", L"Kein Eintrag in %2 passt zu %1.",
                                 L"אין ב-%2 פריט התואם ל-%1."};
inline constexpr Text kSearchEverywhere{L"Search everywhere (%1)", L"Überall suchen (%1)",
                                        L"חפש בכל מקום (%1)"};
// What is said before; the number.
inline constexpr CountText kElsewhere{
    {L"%1 Elsewhere there is 1.", L"%1 Anderswo gibt es 1.", L"%1 במקומות אחרים יש אחד."},
    {L"%1 Elsewhere there are %2.", L"%1 Anderswo gibt es %2.", L"%1 במקומות אחרים יש %2."}};

// A saved state, and how much differs.
inline constexpr Text kComparedWith{L"Compared with %1: %2", L"Verglichen mit %1: %2", L"בהשוואה אל %1: %2"};

}  // namespace smh::texts
