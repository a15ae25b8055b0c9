// What --help says of options and arguments.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kOneItemHelp{L"Name or id of an entry, or a caption that only one entry has",
                                   L"Name oder ID eines Eintrags, oder ein Titel, den nur ein Eintrag hat",
                                   L"שם או מזהה של פריט, או כותרת שיש רק לפריט אחד"};
inline constexpr Text kItemsHelp{
    L"Names, captions or ids of entries, or patterns with * and ?; without any, what filters leave",
    L"Namen, Titel oder IDs von Einträgen, oder Muster mit * und ?; ohne sie, was Filter übrig lassen",
    L"שמות, כותרות או מזהים של פריטים, או תבניות עם * ו-?; בלעדיהם – מה שהמסננים משאירים"};
inline constexpr Text kCommandLineHelp{L"A command line, as one argument",
                                       L"Eine Befehlszeile, als ein Argument", L"שורת פקודה, כארגומנט אחד"};
inline constexpr Text kIdHelp{L"A checkpoint's number, see the command checkpoints",
                              L"Die Nummer eines Prüfpunkts, siehe den Befehl checkpoints",
                              L"מספר של נקודת ביקורת, ראו את הפקודה checkpoints"};
inline constexpr Text kIdsHelp{L"Checkpoints' numbers, see the command checkpoints",
                               L"Nummern von Prüfpunkten, siehe den Befehl checkpoints",
                               L"מספרים של נקודות ביקורת, ראו את הפקודה checkpoints"};
inline constexpr Text kFileHelp{L"A snapshot", L"Ein gespeicherter Stand", L"מצב שמור"};
inline constexpr Text kFile2Help{L"A later one, in place of this machine",
                                 L"Ein späterer, anstelle dieses Computers", L"מאוחר יותר, במקום מחשב זה"};
inline constexpr Text kInputHelp{L"Properties of an entry", L"Eigenschaften eines Eintrags",
                                 L"מאפיינים של פריט"};
inline constexpr Text kAddPathHelp{L"Also show the program of that path",
                                   L"Auch das Programm dieses Pfades anzeigen",
                                   L"הצגה גם של התוכנית שבנתיב זה"};
inline constexpr Text kLocationHelp{L"A location's name, see the command locations",
                                    L"Der Name eines Ortes, siehe den Befehl locations",
                                    L"שם של מיקום, ראו את הפקודה locations"};
inline constexpr Text kEnabledHelp{L"Only enabled entries", L"Nur aktivierte Einträge", L"רק פריטים מופעלים"};
inline constexpr Text kDisabledHelp{L"Only disabled entries", L"Nur deaktivierte Einträge",
                                    L"רק פריטים מושבתים"};
inline constexpr Text kStartsHelp{L"Only those that Windows starts", L"Nur die, die Windows startet",
                                  L"רק אלה ש-Windows מפעיל"};
inline constexpr Text kNotStartingHelp{L"Only those that Windows does not start, for any reason",
                                       L"Nur die, die Windows aus irgendeinem Grund nicht startet",
                                       L"רק אלה ש-Windows אינו מפעיל, מסיבה כלשהי"};
inline constexpr Text kRatingHelp{L"Only trusted, unknown or risky ones",
                                  L"Nur solche mit der Einstufung trusted, unknown oder risky",
                                  L"רק אלה בדירוג trusted, unknown או risky"};
inline constexpr Text kCompanyHelp{L"Only those with that in their company's name",
                                   L"Nur die mit diesem Text im Namen ihrer Firma",
                                   L"רק אלה עם טקסט זה בשם החברה שלהם"};
inline constexpr Text kMissingHelp{L"Only those whose file is missing", L"Nur die, deren Datei fehlt",
                                   L"רק אלה שהקובץ שלהם חסר"};
inline constexpr Text kUnreachableHelp{
    L"Only those whose file's share or drive does not answer",
    L"Nur die, deren Datei auf einer Freigabe oder einem Laufwerk liegt, das nicht antwortet",
    L"רק אלה שהשיתוף או הכונן של הקובץ שלהם אינו מגיב"};
inline constexpr Text kMatchHelp{L"Only those with that in any column",
                                 L"Nur die mit diesem Text in irgendeiner Spalte",
                                 L"רק אלה עם טקסט זה בעמודה כלשהי"};
inline constexpr Text kSinceHelp{
    L"Only those whose file was written since: 2024-05-31T18:00, or 36h, 7d",
    L"Nur die, deren Datei seitdem geschrieben wurde: 2024-05-31T18:00, oder 36h, 7d",
    L"רק אלה שהקובץ שלהם נכתב מאז: 2024-05-31T18:00, או 36h, 7d"};
