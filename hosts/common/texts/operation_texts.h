// What is said of changes: what became of one, why it was not made, and its steps.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// What a change is called. `many`, `some` and `one` are titles of actions: by their number, of
// several, and by an entry's name; the journal has them in English.
struct OperationTexts {
  Text cannot;   // the entry; why, a sentence with its end
  Text done;     // the entry
  Text preview;  // the entry; its steps follow
  Text many;
  Text some;
  Text one;
};

inline constexpr OperationTexts kEnableTexts{
    {L"Cannot enable %1: %2", L"Aktivieren nicht möglich, %1: %2", L"לא ניתן להפעיל את %1: %2"},
    {L"Enabled %1", L"Aktiviert: %1", L"הופעל: %1"},
    {L"Enable %1:", L"Aktivieren, %1:", L"הפעלה, %1:"},
    {L"Enabling %1 entries", L"Aktivieren von %1 Einträgen", L"הפעלה של %1 פריטים"},
    {L"Enabling entries", L"Aktivieren von Einträgen", L"הפעלת פריטים"},
    {L"Enabling %1", L"Aktivieren: %1", L"הפעלה: %1"}};
inline constexpr OperationTexts kDisableTexts{
    {L"Cannot disable %1: %2", L"Deaktivieren nicht möglich, %1: %2", L"לא ניתן להשבית את %1: %2"},
    {L"Disabled %1", L"Deaktiviert: %1", L"הושבת: %1"},
    {L"Disable %1:", L"Deaktivieren, %1:", L"השבתה, %1:"},
    {L"Disabling %1 entries", L"Deaktivieren von %1 Einträgen", L"השבתה של %1 פריטים"},
    {L"Disabling entries", L"Deaktivieren von Einträgen", L"השבתת פריטים"},
    {L"Disabling %1", L"Deaktivieren: %1", L"השבתה: %1"}};
inline constexpr OperationTexts kDeleteTexts{
    {L"Cannot delete %1: %2", L"Löschen nicht möglich, %1: %2", L"לא ניתן למחוק את %1: %2"},
    {L"Deleted %1", L"Gelöscht: %1", L"נמחק: %1"},
    {L"Delete %1:", L"Löschen, %1:", L"מחיקה, %1:"},
    {L"Deleting %1 entries", L"Löschen von %1 Einträgen", L"מחיקה של %1 פריטים"},
    {L"Deleting entries", L"Löschen von Einträgen", L"מחיקת פריטים"},
    {L"Deleting %1", L"Löschen: %1", L"מחיקה: %1"}};
inline constexpr OperationTexts kAddTexts{
    {L"Cannot add %1: %2", L"Hinzufügen nicht möglich, %1: %2", L"לא ניתן להוסיף את %1: %2"},
    {L"Added %1", L"Hinzugefügt: %1", L"נוסף: %1"},
    {L"Add %1:", L"Hinzufügen, %1:", L"הוספה, %1:"},
    {L"Adding %1 entries", L"Hinzufügen von %1 Einträgen", L"הוספה של %1 פריטים"},
    {L"Adding entries", L"Hinzufügen von Einträgen", L"הוספת פריטים"},
    {L"Adding %1", L"Hinzufügen: %1", L"הוספה: %1"}};
inline constexpr OperationTexts kMoveTexts{
    {L"Cannot move %1: %2", L"Verschieben nicht möglich, %1: %2", L"לא ניתן להעביר את %1: %2"},
    {L"Moved %1", L"Verschoben: %1", L"הועבר: %1"},
    {L"Move %1:", L"Verschieben, %1:", L"העברה, %1:"},
    {L"Moving %1 entries", L"Verschieben von %1 Einträgen", L"העברה של %1 פריטים"},
    {L"Moving entries", L"Verschieben von Einträgen", L"העברת פריטים"},
    {L"Moving %1", L"Verschieben: %1", L"העברה: %1"}};
