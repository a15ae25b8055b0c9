// Whether an entry starts, why not, and how far its file is trusted.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kEnabledState{L"enabled", L"aktiviert", L"מופעל"};
inline constexpr Text kDisabledState{L"disabled", L"deaktiviert", L"מושבת"};

inline constexpr Text kStarts{L"yes", L"ja", L"כן"};
inline constexpr Text kStartsNot{L"no", L"nein", L"לא"};
inline constexpr Text kStartsPerhaps{L"unknown", L"unbekannt", L"לא ידוע"};
inline constexpr Text kNotFromList64{L"yes, but not from the 64-bit list",
                                     L"ja, aber nicht aus der 64-Bit-Liste", L"כן, אבל לא מרשימת 64 הסיביות"};
inline constexpr Text kNotFromList32{L"yes, but not from the 32-bit list",
                                     L"ja, aber nicht aus der 32-Bit-Liste", L"כן, אבל לא מרשימת 32 הסיביות"};
inline constexpr Text kNotFor64{L"yes, but not for 64-bit programs", L"ja, aber nicht für 64-Bit-Programme",
                                L"כן, אבל לא עבור תוכניות 64 סיביות"};
inline constexpr Text kNotFor32{L"yes, but not for 32-bit programs", L"ja, aber nicht für 32-Bit-Programme",
                                L"כן, אבל לא עבור תוכניות 32 סיביות"};
// Whether it starts; why not.
inline constexpr Text kStartsFor{L"%1: %2", L"%1: %2", L"%1: %2"};

// Reasons.
inline constexpr Text kReasonOff{L"switched off in Task Manager", L"im Task-Manager ausgeschaltet",
                                 L"כבוי במנהל המשימות"};
inline constexpr Text kReasonByPolicy{L"forbidden by a policy", L"durch eine Richtlinie verboten",
                                      L"אסור על ידי מדיניות"};
inline constexpr Text kReasonIsBlocked{L"blocked", L"blockiert", L"חסום"};
inline constexpr Text kReasonUnapproved{L"not approved", L"nicht genehmigt", L"לא מאושר"};
inline constexpr Text kReasonUnread{L"not read by this Windows", L"von diesem Windows nicht gelesen",
                                    L"אינו נקרא על ידי Windows זה"};
inline constexpr Text kReasonIEMode{L"only in IE mode", L"nur im IE-Modus", L"רק במצב IE"};
inline constexpr Text kReasonNoFile{L"file missing", L"Datei fehlt", L"הקובץ חסר"};
inline constexpr Text kReasonOutOfReach{L"file out of reach", L"Datei nicht erreichbar", L"אין גישה לקובץ"};
inline constexpr Text kReasonNoCommand{L"it has no command", L"ohne Befehl", L"אין לו פקודה"};
inline constexpr Text kReasonPerhaps{L"perhaps %1", L"vielleicht %1", L"אולי %1"};

// Marks in front of the names of RunOnce entries.
inline constexpr Text kMarkAfter{
    L"\"!\" before the name: Windows removes the entry after its command has run, not before",
    L"„!“ vor dem Namen: Windows entfernt den Eintrag, nachdem sein Befehl ausgeführt wurde, nicht vorher",
    L"\"!\" לפני השם: Windows מסיר את הפריט אחרי שהפקודה שלו רצה, ולא לפני כן"};
inline constexpr Text kMarkSafeMode{L"\"*\" before the name: it runs in safe mode, too",
                                    L"„*“ vor dem Namen: Er wird auch im abgesicherten Modus ausgeführt",
                                    L"\"*\" לפני השם: הוא רץ גם במצב בטוח"};

// By TrustWord.
inline constexpr Text kTrustWords[] = {{L"verified", L"geprüft", L"מאומת"},
                                       {L"claimed", L"behauptet", L"מוצהר"},
                                       {L"unknown", L"unbekannt", L"לא ידוע"},
                                       {L"risky", L"riskant", L"מסוכן"}};
// By FileRating; what was not verified is not called so.
inline constexpr Text kRatingWords[] = {
    {L"trusted, not verified", L"vertrauenswürdig, nicht geprüft", L"מהימן, לא מאומת"},
    {L"unknown", L"unbekannt", L"לא ידוע"},
    {L"risky", L"riskant", L"מסוכן"}};

// By SignatureState: with the signer, and without one.
struct SignatureTexts {
  Text by;
  Text plain;
};
inline constexpr SignatureTexts kSignatures[] = {
    {{L"signed by %1", L"signiert von %1", L"חתום על ידי %1"}, {L"signed", L"signiert", L"חתום"}},
    {{L"signed by %1, in a catalogue of this Windows", L"signiert von %1, in einem Katalog dieses Windows",
      L"חתום על ידי %1, בקטלוג של Windows זה"},
     {L"signed, in a catalogue of this Windows", L"signiert, in einem Katalog dieses Windows",
      L"חתום, בקטלוג של Windows זה"}},
    {{L"not signed", L"nicht signiert", L"לא חתום"}, {L"not signed", L"nicht signiert", L"לא חתום"}},
    {{L"changed after it was signed by %1", L"geändert, nachdem sie von %1 signiert wurde",
      L"שונה לאחר שנחתם על ידי %1"},
     {L"changed after it was signed", L"geändert, nachdem sie signiert wurde", L"שונה לאחר שנחתם"}},
    {{L"signed as %1, for which nobody vouches on this machine",
      L"signiert als %1, wofür auf diesem Computer niemand bürgt", L"חתום בשם %1, שאיש אינו ערב לו במחשב זה"},
     {L"signed, but nobody vouches for it on this machine",
      L"signiert, aber auf diesem Computer bürgt niemand dafür", L"חתום, אבל איש אינו ערב לכך במחשב זה"}},
    {{L"signed as %1, with a certificate that had expired",
      L"signiert als %1, mit einem abgelaufenen Zertifikat", L"חתום בשם %1, עם אישור שתוקפו פג"},
     {L"signed with a certificate that had expired", L"mit einem abgelaufenen Zertifikat signiert",
      L"חתום עם אישור שתוקפו פג"}},
    {{L"signed as %1, with a certificate that was withdrawn",
      L"signiert als %1, mit einem widerrufenen Zertifikat", L"חתום בשם %1, עם אישור שבוטל"},
     {L"signed with a certificate that was withdrawn", L"mit einem widerrufenen Zertifikat signiert",
      L"חתום עם אישור שבוטל"}},
    {{L"signed as %1, which cannot be checked without the network",
      L"signiert als %1, was ohne Netzwerk nicht prüfbar ist", L"חתום בשם %1, ולא ניתן לבדוק זאת ללא הרשת"},
     {L"signed, which cannot be checked without the network",
      L"signiert, was ohne Netzwerk nicht prüfbar ist", L"חתום, ולא ניתן לבדוק זאת ללא הרשת"}},
    {{L"cannot be checked", L"nicht prüfbar", L"לא ניתן לבדיקה"},
     {L"cannot be checked", L"nicht prüfbar", L"לא ניתן לבדיקה"}},
};

}  // namespace smh::texts
