// What the window says of actions on entries: questions, what is done and what became of it.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// What an action is called while it lasts, and what is said of so many entries behind it.
struct ActionWords {
  Text doing;
  CountText done;
};

inline constexpr ActionWords kEnabling{
    {L"Enabling", L"Aktivieren", L"הפעלה"},
    {{L"Enabled 1 entry.", L"1 Eintrag wurde aktiviert.", L"פריט אחד הופעל."},
     {L"Enabled %1 entries.", L"%1 Einträge wurden aktiviert.", L"%1 פריטים הופעלו."}}};
inline constexpr ActionWords kDisabling{
    {L"Disabling", L"Deaktivieren", L"השבתה"},
    {{L"Disabled 1 entry.", L"1 Eintrag wurde deaktiviert.", L"פריט אחד הושבת."},
     {L"Disabled %1 entries.", L"%1 Einträge wurden deaktiviert.", L"%1 פריטים הושבתו."}}};
inline constexpr ActionWords kDeleting{
    {L"Deleting", L"Löschen", L"מחיקה"},
    {{L"Deleted 1 entry.", L"1 Eintrag wurde gelöscht.", L"פריט אחד נמחק."},
     {L"Deleted %1 entries.", L"%1 Einträge wurden gelöscht.", L"%1 פריטים נמחקו."}}};
inline constexpr ActionWords kAdding{
    {L"Adding", L"Hinzufügen", L"הוספה"},
    {{L"Added 1 entry.", L"1 Eintrag wurde hinzugefügt.", L"פריט אחד נוסף."},
     {L"Added %1 entries.", L"%1 Einträge wurden hinzugefügt.", L"%1 פריטים נוספו."}}};
inline constexpr ActionWords kMoving{
    {L"Moving", L"Verschieben", L"העברה"},
    {{L"Moved 1 entry.", L"1 Eintrag wurde verschoben.", L"פריט אחד הועבר."},
     {L"Moved %1 entries.", L"%1 Einträge wurden verschoben.", L"%1 פריטים הועברו."}}};
inline constexpr ActionWords kChanging{
    {L"Changing", L"Ändern", L"שינוי"},
    {{L"Changed 1 entry.", L"1 Eintrag wurde geändert.", L"פריט אחד שונה."},
     {L"Changed %1 entries.", L"%1 Einträge wurden geändert.", L"%1 פריטים שונו."}}};
inline constexpr ActionWords kSwitchingOff{
    {L"Switching off", L"Ausschalten", L"כיבוי"},
    {{L"Switched off 1 entry.", L"1 Eintrag wurde ausgeschaltet.", L"פריט אחד כובה."},
     {L"Switched off %1 entries.", L"%1 Einträge wurden ausgeschaltet.", L"%1 פריטים כובו."}}};
inline constexpr ActionWords kSwitchingOn{
    {L"Switching on", L"Einschalten", L"הדלקה"},
    {{L"Switched on 1 entry.", L"1 Eintrag wurde eingeschaltet.", L"פריט אחד הודלק."},
     {L"Switched on %1 entries.", L"%1 Einträge wurden eingeschaltet.", L"%1 פריטים הודלקו."}}};
inline constexpr ActionWords kStarting{
    {L"Starting", L"Starten", L"הרצה"},
    {{L"Started 1 entry.", L"1 Eintrag wurde gestartet.", L"פריט אחד הורץ."},
     {L"Started %1 entries.", L"%1 Einträge wurden gestartet.", L"%1 פריטים הורצו."}}};
inline constexpr ActionWords kShowingPlace{
    {L"Showing the place of", L"Anzeigen des Ortes", L"הצגת המיקום"},
    {{L"Showed the place of 1 entry.", L"Der Ort von 1 Eintrag wurde angezeigt.",
      L"המיקום של פריט אחד הוצג."},
     {L"Showed the place of %1 entries.", L"Die Orte von %1 Einträgen wurden angezeigt.",
      L"המיקומים של %1 פריטים הוצגו."}}};

