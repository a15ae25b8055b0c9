// From a command line to the file it starts: splitting and joining, the search for a bare name as the command
// interpreter and the shell do it, and the redirected twins of the system and program folders under WOW64.
//
// All operations are class operations and may be called from any thread. The caches are built once under one
// lock (a leaf but for the service cache's lock) and never refreshed before the module unloads: a change of
// PATH or PATHEXT after first use is not seen. Nothing raises on a missing file, key or variable.
#pragma once

#include "core/contracts/shared_text.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace smh {

class TRegistryEx;

struct CommandParts {
  std::wstring path;
  std::wstring arguments;
};

class FileUtils {
 public:
  static std::wstring GetEnvironmentValue(const std::wstring& name);
  // Each with a trailing backslash.
  static const std::wstring& GetWin16SystemDir();
  static const std::wstring& GetSystemDir();
  static const std::wstring& GetSysnativeDir();
  static const std::wstring& GetProgramFilesX86Dir();
  static const std::wstring& GetProgramFilesNativeDir();

  static SharedText NormalizePath(const SharedText& text);
  static std::wstring NormalizeDirectory(const SharedText& text);
  static const std::vector<std::wstring>& SearchDirectories();
  static const std::vector<std::wstring>& ExecutableExtensions();
  // Those that the general helper names; another list than the one above, which follows PATHEXT.
  static const std::vector<std::wstring>& StartableExtensions();

  static bool FileExists(const std::wstring& path) noexcept;
  static bool DirectoryExists(const std::wstring& path) noexcept;
  // The path itself, or its redirected twin when only the twin exists.
  static std::wstring MapWow64Path(std::wstring_view path);
  static std::wstring DirectoryExistsWow64(std::wstring_view path);
  static bool FileExistsWow64(std::wstring& path);
  static bool FileExistsWow64(SharedText& path);

  // `name` has no extension; `extension` has its dot or is empty.
  static std::wstring SearchInPath(std::wstring_view name, std::wstring_view extension);
  static std::wstring ReadAppPathKey(TRegistryEx& registry, std::wstring_view key, std::wstring_view name,
                                     std::wstring_view extension);
  // `view` is 0 or KEY_WOW64_64KEY.
  static std::wstring SearchAppPaths(REGSAM view, std::wstring_view name, std::wstring_view extension);
  static std::wstring SearchSharedDlls(REGSAM view, std::wstring_view name, std::wstring_view extension);
  // The full search for a name without folder; a name with one is not searched.
  static bool FindFileByName(std::wstring_view name, std::wstring& path);

  static std::wstring MakeCommandLine(std::wstring_view path, std::wstring_view arguments);
  // `command` is terminated.
  static CommandParts SplitCommandLine(const wchar_t* command);
  // The path alone.
  static SharedText ProgramOfCommand(const wchar_t* command);
};

void StartFileUtils();
void StopFileUtils() noexcept;

}  // namespace smh
