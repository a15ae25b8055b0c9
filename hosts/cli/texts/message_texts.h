// What commands tell of what they did, and what kept them from it.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// Changes of entries.
inline constexpr CountText kEntryCount{{L"1 entry", L"1 Eintrag", L"פריט אחד"},
                                       {L"%1 entries", L"%1 Einträge", L"%1 פריטים"}};
inline constexpr Text kSomeFailed{L"%1 of %2 failed or refused it.",
                                  L"%1 von %2: fehlgeschlagen oder verweigert.",
                                  L"%1 מתוך %2 נכשלו או סירבו."};
inline constexpr Text kWouldDrop{
    L"To keep this for undo, %1 older actions would be dropped for good, up to \"%2\"",
    L"Damit dies rückgängig zu machen ist, würden %1 ältere Aktionen endgültig verworfen, bis „%2“",
    L"כדי שניתן יהיה לבטל זאת, %1 פעולות ישנות יימחקו לצמיתות, עד \"%2\""};
inline constexpr Text kThatMeans{L"That means %1", L"Das betrifft %1", L"הדבר נוגע אל: %1"};
inline constexpr Text kNoSuchEntryLeft{L"There is no such entry; nothing was changed.",
                                       L"Es gibt keinen solchen Eintrag; nichts wurde geändert.",
                                       L"אין פריט כזה; דבר לא שונה."};
inline constexpr Text kCannotSeeOutcome{L"Cannot look at the outcome: %1",
                                        L"Das Ergebnis ist nicht zu sehen: %1",
                                        L"לא ניתן לבדוק את התוצאה: %1"};

// Questions.
inline constexpr Text kNothingWasChanged{L"Nothing was changed.", L"Nichts wurde geändert.", L"דבר לא שונה."};
inline constexpr Text kNeedsYes{L"%1: --yes goes on without a question%2. %3",
                                L"%1: --yes fährt ohne Rückfrage fort%2. %3",
                                L"%1: --yes ממשיך ללא שאלה%2. %3"};
inline constexpr Text kOrDryRun{L", --dry-run shows what would be done",
                                L", --dry-run zeigt, was geschehen würde", L", --dry-run מציג מה ייעשה"};
inline constexpr Text kGoOn{L"%1. Go on (y/n)?", L"%1. Fortfahren (j/n)?", L"%1. להמשיך (כ/ל)?"};
// What means yes besides "y" and "yes".
inline constexpr Text kYesLetter{L"y", L"j", L"כ"};
inline constexpr Text kYesWord{L"yes", L"ja", L"כן"};
inline constexpr Text kWouldStart{L"%1 would start with all rights on this machine (%2)",
                                  L"%1 würde mit allen Rechten auf diesem Computer starten (%2)",
                                  L"%1 יופעל עם כל ההרשאות במחשב זה (%2)"};

// Entries by their names.
inline constexpr Text kNoEntryNamed{L"No entry has the name, caption or id \"%1\".",
                                    L"Kein Eintrag hat den Namen, den Titel oder die ID „%1“.",
                                    L"לאף פריט אין השם, הכותרת או המזהה \"%1\"."};
inline constexpr Text kNoEntryNamedIn{L"No entry has the name, caption or id \"%1\" in %2.",
                                      L"Kein Eintrag in %2 hat den Namen, den Titel oder die ID „%1“.",
                                      L"לאף פריט ב-%2 אין השם, הכותרת או המזהה \"%1\"."};
inline constexpr Text kNoEntryNamedLeft{
    L"No entry has the name, caption or id \"%1\" among those that the filters leave.",
    L"Kein Eintrag, den die Filter übrig lassen, hat den Namen, den Titel oder die ID „%1“.",
    L"לאף אחד מהפריטים שהמסננים משאירים אין השם, הכותרת או המזהה \"%1\"."};
inline constexpr Text kSeveralEntries{
    L"\"%1\" means several entries; give the id or the full name of one:",
    L"„%1“ meint mehrere Einträge; nennen Sie die ID oder den vollen Namen von einem:",
    L"\"%1\" מתייחס לכמה פריטים; יש לציין את המזהה או את השם המלא של אחד מהם:"};
inline constexpr Text kEntryLine{L"  %1  %2  (%3, %4)", L"  %1  %2  (%3, %4)", L"  %1  %2  (%3, %4)"};
inline constexpr Text kHasGoneMeanwhile{L"%1 has gone meanwhile.", L"%1 ist inzwischen verschwunden.",
                                        L"%1 נעלם בינתיים."};

// Input and output.
inline constexpr Text kCannotReadInput{L"Cannot read %1: %2", L"%1 kann nicht gelesen werden: %2",
                                       L"לא ניתן לקרוא את %1: %2"};
inline constexpr Text kCannotWriteTo{L"Cannot write the file \"%1\": %2",
                                     L"Die Datei „%1“ kann nicht geschrieben werden: %2",
                                     L"לא ניתן לכתוב את הקובץ \"%1\": %2"};
inline constexpr Text kCannotWriteOutput{L"Cannot write the output: %1",
                                         L"Die Ausgabe kann nicht geschrieben werden: %1",
                                         L"לא ניתן לכתוב את הפלט: %1"};
inline constexpr Text kNoInput{L"Nothing comes on standard input.", L"Über die Standardeingabe kommt nichts.",
                               L"דבר אינו מגיע בקלט התקני."};
inline constexpr Text kNoInputYet{L"Nothing has come on standard input for a minute.",
                                  L"Über die Standardeingabe ist seit einer Minute nichts gekommen.",
                                  L"דבר לא הגיע בקלט התקני במשך דקה."};
