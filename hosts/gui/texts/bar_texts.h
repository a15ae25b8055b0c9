// What the tool bar says: labels, and tips with the keys that do the same.
#pragma once

#include "hosts/common/text.h"

namespace smh::texts {

inline constexpr Text kBarEnable{L"Enable", L"Aktivieren", L"הפעלה"};
inline constexpr Text kBarDisable{L"Disable", L"Deaktivieren", L"השבתה"};
inline constexpr Text kBarDelete{L"Delete", L"Löschen", L"מחיקה"};
inline constexpr Text kBarAdd{L"Add", L"Hinzufügen", L"הוספה"};
inline constexpr Text kBarUndo{L"Undo", L"Rückgängig", L"ביטול פעולה"};

inline constexpr Text kTipEnable{L"Have Windows start the selected entries again (Ctrl+E)",
                                 L"Die ausgewählten Einträge wieder von Windows starten lassen (Strg+E)",
                                 L"החזרת הפריטים שנבחרו להפעלה אוטומטית (Ctrl+E)"};
inline constexpr Text kTipDisable{L"Keep the selected entries from starting (Ctrl+D)",
                                  L"Die ausgewählten Einträge nicht mehr starten lassen (Strg+D)",
                                  L"מניעת ההפעלה האוטומטית של הפריטים שנבחרו (Ctrl+D)"};
inline constexpr Text kTipDelete{L"Delete the selected entries (Del)",
                                 L"Die ausgewählten Einträge löschen (Entf)", L"מחיקת הפריטים שנבחרו (Del)"};
inline constexpr Text kTipAdd{L"Add an entry (Ctrl+N)", L"Einen Eintrag hinzufügen (Strg+N)",
                              L"הוספת פריט (Ctrl+N)"};
inline constexpr Text kTipMove{L"Move the selected entries to another location (Ctrl+M)",
                               L"Die ausgewählten Einträge an einen anderen Ort verschieben (Strg+M)",
                               L"העברת הפריטים שנבחרו למיקום אחר (Ctrl+M)"};
inline constexpr Text kTipChangeCommand{L"Change the entry's command (F2)",
                                        L"Den Befehl des Eintrags ändern (F2)",
                                        L"שינוי הפקודה של הפריט (F2)"};
inline constexpr Text kTipExecute{L"Run the entry's command now (Ctrl+F9)",
                                  L"Den Befehl des Eintrags jetzt ausführen (Strg+F9)",
                                  L"הרצת הפקודה של הפריט כעת (Ctrl+F9)"};
inline constexpr Text kTipUndo{L"Take back the latest change (Ctrl+Z)",
                               L"Die letzte Änderung rückgängig machen (Strg+Z)",
                               L"ביטול השינוי האחרון (Ctrl+Z)"};
inline constexpr Text kTipRedo{L"Make the change again that was taken back last (Ctrl+Y)",
                               L"Die zuletzt rückgängig gemachte Änderung wiederholen (Strg+Y)",
                               L"ביצוע חוזר של השינוי האחרון שבוטל (Ctrl+Y)"};
inline constexpr Text kTipExport{L"Write the entries to a CSV or JSON file (Ctrl+S)",
                                 L"Die Einträge in eine CSV- oder JSON-Datei schreiben (Strg+S)",
                                 L"כתיבת הפריטים לקובץ CSV או JSON (Ctrl+S)"};
inline constexpr Text kTipRefresh{L"Read all entries anew (F5)", L"Alle Einträge neu einlesen (F5)",
                                  L"קריאה מחדש של כל הפריטים (F5)"};
inline constexpr Text kTipRestartElevated{
    L"Restart as administrator, to change the entries of all users",
    L"Als Administrator neu starten, um die Einträge aller Benutzer zu ändern",
    L"הפעלה מחדש כמנהל מערכת, כדי לשנות את הפריטים של כל המשתמשים"};

}  // namespace smh::texts
