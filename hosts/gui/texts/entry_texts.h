// What is said of an entry: its state, whether Windows starts it, and how far it is trusted.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kOn{L"On", L"Ein", L"פועל"};
inline constexpr Text kOff{L"Off", L"Aus", L"כבוי"};
inline constexpr Text kYes{L"Yes", L"Ja", L"כן"};
inline constexpr Text kNo{L"No", L"Nein", L"לא"};
inline constexpr Text kCannotBeTold{L"Cannot be told", L"Nicht feststellbar", L"לא ניתן לדעת"};

// Behind a state.
inline constexpr Text kOnlyFromList32{L"%1, from the 32-bit list only", L"%1, nur aus der 32-Bit-Liste",
                                      L"%1, רק מרשימת 32 הסיביות"};
inline constexpr Text kOnlyIn32{L"%1, in 32-bit programs only", L"%1, nur in 32-Bit-Programmen",
                                L"%1, רק בתוכניות 32 סיביות"};
inline constexpr Text kOnlyFromList64{L"%1, from the 64-bit list only", L"%1, nur aus der 64-Bit-Liste",
                                      L"%1, רק מרשימת 64 הסיביות"};
inline constexpr Text kOnlyIn64{L"%1, in 64-bit programs only", L"%1, nur in 64-Bit-Programmen",
                                L"%1, רק בתוכניות 64 סיביות"};
inline constexpr Text kBut{L"%1, but %2", L"%1, aber %2", L"%1, אבל %2"};
inline constexpr Text kPerhaps{L"%1, perhaps %2", L"%1, vielleicht %2", L"%1, אולי %2"};
inline constexpr Text kWithoutCommand{L"%1, but without a command", L"%1, aber ohne Befehl",
                                      L"%1, אבל ללא פקודה"};
inline constexpr Text kStartUncertain{L"%1, start uncertain", L"%1, Start ungewiss",
                                      L"%1, ההפעלה אינה ודאית"};
inline constexpr Text kFileMissing{L"%1, file missing", L"%1, Datei fehlt", L"%1, הקובץ חסר"};
inline constexpr Text kFileOutOfReach{L"%1, file out of reach", L"%1, Datei nicht erreichbar",
                                      L"%1, אין גישה לקובץ"};
inline constexpr Text kLocked{L"%1, locked", L"%1, gesperrt", L"%1, נעול"};

// Behind kBut and kPerhaps.
inline constexpr Text kSwitchedOff{L"switched off in Task Manager", L"im Task-Manager ausgeschaltet",
                                   L"כבוי במנהל המשימות"};
inline constexpr Text kByPolicy{L"blocked by a policy", L"durch eine Richtlinie blockiert",
                                L"חסום על ידי מדיניות"};
inline constexpr Text kAsExtension{L"blocked as an extension", L"als Erweiterung blockiert", L"חסום כהרחבה"};
inline constexpr Text kNotApproved{L"not an approved extension", L"keine genehmigte Erweiterung",
                                   L"אינו הרחבה מאושרת"};
inline constexpr Text kNotRead{L"not read by this Windows", L"von diesem Windows nicht gelesen",
                               L"אינו נקרא על ידי Windows זה"};
inline constexpr Text kOnlyInIEMode{L"only in IE mode", L"nur im IE-Modus", L"רק במצב IE"};

// Sentences without an end.
inline constexpr Text kLiesDisabled{L"It lies in the place for disabled entries",
                                    L"Er liegt am Ort für deaktivierte Einträge",
                                    L"הוא נמצא במקום המיועד לפריטים מושבתים"};
inline constexpr Text kWasSwitchedOff{L"It was switched off in Task Manager or Settings",
                                      L"Er wurde im Task-Manager oder in den Einstellungen ausgeschaltet",
                                      L"הוא כובה במנהל המשימות או בהגדרות"};
inline constexpr Text kPolicyForbids{L"A policy of this machine or user forbids it",
                                     L"Eine Richtlinie dieses Computers oder Benutzers verbietet ihn",
                                     L"מדיניות של מחשב זה או של משתמש זה אוסרת אותו"};
