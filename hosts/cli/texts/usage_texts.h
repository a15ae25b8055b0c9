// What does not fit in a command line.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kNoCommand{L"No command was given.", L"Es wurde kein Befehl angegeben.",
                                 L"לא ניתנה פקודה."};
inline constexpr Text kUnknownCommand{L"There is no command \"%1\".%2", L"Es gibt keinen Befehl „%1“.%2",
                                      L"אין פקודה \"%1\".%2"};
inline constexpr Text kNotExpected{L"\"%1\" is not expected here.%2", L"„%1“ wird hier nicht erwartet.%2",
                                   L"\"%1\" אינו צפוי כאן.%2"};
inline constexpr Text kDidYouMean{L" Did you mean \"%1\"?", L" Meinten Sie „%1“?", L" האם הכוונה ל-\"%1\"?"};
inline constexpr Text kSeeHelp{L"See startupctl --help.", L"Siehe startupctl --help.",
                               L"ראו startupctl --help."};
inline constexpr Text kSeeCommandHelp{L"See startupctl %1 --help.", L"Siehe startupctl %1 --help.",
                                      L"ראו startupctl %1 --help."};
inline constexpr Text kWrongLanguage{L"--language takes en, de or he, not \"%1\".",
                                     L"--language nimmt en, de oder he an, nicht „%1“.",
                                     L"--language מקבל en, de או he, ולא \"%1\"."};
// What the parser says, by its own words. One that stands here not is told as it is.
inline constexpr Text kParserFault{L"%1.", L"%1.", L"%1."};
inline constexpr Text kParserTexts[] = {
    {L"A subcommand is required", L"Es fehlt ein Befehl", L"חסרה פקודה"},
    {L"%1 is required", L"%1 ist nötig", L"נדרש %1"},
    {L"%1 excludes %2", L"%1 geht nicht mit %2", L"לא ניתן לשלב את %1 עם %2"},
    {L"%1 requires %2", L"%1 braucht %2", L"%1 מחייב את %2"},
    {L"Could not convert: %1 = %2", L"Kein Wert für %1: %2", L"ערך לא מתאים עבור %1: %2"},
    {L"%1: At Most %2 required but received %3", L"%1: höchstens %2, nicht %3", L"%1: לכל היותר %2, ולא %3"},
    {L"%1: 1 required %2 missing", L"%1: %2 fehlt", L"%1: חסר %2"},
    {L"%1: %2 required %3 missing", L"%1: %2 mal %3 fehlt", L"%1: חסרים %2 של %3"},
    {L"%1 was given a disallowed flag override", L"%1 nimmt keinen Wert an", L"%1 אינו מקבל ערך"},
};

inline constexpr Text kUnknownLocation{L"There is no location \"%1\"; the command locations lists them.%2",
                                       L"Es gibt keinen Ort „%1“; der Befehl locations listet sie auf.%2",
                                       L"אין מיקום \"%1\"; הפקודה locations מציגה אותם.%2"};
inline constexpr Text kNotANumber{
    L"\"%1\" is not a number; the command checkpoints lists those of checkpoints.",
    L"„%1“ ist keine Nummer; der Befehl checkpoints listet die der Prüfpunkte auf.",
    L"\"%1\" אינו מספר; הפקודה checkpoints מציגה את המספרים של נקודות הביקורת."};
inline constexpr Text kUnknownCheckpoint{L"There is no checkpoint %1.", L"Es gibt keinen Prüfpunkt %1.",
                                         L"אין נקודת ביקורת %1."};
inline constexpr Text kPathEmpty{L"The path is empty.", L"Der Pfad ist leer.", L"הנתיב ריק."};
inline constexpr Text kUnknownRating{L"There is no rating \"%1\": it is trusted, unknown or risky.",
                                     L"Es gibt keine Einstufung „%1“: Sie ist trusted, unknown oder risky.",
                                     L"אין דירוג \"%1\": הוא trusted, unknown או risky."};
inline constexpr Text kNoTime{
    L"\"%1\" is no time: 2024-05-31 or 2024-05-31T18:00, or 90m, 36h, 7d, 2w before now.",
    L"„%1“ ist keine Zeit: 2024-05-31 oder 2024-05-31T18:00, oder 90m, 36h, 7d, 2w vor jetzt.",
    L"\"%1\" אינו זמן: 2024-05-31 או 2024-05-31T18:00, או 90m, 36h, 7d, 2w לפני עכשיו."};
inline constexpr Text kTextEmpty{L"The text of %1 is empty.", L"Der Text von %1 ist leer.",
                                 L"הטקסט של %1 ריק."};
inline constexpr Text kNameEmpty{L"The name is empty.", L"Der Name ist leer.", L"השם ריק."};
inline constexpr Text kCommandEmpty{L"The command is empty.", L"Der Befehl ist leer.", L"הפקודה ריקה."};
inline constexpr Text kWhichEntries{L"Which entries? Give an ITEM or a filter.",
                                    L"Welche Einträge? Geben Sie ein ITEM oder einen Filter an.",
                                    L"אילו פריטים? יש לציין ITEM או מסנן."};
inline constexpr Text kOutputEmpty{L"The name of the output file is empty.",
                                   L"Der Name der Ausgabedatei ist leer.", L"השם של קובץ הפלט ריק."};
inline constexpr Text kOnlyNeedsId{L"--only needs the ID of a checkpoint.",
                                   L"--only braucht die ID eines Prüfpunkts.",
                                   L"--only מחייב ID של נקודת ביקורת."};
inline constexpr Text kPruneNeedsOne{L"An ID, --keep or --days is required.",
                                     L"Eine ID, --keep oder --days ist nötig.",
                                     L"נדרש ID, --keep או --days."};
inline constexpr Text kNoInstance{L"This is no instance of a start-up entry: %1",
                                  L"Dies ist keine Instanz eines Starteintrags: %1",
                                  L"זהו אינו מופע של פריט הפעלה: %1"};
inline constexpr Text kNoProperty{L"there is no property \"%1\".", L"es gibt keine Eigenschaft „%1“.",
                                  L"אין מאפיין \"%1\"."};
inline constexpr Text kIsEmpty{L"\"%1\" is empty.", L"„%1“ ist leer.", L"\"%1\" ריק."};
inline constexpr Text kNeedsCommandNow{L"An entry that is to be made needs a command.",
                                       L"Ein Eintrag, der erstellt werden soll, braucht einen Befehl.",
                                       L"פריט שיש ליצור זקוק לפקודה."};

}  // namespace smh::texts
