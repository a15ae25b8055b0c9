// What --help says: of the program, its commands and their options. Names of commands, options and types are
// the same in all languages.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kProgramHelp{L"Lists and manages what Windows starts automatically.",
                                   L"Listet auf und verwaltet, was Windows automatisch startet.",
                                   L"מציג ומנהל את מה ש-Windows מפעיל באופן אוטומטי."};
inline constexpr Text kHelpHelp{L"Show the syntax", L"Die Syntax anzeigen", L"הצגת התחביר"};
inline constexpr Text kVersionHelp{L"Show the version", L"Die Version anzeigen", L"הצגת הגרסה"};
inline constexpr Text kLanguageHelp{L"Speak en, de or he instead of the chosen language",
                                    L"en, de oder he statt der gewählten Sprache sprechen",
                                    L"שימוש ב-en, de או he במקום בשפה שנבחרה"};

// Headings.
inline constexpr Text kUsageHeading{L"Usage", L"Aufruf", L"שימוש"};
inline constexpr Text kOptionsHeading{L"Options", L"Optionen", L"אפשרויות"};
inline constexpr Text kPositionalsHeading{L"Positionals", L"Argumente", L"ארגומנטים"};
inline constexpr Text kSubcommandsHeading{L"Subcommands", L"Befehle", L"פקודות"};
inline constexpr Text kCommandWord{L"SUBCOMMAND", L"BEFEHL", L"פקודה"};
inline constexpr Text kOptionsWord{L"OPTIONS", L"OPTIONEN", L"אפשרויות"};
inline constexpr Text kRequiredWord{L"REQUIRED", L"NÖTIG", L"חובה"};
inline constexpr Text kExcludesWord{L"Excludes", L"Nicht mit", L"לא עם"};

// Commands.
inline constexpr Text kListHelp{L"Show the entries", L"Die Einträge anzeigen", L"הצגת הפריטים"};
inline constexpr Text kShowHelp{L"Show everything known about one entry",
                                L"Alles anzeigen, was über einen Eintrag bekannt ist",
                                L"הצגת כל מה שידוע על פריט אחד"};
inline constexpr Text kEnableHelp{
    L"Make entries start: from the side place, and past Task Manager's switch",
    L"Einträge starten lassen: aus dem Nebenplatz und über den Schalter des Task-Managers hinweg",
    L"הפעלת פריטים: מהמקום הצדדי, ומעבר למתג של מנהל המשימות"};
inline constexpr Text kDisableHelp{L"Move entries to the side place from which enable brings them back",
                                   L"Einträge an den Nebenplatz verschieben, von dem enable sie zurückholt",
                                   L"העברת פריטים למקום הצדדי, שממנו enable מחזיר אותם"};
inline constexpr Text kDeleteHelp{L"Delete entries", L"Einträge löschen", L"מחיקת פריטים"};
inline constexpr Text kAddHelp{L"Add an entry", L"Einen Eintrag hinzufügen", L"הוספת פריט"};
inline constexpr Text kMoveHelp{L"Move entries to another location",
                                L"Einträge an einen anderen Ort verschieben", L"העברת פריטים למיקום אחר"};
inline constexpr Text kChangeHelp{L"Give entries another command", L"Einträgen einen anderen Befehl geben",
                                  L"מתן פקודה אחרת לפריטים"};
inline constexpr Text kExecuteHelp{L"Start an entry's command now",
                                   L"Den Befehl eines Eintrags jetzt ausführen", L"הרצת הפקודה של פריט כעת"};
inline constexpr Text kLocateHelp{L"Print where an entry lives, and show it there",
                                  L"Ausgeben, wo ein Eintrag steht, und ihn dort anzeigen",
                                  L"הדפסת המקום שבו נמצא פריט, והצגתו שם"};
inline constexpr Text kResolveHelp{L"Print the file that a command line starts",
                                   L"Die Datei ausgeben, die eine Befehlszeile startet",
                                   L"הדפסת הקובץ ששורת פקודה מפעילה"};
inline constexpr Text kWatchHelp{L"Print entries as they come, go and change",
                                 L"Einträge ausgeben, wie sie kommen, gehen und sich ändern",
                                 L"הדפסת פריטים כשהם מופיעים, נעלמים ומשתנים"};
inline constexpr Text kSwitchesHelp{
    L"Show Task Manager's switches, and whose they are; --prune takes away those of nobody",
    L"Die Schalter des Task-Managers anzeigen und wessen sie sind; --prune entfernt die von niemandem",
    L"הצגת המתגים של מנהל המשימות ולמי הם שייכים; --prune מסיר את אלה שאינם של איש"};
inline constexpr Text kClientsHelp{L"Show the default programs: mail, media, browser and the like",
                                   L"Die Standardprogramme anzeigen: E-Mail, Medien, Browser und so weiter",
                                   L"הצגת תוכניות ברירת המחדל: דואר, מדיה, דפדפן וכדומה"};
