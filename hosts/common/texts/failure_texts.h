// What went wrong in the libraries and the system, and what was being done then.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// What was being done, without an end; why.
inline constexpr Text kFailedFor{L"%1: %2", L"%1: %2", L"%1: %2"};
inline constexpr Text kSystemError{L"%1 (%2)", L"%1 (%2)", L"%1 (%2)"};
inline constexpr Text kErrorNumber{L"Error %1", L"Fehler %1", L"שגיאה %1"};
inline constexpr Text kUnknownError{L"An unknown error.", L"Ein unbekannter Fehler.", L"שגיאה לא ידועה."};

inline constexpr Text kNoOwnFolder{L"Cannot find the folder of this program.",
                                   L"Der Ordner dieses Programms ist nicht zu finden.",
                                   L"לא ניתן למצוא את התיקייה של תוכנית זו."};
inline constexpr Text kLibraryMissing{L"The library %1 is missing.", L"Die Bibliothek %1 fehlt.",
                                      L"הספרייה %1 חסרה."};
inline constexpr Text kCannotLoad{L"Cannot load %1: %2", L"%1 kann nicht geladen werden: %2",
                                  L"לא ניתן לטעון את %1: %2"};
inline constexpr Text kOffersNothing{L"The library %1 does not offer what it should.",
                                     L"Die Bibliothek %1 bietet nicht, was sie sollte.",
                                     L"הספרייה %1 אינה מציעה את מה שהיא אמורה להציע."};
inline constexpr Text kCannotGetList{L"Cannot get the list of entries",
                                     L"Die Liste der Einträge ist nicht zu erhalten",
                                     L"לא ניתן לקבל את רשימת הפריטים"};
inline constexpr Text kCannotChooseIcons{
    L"Cannot choose the icons", L"Die Symbole können nicht gewählt werden", L"לא ניתן לבחור את הסמלים"};
inline constexpr Text kCannotGetEntry{L"Cannot get an entry", L"Ein Eintrag ist nicht zu erhalten",
                                      L"לא ניתן לקבל פריט"};
inline constexpr Text kCannotLockList{L"Cannot lock the list of entries",
                                      L"Die Liste der Einträge kann nicht gesperrt werden",
                                      L"לא ניתן לנעול את רשימת הפריטים"};
inline constexpr Text kCannotLook{L"Cannot look at %1: %2", L"%1 kann nicht angesehen werden: %2",
                                  L"לא ניתן לבדוק את %1: %2"};

inline constexpr Text kCannotReadEntries{
    L"Cannot read the entries", L"Die Einträge können nicht gelesen werden", L"לא ניתן לקרוא את הפריטים"};
inline constexpr Text kCannotChoose{L"Cannot choose the locations", L"Die Orte können nicht gewählt werden",
                                    L"לא ניתן לבחור את המיקומים"};
inline constexpr Text kCannotStopReading{L"Cannot stop reading", L"Das Lesen kann nicht angehalten werden",
                                         L"לא ניתן לעצור את הקריאה"};
inline constexpr Text kReadingTooLong{
    L"Reading took more than a minute: this is not all that there is.",
    L"Das Lesen dauerte mehr als eine Minute: Dies ist nicht alles, was es gibt.",
    L"הקריאה נמשכה יותר מדקה: זה לא כל מה שיש."};
inline constexpr Text kCannotGetProgram{L"Cannot get a default program",
                                        L"Ein Standardprogramm ist nicht zu erhalten",
                                        L"לא ניתן לקבל תוכנית ברירת מחדל"};
inline constexpr Text kNoProgram{L"Cannot get a default program.",
                                 L"Ein Standardprogramm ist nicht zu erhalten.",
                                 L"לא ניתן לקבל תוכנית ברירת מחדל."};
inline constexpr Text kCannotReadDefaults{L"Cannot read the default programs",
                                          L"Die Standardprogramme können nicht gelesen werden",
                                          L"לא ניתן לקרוא את תוכניות ברירת המחדל"};
inline constexpr Text kCannotAddPath{L"Cannot add \"%1\"", L"„%1“ kann nicht hinzugefügt werden",
                                     L"לא ניתן להוסיף את \"%1\""};
inline constexpr Text kDefaultsTooLong{L"Reading the default programs took more than a minute.",
                                       L"Das Lesen der Standardprogramme dauerte mehr als eine Minute.",
                                       L"קריאת תוכניות ברירת המחדל נמשכה יותר מדקה."};
