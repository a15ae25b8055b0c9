// The undo history: its columns and states, and what is said of taking changes back.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kHistoryChange{L"Change", L"Änderung", L"שינוי"};
inline constexpr Text kHistoryState{L"State", L"Stand", L"מצב"};
inline constexpr Text kHistoryTime{L"Time", L"Zeit", L"זמן"};
inline constexpr Text kHistoryStep{L"Step", L"Schritt", L"שלב"};
inline constexpr Text kShowParts{L"Show parts", L"Teile anzeigen", L"הצג חלקים"};
inline constexpr Text kWhatUndoMeans{L"What taking it back means", L"Was das Rückgängigmachen bewirkt",
                                     L"מה המשמעות של הביטול"};

// By CheckpointState.
inline constexpr Text kHistoryStates[] = {
    {L"At work", L"In Arbeit", L"בביצוע"},
    {L"Done", L"Ausgeführt", L"בוצע"},
    {L"Interrupted", L"Unterbrochen", L"הופסק"},
    {L"Undone", L"Rückgängig gemacht", L"בוטל"},
    {L"Failed", L"Fehlgeschlagen", L"נכשל"},
    {L"Partly done", L"Teilweise ausgeführt", L"בוצע חלקית"},
    {L"Damaged, cannot be undone", L"Beschädigt, nicht rückgängig zu machen", L"פגום, לא ניתן לבטל"},
    {L"Dropped, no longer undoable", L"Verworfen, nicht mehr rückgängig zu machen",
     L"נמחק, לא ניתן עוד לבטל"}};
inline constexpr Text kDroppedOn{L"Dropped on %1, no longer undoable",
                                 L"Verworfen am %1, nicht mehr rückgängig zu machen",
                                 L"נמחק בתאריך %1, לא ניתן עוד לבטל"};
inline constexpr Text kStillAtWork{
    L"It is still at work. It can be undone when it has ended.",
    L"Sie ist noch in Arbeit. Rückgängig zu machen ist sie, wenn sie beendet ist.",
    L"הפעולה עדיין מתבצעת. ניתן יהיה לבטל אותה בסיומה."};
inline constexpr Text kDamagedRecord{
    L"Its file in the journal is damaged: what can be read of it is shown, and nothing can be undone.",
    L"Ihre Datei im Journal ist beschädigt: Was davon lesbar ist, wird angezeigt; nichts ist rückgängig zu "
    L"machen.",
    L"הקובץ שלה ביומן פגום: מה שניתן לקרוא ממנו מוצג, ולא ניתן לבטל דבר."};
inline constexpr Text kDroppedRecord{
    L"It was dropped to make room for later ones, or for its age, and can no longer be undone.",
    L"Sie wurde verworfen, um Platz für spätere zu machen oder wegen ihres Alters, und ist nicht mehr "
    L"rückgängig zu machen.",
    L"היא נמחקה כדי לפנות מקום לשינויים מאוחרים יותר, או בשל גילה, ולא ניתן עוד לבטל אותה."};
inline constexpr Text kUndoneAlready{L"It is undone already. Redo makes it again.",
                                     L"Sie ist schon rückgängig gemacht. Wiederholen stellt sie wieder her.",
                                     L"היא כבר בוטלה. ביצוע חוזר ישחזר אותה."};
inline constexpr Text kNotUndoable{L"It cannot be undone in its present state.",
                                   L"In ihrem jetzigen Stand ist sie nicht rückgängig zu machen.",
                                   L"לא ניתן לבטל אותה במצבה הנוכחי."};
inline constexpr Text kTitleOfMany{L"%1 (%2 changes)", L"%1 (%2 Änderungen)", L"%1 (%2 שינויים)"};
inline constexpr Text kPartsOf{L"%1 parts of %2", L"%1 Teile von %2", L"%1 חלקים של %2"};
inline constexpr CountText kChanges{{L"1 change", L"1 Änderung", L"שינוי אחד"},
                                    {L"%1 changes", L"%1 Änderungen", L"%1 שינויים"}};

inline constexpr Text kWasInterrupted{
    L"A change was interrupted: the undo history (Ctrl+3) can take it back.",
    L"Eine Änderung wurde unterbrochen: Der Änderungsverlauf (Strg+3) kann sie zurücknehmen.",
    L"שינוי הופסק באמצעו: היסטוריית השינויים (Ctrl+3) יכולה לבטל אותו."};
// What becomes of a step; the step.
inline constexpr Text kStepOutcome{L"%1: %2", L"%1: %2", L"%1: %2"};
inline constexpr Text kCannotBeUndone{L"It cannot be undone: %1", L"Sie ist nicht rückgängig zu machen: %1",
                                      L"לא ניתן לבטל אותה: %1"};

// Undo and redo of the latest change, or of the one of that name.
inline constexpr Text kUndoingLatest{L"Undoing the latest change", L"Letzte Änderung rückgängig machen",
                                     L"ביטול השינוי האחרון"};
inline constexpr Text kUndoingOne{L"Undoing “%1”", L"Rückgängig machen: „%1“", L"ביטול “%1”"};
inline constexpr Text kRedoingLatest{L"Redoing the latest change", L"Letzte Änderung wiederholen",
                                     L"ביצוע חוזר של השינוי האחרון"};
inline constexpr Text kRedoingOne{L"Redoing “%1”", L"Wiederholen: „%1“", L"ביצוע חוזר של “%1”"};
inline constexpr Text kUndid{L"Undid: %1", L"Rückgängig gemacht: %1", L"בוטל: %1"};
inline constexpr Text kRedid{L"Redid: %1", L"Wiederholt: %1", L"בוצע שוב: %1"};
inline constexpr Text kConflictQuestion{
    L"“%1” is in conflict with later changes. Nothing was changed.%2\n\nGo on all the same, and overwrite "
    L"what "
    L"stands there now?",
    L"„%1“ steht im Widerspruch zu späteren Änderungen. Nichts wurde geändert.%2\n\nTrotzdem fortfahren und "
    L"überschreiben, was jetzt dort steht?",
    L"“%1” מתנגש עם שינויים מאוחרים יותר. דבר לא שונה.%2\n\nלהמשיך בכל זאת, ולדרוס את מה שנמצא שם כעת?"};
inline constexpr Text kOverwriteVerb{L"Overwrite", L"Überschreiben", L"דריסה"};
inline constexpr Text kCannotUndo{L"Cannot undo “%1”: %2\n", L"„%1“ ist nicht rückgängig zu machen: %2\n",
                                  L"לא ניתן לבטל את “%1”: %2\n"};
inline constexpr Text kCannotRedo{L"Cannot redo “%1”: %2\n", L"„%1“ ist nicht zu wiederholen: %2\n",
                                  L"לא ניתן לבצע שוב את “%1”: %2\n"};
inline constexpr Text kPartlyStays{
    L"What was done until then stays: undo goes on with it, and redo the other way.",
    L"Was bis dahin getan wurde, bleibt: Rückgängig setzt es fort, Wiederholen geht den anderen Weg.",
    L"מה שבוצע עד אז נשאר: ביטול ממשיך אותו, וביצוע חוזר פועל בכיוון ההפוך."};

}  // namespace smh::texts