inline constexpr Text kLocationsHelp{L"Show the locations and their entries' numbers",
                                     L"Die Orte und die Zahl ihrer Einträge anzeigen",
                                     L"הצגת המיקומים ומספר הפריטים שלהם"};
inline constexpr Text kCheckpointsHelp{
    L"Show the changes that can be undone, the newest first",
    L"Die Änderungen anzeigen, die rückgängig zu machen sind, die neueste zuerst",
    L"הצגת השינויים שניתן לבטל, החדש ביותר תחילה"};
inline constexpr Text kShowCheckpointHelp{L"Show one of them with its parts",
                                          L"Eine davon mit ihren Teilen anzeigen", L"הצגת אחד מהם עם חלקיו"};
inline constexpr Text kPruneHelp{L"Forget some of them: they cannot be undone any more",
                                 L"Einige davon vergessen: Sie sind nicht mehr rückgängig zu machen",
                                 L"שכחת חלק מהם: לא ניתן עוד לבטל אותם"};
inline constexpr Text kUndoHelp{L"Take a checkpoint back, the newest one without ID",
                                L"Einen Prüfpunkt zurücknehmen, ohne ID den neuesten",
                                L"ביטול נקודת ביקורת, ללא ID – החדשה ביותר"};
inline constexpr Text kRedoHelp{
    L"Make an undone checkpoint's changes again, the last undo's without ID",
    L"Die Änderungen eines zurückgenommenen Prüfpunkts wiederholen, ohne ID die der "
    L"letzten Rücknahme",
    L"ביצוע חוזר של נקודת ביקורת שבוטלה, ללא ID – של הביטול האחרון"};
inline constexpr Text kSnapshotHelp{L"Write the state of all entries to a file",
                                    L"Den Stand aller Einträge in eine Datei schreiben",
                                    L"כתיבת המצב של כל הפריטים לקובץ"};
inline constexpr Text kCompareHelp{
    L"Show what differs from a snapshot, or between two",
    L"Anzeigen, was von einem gespeicherten Stand oder zwischen zweien abweicht",
    L"הצגת מה ששונה ממצב שמור, או בין שניים"};
inline constexpr Text kApplyHelp{L"Bring all entries to the state in a snapshot",
                                 L"Alle Einträge in den gespeicherten Stand bringen",
                                 L"הבאת כל הפריטים למצב השמור"};
inline constexpr Text kDscHelp{L"Serve configuration engines", L"Konfigurationsprogrammen dienen",
                               L"שירות למנועי תצורה"};
inline constexpr Text kDscGetHelp{L"Print the state of an entry", L"Den Stand eines Eintrags ausgeben",
                                  L"הדפסת המצב של פריט"};
inline constexpr Text kDscSetHelp{L"Make the state of an entry", L"Den Stand eines Eintrags herstellen",
                                  L"הבאת פריט למצב הרצוי"};
inline constexpr Text kDscTestHelp{L"Print the state of an entry, and whether it is the wanted one",
                                   L"Den Stand eines Eintrags ausgeben und ob er der gewünschte ist",
                                   L"הדפסת המצב של פריט, והאם הוא המצב הרצוי"};
inline constexpr Text kDscExportHelp{L"Print the states of all entries",
                                     L"Die Stände aller Einträge ausgeben", L"הדפסת המצבים של כל הפריטים"};
inline constexpr Text kDscSchemaHelp{L"Print the JSON schema of an entry's state",
                                     L"Das JSON-Schema des Standes eines Eintrags ausgeben",
                                     L"הדפסת סכמת JSON של המצב של פריט"};
inline constexpr Text kLogHelp{L"Print the path of the library's log file",
                               L"Den Pfad der Protokolldatei der Bibliothek ausgeben",
                               L"הדפסת הנתיב של קובץ הרישום של הספרייה"};
inline constexpr Text kCompletionHelp{L"Print a script that completes commands and options in a shell",
                                      L"Ein Skript ausgeben, das Befehle und Optionen in einer Shell ergänzt",
                                      L"הדפסת סקריפט שמשלים פקודות ואפשרויות במעטפת"};
inline constexpr Text kPowerShellHelp{L"For PowerShell, to be put into the profile",
                                      L"Für PowerShell, zum Einfügen in das Profil",
                                      L"עבור PowerShell, להוספה לפרופיל"};
inline constexpr Text kHelpCommandHelp{L"Show the syntax of a command", L"Die Syntax eines Befehls anzeigen",
                                       L"הצגת התחביר של פקודה"};
inline constexpr Text kWindowsHelp{L"Print the application windows of the desktop",
                                   L"Die Anwendungsfenster des Desktops ausgeben",
                                   L"הדפסת חלונות היישומים של שולחן העבודה"};

}  // namespace smh::texts