inline constexpr OperationTexts kChangeTexts{
    {L"Cannot change %1: %2", L"Ändern nicht möglich, %1: %2", L"לא ניתן לשנות את %1: %2"},
    {L"Changed %1", L"Geändert: %1", L"שונה: %1"},
    {L"Change %1:", L"Ändern, %1:", L"שינוי, %1:"},
    {L"Changing %1 entries", L"Ändern von %1 Einträgen", L"שינוי של %1 פריטים"},
    {L"Changing entries", L"Ändern von Einträgen", L"שינוי פריטים"},
    {L"Changing %1", L"Ändern: %1", L"שינוי: %1"}};
inline constexpr OperationTexts kSwitchOffTexts{
    {L"Cannot switch off %1: %2", L"Ausschalten nicht möglich, %1: %2", L"לא ניתן לכבות את %1: %2"},
    {L"Switched off %1", L"Ausgeschaltet: %1", L"כובה: %1"},
    {L"Switch off %1:", L"Ausschalten, %1:", L"כיבוי, %1:"},
    {L"Switching off %1 entries", L"Ausschalten von %1 Einträgen", L"כיבוי של %1 פריטים"},
    {L"Switching off entries", L"Ausschalten von Einträgen", L"כיבוי פריטים"},
    {L"Switching off %1", L"Ausschalten: %1", L"כיבוי: %1"}};
inline constexpr OperationTexts kSwitchOnTexts{
    {L"Cannot switch on %1: %2", L"Einschalten nicht möglich, %1: %2", L"לא ניתן להדליק את %1: %2"},
    {L"Switched on %1", L"Eingeschaltet: %1", L"הודלק: %1"},
    {L"Switch on %1:", L"Einschalten, %1:", L"הדלקה, %1:"},
    {L"Switching on %1 entries", L"Einschalten von %1 Einträgen", L"הדלקה של %1 פריטים"},
    {L"Switching on entries", L"Einschalten von Einträgen", L"הדלקת פריטים"},
    {L"Switching on %1", L"Einschalten: %1", L"הדלקה: %1"}};

// An entry's caption and its location; what became of it; where it has gone; its new id.
inline constexpr Text kEntryIn{L"\"%1\" in %2", L"„%1“ in %2", L"\"%1\" ב-%2"};
inline constexpr Text kOfEntry{L"%1: %2", L"%1: %2", L"%1: %2"};
inline constexpr Text kMovedTo{L"%1 to %2 as \"%3\"", L"%1 nach %2 als „%3“", L"%1 אל %2 בשם \"%3\""};
inline constexpr Text kNowId{L"%1, now %2.", L"%1, jetzt %2.", L"%1, כעת %2."};
inline constexpr Text kSentence{L"%1.", L"%1.", L"%1."};

// Nothing to do: behind the entry and a colon.
inline constexpr Text kIsEnabled{L"is enabled already.", L"ist schon aktiviert.", L"כבר מופעל."};
inline constexpr Text kIsEnabledNotStarted{L"is enabled already; Windows does not start it: %1.",
                                           L"ist schon aktiviert; Windows startet ihn nicht: %1.",
                                           L"כבר מופעל; Windows אינו מפעיל אותו: %1."};
inline constexpr Text kIsEnabledUncertain{
    L"is enabled already; whether Windows starts it cannot be told: %1.",
    L"ist schon aktiviert; ob Windows ihn startet, ist nicht feststellbar: %1.",
    L"כבר מופעל; לא ניתן לדעת אם Windows מפעיל אותו: %1."};
inline constexpr Text kIsDisabled{L"is disabled already.", L"ist schon deaktiviert.", L"כבר מושבת."};
inline constexpr Text kIsSwitchedOff{L"is switched off in Task Manager already.",
                                     L"ist im Task-Manager schon ausgeschaltet.", L"כבר כבוי במנהל המשימות."};
inline constexpr Text kIsNotSwitchedOff{L"is not switched off in Task Manager.",
                                        L"ist im Task-Manager nicht ausgeschaltet.",
                                        L"אינו כבוי במנהל המשימות."};
inline constexpr Text kIsInTarget{L"is in %1 already.", L"ist schon in %1.", L"כבר נמצא ב-%1."};
inline constexpr Text kHasThatCommand{L"has that command already.", L"hat schon diesen Befehl.",
                                      L"כבר בעל פקודה זו."};
inline constexpr Text kIsThereAlready{L"is there already.", L"ist schon vorhanden.", L"כבר קיים."};

