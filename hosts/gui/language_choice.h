// Which language the window speaks, by its command line, its menu and what was saved. For the window's
// thread.
#pragma once

#include <windows.h>

namespace smh {

// Sets the language of the process, and the direction of its windows: the one of `--language LANGUAGE`, else
// the default one. What is no language is told in a box, and means English. Before any other thread or
// window.
void SetUpLanguage();

// The command of the menu (CMD_LANGUAGE_...) that says what is saved.
UINT SavedLanguageCommand();
// Saves what that command says. True when the user wants the program to start again for that: the caller
// calls StartAgain and ends. Raises HostError when it cannot be saved.
bool ChangeLanguage(HWND owner, UINT command);
// Starts this program without arguments, beside this process. Raises HostError.
void StartAgain();

}  // namespace smh
