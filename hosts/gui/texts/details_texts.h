// The names of the lines of the details, where no column has the same one, and their words.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kBytes{L"%1 bytes", L"%1 Bytes", L"%1 בתים"};
inline constexpr Text kMissingMark{L"(missing)", L"(fehlt)", L"(חסר)"};
inline constexpr Text kOutOfReachMark{L"(out of reach)", L"(nicht erreichbar)", L"(אין גישה)"};
inline constexpr Text kCannotBeToldMark{L"(cannot be told)", L"(nicht feststellbar)", L"(לא ניתן לדעת)"};
inline constexpr Text kDescribedHere{L"  (described here)", L"  (hier beschrieben)", L"  (מתואר כאן)"};
inline constexpr Text kTrustAndReason{L"%1: %2", L"%1: %2", L"%1: %2"};

inline constexpr Text kBecauseLine{L"Because", L"Weil", L"כי"};
inline constexpr Text kPerhapsLine{L"Perhaps", L"Vielleicht", L"אולי"};
inline constexpr Text kSwitchedOffLine{L"Switched off", L"Ausgeschaltet", L"כובה"};
inline constexpr Text kNoteLine{L"Note", L"Hinweis", L"הערה"};
inline constexpr Text kSignatureLine{L"Signature", L"Signatur", L"חתימה"};
inline constexpr Text kSignedLine{L"Signed", L"Signiert", L"נחתם"};
inline constexpr Text kHashLine{L"SHA-256", L"SHA-256", L"SHA-256"};
inline constexpr Text kRunsLine{L"Runs", L"Führt aus", L"מריץ"};
inline constexpr Text kStartedThroughLine{L"Started through", L"Gestartet über", L"מופעל באמצעות"};
inline constexpr Text kWorkingFolderLine{L"Working folder", L"Arbeitsordner", L"תיקיית עבודה"};
inline constexpr Text kProductLine{L"Product", L"Produkt", L"מוצר"};
inline constexpr Text kFileVersionLine{L"File version", L"Dateiversion", L"גרסת קובץ"};
inline constexpr Text kProductVersionLine{L"Product version", L"Produktversion", L"גרסת מוצר"};
inline constexpr Text kVersionNumberLine{L"Version number", L"Versionsnummer", L"מספר גרסה"};
inline constexpr Text kInternalNameLine{L"Internal name", L"Interner Name", L"שם פנימי"};
inline constexpr Text kOriginalNameLine{L"Original file name", L"Originaldateiname", L"שם קובץ מקורי"};
inline constexpr Text kCommentsLine{L"Comments", L"Kommentare", L"הערות יצרן"};
inline constexpr Text kPrivateBuildLine{L"Private build", L"Privater Build", L"גרסת Build פרטית"};
inline constexpr Text kSpecialBuildLine{L"Special build", L"Spezieller Build", L"גרסת Build מיוחדת"};
inline constexpr Text kCopyrightLine{L"Copyright", L"Copyright", L"זכויות יוצרים"};
inline constexpr Text kTrademarksLine{L"Trademarks", L"Marken", L"סימנים מסחריים"};
inline constexpr Text kTypeLine{L"Type", L"Typ", L"סוג"};
inline constexpr Text kSizeLine{L"Size", L"Größe", L"גודל"};
inline constexpr Text kCreatedLine{L"Created", L"Erstellt", L"נוצר"};
inline constexpr Text kChangedLine{L"Changed", L"Geändert", L"השתנה"};
inline constexpr Text kLastOpenedLine{L"Last opened", L"Zuletzt geöffnet", L"נפתח לאחרונה"};
inline constexpr Text kStoredAsLine{L"Stored as", L"Gespeichert als", L"מאוחסן בתור"};

// Beside a saved state.
inline constexpr Text kComparedLine{L"Compared", L"Vergleich", L"השוואה"};
inline constexpr Text kStatusBeforeLine{L"Status before", L"Status vorher", L"המצב הקודם"};
inline constexpr Text kCommandBeforeLine{L"Command before", L"Befehl vorher", L"הפקודה הקודמת"};
inline constexpr Text kView32BeforeLine{L"32-bit view before", L"32-Bit-Ansicht vorher",
                                        L"תצוגת 32 סיביות קודמת"};
inline constexpr Text kWasStoredAsLine{L"Was stored as", L"War gespeichert als", L"היה מאוחסן בתור"};
inline constexpr Text kDifferenceAdded{L"Added", L"Hinzugefügt", L"נוסף"};
inline constexpr Text kDifferenceRemoved{L"Removed", L"Entfernt", L"הוסר"};
inline constexpr Text kDifferenceChanged{L"Changed", L"Geändert", L"שונה"};
inline constexpr Text kDifferenceSwitched{L"Switched", L"Umgeschaltet", L"הוחלף מצב"};
inline constexpr Text kCountAdded{L"%1 added", L"%1 hinzugefügt", L"נוספו: %1"};
inline constexpr Text kCountRemoved{L"%1 removed", L"%1 entfernt", L"הוסרו: %1"};
inline constexpr Text kCountChanged{L"%1 changed", L"%1 geändert", L"שונו: %1"};
inline constexpr Text kCountSwitched{L"%1 switched", L"%1 umgeschaltet", L"הוחלף מצב: %1"};
inline constexpr Text kNothingDiffers{L"nothing differs", L"kein Unterschied", L"אין הבדלים"};

}  // namespace smh::texts
