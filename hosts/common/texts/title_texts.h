// What the journal and the libraries write in English, to be told again in the language of the process:
// titles of actions, and steps of an undo. Of several rows that fit a text the first one counts.
#pragma once

#include "hosts/common/text.h"
#include "hosts/common/texts/operation_texts.h"

namespace smh::texts {

inline constexpr Text kUndoOf{L"Undo: %1", L"Rückgängig: %1", L"ביטול: %1"};
inline constexpr Text kRedoOf{L"Redo: %1", L"Wiederholen: %1", L"ביצוע חוזר: %1"};

inline constexpr Text kApplying{L"Applying %1", L"Anwenden: %1", L"החלה: %1"};
inline constexpr Text kSetting{L"Setting \"%1\"", L"Einstellen: „%1“", L"הגדרה: \"%1\""};
inline constexpr Text kDeletingSwitch{L"Deleting the switch of %1", L"Löschen des Schalters: %1",
                                      L"מחיקת המתג: %1"};
inline constexpr CountText kTakingSwitches{
    {L"Taking away 1 switch of no entry", L"Entfernen von 1 Schalter ohne Eintrag",
     L"הסרת מתג אחד שאינו של אף פריט"},
    {L"Taking away %1 switches of no entry", L"Entfernen von %1 Schaltern ohne Eintrag",
     L"הסרת %1 מתגים שאינם של אף פריט"}};

inline constexpr Text kTitles[] = {
    kTakingSwitches.one,
    kTakingSwitches.many,
    kDeletingSwitch,
    kApplying,
    kSetting,
    {L"Change", L"Änderung", L"שינוי"},
    {L"(cannot be read)", L"(nicht lesbar)", L"(לא ניתן לקריאה)"},
    kEnableTexts.some,
    kDisableTexts.some,
    kDeleteTexts.some,
    kAddTexts.some,
    kMoveTexts.some,
    kChangeTexts.some,
    kSwitchOffTexts.some,
    kSwitchOnTexts.some,
    kEnableTexts.many,
    kDisableTexts.many,
    kDeleteTexts.many,
    kAddTexts.many,
    kMoveTexts.many,
    kChangeTexts.many,
    kSwitchOffTexts.many,
    kSwitchOnTexts.many,
    kEnableTexts.one,
    kDisableTexts.one,
    kDeleteTexts.one,
    kAddTexts.one,
    kMoveTexts.one,
    kChangeTexts.one,
    kSwitchOffTexts.one,
    kSwitchOnTexts.one,
};

// Steps of an undo, by the texts of guardkit.dll.
inline constexpr Text kOnlyCopy{
    L"%1: nothing else holds it, because its source has gone or changed",
    L"%1: Nichts anderes enthält es, weil seine Quelle verschwunden oder geändert ist",
    L"%1: דבר אחר אינו מכיל אותו, כי המקור שלו נעלם או השתנה"};
inline constexpr Text kUndoSteps[] = {
    {L"Delete the value \"%1\" of the key \"%2\"", L"Den Wert „%1“ des Schlüssels „%2“ löschen",
     L"מחיקת הערך \"%1\" של המפתח \"%2\""},
    {L"Give the value \"%1\" of the key \"%2\" its old data",
     L"Dem Wert „%1“ des Schlüssels „%2“ seine alten Daten geben",
     L"החזרת הנתונים הקודמים לערך \"%1\" של המפתח \"%2\""},
    {L"Restore the value \"%1\" of the key \"%2\"", L"Den Wert „%1“ des Schlüssels „%2“ wiederherstellen",
     L"שחזור הערך \"%1\" של המפתח \"%2\""},
    {L"Restore the key \"%1\"", L"Den Schlüssel „%1“ wiederherstellen", L"שחזור המפתח \"%1\""},
    {L"Remove the key \"%1\" if it is empty", L"Den Schlüssel „%1“ entfernen, wenn er leer ist",
     L"הסרת המפתח \"%1\" אם הוא ריק"},
    {L"Delete the file \"%1\"", L"Die Datei „%1“ löschen", L"מחיקת הקובץ \"%1\""},
    {L"Give the file \"%1\" its old content", L"Der Datei „%1“ ihren alten Inhalt geben",
     L"החזרת התוכן הקודם לקובץ \"%1\""},
    {L"Restore the file \"%1\"", L"Die Datei „%1“ wiederherstellen", L"שחזור הקובץ \"%1\""},
    {L"Move the file \"%1\" back to \"%2\"", L"Die Datei „%1“ nach „%2“ zurückverschieben",
     L"החזרת הקובץ \"%1\" אל \"%2\""},
};

// By StepOutcome.
inline constexpr Text kStepOutcomes[] = {
    {L"undo", L"rückgängig", L"ביטול"},          {L"nothing", L"nichts zu tun", L"אין מה לעשות"},
    {L"conflict", L"Widerspruch", L"התנגשות"},   {L"blocked", L"verhindert", L"חסום"},
    {L"overwritten", L"überschrieben", L"נדרס"}, {L"kept", L"behalten", L"נשמר"},
    {L"impossible", L"unmöglich", L"בלתי אפשרי"}};
// By CheckpointState.
inline constexpr Text kCheckpointStates[] = {{L"open", L"offen", L"פתוח"},
                                             {L"done", L"ausgeführt", L"בוצע"},
                                             {L"interrupted", L"unterbrochen", L"הופסק"},
                                             {L"undone", L"rückgängig gemacht", L"בוטל"},
                                             {L"failed", L"fehlgeschlagen", L"נכשל"},
                                             {L"partly done", L"teilweise ausgeführt", L"בוצע חלקית"},
                                             {L"damaged", L"beschädigt", L"פגום"},
                                             {L"dropped", L"verworfen", L"נמחק"}};
inline constexpr Text kNotKnown{L"unknown", L"unbekannt", L"לא ידוע"};
// By DifferenceKind.
inline constexpr Text kDifferences[] = {{L"added", L"hinzugekommen", L"נוסף"},
                                        {L"removed", L"entfernt", L"הוסר"},
                                        {L"changed", L"geändert", L"שונה"},
                                        {L"switched", L"umgeschaltet", L"הוחלף מצב"}};

}  // namespace smh::texts
