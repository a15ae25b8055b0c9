// Headings and cells of tables.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kIdColumn{L"ID", L"ID", L"מזהה"};
inline constexpr Text kStateColumn{L"State", L"Stand", L"מצב"};
inline constexpr Text kStartsColumn{L"Starts", L"Startet", L"הפעלה"};
inline constexpr Text kCaptionColumn{L"Caption", L"Titel", L"כותרת"};
inline constexpr Text kCompanyColumn{L"Company", L"Firma", L"חברה"};
inline constexpr Text kRatingColumn{L"Rating", L"Einstufung", L"דירוג"};
inline constexpr Text kFileCellColumn{L"File", L"Datei", L"קובץ"};
inline constexpr Text kDescriptionColumn{L"Description", L"Beschreibung", L"תיאור"};
inline constexpr Text kNoteRow{L"note", L"Hinweis", L"הערה"};
inline constexpr Text kRowTitle{L"%1:", L"%1:", L"%1:"};

inline constexpr Text kCellYes{L"yes", L"ja", L"כן"};
inline constexpr Text kCellNo{L"no", L"nein", L"לא"};
inline constexpr Text kCellMissing{L"%1 (missing)", L"%1 (fehlt)", L"%1 (חסר)"};
inline constexpr Text kCellUnreachable{L"%1 (unreachable)", L"%1 (nicht erreichbar)", L"%1 (אין גישה)"};
// A location's title and name.
inline constexpr Text kLocationHeading{L"%1 (%2)", L"%1 (%2)", L"%1 (%2)"};
// How far a file is trusted, and what its signature says.
inline constexpr Text kTrustFor{L"%1: %2", L"%1: %2", L"%1: %2"};

inline constexpr Text kDifferenceColumn{L"Difference", L"Unterschied", L"הבדל"};
inline constexpr Text kLocationColumn{L"Location", L"Ort", L"מיקום"};
inline constexpr Text kNameColumnTitle{L"Name", L"Name", L"שם"};
inline constexpr Text kBeforeColumn{L"Before", L"Vorher", L"לפני"};
inline constexpr Text kAfterColumn{L"After", L"Nachher", L"אחרי"};
// A state and its command; the command of the 32-bit view.
inline constexpr Text kStateAndCommand{L"%1: %2", L"%1: %2", L"%1: %2"};
inline constexpr Text kSwitchedOffState{L"%1, switched off in Task Manager: %2",
                                        L"%1, im Task-Manager ausgeschaltet: %2",
                                        L"%1, כבוי במנהל המשימות: %2"};
inline constexpr Text kAndIn32{L"%1; in the 32-bit view: %2", L"%1; in der 32-Bit-Sicht: %2",
                               L"%1; בתצוגת 32 הסיביות: %2"};

inline constexpr Text kTimeColumn{L"Time", L"Zeit", L"זמן"};
inline constexpr Text kPartsColumn{L"Parts", L"Teile", L"חלקים"};
inline constexpr Text kPartColumn{L"Part", L"Teil", L"חלק"};
inline constexpr Text kStepsColumn{L"Steps", L"Schritte", L"שלבים"};
inline constexpr Text kTitleColumn{L"Title", L"Titel", L"כותרת"};
inline constexpr Text kDroppedTitle{L"%1 (dropped on %2, no longer undoable)",
                                    L"%1 (verworfen am %2, nicht mehr rückgängig zu machen)",
                                    L"%1 (נמחק בתאריך %2, לא ניתן עוד לבטל)"};

inline constexpr Text kSwitchUnknown{L"unknown", L"unbekannt", L"לא ידוע"};
inline constexpr Text kSwitchOn{L"on", L"ein", L"דלוק"};
inline constexpr Text kSwitchOff{L"off", L"aus", L"כבוי"};
inline constexpr Text kSwitchOffSince{L"off since %1", L"aus seit %1", L"כבוי מאז %1"};
inline constexpr Text kBelongsColumn{L"Belongs to", L"Gehört zu", L"שייך אל"};
inline constexpr Text kRootColumn{L"Root", L"Wurzel", L"שורש"};
inline constexpr Text kListColumn{L"List", L"Liste", L"רשימה"};
inline constexpr Text kOrphan{L"nobody: an orphan", L"niemandem: verwaist", L"לאיש: יתום"};

inline constexpr Text kFamilyColumn{L"Family", L"Familie", L"משפחה"};
inline constexpr Text kPlaceColumn{L"Key or folder", L"Schlüssel oder Ordner", L"מפתח או תיקייה"};
inline constexpr Text kCanColumn{L"Can", L"Kann", L"פעולות"};
inline constexpr Text kEnabledColumn{L"Enabled", L"Aktiviert", L"מופעלים"};
inline constexpr Text kDisabledColumn{L"Disabled", L"Deaktiviert", L"מושבתים"};

inline constexpr Text kKindColumn{L"Kind", L"Art", L"סוג"};
inline constexpr Text kDefaultColumn{L"Default", L"Standard", L"ברירת מחדל"};
inline constexpr Text kKeyColumn{L"Key", L"Schlüssel", L"מפתח"};
inline constexpr Text kProcessColumn{L"Process", L"Prozess", L"תהליך"};
inline constexpr Text kIconColumn{L"Icon", L"Symbol", L"סמל"};

// By FavoriteKind.
inline constexpr Text kClientKinds[] = {{L"path", L"Pfad", L"נתיב"},
                                        {L"mail", L"E-Mail", L"דואר"},
                                        {L"media", L"Medien", L"מדיה"},
                                        {L"browser", L"Browser", L"דפדפן"},
                                        {L"contacts", L"Kontakte", L"אנשי קשר"},
                                        {L"calendar", L"Kalender", L"לוח שנה"},
                                        {L"internetCall", L"Internettelefonie", L"שיחת אינטרנט"},
                                        {L"messaging", L"Nachrichten", L"הודעות"}};

// What has happened to an entry that is watched, by WatchEvent's kinds.
inline constexpr Text kEventKinds[] = {{L"added", L"hinzugekommen", L"נוסף"},
                                       {L"removed", L"entfernt", L"הוסר"},
                                       {L"changed", L"geändert", L"שונה"},
                                       {L"enabled", L"aktiviert", L"הופעל"},
                                       {L"disabled", L"deaktiviert", L"הושבת"}};

}  // namespace smh::texts
