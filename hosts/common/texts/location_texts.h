// The locations by the titles that location_table.h gives them, and the groups that they stand in.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kLocationGroups[] = {
    {L"Startup folders", L"Autostart-Ordner", L"תיקיות הפעלה"},
    {L"Run keys", L"Run-Schlüssel", L"מפתחות Run"},
    {L"Context menu", L"Kontextmenü", L"תפריט הקשר"},
    {L"Drag and drop", L"Ziehen und Ablegen", L"גרירה ושחרור"},
    {L"Columns", L"Spalten", L"עמודות"},
    {L"Property pages", L"Eigenschaftenseiten", L"דפי מאפיינים"},
    {L"Copy hooks", L"Kopierhaken", L"וווי העתקה"},
    {L"Other extensions", L"Andere Erweiterungen", L"הרחבות אחרות"},
};
inline constexpr Text kLocationTitles[] = {
    {L"Startup folder, this user", L"Autostart-Ordner, dieser Benutzer", L"תיקיית הפעלה, משתמש זה"},
    {L"Startup folder, all users", L"Autostart-Ordner, alle Benutzer", L"תיקיית הפעלה, כל המשתמשים"},
    {L"Run services", L"RunServices", L"RunServices"},
    {L"Run services once", L"RunServicesOnce", L"RunServicesOnce"},
    {L"Run, this user", L"Run, dieser Benutzer", L"מפתח Run, משתמש זה"},
    {L"Run once, this user", L"RunOnce, dieser Benutzer", L"מפתח RunOnce, משתמש זה"},
    {L"Run once setup, this user", L"RunOnce-Setup, dieser Benutzer", L"מפתח RunOnce-Setup, משתמש זה"},
    {L"Run, all users", L"Run, alle Benutzer", L"מפתח Run, כל המשתמשים"},
    {L"Run once, all users", L"RunOnce, alle Benutzer", L"מפתח RunOnce, כל המשתמשים"},
    {L"Run once setup, all users", L"RunOnce-Setup, alle Benutzer", L"מפתח RunOnce-Setup, כל המשתמשים"},
    {L"files", L"Dateien", L"קבצים"},
    {L"files and folders", L"Dateien und Ordner", L"קבצים ותיקיות"},
    {L"folders on disk", L"Ordner auf Datenträgern", L"תיקיות בדיסק"},
    {L"all folders", L"alle Ordner", L"כל התיקיות"},
    {L"folder background", L"Ordnerhintergrund", L"רקע תיקייה"},
    {L"Approved shell extensions", L"Genehmigte Shell-Erweiterungen", L"הרחבות מעטפת מאושרות"},
    {L"Browser helper objects", L"Browser-Hilfsobjekte", L"אובייקטי עזר לדפדפן"},
    {L"URL search hooks, this user", L"URL-Suchhaken, dieser Benutzer", L"וווי חיפוש URL, משתמש זה"},
    {L"URL search hooks, all users", L"URL-Suchhaken, alle Benutzer", L"וווי חיפוש URL, כל המשתמשים"},
};
// The group, and the title that tells nothing without it.
inline constexpr Text kTitleInGroup{L"%1: %2", L"%1: %2", L"%1: %2"};

// An entry's place, by its parts.
inline constexpr Text kPlaceFile{L"File", L"Datei", L"קובץ"};
inline constexpr Text kPlaceRoot{L"Root", L"Wurzel", L"שורש"};
inline constexpr Text kPlaceView{L"View", L"Sicht", L"תצוגה"};
inline constexpr Text kPlaceView64{L"64-bit", L"64-Bit", L"64 סיביות"};
inline constexpr Text kPlaceView32{L"32-bit", L"32-Bit", L"32 סיביות"};
inline constexpr Text kPlaceKey{L"Key", L"Schlüssel", L"מפתח"};
inline constexpr Text kPlaceValue{L"Value", L"Wert", L"ערך"};
inline constexpr Text kPlaceUnnamed{L"(Default)", L"(Standard)", L"(ברירת מחדל)"};

}  // namespace smh::texts
