// Why an entry cannot be brought into the state of a snapshot: ends of sentences.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kForbidsCommand{
    L"entries of %1 do not allow another command, or this account may not write there.",
    L"Einträge von %1 erlauben keinen anderen Befehl, oder dieses Konto darf dort nicht schreiben.",
    L"הפריטים של %1 אינם מאפשרים פקודה אחרת, או שלחשבון זה אין הרשאת כתיבה שם."};
inline constexpr Text kForbidsEnabling{
    L"entries of %1 do not allow to be enabled, or this account may not write there.",
    L"Einträge von %1 sind nicht zu aktivieren, oder dieses Konto darf dort nicht schreiben.",
    L"לא ניתן להפעיל פריטים של %1, או שלחשבון זה אין הרשאת כתיבה שם."};
inline constexpr Text kForbidsDisabling{
    L"entries of %1 do not allow to be disabled, or this account may not write there.",
    L"Einträge von %1 sind nicht zu deaktivieren, oder dieses Konto darf dort nicht schreiben.",
    L"לא ניתן להשבית פריטים של %1, או שלחשבון זה אין הרשאת כתיבה שם."};
inline constexpr Text kForbidsSwitching{
    L"entries of %1 do not allow to be switched, or this account may not write there.",
    L"Einträge von %1 sind nicht umzuschalten, oder dieses Konto darf dort nicht schreiben.",
    L"לא ניתן להחליף את מצב המתג של פריטים של %1, או שלחשבון זה אין הרשאת כתיבה שם."};
inline constexpr Text kForbidsDeleting{
    L"entries of %1 do not allow to be deleted, or this account may not write there.",
    L"Einträge von %1 sind nicht zu löschen, oder dieses Konto darf dort nicht schreiben.",
    L"לא ניתן למחוק פריטים של %1, או שלחשבון זה אין הרשאת כתיבה שם."};
inline constexpr Text kCommandHoldsNul{L"the command holds a NUL.", L"der Befehl enthält ein NUL-Zeichen.",
                                       L"הפקודה מכילה תו NUL."};
inline constexpr Text kOnlyCase{
    L"the commands differ in case only, which does not count as a change.",
    L"die Befehle unterscheiden sich nur in Groß- und Kleinschreibung, was nicht als "
    L"Änderung gilt.",
    L"הפקודות שונות רק באותיות גדולות וקטנות, ודבר זה אינו נחשב לשינוי."};
inline constexpr Text kOtherViewLeft{
    L"what the 32-bit view holds under its name is left alone.",
    L"was die 32-Bit-Sicht unter seinem Namen enthält, wird nicht angetastet.",
    L"מה שתצוגת 32 הסיביות מכילה בשמו אינו משתנה."};
inline constexpr Text kCannotBeAdded{L"entries of %1 cannot be added.",
                                     L"Einträge von %1 können nicht hinzugefügt werden.",
                                     L"לא ניתן להוסיף פריטים של %1."};
inline constexpr Text kDisabledByOther{
    L"it was disabled by another tool, and nothing is added to that one's place.",
    L"er wurde von einem anderen Programm deaktiviert, an dessen Platz nichts hinzugefügt wird.",
    L"הוא הושבת על ידי כלי אחר, ודבר אינו מתווסף למקום של אותו כלי."};
inline constexpr Text kNameOnly{L"it is a file, of which a snapshot has the name only.",
                                L"er ist eine Datei, von der ein gespeicherter Stand nur den Namen hat.",
                                L"הוא קובץ, שבמצב שמור נמצא רק שמו."};
inline constexpr Text kOnlyIn32View{L"it was in the 32-bit view alone, where nothing is added.",
                                    L"er war nur in der 32-Bit-Sicht, wo nichts hinzugefügt wird.",
                                    L"הוא היה רק בתצוגת 32 הסיביות, שאליה דבר אינו מתווסף."};
inline constexpr Text kHasNoName{L"it has no name.", L"er hat keinen Namen.", L"אין לו שם."};
inline constexpr Text kLacksCommand{L"it has no command.", L"er hat keinen Befehl.", L"אין לו פקודה."};
inline constexpr Text kNameOrCommandHoldsNul{L"its name or command holds a NUL.",
                                             L"sein Name oder Befehl enthält ein NUL-Zeichen.",
                                             L"השם או הפקודה שלו מכילים תו NUL."};

}  // namespace smh::texts
