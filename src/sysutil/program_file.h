// From the text that names a program to its file, as the system would start it.
//
// Any thread may call any operation, without holding a lock: disk, registry and the helpers are asked. What a
// text without a folder of its own means never depends on the folder that this process stands in. Nothing
// raises on a missing file; std::bad_alloc passes through, and so does EAbort from looks at the disk
// (network_roots.h).
#pragma once

#include "core/contracts/shared_text.h"

#include <string>
#include <string_view>

namespace smh {

// Whether it is a URL or another of the shell's schemes, which are longer than the letter of a drive.
bool IsUrl(std::wstring_view text) noexcept;

// Whether the path is a file, as given or as its redirected twin, or one of the implied extensions makes it
// one when it has none; `path` is then that file.
bool CompleteProgramPath(std::wstring& path);

struct ProgramFile {
  // A full path, whether or not the file exists; but a URL, a bare name that is not found and a text that is
  // too long for a path stay as they stand, and name no file.
  SharedText path;
  bool exists = false;
};
// The file that the program part of a command names, its references expanded: a bare name is searched for, a
// relative path is looked for in the search folders, unless it says "here" or "above", and then, as are the
// others, from the user's profile folder on. Extensions are implied.
ProgramFile FindProgramFile(const SharedText& program);
// The same for an argument, which has its extension: the existing file that it names, or "".
std::wstring ExistingFile(std::wstring_view argument);

}  // namespace smh
