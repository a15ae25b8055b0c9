// What the commands of the journal say: undo, redo, checkpoints.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// A checkpoint's number and title.
inline constexpr Text kCheckpointName{L"checkpoint %1 \"%2\"", L"Prüfpunkt %1 „%2“",
                                      L"נקודת ביקורת %1 \"%2\""};

// What undo and redo say, each of its own.
struct UndoTexts {
  Text conflict;    // the checkpoint
  Text failedBare;  // why
  Text failed;      // the checkpoint; why
  Text done;        // the checkpoint
  Text oneDone;     // the checkpoint
  Text manyDone;    // the checkpoint; how many
};
inline constexpr UndoTexts kUndoTexts{
    {L"Cannot undo: %1 is in conflict with later changes; nothing was changed. --force undoes the rest over "
     L"them.",
     L"Zurücknehmen nicht möglich: %1 steht im Widerspruch zu späteren Änderungen; nichts wurde geändert. "
     L"--force nimmt den Rest über sie hinweg zurück.",
     L"לא ניתן לבטל: %1 מתנגשת עם שינויים מאוחרים יותר; דבר לא שונה. --force מבטל את השאר על פניהם."},
    {L"Cannot undo: %1", L"Zurücknehmen nicht möglich: %1", L"לא ניתן לבטל: %1"},
    {L"Cannot undo %1: %2", L"Zurücknehmen nicht möglich, %1: %2", L"לא ניתן לבטל את %1: %2"},
    {L"Undid %1.", L"Zurückgenommen: %1.", L"בוטל: %1."},
    {L"Undid one part of %1.", L"Zurückgenommen: ein Teil von %1.", L"בוטל: חלק אחד של %1."},
    {L"Undid %2 parts of %1.", L"Zurückgenommen: %2 Teile von %1.", L"בוטלו: %2 חלקים של %1."}};
inline constexpr UndoTexts kRedoTexts{
    {L"Cannot redo: %1 is in conflict with later changes; nothing was changed. --force redoes the rest over "
     L"them.",
     L"Wiederholen nicht möglich: %1 steht im Widerspruch zu späteren Änderungen; nichts wurde geändert. "
     L"--force wiederholt den Rest über sie hinweg.",
     L"לא ניתן לבצע שוב: %1 מתנגשת עם שינויים מאוחרים יותר; דבר לא שונה. --force מבצע שוב את השאר על פניהם."},
    {L"Cannot redo: %1", L"Wiederholen nicht möglich: %1", L"לא ניתן לבצע שוב: %1"},
    {L"Cannot redo %1: %2", L"Wiederholen nicht möglich, %1: %2", L"לא ניתן לבצע שוב את %1: %2"},
    {L"Redid %1.", L"Wiederholt: %1.", L"בוצע שוב: %1."},
    {L"Redid one part of %1.", L"Wiederholt: ein Teil von %1.", L"בוצע שוב: חלק אחד של %1."},
    {L"Redid %2 parts of %1.", L"Wiederholt: %2 Teile von %1.", L"בוצעו שוב: %2 חלקים של %1."}};
inline constexpr Text kNothingToUndo{L"There is nothing to undo.", L"Es gibt nichts zurückzunehmen.",
                                     L"אין מה לבטל."};
inline constexpr Text kNewestToUndo{
    L"It is the newest change to undo. \"startupctl undo ID\" names another one, and \"startupctl "
    L"checkpoints\" lists all.",
    L"Dies ist die neueste Änderung, die zurückgenommen werden kann. „startupctl undo ID“ nennt eine andere, "
    L"und „startupctl "
    L"checkpoints“ listet alle auf.",
    L"זהו השינוי החדש ביותר שיש לבטל. \"startupctl undo ID\" מציין אחר, ו-\"startupctl checkpoints\" מציג את "
    L"כולם."};
inline constexpr Text kGoesOn{
    L"What was done until then is checkpoint %1: the same command goes on, and \"startupctl undo %1\" takes "
    L"it back.",
    L"Was bis dahin ausgeführt wurde, ist Prüfpunkt %1: Derselbe Befehl setzt es fort, und „startupctl undo "
    L"%1“ nimmt es zurück.",
    L"מה שבוצע עד אז הוא נקודת ביקורת %1: אותה פקודה ממשיכה, ו-\"startupctl undo %1\" מבטלת אותו."};
inline constexpr Text kPassedOver{L"Passed over: %1, which is damaged.", L"Übergangen: %1, beschädigt.",
                                  L"דולגה: %1, שהיא פגומה."};
inline constexpr Text kNoPart{L"No part has the number or the entry \"%1\".",
                              L"Kein Teil hat die Nummer oder den Eintrag „%1“.",
                              L"לאף חלק אין המספר או הפריט \"%1\"."};
inline constexpr Text kSeveralParts{L"\"%1\" means several parts; give the number of one:",
                                    L"„%1“ meint mehrere Teile; nennen Sie die Nummer von einem:",
                                    L"\"%1\" מתייחס לכמה חלקים; יש לציין את המספר של אחד מהם:"};
inline constexpr Text kNothingToRedo{L"Nothing was undone that could be made again.",
                                     L"Nichts wurde zurückgenommen, was zu wiederholen wäre.",
                                     L"דבר לא בוטל שניתן לבצע שוב."};

// checkpoints prune.
inline constexpr Text kUndoesOther{L"it undoes checkpoint %1, which is still there; forget that one.",
                                   L"er nimmt Prüfpunkt %1 zurück, der noch da ist; vergessen Sie jenen.",
                                   L"היא מבטלת את נקודת ביקורת %1, שעדיין קיימת; יש לשכוח אותה."};
inline constexpr Text kNothingToForget{L"There is nothing to forget.", L"Es gibt nichts zu vergessen.",
                                       L"אין מה לשכוח."};
inline constexpr Text kNothingCanUndo{L"Nothing can undo %1 checkpoints then",
                                      L"Dann sind %1 Prüfpunkte nicht mehr zurückzunehmen",
                                      L"לאחר מכן לא ניתן יהיה לבטל %1 נקודות ביקורת"};
inline constexpr Text kNotForgotten{L"checkpoint %1: %2", L"Prüfpunkt %1: %2", L"נקודת ביקורת %1: %2"};
inline constexpr Text kForgot{L"Forgot %1 of %2 checkpoints.", L"%1 von %2 Prüfpunkten wurden vergessen.",
                              L"נשכחו %1 מתוך %2 נקודות ביקורת."};

// What was interrupted, and what takes it back.
inline constexpr Text kInterruptedOnes{L"Interrupted: %1. \"startupctl undo ID\" takes one back.",
                                       L"Unterbrochen: %1. „startupctl undo ID“ nimmt einen zurück.",
                                       L"הופסקו: %1. \"startupctl undo ID\" מבטל אחת."};

}  // namespace smh::texts
