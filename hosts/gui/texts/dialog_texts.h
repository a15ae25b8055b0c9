// What the dialogs say: captions, labels and buttons, and the titles and kinds of files of the system's
// dialogs.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kCancel{L"Cancel", L"Abbrechen", L"ביטול"};
inline constexpr Text kClose{L"Close", L"Schließen", L"סגירה"};
inline constexpr Text kOk{L"OK", L"OK", L"אישור"};

// A new entry.
inline constexpr Text kAddCaption{L"Add an entry", L"Eintrag hinzufügen", L"הוספת פריט"};
inline constexpr Text kAddLocation{L"&Location:", L"&Ort:", L"&מיקום:"};
inline constexpr Text kAddName{L"&Name:", L"&Name:", L"&שם:"};
inline constexpr Text kAddCommand{L"&Command:", L"&Befehl:", L"&פקודה:"};
inline constexpr Text kBrowse{L"&Browse...", L"&Durchsuchen...", L"&עיון..."};
inline constexpr Text kAddVerb{L"Add", L"Hinzufügen", L"הוספה"};

// Another location, another command.
inline constexpr Text kMoveCaption{L"Move to another location", L"An einen anderen Ort verschieben",
                                   L"העברה למיקום אחר"};
inline constexpr Text kMoveVerb{L"Move", L"Verschieben", L"העברה"};
inline constexpr Text kCommandCaption{L"Change the command", L"Befehl ändern", L"שינוי הפקודה"};
inline constexpr Text kCommandVerb{L"Change", L"Ändern", L"שינוי"};

inline constexpr Text kKeysCaption{L"Keys", L"Tasten", L"מקשים"};

// The columns of the list.
inline constexpr Text kColumnsCaption{L"Columns of the list", L"Spalten der Liste", L"עמודות הרשימה"};
inline constexpr Text kColumnsLabel{L"&Shown columns, from left to right:",
                                    L"An&gezeigte Spalten, von links nach rechts:",
                                    L"העמודות ה&מוצגות, מימין לשמאל:"};
inline constexpr Text kColumnsUp{L"Move &up", L"Nach &oben", L"ה&עלאה"};
inline constexpr Text kColumnsDown{L"Move &down", L"Nach &unten", L"ה&ורדה"};
inline constexpr Text kColumnsReset{L"&Reset", L"&Zurücksetzen", L"&איפוס"};

inline constexpr Text kAboutCaption{L"About Startup Manager", L"Info über Startup Manager",
                                    L"אודות Startup Manager"};
inline constexpr Text kAboutText{
    L"Startup Manager 1.0\n\nShows what Windows starts by itself, and lets you switch it off.\n"
    L"Nothing is lost: what you change can be taken back.",
    L"Startup Manager 1.0\n\nZeigt, was Windows von selbst startet, und lässt Sie es ausschalten.\n"
    L"Nichts geht verloren: Was Sie ändern, lässt sich rückgängig machen.",
    L"Startup Manager 1.0\n\nמציג מה מופעל אוטומטית ב-Windows, ומאפשר לכבות זאת.\n"
    L"דבר אינו אובד: כל שינוי ניתן לביטול."};

// Another language.
inline constexpr Text kLanguageText{L"The language changes at the next start of Startup Manager.",
                                    L"Die Sprache ändert sich mit dem nächsten Start von Startup Manager.",
                                    L"השפה תשתנה בהפעלה הבאה של Startup Manager."};
inline constexpr Text kLanguageVerb{L"Restart now", L"Jetzt neu starten", L"הפעלה מחדש כעת"};
inline constexpr Text kCannotRestart{L"Startup Manager cannot be started again: %1",
                                     L"Startup Manager kann nicht neu gestartet werden: %1",
                                     L"אי אפשר להפעיל מחדש את Startup Manager: %1"};

// Files.
inline constexpr Text kFilesPrograms{L"Programs", L"Programme", L"תוכניות"};
inline constexpr Text kFilesAll{L"All files", L"Alle Dateien", L"כל הקבצים"};
inline constexpr Text kFilesCsv{L"CSV file", L"CSV-Datei", L"קובץ CSV"};
inline constexpr Text kFilesJson{L"JSON file", L"JSON-Datei", L"קובץ JSON"};
inline constexpr Text kFilesState{L"Saved state", L"Gespeicherter Stand", L"מצב שמור"};
inline constexpr Text kExportName{L"startup entries", L"Startprogramme", L"פריטי הפעלה"};
inline constexpr Text kSaveStateTitle{L"Save the state of all entries", L"Stand aller Einträge speichern",
                                      L"שמירת המצב של כל הפריטים"};
inline constexpr Text kCompareStateTitle{L"Compare with a saved state",
                                         L"Mit einem gespeicherten Stand vergleichen", L"השוואה למצב שמור"};

// What was given for `--language`.
inline constexpr Text kNoSuchLanguage{L"--language takes en, de or he, not “%1”.",
                                      L"--language nimmt en, de oder he an, nicht „%1“.",
                                      L"--language מקבל en, de או he, ולא “%1”."};

}  // namespace smh::texts
