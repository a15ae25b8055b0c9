// The dialogs of this program, made from their templates in the process's language. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// As DialogBoxParamW with the template `id` (IDD_ in resource.h): modal to `owner`, and mirrored where lines
// run from right to left. Whoever begins the dialog calls BeginDialog.
INT_PTR OpenDialog(HWND owner, int id, DLGPROC procedure, LPARAM parameter);

// Gives the dialog of that template its caption, and its controls what they always say.
void SetDialogTexts(HWND dialog, int id);

}  // namespace smh
