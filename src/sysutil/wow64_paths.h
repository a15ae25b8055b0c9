// Files and folders that a 32-bit process on a 64-bit Windows sees under another name: the system and program
// folders have a redirected twin each.
//
// Any thread may call any operation; no lock is held while the disk is looked at. Nothing raises on a missing
// file; a path that holds a NUL names none.
#pragma once

#include "core/contracts/shared_text.h"
#include "infra/files/file_facts.h"

#include <string>
#include <string_view>

namespace smh::FileUtils {

// The file itself and the folder itself, as IsFile and IsFolder tell them.
bool FileExists(PathView path) noexcept;
bool DirectoryExists(PathView path) noexcept;

// Whether the file exists as given or as its redirected twin, which then replaces it. Raise std::bad_alloc.
bool FileExistsWow64(std::wstring& path);
bool FileExistsWow64(SharedText& path);
// The path itself, or its redirected twin when only the twin exists.
std::wstring MapWow64Path(std::wstring_view path);
std::wstring DirectoryExistsWow64(std::wstring_view path);

}  // namespace smh::FileUtils