inline constexpr Text kCannotReadStandardInput{L"Cannot read standard input: %1",
                                               L"Die Standardeingabe kann nicht gelesen werden: %1",
                                               L"לא ניתן לקרוא את הקלט התקני: %1"};
inline constexpr Text kTooMuchInput{L"Too much comes on standard input.",
                                    L"Über die Standardeingabe kommt zu viel.",
                                    L"קלט רב מדי מגיע בקלט התקני."};

// Starting, showing, watching.
inline constexpr Text kCannotExecute{L"Cannot execute %1", L"Ausführen nicht möglich, %1",
                                     L"לא ניתן להריץ את %1"};
inline constexpr Text kExecuteNoCommand{L"Cannot execute %1: it has no command.",
                                        L"Ausführen nicht möglich, %1: Er hat keinen Befehl.",
                                        L"לא ניתן להריץ את %1: אין לו פקודה."};
inline constexpr Text kExecuteNoFile{L"Cannot execute %1: the file %2 does not exist.",
                                     L"Ausführen nicht möglich, %1: Die Datei %2 gibt es nicht.",
                                     L"לא ניתן להריץ את %1: הקובץ %2 אינו קיים."};
inline constexpr Text kExecuteNoProgram{L"Cannot execute %1: %2 is not a program.",
                                        L"Ausführen nicht möglich, %1: %2 ist kein Programm.",
                                        L"לא ניתן להריץ את %1: %2 אינו תוכנית."};
inline constexpr Text kStartedFile{L"Started %1.", L"Gestartet: %1.", L"הורץ: %1."};
inline constexpr Text kCannotShowPlace{L"Cannot show the place of %1",
                                       L"Anzeigen des Ortes nicht möglich, %1",
                                       L"לא ניתן להציג את המיקום של %1"};
inline constexpr Text kNoRegistryEditor{
    L"Cannot show the place of %1: the registry editor cannot be started.",
    L"Anzeigen des Ortes nicht möglich, %1: Der Registrierungs-Editor kann nicht "
    L"gestartet werden.",
    L"לא ניתן להציג את המיקום של %1: לא ניתן להפעיל את עורך הרישום."};
inline constexpr Text kWatching{L"Watching; Ctrl+C ends.", L"Beobachtung läuft; Strg+C beendet sie.",
                                L"מתבצע מעקב; Ctrl+C מסיים."};
inline constexpr Text kNoEvent{L"Cannot create an event.", L"Ein Ereignis kann nicht erstellt werden.",
                               L"לא ניתן ליצור אירוע."};

// Snapshots.
inline constexpr Text kWroteEntries{L"Wrote %1 entries to %2.", L"%1 Einträge wurden geschrieben: %2.",
                                    L"%1 פריטים נכתבו אל %2."};
inline constexpr Text kNoneDiffers{L"No entry differs.", L"Kein Eintrag weicht ab.", L"אין פריט שונה."};
inline constexpr CountText kDiffer{{L"One entry differs.", L"Ein Eintrag weicht ab.", L"פריט אחד שונה."},
                                   {L"%1 entries differ.", L"%1 Einträge weichen ab.", L"%1 פריטים שונים."}};
inline constexpr Text kAllAreSo{L"All entries are as in %1 already.", L"Alle Einträge sind schon wie in %1.",
                                L"כל הפריטים כבר כמו ב-%1."};
inline constexpr Text kLeftOut{L"\"%1\" is left out: JSON cannot hold its name or command.",
                               L"„%1“ ist ausgelassen: JSON kann seinen Namen oder Befehl nicht enthalten.",
                               L"\"%1\" הושמט: JSON אינו יכול להכיל את שמו או את הפקודה שלו."};

// Task Manager's switches.
inline constexpr CountText kThatTakesAway{
    {L"That takes away 1 switch that belongs to no entry",
     L"Das entfernt 1 Schalter, der zu keinem Eintrag gehört", L"פעולה זו מסירה מתג אחד שאינו שייך לאף פריט"},
    {L"That takes away %1 switches that belong to no entry",
     L"Das entfernt %1 Schalter, die zu keinem Eintrag gehören",
     L"פעולה זו מסירה %1 מתגים שאינם שייכים לאף פריט"}};
inline constexpr CountText kTookAway{
    {L"Took away 1 switch.", L"1 Schalter wurde entfernt.", L"מתג אחד הוסר."},
    {L"Took away %1 switches.", L"%1 Schalter wurden entfernt.", L"%1 מתגים הוסרו."}};
inline constexpr Text kSwitchFailure{L"%1: %2", L"%1: %2", L"%1: %2"};
inline constexpr Text kNoOrphan{L"There is no switch without an entry.",
                                L"Es gibt keinen Schalter ohne Eintrag.", L"אין מתג ללא פריט."};

// The system.
inline constexpr Text kNoFileAt{L"There is no file \"%1\".", L"Die Datei „%1“ gibt es nicht.",
                                L"אין קובץ \"%1\"."};
inline constexpr Text kNamesNoFile{L"The command line \"%1\" names no file.",
                                   L"Die Befehlszeile „%1“ nennt keine Datei.",
                                   L"שורת הפקודה \"%1\" אינה מציינת קובץ."};
inline constexpr Text kNoSuchFile{L"There is no such file.", L"Diese Datei gibt es nicht.", L"אין קובץ כזה."};
inline constexpr Text kNoLogFolder{L"Cannot tell the folder of the log file.",
                                   L"Der Ordner der Protokolldatei ist nicht feststellbar.",
                                   L"לא ניתן לדעת מהי התיקייה של קובץ הרישום."};
inline constexpr Text kCannotListWindows{L"Cannot list the windows: %1",
                                         L"Die Fenster können nicht aufgelistet werden: %1",
                                         L"לא ניתן להציג את רשימת החלונות: %1"};

}  // namespace smh::texts
