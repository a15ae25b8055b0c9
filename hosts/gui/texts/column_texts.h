// The titles of the columns of all lists, and the words that stand in them.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kNameTitle{L"Name", L"Name", L"שם"};
inline constexpr Text kStatusTitle{L"Status", L"Status", L"מצב"};
inline constexpr Text kCompanyTitle{L"Company", L"Firma", L"חברה"};
inline constexpr Text kTrustTitle{L"Trust", L"Vertrauen", L"אמון"};
inline constexpr Text kCommandTitle{L"Command", L"Befehl", L"פקודה"};
inline constexpr Text kLocationTitle{L"Location", L"Speicherort", L"מיקום"};
inline constexpr Text kDescriptionTitle{L"Description", L"Beschreibung", L"תיאור"};
inline constexpr Text kVersionTitle{L"Version", L"Version", L"גרסה"};
inline constexpr Text kSignerTitle{L"Signer", L"Signiert von", L"חותם"};
inline constexpr Text kStartsTitle{L"Starts", L"Startet", L"מופעל"};
inline constexpr Text kFileDateTitle{L"File date", L"Dateidatum", L"תאריך הקובץ"};
inline constexpr Text kViewTitle{L"View", L"Ansicht", L"תצוגה"};
inline constexpr Text kDisabledByTitle{L"Disabled by", L"Deaktiviert von", L"הושבת על ידי"};
inline constexpr Text kFileTitle{L"File", L"Datei", L"קובץ"};

inline constexpr Text kBothViews{L"64-bit and 32-bit", L"64-Bit und 32-Bit", L"64 סיביות ו-32 סיביות"};
inline constexpr Text kView64{L"64-bit", L"64-Bit", L"64 סיביות"};
inline constexpr Text kView32{L"32-bit", L"32-Bit", L"32 סיביות"};

inline constexpr Text kUsedForTitle{L"Used for", L"Verwendet für", L"משמש עבור"};
inline constexpr Text kDefaultTitle{L"Default", L"Standard", L"ברירת מחדל"};
inline constexpr Text kProgramTitle{L"Program", L"Programm", L"תוכנית"};
inline constexpr Text kMissingBehind{L"%1  (missing)", L"%1  (fehlt)", L"%1  (חסר)"};

inline constexpr Text kKindAdded{L"Added", L"Hinzugefügt", L"נוסף"};
inline constexpr Text kKindMail{L"Mail", L"E-Mail", L"דואר"};
inline constexpr Text kKindMedia{L"Media player", L"Medienwiedergabe", L"נגן מדיה"};
inline constexpr Text kKindBrowser{L"Browser", L"Browser", L"דפדפן"};
inline constexpr Text kKindContacts{L"Contacts", L"Kontakte", L"אנשי קשר"};
inline constexpr Text kKindCalendar{L"Calendar", L"Kalender", L"לוח שנה"};
inline constexpr Text kKindCall{L"Internet call", L"Internettelefonie", L"שיחת אינטרנט"};
inline constexpr Text kKindMessaging{L"Messaging", L"Nachrichten", L"העברת הודעות"};

}  // namespace smh::texts
