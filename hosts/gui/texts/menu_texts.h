// What the menus say, with access keys and, behind a tab, the keys that do the same.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

// The menu bar.
inline constexpr Text kMenuFile{L"&File", L"&Datei", L"&קובץ"};
inline constexpr Text kMenuEdit{L"&Edit", L"&Bearbeiten", L"&עריכה"};
inline constexpr Text kMenuEntry{L"E&ntry", L"&Eintrag", L"&פריט"};
inline constexpr Text kMenuView{L"&View", L"&Ansicht", L"&תצוגה"};
inline constexpr Text kMenuHelp{L"&Help", L"&Hilfe", L"ע&זרה"};

// File.
inline constexpr Text kMenuExport{L"&Export...\tCtrl+S", L"&Exportieren...\tStrg+S", L"&ייצוא...\tCtrl+S"};
inline constexpr Text kMenuSaveState{L"&Save state...", L"Stand &speichern...", L"&שמירת מצב..."};
inline constexpr Text kMenuCompareState{L"&Compare with state...", L"Mit Stand &vergleichen...",
                                        L"&השוואה למצב שמור..."};
inline constexpr Text kMenuOnlyDifferent{L"Only &differences", L"Nur &Unterschiede", L"רק ה&בדלים"};
inline constexpr Text kMenuStopComparing{L"S&top comparing", L"Verglei&ch beenden", L"&סיום ההשוואה"};
inline constexpr Text kMenuRestartElevated{L"Restart as &administrator", L"Als &Administrator neu starten",
                                           L"הפעלה מחדש כמ&נהל מערכת"};
inline constexpr Text kMenuExit{L"E&xit\tAlt+F4", L"&Beenden\tAlt+F4", L"י&ציאה\tAlt+F4"};

// Edit.
inline constexpr Text kMenuUndo{L"&Undo\tCtrl+Z", L"&Rückgängig\tStrg+Z", L"&ביטול\tCtrl+Z"};
inline constexpr Text kMenuRedo{L"&Redo\tCtrl+Y", L"&Wiederholen\tStrg+Y", L"ביצוע חו&זר\tCtrl+Y"};
inline constexpr Text kMenuCopy{L"&Copy\tCtrl+C", L"&Kopieren\tStrg+C", L"&העתקה\tCtrl+C"};
inline constexpr Text kMenuCopyPath{L"Copy file &path\tCtrl+Shift+C", L"Datei&pfad kopieren\tStrg+Umschalt+C",
                                    L"העתקת &נתיב הקובץ\tCtrl+Shift+C"};
inline constexpr Text kMenuCopyCommand{L"Cop&y command\tCtrl+Shift+K", L"Befe&hl kopieren\tStrg+Umschalt+K",
                                       L"העתקת הפק&ודה\tCtrl+Shift+K"};
inline constexpr Text kMenuCopyHash{L"Copy SHA-&256\tCtrl+Shift+H", L"SHA-&256 kopieren\tStrg+Umschalt+H",
                                    L"העתקת SHA-&256\tCtrl+Shift+H"};
inline constexpr Text kMenuSelectAll{L"Select &all\tCtrl+A", L"&Alles auswählen\tStrg+A",
                                     L"בחירת ה&כול\tCtrl+A"};
inline constexpr Text kMenuFind{L"&Find\tCtrl+F", L"&Suchen\tStrg+F", L"&חיפוש\tCtrl+F"};
inline constexpr Text kMenuFindEverywhere{L"Find &everywhere\tCtrl+Shift+F",
                                          L"&Überall suchen\tStrg+Umschalt+F",
                                          L"חיפוש בכל ה&מיקומים\tCtrl+Shift+F"};

// Entry.
inline constexpr Text kMenuEnable{L"&Enable\tCtrl+E", L"&Aktivieren\tStrg+E", L"ה&פעלה\tCtrl+E"};
inline constexpr Text kMenuDisable{L"&Disable\tCtrl+D", L"&Deaktivieren\tStrg+D", L"ה&שבתה\tCtrl+D"};
inline constexpr Text kMenuSwitchOff{L"Switc&h off in Task Manager\tCtrl+Shift+D",
                                     L"Im Task-Manager a&usschalten\tStrg+Umschalt+D",
                                     L"&כיבוי במנהל המשימות\tCtrl+Shift+D"};
inline constexpr Text kMenuSwitchOn{L"Switch on in &Task Manager\tCtrl+Shift+E",
                                    L"Im &Task-Manager einschalten\tStrg+Umschalt+E",
                                    L"הדל&קה במנהל המשימות\tCtrl+Shift+E"};
inline constexpr Text kMenuDelete{L"De&lete...\tDel", L"&Löschen...\tEntf", L"&מחיקה...\tDel"};
inline constexpr Text kMenuAdd{L"&Add...\tCtrl+N", L"&Hinzufügen...\tStrg+N", L"הו&ספה...\tCtrl+N"};
inline constexpr Text kMenuMove{L"&Move to...\tCtrl+M", L"&Verschieben nach...\tStrg+M",
                                L"ה&עברה אל...\tCtrl+M"};
inline constexpr Text kMenuChangeCommand{L"&Change command...\tF2", L"&Befehl ändern...\tF2",
                                         L"שינוי הפקו&דה...\tF2"};