// An action and its one entry, or how many entries.
inline constexpr Text kDoingOne{L"%1 “%2”", L"%1 von „%2“", L"%1: “%2”"};
inline constexpr Text kDoingMany{L"%1 %2 entries", L"%1 von %2 Einträgen", L"%1: %2 פריטים"};

// Behind an action.
inline constexpr Text kNothingChanged{L"Nothing was changed.", L"Nichts wurde geändert.", L"דבר לא שונה."};
inline constexpr CountText kLeftAsTheyWere{
    {L"%2 Cancelled: 1 entry left as they were.", L"%2 Abgebrochen: 1 Eintrag blieb, wie er war.",
     L"%2 בוטל: פריט אחד נשאר כפי שהיה."},
    {L"%2 Cancelled: %1 entries left as they were.", L"%2 Abgebrochen: %1 Einträge blieben, wie sie waren.",
     L"%2 בוטל: %1 פריטים נשארו כפי שהיו."}};
inline constexpr Text kAndMore{L"and %1 more.", L"und %1 weitere.", L"ועוד %1."};

// Entries as they are named in a sentence.
inline constexpr Text kOneName{L"“%1”", L"„%1“", L"“%1”"};
inline constexpr Text kManyNames{L"%1 entries", L"%1 Einträge", L"%1 פריטים"};

// Questions, and the verbs of their buttons.
inline constexpr Text kForeignQuestion{
    L"These are entries of %1, not of %2, who is logged on. Change them?",
    L"Dies sind Einträge von %1, nicht von %2, der angemeldet ist. Sollen sie geändert werden?",
    L"אלה פריטים של %1, ולא של %2, שמחובר כעת. לשנות אותם?"};
inline constexpr Text kForeignVerb{L"Change them", L"Ändern", L"שינוי הפריטים"};
inline constexpr Text kDeleteQuestion{L"Delete %1?\n\n%2 Disabling stops the program just as well.",
                                      L"%1 löschen?\n\n%2 Deaktivieren hält das Programm genauso ab.",
                                      L"למחוק את %1?\n\n%2 השבתה מונעת את הפעלת התוכנית באותה מידה."};
inline constexpr Text kDeleteOneVerb{L"Delete this entry", L"Diesen Eintrag löschen", L"מחיקת פריט זה"};
inline constexpr Text kDeleteManyVerb{L"Delete %1 entries", L"%1 Einträge löschen", L"מחיקת %1 פריטים"};
inline constexpr Text kLossQuestion{L"%1\n\n%2 Go on?", L"%1\n\n%2 Fortfahren?", L"%1\n\n%2 להמשיך?"};
inline constexpr Text kLossVerb{L"Go on", L"Fortfahren", L"המשך"};
inline constexpr Text kRunVerb{L"Run it", L"Ausführen", L"הרצה"};
inline constexpr Text kMovePrompt{L"Move %1 to", L"%1 verschieben nach", L"העברת %1 אל"};
inline constexpr Text kCommandPrompt{L"Command of %1", L"Befehl von %1", L"הפקודה של %1"};
inline constexpr Text kExportSelected{L"Export %1 selected entries", L"%1 ausgewählte Einträge exportieren",
                                      L"ייצוא %1 פריטים שנבחרו"};
inline constexpr Text kExportShown{L"Export all %1 entries that are shown",
                                   L"Alle %1 angezeigten Einträge exportieren",
                                   L"ייצוא כל %1 הפריטים המוצגים"};

// In the status bar, or as an error.
inline constexpr Text kNotDoneBusy{L"Not done, since another box was open: %1.",
                                   L"Nicht ausgeführt, da ein anderes Fenster offen war: %1.",
                                   L"לא בוצע, מאחר שחלון אחר היה פתוח: %1."};