// Refused.
inline constexpr Text kLocationForbids{
    L"entries of %1 do not allow it, or this account may not write there.",
    L"Einträge von %1 erlauben es nicht, oder dieses Konto darf dort nicht schreiben.",
    L"הפריטים של %1 אינם מאפשרים זאת, או שלחשבון זה אין הרשאת כתיבה שם."};
inline constexpr Text kNoSwitchWhenDisabled{L"Task Manager has no switch for what is disabled.",
                                            L"Der Task-Manager hat keinen Schalter für Deaktiviertes.",
                                            L"למנהל המשימות אין מתג עבור מה שמושבת."};
inline constexpr Text kNoSwitch{
    L"Task Manager has no switch for entries of %1, holds something unknown there, or this account may not "
    L"write it.",
    L"Der Task-Manager hat keinen Schalter für Einträge von %1, enthält dort etwas Unbekanntes, oder dieses "
    L"Konto darf ihn nicht schreiben.",
    L"למנהל המשימות אין מתג עבור הפריטים של %1, או שנמצא שם ערך לא מוכר, או שלחשבון זה אין הרשאה לכתוב "
    L"אותו."};
inline constexpr Text kTargetRefusesAll{
    L"%1 does not take it: it may hold an entry of the same program, or take no entries at all.",
    L"%1 nimmt ihn nicht auf: Vielleicht steht dort schon ein Eintrag desselben Programms, oder es nimmt "
    L"überhaupt keine Einträge auf.",
    L"%1 אינו מקבל אותו: ייתכן שנמצא בו כבר פריט של אותה תוכנית, או שאינו מקבל פריטים כלל."};
inline constexpr Text kTargetRefusesWithoutFile{
    L"%1 does not take it: it may hold an entry of the same program, or take no entries at all, or none "
    L"without a file.",
    L"%1 nimmt ihn nicht auf: Vielleicht steht dort schon ein Eintrag desselben Programms, oder es nimmt "
    L"überhaupt keine Einträge auf oder keine ohne Datei.",
    L"%1 אינו מקבל אותו: ייתכן שנמצא בו כבר פריט של אותה תוכנית, או שאינו מקבל פריטים כלל, או שאינו מקבל "
    L"פריטים ללא קובץ."};
inline constexpr Text kCaseOnly{L"the new command differs in case only, which does not count as a change.",
                                L"der neue Befehl unterscheidet sich nur in Groß- und Kleinschreibung, was "
                                L"nicht als Änderung gilt.",
                                L"הפקודה החדשה שונה רק באותיות גדולות וקטנות, ודבר זה אינו נחשב לשינוי."};
inline constexpr Text kTakesNoNew{L"%1 takes no new entries.", L"%1 nimmt keine neuen Einträge auf.",
                                  L"%1 אינו מקבל פריטים חדשים."};
inline constexpr Text kNameTaken{L"an entry of that name exists already; it was not changed.",
                                 L"ein Eintrag dieses Namens ist schon vorhanden; er wurde nicht geändert.",
                                 L"כבר קיים פריט בשם זה; הוא לא שונה."};

// Failed: what should stand behind a change does not.
inline constexpr Text kStillThere{L"the entry is still there as it was.",
                                  L"der Eintrag steht noch da, wie er war.",
                                  L"הפריט עדיין נמצא שם כפי שהיה."};
inline constexpr Text kNotThere{L"the entry is not where it should be now.",
                                L"der Eintrag ist nicht dort, wo er jetzt sein sollte.",
                                L"הפריט אינו נמצא במקום שבו הוא אמור להיות כעת."};
inline constexpr Text kSwitchIsOther{L"Task Manager's switch is not as it should be now.",
                                     L"der Schalter des Task-Managers steht nicht so, wie er jetzt sollte.",
                                     L"המתג של מנהל המשימות אינו במצב שבו הוא אמור להיות כעת."};
inline constexpr Text kNotThereAtTheEnd{L"at the end the entry was not there as it had been made.",
                                        L"am Ende war der Eintrag nicht so vorhanden, wie er erstellt wurde.",
                                        L"בסוף הפריט לא נמצא כפי שנוצר."};
