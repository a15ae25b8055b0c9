// The folders of this Windows, the two lists that a program without a folder is looked for in, paths in their
// usual form, and files that a 32-bit process on a 64-bit Windows sees under another name. What is done with
// them: file_search.h and command_line.h.
//
// Any thread may call any operation. The folders and the lists are made once, under one lock (a leaf but for
// the siblings' lock), and never refreshed before the module unloads: a change of PATH or PATHEXT after first
// use is not seen. No lock is held while the disk is looked at. Nothing raises on a missing file, folder or
// variable, and a path that holds a NUL names none; std::bad_alloc passes through, and so does EAbort from
// every look at the disk. References stay valid until the module stops.
#pragma once

#include "core/contracts/shared_text.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/module_global.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace smh {

namespace FileUtils {

// Empty for a variable that is not set.
std::wstring GetEnvironmentValue(const std::wstring& name);

// Each with a trailing backslash. The 16-bit system folder, the system folder as this process sees it, the
// native system folder (the same as the one before on a 32-bit Windows), and the two program folders.
const std::wstring& GetWin16SystemDir();
const std::wstring& GetSystemDir();
const std::wstring& GetSysnativeDir();
const std::wstring& GetProgramFilesX86Dir();
const std::wstring& GetProgramFilesNativeDir();
// The user's own folder, in which the system starts programs at logon.
const std::wstring& GetProfileDir();

// Without quotes, with its environment references expanded.
SharedText ExpandedText(const SharedText& text);
// The same in canonical form. The path need not exist.
SharedText NormalizePath(const SharedText& text);
// The same with a trailing backslash; empty stays empty.
std::wstring NormalizeDirectory(std::wstring_view text);

// The system folders and PATH, in the order of search, each with a trailing backslash.
const std::vector<std::wstring>& SearchDirectories();
// PATHEXT, completed by the usual ones, in the order of search; each with its dot.
const std::vector<std::wstring>& ExecutableExtensions();
// Those that the general helper names; another list than the one above, which follows PATHEXT.
const std::vector<std::wstring>& StartableExtensions();

// The file itself and the folder itself, as IsReachableFile and IsReachableFolder tell them
// (network_roots.h).
bool FileExists(PathView path);
bool DirectoryExists(PathView path);
// The system and program folders have a redirected twin each. Whether the file exists as given or as its
// twin, which then replaces it.
bool FileExistsWow64(std::wstring& path);
bool FileExistsWow64(SharedText& path);
// The path itself, or its redirected twin when only the twin exists: of a file and of a folder.
std::wstring MapWow64Path(std::wstring_view path);
std::wstring DirectoryExistsWow64(std::wstring_view path);

}  // namespace FileUtils

// The folders and lists. While it is not started every operation that needs one raises EAssertionFailed.
struct FileCaches;
extern ModuleGlobal<FileCaches> g_fileCaches;

}  // namespace smh
