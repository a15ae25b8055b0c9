// What does not fit in JSON that somebody else wrote, and in snapshots.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// Ends of sentences; "%1" is a key in its JSON.
inline constexpr Text kNumberTooLarge{L"a number is too large.", L"eine Zahl ist zu groß.",
                                      L"מספר גדול מדי."};
inline constexpr Text kNumberNotWhole{L"a number has a fraction or an exponent.",
                                      L"eine Zahl hat Nachkommastellen oder einen Exponenten.",
                                      L"למספר יש שבר או מעריך."};
inline constexpr Text kHoldsBytes{L"it holds bytes.", L"sie enthält Bytes.", L"הוא מכיל בתים."};
inline constexpr Text kTooManyEntries{L"it has too many entries.", L"sie hat zu viele Einträge.",
                                      L"יש בו פריטים רבים מדי."};
inline constexpr Text kIsObject{L"\"%1\" is an object.", L"„%1“ ist ein Objekt.", L"\"%1\" הוא אובייקט."};
inline constexpr Text kIsListItself{L"it is a list, not an object.", L"sie ist eine Liste, kein Objekt.",
                                    L"הוא רשימה ולא אובייקט."};
inline constexpr Text kIsList{L"\"%1\" is a list.", L"„%1“ ist eine Liste.", L"\"%1\" הוא רשימה."};
inline constexpr Text kComesTwice{L"\"%1\" comes twice.", L"„%1“ kommt zweimal vor.",
                                  L"\"%1\" מופיע פעמיים."};
inline constexpr Text kNotJson{L"it is not valid JSON in UTF-8, near byte %1.",
                               L"sie ist kein gültiges JSON in UTF-8, nahe Byte %1.",
                               L"הוא אינו JSON תקין ב-UTF-8, ליד בית %1."};
inline constexpr Text kIsNoObject{L"it is no object.", L"sie ist kein Objekt.", L"הוא אינו אובייקט."};
inline constexpr Text kHoldsNoObject{L"\"%1\" holds something that is no object.",
                                     L"„%1“ enthält etwas, das kein Objekt ist.",
                                     L"\"%1\" מכיל משהו שאינו אובייקט."};
inline constexpr Text kIsNoList{L"\"%1\" is no list.", L"„%1“ ist keine Liste.", L"\"%1\" אינו רשימה."};
inline constexpr Text kTooManyMembers{L"an object has too many members.", L"ein Objekt hat zu viele Teile.",
                                      L"לאובייקט יש חברים רבים מדי."};
inline constexpr Text kIsNoText{L"\"%1\" is no text.", L"„%1“ ist kein Text.", L"\"%1\" אינו טקסט."};
inline constexpr Text kIsNoNumber{L"\"%1\" is no whole number.", L"„%1“ ist keine ganze Zahl.",
                                  L"\"%1\" אינו מספר שלם."};
inline constexpr Text kIsNoFlag{L"\"%1\" is no truth value.", L"„%1“ ist kein Wahrheitswert.",
                                L"\"%1\" אינו ערך אמת."};
inline constexpr Text kIsMissing{L"\"%1\" is missing.", L"„%1“ fehlt.", L"\"%1\" חסר."};
inline constexpr Text kHoldsNul{L"\"%1\" holds a NUL.", L"„%1“ enthält ein NUL-Zeichen.",
                                L"\"%1\" מכיל תו NUL."};

// What does not fit in a snapshot or one of its entries.
inline constexpr Text kKeyNotHeld{L"its key is none that its location can hold.",
                                  L"sein Schlüssel ist keiner, den sein Ort enthalten kann.",
                                  L"המפתח שלו אינו כזה שהמיקום שלו יכול להכיל."};
inline constexpr Text kFileNotHeld{L"its file is none that its location can hold.",
                                   L"seine Datei ist keine, die sein Ort enthalten kann.",
                                   L"הקובץ שלו אינו כזה שהמיקום שלו יכול להכיל."};
inline constexpr Text kRootIsOther{L"its root is not the location's.",
                                   L"seine Wurzel ist nicht die des Ortes.",
                                   L"השורש שלו אינו השורש של המיקום."};