inline constexpr Text kCannotAdd{L"Cannot add %1", L"Hinzufügen nicht möglich: %1", L"לא ניתן להוסיף: %1"};
inline constexpr Text kAddedOne{L"Added “%1”.", L"„%1“ wurde hinzugefügt.", L"“%1” נוסף."};
inline constexpr Text kIsThere{L"“%1” is there already.", L"„%1“ ist schon vorhanden.", L"“%1” כבר קיים."};
inline constexpr Text kNoTarget{L"No other location takes %1.", L"Kein anderer Ort nimmt auf: %1.",
                                L"אין מיקום אחר שמתאים אל %1."};
inline constexpr Text kLookingAtFile{L"Looking at the file of “%1”…", L"Die Datei von „%1“ wird geprüft…",
                                     L"בדיקת הקובץ של “%1”…"};
inline constexpr CountText kWrote{
    {L"Wrote 1 entry to %2", L"1 Eintrag wurde geschrieben: %2", L"פריט אחד נכתב אל %2"},
    {L"Wrote %1 entries to %2", L"%1 Einträge wurden geschrieben: %2", L"%1 פריטים נכתבו אל %2"}};
inline constexpr Text kCannotEnable{L"This entry cannot be enabled.",
                                    L"Dieser Eintrag kann nicht aktiviert werden.",
                                    L"לא ניתן להפעיל פריט זה."};
inline constexpr Text kCannotDisable{L"This entry cannot be disabled.",
                                     L"Dieser Eintrag kann nicht deaktiviert werden.",
                                     L"לא ניתן להשבית פריט זה."};
inline constexpr Text kHasGone{L"the entry has gone meanwhile.", L"der Eintrag ist inzwischen verschwunden.",
                               L"הפריט נעלם בינתיים."};
inline constexpr Text kNotInThisState{L"the entry does not allow it in its present state.",
                                      L"der Eintrag erlaubt es in seinem jetzigen Zustand nicht.",
                                      L"הפריט אינו מאפשר זאת במצבו הנוכחי."};
inline constexpr Text kSystemCannot{L"the system could not do it.", L"das System konnte es nicht ausführen.",
                                    L"המערכת לא הצליחה לבצע זאת."};
inline constexpr Text kOtherCommand{L"it has another command now; look at it first.",
                                    L"er hat jetzt einen anderen Befehl; sehen Sie ihn zuerst an.",
                                    L"יש לו כעת פקודה אחרת; יש לבדוק אותה תחילה."};

// Errors of the window's own.
inline constexpr Text kCannotChooseLocations{
    L"Cannot choose the locations", L"Die Orte können nicht gewählt werden", L"לא ניתן לבחור את המיקומים"};
inline constexpr Text kCannotRead{L"Cannot read the entries", L"Die Einträge können nicht gelesen werden",
                                  L"לא ניתן לקרוא את הפריטים"};
inline constexpr Text kCannotReadPrograms{L"Cannot read the default programs",
                                          L"Die Standardprogramme können nicht gelesen werden",
                                          L"לא ניתן לקרוא את תוכניות ברירת המחדל"};
inline constexpr Text kCannotWrite{L"Cannot write %1: %2", L"%1 kann nicht geschrieben werden: %2",
                                   L"לא ניתן לכתוב אל %1: %2"};
inline constexpr Text kNoTextControl{L"The system's text control is missing.",
                                     L"Das Textfeld des Systems fehlt.", L"פקד הטקסט של המערכת חסר."};
inline constexpr Text kCannotMakeWindow{
    L"Cannot make a window: %1", L"Ein Fenster kann nicht erstellt werden: %1", L"לא ניתן ליצור חלון: %1"};
inline constexpr Text kCannotMakeEvent{L"Cannot create an event.",
                                       L"Ein Ereignis kann nicht erstellt werden.", L"לא ניתן ליצור אירוע."};

}  // namespace smh::texts
