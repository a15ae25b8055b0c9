// What Windows does with the entries of a location, and of several.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kShownLine{L"Shown", L"Angezeigt", L"מוצג"};
inline constexpr Text kAllEntriesShown{L"All entries", L"Alle Einträge", L"כל הפריטים"};
inline constexpr Text kWhatItIsLine{L"What it is", L"Was es ist", L"מה זה"};
inline constexpr Text kStoredInLine{L"Stored in", L"Gespeichert in", L"מאוחסן ב"};

inline constexpr Text kUserFolder{
    L"Windows starts the programs and shortcuts in this folder when this user logs on.",
    L"Windows startet die Programme und Verknüpfungen in diesem Ordner, wenn sich dieser Benutzer anmeldet.",
    L"Windows מפעיל את התוכניות וקיצורי הדרך שבתיקייה זו כאשר משתמש זה מתחבר."};
inline constexpr Text kCommonFolder{
    L"Windows starts the programs and shortcuts in this folder when any user logs on.",
    L"Windows startet die Programme und Verknüpfungen in diesem Ordner, wenn sich irgendein Benutzer "
    L"anmeldet.",
    L"Windows מפעיל את התוכניות וקיצורי הדרך שבתיקייה זו כאשר משתמש כלשהו מתחבר."};
inline constexpr Text kBothFolders{
    L"Windows starts the programs and shortcuts in these folders when somebody logs on.",
    L"Windows startet die Programme und Verknüpfungen in diesen Ordnern, wenn sich jemand anmeldet.",
    L"Windows מפעיל את התוכניות וקיצורי הדרך שבתיקיות אלה כאשר מישהו מתחבר."};
inline constexpr Text kRunServices{
    L"Only Windows 95 to Me ran these commands; no later Windows does.",
    L"Nur Windows 95 bis Me führten diese Befehle aus; kein späteres Windows tut es.",
    L"רק Windows 95 עד Me הריצו פקודות אלה; אף Windows מאוחר יותר אינו מריץ אותן."};
inline constexpr Text kUserRun{L"Windows runs these commands whenever this user logs on.",
                               L"Windows führt diese Befehle bei jeder Anmeldung dieses Benutzers aus.",
                               L"Windows מריץ פקודות אלה בכל פעם שמשתמש זה מתחבר."};
inline constexpr Text kUserRunOnce{
    L"Windows runs these commands when this user logs on next, and then takes them off the list.",
    L"Windows führt diese Befehle bei der nächsten Anmeldung dieses Benutzers aus und streicht sie dann von "
    L"der "
    L"Liste.",
    L"Windows מריץ פקודות אלה בהתחברות הבאה של משתמש זה, ואז מסיר אותן מהרשימה."};
inline constexpr Text kSetup{L"Only a set-up that is under way runs these commands.",
                             L"Nur eine laufende Einrichtung von Windows führt diese Befehle aus.",
                             L"רק התקנה שנמצאת בעיצומה מריצה פקודות אלה."};
inline constexpr Text kCommonRun{
    L"Windows runs these commands whenever any user logs on.",
    L"Windows führt diese Befehle bei jeder Anmeldung irgendeines Benutzers aus.",
    L"Windows מריץ פקודות אלה בכל פעם שמשתמש כלשהו מתחבר."};
inline constexpr Text kCommonRunOnce{
    L"Windows runs these commands at the next logon, and then takes them off the list.",
    L"Windows führt diese Befehle bei der nächsten Anmeldung aus und streicht sie dann von der Liste.",
    L"Windows מריץ פקודות אלה בהתחברות הבאה, ואז מסיר אותן מהרשימה."};
inline constexpr Text kRunKeys{L"Lists of commands that Windows runs when somebody logs on.",
                               L"Listen von Befehlen, die Windows ausführt, wenn sich jemand anmeldet.",
                               L"רשימות של פקודות ש-Windows מריץ כאשר מישהו מתחבר."};
inline constexpr Text kContextMenus{
    L"The file explorer loads these extensions to add commands to the context menu.",
    L"Der Datei-Explorer lädt diese Erweiterungen, um dem Kontextmenü Befehle hinzuzufügen.",
    L"סייר הקבצים טוען הרחבות אלה כדי להוסיף פקודות לתפריט ההקשר."};
inline constexpr Text kDragAndDrop{
    L"The file explorer loads these extensions when something is dragged with the right button.",
    L"Der Datei-Explorer lädt diese Erweiterungen, wenn etwas mit der rechten Maustaste gezogen wird.",
    L"סייר הקבצים טוען הרחבות אלה כאשר משהו נגרר עם הלחצן הימני."};
inline constexpr Text kExplorerColumns{
    L"Only Windows XP and before loaded these extensions, to fill columns of the file explorer.",
    L"Nur Windows XP und frühere luden diese Erweiterungen, um Spalten des Datei-Explorers zu füllen.",
    L"רק Windows XP וקודמיו טענו הרחבות אלה, כדי למלא עמודות בסייר הקבצים."};
inline constexpr Text kPropertyPages{
    L"The system loads these extensions to add pages to the properties of files and folders.",
    L"Das System lädt diese Erweiterungen, um den Eigenschaften von Dateien und Ordnern Seiten hinzuzufügen.",
    L"המערכת טוענת הרחבות אלה כדי להוסיף דפים למאפיינים של קבצים ותיקיות."};
inline constexpr Text kCopyHooks{
    L"The file explorer asks these extensions before a folder is moved, copied or deleted.",
    L"Der Datei-Explorer fragt diese Erweiterungen, bevor ein Ordner verschoben, kopiert oder gelöscht wird.",
    L"סייר הקבצים שואל הרחבות אלה לפני שתיקייה מועברת, מועתקת או נמחקת."};
inline constexpr Text kApprovedExtensions{
    L"These extensions of the file explorer are registered as approved; what loads them stands elsewhere.",
    L"Diese Erweiterungen des Datei-Explorers sind als genehmigt eingetragen; was sie lädt, steht anderswo.",
    L"הרחבות אלה של סייר הקבצים רשומות כמאושרות; מה שטוען אותן נמצא במקום אחר."};
inline constexpr Text kBrowserHelpers{L"Internet Explorer loads these add-ons.",
                                      L"Der Internet Explorer lädt diese Add-Ons.",
                                      L"Internet Explorer טוען תוספים אלה."};
inline constexpr Text kSearchHooks{
    L"Internet Explorer asks these add-ons about an address that it does not understand.",
    L"Der Internet Explorer fragt diese Add-Ons nach einer Adresse, die er nicht versteht.",
    L"Internet Explorer שואל תוספים אלה על כתובת שאינו מבין."};
inline constexpr Text kOtherExtensions{
    L"Extensions of the file explorer and add-ons of Internet Explorer.",
    L"Erweiterungen des Datei-Explorers und Add-Ons des Internet Explorers.",
    L"הרחבות של סייר הקבצים ותוספים של Internet Explorer."};
inline constexpr Text kEverything{
    L"Everything that Windows starts or loads by itself from the places that are shown.",
    L"Alles, was Windows von selbst aus den angezeigten Orten startet oder lädt.",
    L"כל מה ש-Windows מפעיל או טוען מעצמו מהמקומות המוצגים."};

}  // namespace smh::texts