inline constexpr Text kIsBlocked{
    L"It is on the list of blocked extensions, or was switched off as a browser add-on",
    L"Er steht auf der Liste der blockierten Erweiterungen oder wurde als Browser-Add-On ausgeschaltet",
    L"הוא נמצא ברשימת ההרחבות החסומות, או כובה כתוסף דפדפן"};
inline constexpr Text kOnlyApproved{L"Only approved extensions are loaded, and it is none",
                                    L"Nur genehmigte Erweiterungen werden geladen, und er ist keine",
                                    L"נטענות רק הרחבות מאושרות, והוא אינו אחת מהן"};
inline constexpr Text kLocationNotRead{L"This Windows does not read its location",
                                       L"Dieses Windows liest seinen Speicherort nicht",
                                       L"Windows זה אינו קורא את המיקום שלו"};
inline constexpr Text kLoadedInIEMode{L"This Windows loads it in the IE mode of another browser only",
                                      L"Dieses Windows lädt ihn nur im IE-Modus eines anderen Browsers",
                                      L"Windows זה טוען אותו רק במצב IE של דפדפן אחר"};
inline constexpr Text kFileNotThere{L"Its file is not there", L"Seine Datei ist nicht vorhanden",
                                    L"הקובץ שלו אינו קיים"};
inline constexpr Text kFileDoesNotAnswer{
    L"Its file is on a share or drive that does not answer now",
    L"Seine Datei liegt auf einer Freigabe oder einem Laufwerk, das zurzeit nicht antwortet",
    L"הקובץ שלו נמצא בשיתוף או בכונן שאינו מגיב כעת"};
inline constexpr Text kHasNoCommand{L"It has no command", L"Er hat keinen Befehl", L"אין לו פקודה"};

inline constexpr Text kVerified{L"Verified", L"Geprüft", L"מאומת"};
inline constexpr Text kClaimed{L"Claimed", L"Behauptet", L"מוצהר"};
inline constexpr Text kUnknown{L"Unknown", L"Unbekannt", L"לא ידוע"};
inline constexpr Text kRisky{L"Risky", L"Riskant", L"מסוכן"};
inline constexpr Text kChecking{L"Checking…", L"Wird geprüft…", L"בבדיקה…"};
inline constexpr Text kBrokenSignature{L"Broken signature", L"Ungültige Signatur", L"חתימה פגומה"};
inline constexpr Text kWithdrawnSignature{L"Withdrawn signature", L"Widerrufene Signatur", L"חתימה שבוטלה"};
inline constexpr Text kListedRisky{L"listed as risky", L"als riskant aufgeführt", L"רשום כמסוכן"};
inline constexpr Text kRatedVerified{
    L"rated trusted, and signed by the maker that the rating names",
    L"als vertrauenswürdig eingestuft und von dem Hersteller signiert, den die Einstufung nennt",
    L"מדורג כמהימן, וחתום על ידי היצרן שהדירוג מציין"};
inline constexpr Text kRatedClaimed{
    L"rated trusted for its name or company alone, which anybody can write into a file",
    L"nur wegen seines Namens oder seiner Firma als vertrauenswürdig eingestuft, die jeder in eine Datei "
    L"schreiben kann",
    L"מדורג כמהימן רק לפי שמו או החברה שלו, שכל אחד יכול לכתוב בקובץ"};
inline constexpr Text kNotRated{L"not rated", L"nicht eingestuft", L"לא מדורג"};

// The entry; trust; what it rests on; the signature; the file.
inline constexpr Text kRunQuestion{L"Run “%1”?\n\n%2: %3; %4.\n\n%5", L"„%1“ ausführen?\n\n%2: %3; %4.\n\n%5",
                                   L"להפעיל את “%1”?\n\n%2: %3; %4.\n\n%5"};
inline constexpr Text kRunQuestionElevated{
    L"Run “%1” with the rights of an administrator?\n\n%2: %3; %4.\n\n%5",
    L"„%1“ mit Administratorrechten ausführen?\n\n%2: %3; %4.\n\n%5",
    L"להפעיל את “%1” בהרשאות מנהל מערכת?\n\n%2: %3; %4.\n\n%5"};
inline constexpr Text kDefaultValue{L"(Default)", L"(Standard)", L"(ברירת מחדל)"};

}  // namespace smh::texts