inline constexpr Text kFromHelp{L"Only those that the file names, one a line; - is standard input",
                                L"Nur die, die die Datei nennt, einer je Zeile; - ist die Standardeingabe",
                                L"רק אלה שהקובץ מציין, אחד בכל שורה; - הוא הקלט התקני"};
inline constexpr Text kVerifyHelp{L"Also say who signed the files, and whether that is proved",
                                  L"Auch sagen, wer die Dateien signiert hat und ob das bewiesen ist",
                                  L"ציון גם מי חתם על הקבצים, והאם הדבר מוכח"};
inline constexpr Text kAllHelp{L"All locations, not only the usual ones",
                               L"Alle Orte, nicht nur die üblichen", L"כל המיקומים, לא רק הרגילים"};
inline constexpr Text kLimitHelp{L"At most so many", L"Höchstens so viele", L"לכל היותר מספר זה"};
inline constexpr Text kSecondsHelp{L"End after that time", L"Nach dieser Zeit enden", L"סיום לאחר זמן זה"};
inline constexpr Text kJsonHelp{L"As JSON", L"Als JSON", L"בתבנית JSON"};
inline constexpr Text kCsvHelp{L"As CSV", L"Als CSV", L"בתבנית CSV"};
inline constexpr Text kColumnsHelp{L"Only these keys, in this order, separated by commas",
                                   L"Nur diese Schlüssel, in dieser Reihenfolge, durch Kommas getrennt",
                                   L"רק מפתחות אלה, בסדר זה, מופרדים בפסיקים"};
inline constexpr Text kOutputHelp{L"Into that file instead of standard output",
                                  L"In diese Datei statt in die Standardausgabe",
                                  L"אל קובץ זה במקום אל הפלט התקני"};
inline constexpr Text kQuietHelp{L"Only tell of failures", L"Nur Fehler melden", L"הודעה על כשלים בלבד"};
inline constexpr Text kNameHelp{L"Name of the new entry", L"Name des neuen Eintrags", L"שם הפריט החדש"};
inline constexpr Text kCommandHelp{L"A command line", L"Eine Befehlszeile", L"שורת פקודה"};
inline constexpr Text kTargetHelp{L"A location's name", L"Der Name eines Ortes", L"שם של מיקום"};
inline constexpr Text kShowStepsHelp{L"Only say what it would do, step by step",
                                     L"Nur sagen, was geschehen würde, Schritt für Schritt",
                                     L"רק ציון מה ייעשה, שלב אחר שלב"};
inline constexpr Text kForceHelp{L"Over later changes too, and say what was overwritten",
                                 L"Auch über spätere Änderungen hinweg, und sagen, was überschrieben wurde",
                                 L"גם על פני שינויים מאוחרים יותר, תוך ציון מה נדרס"};
inline constexpr Text kOnlyHelp{L"Only this part: its number, or the entry that its title names",
                                L"Nur dieser Teil: seine Nummer, oder der Eintrag, den sein Titel nennt",
                                L"רק חלק זה: המספר שלו, או הפריט שהכותרת שלו מציינת"};
inline constexpr Text kKeepHelp{L"All but the newest so many", L"Alle außer so vielen der neuesten",
                                L"הכול מלבד מספר זה של החדשות ביותר"};
inline constexpr Text kDaysHelp{L"Those that are older than so many days",
                                L"Die, die älter als so viele Tage sind", L"אלה שישנות ממספר ימים זה"};
inline constexpr Text kPruneSwitchHelp{L"Take away the switches that belong to no entry",
                                       L"Die Schalter entfernen, die zu keinem Eintrag gehören",
                                       L"הסרת המתגים שאינם שייכים לאף פריט"};
inline constexpr Text kLikeTaskManagerHelp{L"Leave them there, and use Task Manager's switch",
                                           L"Sie dort lassen und den Schalter des Task-Managers benutzen",
                                           L"השארתם במקומם ושימוש במתג של מנהל המשימות"};
inline constexpr Text kDryRunHelp{L"Only say what would be done", L"Nur sagen, was geschehen würde",
                                  L"רק ציון מה ייעשה"};
inline constexpr Text kDeleteOthersHelp{L"Delete the entries that it lacks",
                                        L"Die Einträge löschen, die ihm fehlen", L"מחיקת הפריטים שאין בו"};
inline constexpr Text kYesHelp{L"Without a question", L"Ohne Rückfrage", L"ללא שאלה"};

}  // namespace smh::texts