inline constexpr Text kViewIsOther{L"its view is neither 64 nor 32.", L"seine Sicht ist weder 64 noch 32.",
                                   L"התצוגה שלו אינה 64 ואינה 32."};
inline constexpr Text kHasValueName{L"it has a value name.", L"er hat einen Wertnamen.", L"יש לו שם ערך."};
inline constexpr Text kHasNoValueName{L"it has no value name.", L"er hat keinen Wertnamen.",
                                      L"אין לו שם ערך."};
inline constexpr Text kKeyOutside{L"its key lies outside of its location.",
                                  L"sein Schlüssel liegt außerhalb seines Ortes.",
                                  L"המפתח שלו נמצא מחוץ למיקום שלו."};
inline constexpr Text kNoLocation{L"there is no location \"%1\".", L"es gibt keinen Ort „%1“.",
                                  L"אין מיקום \"%1\"."};
inline constexpr Text kContradicts{L"its \"%1\" and \"%2\" contradict each other.",
                                   L"„%1“ und „%2“ widersprechen einander.",
                                   L"\"%1\" ו-\"%2\" סותרים זה את זה."};
inline constexpr Text kFileWithKey{L"it is a file and has a key.",
                                   L"er ist eine Datei und hat einen Schlüssel.", L"הוא קובץ ויש לו מפתח."};
inline constexpr Text kFileWithoutPlace{L"it has a file, and its location has none.",
                                        L"er hat eine Datei, und sein Ort hat keine.",
                                        L"יש לו קובץ, ולמיקום שלו אין."};
inline constexpr Text kNoFullPath{L"\"%1\" is no full path.", L"„%1“ ist kein vollständiger Pfad.",
                                  L"\"%1\" אינו נתיב מלא."};
inline constexpr Text kOtherVersion{L"it has version %1, and this program knows version %2 only.",
                                    L"sie hat die Version %1, und dieses Programm kennt nur die Version %2.",
                                    L"הגרסה שלו היא %1, ותוכנית זו מכירה רק את גרסה %2."};
inline constexpr Text kTooManyOfOneName{L"it has too many entries of one name in one location.",
                                        L"sie hat zu viele Einträge eines Namens an einem Ort.",
                                        L"יש בו פריטים רבים מדי באותו שם ובאותו מיקום."};
inline constexpr Text kInEntry{L"entry %1: %2", L"Eintrag %1: %2", L"פריט %1: %2"};
inline constexpr Text kViewsAreOther{L"\"%1\" is neither 1 nor 2.", L"„%1“ ist weder 1 noch 2.",
                                     L"\"%1\" אינו 1 ואינו 2."};

// Its file.
inline constexpr Text kCannotWriteFile{L"Cannot write %1: %2", L"%1 kann nicht geschrieben werden: %2",
                                       L"לא ניתן לכתוב את %1: %2"};
inline constexpr Text kSnapshotTooLarge{L"the snapshot would have more than 32 MB.",
                                        L"der gespeicherte Stand hätte mehr als 32 MB.",
                                        L"המצב השמור יהיה גדול מ-32 מגה-בתים."};
inline constexpr Text kNoFile{L"There is no file %1.", L"Die Datei %1 gibt es nicht.", L"אין קובץ %1."};
inline constexpr Text kCannotReadFile{L"Cannot read %1: %2", L"%1 kann nicht gelesen werden: %2",
                                      L"לא ניתן לקרוא את %1: %2"};
inline constexpr Text kFileTooLarge{L"it has more than 32 MB.", L"sie hat mehr als 32 MB.",
                                    L"הוא גדול מ-32 מגה-בתים."};
inline constexpr Text kNoSnapshot{L"%1 is no snapshot that this program can use: %2",
                                  L"%1 ist kein gespeicherter Stand, den dieses Programm benutzen kann: %2",
                                  L"%1 אינו מצב שמור שתוכנית זו יכולה להשתמש בו: %2"};

}  // namespace smh::texts