inline constexpr Text kCannotSaveLanguage{L"Cannot save the language: %1",
                                          L"Die Sprache kann nicht gespeichert werden: %1",
                                          L"לא ניתן לשמור את השפה: %1"};
inline constexpr Text kNoColumn{L"There is no column \"%1\"; there are: %2.",
                                L"Es gibt keine Spalte „%1“; es gibt: %2.", L"אין עמודה \"%1\"; יש: %2."};

// The journal.
inline constexpr Text kNoCheckpoint{L"There is no such checkpoint.", L"Diesen Prüfpunkt gibt es nicht.",
                                    L"אין נקודת ביקורת כזו."};
inline constexpr Text kCannotReadJournal{L"Cannot read the journal", L"Das Journal kann nicht gelesen werden",
                                         L"לא ניתן לקרוא את היומן"};
inline constexpr Text kCannotReadCheckpoint{
    L"Cannot read a checkpoint", L"Ein Prüfpunkt kann nicht gelesen werden", L"לא ניתן לקרוא נקודת ביקורת"};
inline constexpr Text kCannotBeginAction{L"Cannot begin an action of the journal",
                                         L"Eine Aktion des Journals kann nicht begonnen werden",
                                         L"לא ניתן להתחיל פעולה ביומן"};
inline constexpr Text kCannotForget{L"Cannot forget", L"Vergessen nicht möglich", L"לא ניתן לשכוח"};
inline constexpr Text kCannotListJournal{L"Cannot list the journal",
                                         L"Das Journal kann nicht aufgelistet werden",
                                         L"לא ניתן להציג את רשימת היומן"};

// Why an undo or redo failed: ends of sentences.
inline constexpr Text kUndoConflict{L"later changes are in conflict with it; nothing was changed.",
                                    L"spätere Änderungen stehen dazu im Widerspruch; nichts wurde geändert.",
                                    L"שינויים מאוחרים יותר מתנגשים איתו; דבר לא שונה."};
inline constexpr Text kIsUndone{L"it is undone already.", L"schon rückgängig gemacht.", L"הוא כבר בוטל."};
inline constexpr Text kIsNotUndone{L"it is not undone.", L"nicht rückgängig gemacht.", L"הוא לא בוטל."};
inline constexpr Text kUndoDamaged{L"its file in the journal is damaged; nothing was changed.",
                                   L"die Datei im Journal ist beschädigt; nichts wurde geändert.",
                                   L"הקובץ שלו ביומן פגום; דבר לא שונה."};
inline constexpr Text kUndoOutOfReach{
    L"it names places that are none of this program; nothing was changed.",
    L"es werden Orte genannt, die nicht zu diesem Programm gehören; nichts wurde geändert.",
    L"הוא מציין מקומות שאינם של תוכנית זו; דבר לא שונה."};
inline constexpr Text kUndoNoCheckpoint{L"there is no such checkpoint.", L"diesen Prüfpunkt gibt es nicht.",
                                        L"אין נקודת ביקורת כזו."};
inline constexpr Text kUndoStillAtWork{L"it is still at work.", L"noch in Arbeit.", L"הוא עדיין בביצוע."};
inline constexpr Text kUndoOtherAtWork{L"another change is at work.", L"eine andere Änderung ist in Arbeit.",
                                       L"שינוי אחר נמצא בביצוע."};

// Task Manager's switches.
inline constexpr Text kCannotReadList{L"Cannot read %1: %2", L"%1 kann nicht gelesen werden: %2",
                                      L"לא ניתן לקרוא את %1: %2"};
inline constexpr Text kSwitchInList{L"\"%1\" in the list %2 of %3", L"„%1“ in der Liste %2 von %3",
                                    L"\"%1\" ברשימה %2 של %3"};
inline constexpr Text kNameHoldsNul{L"its name holds a NUL.", L"sein Name enthält ein NUL-Zeichen.",
                                    L"שמו מכיל תו NUL."};
inline constexpr Text kSwitchHasChanged{
    L"it has changed meanwhile, or belongs to an entry now.",
    L"er hat sich inzwischen geändert oder gehört jetzt zu einem Eintrag.",
    L"הוא השתנה בינתיים, או שייך כעת לפריט."};

}  // namespace smh::texts
