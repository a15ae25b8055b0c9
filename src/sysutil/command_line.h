// Joining and splitting of command lines, the one way from a command line to the file it starts, shared by
// all that show or start one, and the start through the shell.
//
// Any thread may call any operation, without holding a lock: the shell, its helper, disk and registry are
// asked. `command` is terminated. Nothing raises on a missing file; std::bad_alloc passes through, and EAbort
// from looks at the disk (network_roots.h).
#pragma once

#include "core/contracts/shared_text.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

// A command line in two.
struct CommandParts {
  std::wstring path;
  std::wstring arguments;
};

namespace FileUtils {

// The path, in quotes when it holds a blank, and the arguments after one blank, both trimmed.
std::wstring MakeCommandLine(std::wstring_view path, std::wstring_view arguments);
// The program part as it is named, without quotes, and the rest. Kept on purpose: every further mention of
// the program's path goes from the rest too, and so do the quotes and blanks it begins with.
CommandParts SplitCommandLine(const wchar_t* command);
// The program part alone.
SharedText ProgramOfCommand(const wchar_t* command);

}  // namespace FileUtils

// Splits the command, and finds the program part's file (program_file.h). The file need not exist.
CommandParts ResolveCommand(const wchar_t* command);
// The path alone.
SharedText ResolveCommandToFile(const wchar_t* command);

// The shell's verb "open" with a normal window; `file` is a program, document or folder. Answers
// ERROR_SUCCESS, or the system code of what went wrong; raises nothing. Blocks until the shell has started
// it. `owner` owns the shell's messages and may be null. What is started stands in `folder`, from where the
// shell looks for a relative `file` too; empty: in this process's current folder.
DWORD OpenWithShell(HWND owner, const std::wstring& file, const std::wstring& parameters,
                    const std::wstring& folder = {});

}  // namespace smh
