// What the window says of files that are opened, searched for or copied for an entry.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kCannotOpen{L"Cannot open %1: %2", L"%1 kann nicht geöffnet werden: %2",
                                  L"לא ניתן לפתוח את %1: %2"};
inline constexpr Text kProgramOutOfReach{
    L"The file of %1 is on a share or drive that does not answer now.",
    L"Die Datei von %1 liegt auf einer Freigabe oder einem Laufwerk, das "
    L"jetzt nicht antwortet.",
    L"הקובץ של %1 נמצא בשיתוף או בכונן שאינו מגיב כעת."};
inline constexpr Text kOpenedFolder{L"Opened the folder of %1.", L"Der Ordner von %1 wurde geöffnet.",
                                    L"התיקייה של %1 נפתחה."};
inline constexpr Text kFileAndFolderMissing{L"The file of %1 is missing, and so is its folder.",
                                            L"Die Datei von %1 fehlt, und ihr Ordner auch.",
                                            L"הקובץ של %1 חסר, וכך גם התיקייה שלו."};
inline constexpr Text kFileMissingOpened{L"The file of %1 is missing. Opened %2",
                                         L"Die Datei von %1 fehlt. Geöffnet wurde %2",
                                         L"הקובץ של %1 חסר. נפתח %2"};
inline constexpr Text kNoFileKnown{L"No file of %1 is known.", L"Von %1 ist keine Datei bekannt.",
                                   L"לא ידוע קובץ של %1."};
inline constexpr Text kSearchedWeb{L"Searched the web for %1", L"Im Web wurde gesucht nach %1",
                                   L"בוצע חיפוש באינטרנט: %1"};
inline constexpr Text kReadingFile{L"Reading the file of %1…", L"Die Datei von %1 wird gelesen…",
                                   L"קריאת הקובץ של %1…"};
inline constexpr Text kNothingCopied{L"Nothing was copied: no file can be read.",
                                     L"Nichts wurde kopiert: Keine Datei ist lesbar.",
                                     L"דבר לא הועתק: לא ניתן לקרוא אף קובץ."};
inline constexpr Text kClipboardBusy{L"Cannot copy: another program keeps the clipboard open.",
                                     L"Kopieren nicht möglich: Ein anderes Programm hält die Zwischenablage "
                                     L"offen.",
                                     L"לא ניתן להעתיק: תוכנית אחרת מחזיקה את הלוח פתוח."};

// What was copied: of one entry, of several, and of some out of several.
struct CopyWords {
  Text one;
  Text many;
  Text some;
};
inline constexpr CopyWords kCopiedCommands{
    {L"Copied the command.", L"Der Befehl wurde kopiert.", L"הפקודה הועתקה."},
    {L"Copied %1 commands.", L"%1 Befehle wurden kopiert.", L"%1 פקודות הועתקו."},
    {L"Copied %1 of %2 commands.", L"%1 von %2 Befehlen wurden kopiert.", L"%1 מתוך %2 פקודות הועתקו."}};
inline constexpr CopyWords kCopiedPaths{
    {L"Copied the path.", L"Der Pfad wurde kopiert.", L"הנתיב הועתק."},
    {L"Copied %1 paths.", L"%1 Pfade wurden kopiert.", L"%1 נתיבים הועתקו."},
    {L"Copied %1 of %2 paths.", L"%1 von %2 Pfaden wurden kopiert.", L"%1 מתוך %2 נתיבים הועתקו."}};
inline constexpr CopyWords kCopiedHashes{
    {L"Copied the SHA-256.", L"Der SHA-256-Wert wurde kopiert.", L"ערך SHA-256 הועתק."},
    {L"Copied %1 SHA-256 sums.", L"%1 SHA-256-Werte wurden kopiert.", L"%1 ערכי SHA-256 הועתקו."},
    {L"Copied %1 of %2 SHA-256 sums.", L"%1 von %2 SHA-256-Werten wurden kopiert.",
     L"%1 מתוך %2 ערכי SHA-256 הועתקו."}};

}  // namespace smh::texts