inline constexpr Text kMenuExecute{L"&Run now\tCtrl+F9", L"&Jetzt ausführen\tStrg+F9", L"ה&רצה כעת\tCtrl+F9"};
inline constexpr Text kMenuShowFile{L"&File properties\tAlt+Enter", L"Datei&eigenschaften\tAlt+Eingabe",
                                    L"מ&אפייני הקובץ\tAlt+Enter"};
inline constexpr Text kMenuShowLocation{L"&Show location\tCtrl+L", L"&Ort anzeigen\tStrg+L",
                                        L"הצגת המ&יקום\tCtrl+L"};
inline constexpr Text kMenuOpenFolder{L"Ope&n folder of file\tCtrl+Shift+L",
                                      L"Ordne&r der Datei öffnen\tStrg+Umschalt+L",
                                      L"פתיחת &תיקיית הקובץ\tCtrl+Shift+L"};
inline constexpr Text kMenuSearchWeb{L"Search &web for file name", L"Dateinamen im &Web suchen",
                                     L"&חיפוש שם הקובץ באינטרנט"};

// View.
inline constexpr Text kMenuEntries{L"&Start-up entries\tCtrl+1", L"&Startprogramme\tStrg+1",
                                   L"&פריטי הפעלה\tCtrl+1"};
inline constexpr Text kMenuDefaultPrograms{L"&Default programs\tCtrl+2", L"Stan&dardprogramme\tStrg+2",
                                           L"תוכניות &ברירת מחדל\tCtrl+2"};
inline constexpr Text kMenuUndoHistory{L"&Undo history\tCtrl+3", L"&Änderungsverlauf\tStrg+3",
                                       L"&היסטוריית השינויים\tCtrl+3"};
inline constexpr Text kMenuAllLocations{L"&All locations", L"&Alle Orte", L"כל ה&מיקומים"};
inline constexpr Text kMenuNotStarting{L"Only &not starting", L"Nur ni&cht startende",
                                       L"רק פריטים ש&אינם מופעלים"};
inline constexpr Text kMenuMissing{L"Only &missing", L"Nur &fehlende", L"רק פריטים &חסרים"};
inline constexpr Text kMenuUnsigned{L"Only unsi&gned or broken", L"Nur &unsignierte oder ungültige",
                                    L"רק פריטים לא ח&תומים או פגומים"};
inline constexpr Text kMenuRisky{L"Only ris&ky", L"Nur &riskante", L"רק פריטים מ&סוכנים"};
inline constexpr Text kMenuHideVerified{L"&Hide verified", L"&Geprüfte ausblenden", L"הסתרת מא&ומתים"};
inline constexpr Text kMenuClearFilters{L"Switch &filters off", L"Fi&lter ausschalten", L"&כיבוי המסננים"};
inline constexpr Text kMenuShowAll{L"Sh&ow all entries\tCtrl+0", L"Alle &Einträge anzeigen\tStrg+0",
                                   L"ה&צגת כל הפריטים\tCtrl+0"};
inline constexpr Text kMenuColumns{L"&Columns...", L"S&palten...", L"&עמודות..."};
inline constexpr Text kMenuRefresh{L"&Refresh\tF5", L"Aktual&isieren\tF5", L"&רענון\tF5"};

// Language: each of them calls itself so in every language.
inline constexpr Text kMenuLanguage{L"&Language", L"Sprac&he", L"&שפה"};
inline constexpr Text kMenuSystemLanguage{L"&System's language", L"&Sprache des Systems", L"שפת ה&מערכת"};
inline constexpr Text kMenuEnglish{L"&English", L"&English", L"&English"};
inline constexpr Text kMenuGerman{L"&Deutsch", L"&Deutsch", L"&Deutsch"};
inline constexpr Text kMenuHebrew{L"&עברית", L"&עברית", L"&עברית"};

// Help.
inline constexpr Text kMenuKeys{L"&Keys\tF1", L"&Tasten\tF1", L"&מקשים\tF1"};
inline constexpr Text kMenuAbout{L"&About Startup Manager", L"&Info über Startup Manager",
                                 L"&אודות Startup Manager"};

// What is only in the menus of what is selected, or has another key there.
inline constexpr Text kMenuDetails{L"Deta&ils\tEnter", L"Deta&ils\tEingabe", L"פר&טים\tEnter"};
inline constexpr Text kMenuCopySelected{L"C&opy\tCtrl+C", L"&Kopieren\tStrg+C", L"&העתקה\tCtrl+C"};
inline constexpr Text kMenuProgramFile{L"&File properties\tEnter", L"Datei&eigenschaften\tEingabe",
                                       L"מ&אפייני הקובץ\tEnter"};
inline constexpr Text kMenuParts{L"&Show or hide the parts\tEnter", L"&Teile ein- oder ausblenden\tEingabe",
                                 L"ה&צגה או הסתרה של החלקים\tEnter"};
// In the menu of the columns' heads.
inline constexpr Text kMenuMoreColumns{L"C&olumns…", L"S&palten…", L"&עמודות…"};
inline constexpr Text kMenuAddHere{L"A&dd...\tCtrl+N", L"Hi&nzufügen...\tStrg+N", L"הו&ספה...\tCtrl+N"};

}  // namespace smh::texts
