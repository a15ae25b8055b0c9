// What the library refuses, in the hosts' words: ends of sentences.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kNoMoreListed{L"the entry has gone meanwhile.",
                                    L"der Eintrag ist inzwischen verschwunden.", L"הפריט נעלם בינתיים."};
inline constexpr Text kWindowsRefused{L"nothing was changed: Windows refused it.",
                                      L"nichts wurde geändert: Windows hat es verweigert.",
                                      L"דבר לא שונה: Windows סירב לכך."};
inline constexpr Text kChangedByOther{
    L"another program has changed the entry meanwhile; nothing was changed. Look at it again first.",
    L"ein anderes Programm hat den Eintrag inzwischen geändert; nichts wurde geändert. Sehen Sie ihn zuerst "
    L"wieder an.",
    L"תוכנית אחרת שינתה את הפריט בינתיים; דבר לא שונה. יש לבדוק אותו שוב תחילה."};
inline constexpr Text kPlaceTaken{
    L"another entry of that name stands where it would go; nothing was changed.",
    L"ein anderer Eintrag dieses Namens steht dort, wohin er käme; nichts wurde geändert.",
    L"פריט אחר בשם זה נמצא במקום שאליו היה עובר; דבר לא שונה."};
inline constexpr Text kOtherUnderWay{
    L"another change is under way; nothing was changed. Try again.",
    L"eine andere Änderung läuft gerade; nichts wurde geändert. Versuchen Sie es noch einmal.",
    L"שינוי אחר מתבצע כעת; דבר לא שונה. יש לנסות שוב."};
inline constexpr Text kOtherAtWork{
    L"another change is at work; nothing was changed. Try again.",
    L"eine andere Änderung ist in Arbeit; nichts wurde geändert. Versuchen Sie es noch einmal.",
    L"שינוי אחר נמצא בביצוע; דבר לא שונה. יש לנסות שוב."};
inline constexpr Text kEmptyCommand{L"a command must not be empty.", L"ein Befehl darf nicht leer sein.",
                                    L"פקודה אינה יכולה להיות ריקה."};
inline constexpr Text kBusyThread{
    L"something else is being done at this moment. Try again.",
    L"im Augenblick wird etwas anderes ausgeführt. Versuchen Sie es noch einmal.",
    L"פעולה אחרת מתבצעת ברגע זה. יש לנסות שוב."};
inline constexpr Text kStateForbids{L"the entry does not allow it in its present state.",
                                    L"der Eintrag erlaubt es in seinem jetzigen Zustand nicht.",
                                    L"הפריט אינו מאפשר זאת במצבו הנוכחי."};
inline constexpr Text kNoSuchEntry{L"the location takes no such entry.",
                                   L"der Ort nimmt keinen solchen Eintrag auf.",
                                   L"המיקום אינו מקבל פריט כזה."};
inline constexpr Text kListInUse{L"the list of entries is in use at this moment.",
                                 L"die Liste der Einträge ist im Augenblick in Gebrauch.",
                                 L"רשימת הפריטים נמצאת בשימוש ברגע זה."};
inline constexpr Text kNotPossibleNow{L"that is not possible at this moment.",
                                      L"das ist im Augenblick nicht möglich.", L"הדבר אינו אפשרי ברגע זה."};

}  // namespace smh::texts