inline constexpr Text kStillThereAtTheEnd{L"at the end the entry was still there as it was.",
                                          L"am Ende war der Eintrag noch da, wie er war.",
                                          L"בסוף הפריט עדיין נמצא שם כפי שהיה."};
inline constexpr Text kEnabledButSwitchedOff{L"It is enabled, but still switched off in Task Manager.",
                                             L"Er ist aktiviert, aber im Task-Manager noch ausgeschaltet.",
                                             L"הוא מופעל, אבל עדיין כבוי במנהל המשימות."};
inline constexpr Text kNotLeftThere{L"It was not left there.", L"Er wurde nicht dort belassen.",
                                    L"הוא לא הושאר שם."};

// Steps, sentences without an end.
inline constexpr Text kQuotedKey{L"\"%1\"", L"„%1“", L"\"%1\""};
inline constexpr Text kIn32BitView{L"\"%1\" in the 32-bit view", L"„%1“ in der 32-Bit-Sicht",
                                   L"\"%1\" בתצוגת 32 הסיביות"};
inline constexpr Text kUnnamedValue{L"(Default)", L"(Standard)", L"(ברירת מחדל)"};
inline constexpr Text kDeleteFile{L"Delete the file \"%1\"", L"Die Datei „%1“ löschen",
                                  L"מחיקת הקובץ \"%1\""};
inline constexpr Text kDeleteValue{L"Delete the value \"%1\" of the key %2",
                                   L"Den Wert „%1“ des Schlüssels %2 löschen",
                                   L"מחיקת הערך \"%1\" של המפתח %2"};
inline constexpr Text kDeleteKey{L"Delete the key %1 with all below it",
                                 L"Den Schlüssel %1 mit allem darunter löschen",
                                 L"מחיקת המפתח %1 עם כל מה שתחתיו"};
inline constexpr Text kWriteValue{L"Write the value \"%1\" of the key %2",
                                  L"Den Wert „%1“ des Schlüssels %2 schreiben",
                                  L"כתיבת הערך \"%1\" של המפתח %2"};
inline constexpr Text kMakeKey{L"Make the key %1", L"Den Schlüssel %1 anlegen", L"יצירת המפתח %1"};
inline constexpr Text kWriteData{L"Write a value with the data \"%1\" into the key %2",
                                 L"Einen Wert mit den Daten „%1“ in den Schlüssel %2 schreiben",
                                 L"כתיבת ערך עם הנתונים \"%1\" אל המפתח %2"};
inline constexpr Text kReplaceFile{L"Replace the file \"%1\"", L"Die Datei „%1“ ersetzen",
                                   L"החלפת הקובץ \"%1\""};
inline constexpr Text kMoveFile{L"Move the file \"%1\" to %2", L"Die Datei „%1“ verschieben in %2",
                                L"העברת הקובץ \"%1\" אל %2"};
inline constexpr Text kMakeShortcutTo{L"Make a shortcut to \"%1\" in %2",
                                      L"Eine Verknüpfung mit „%1“ erstellen in %2",
                                      L"יצירת קיצור דרך אל \"%1\" ב%2"};
inline constexpr Text kMakeShortcut{L"Make the shortcut \"%1\" in %2",
                                    L"Die Verknüpfung „%1“ erstellen in %2", L"יצירת קיצור הדרך \"%1\" ב%2"};
inline constexpr Text kFolder{L"the folder \"%1\"", L"Ordner „%1“", L"תיקייה \"%1\""};
inline constexpr Text kOwnFolder{L"the folder \"%1\" in the program's own data",
                                 L"Ordner „%1“ in den eigenen Daten des Programms",
                                 L"תיקייה \"%1\" בנתונים של התוכנית עצמה"};
inline constexpr Text kSwitchItOff{L"Switch it off, as Task Manager does",
                                   L"Ausschalten, wie es der Task-Manager tut",
                                   L"כיבוי, כפי שעושה מנהל המשימות"};
inline constexpr Text kTakeSwitchBack{L"Take back Task Manager's switch",
                                      L"Den Schalter des Task-Managers zurücknehmen",
                                      L"ביטול המתג של מנהל המשימות"};
inline constexpr Text kDisableIt{L"Disable it", L"Deaktivieren", L"השבתה"};

}  // namespace smh::texts
