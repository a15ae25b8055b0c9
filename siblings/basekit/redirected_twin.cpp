#include "siblings/basekit/redirected_twin.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"

#include <windows.h>
#include <shlobj.h>

namespace smh {

namespace {

constexpr std::wstring_view kX86Suffix = L" (x86)";

void AddPair(std::vector<FolderTwin>& twins, std::wstring_view a, std::wstring_view b) {
  const std::wstring first = WithTrailingBackslash(a);
  const std::wstring second = WithTrailingBackslash(b);
  twins.push_back({first, second});
  twins.push_back({second, first});
}

}  // namespace

struct ModuleFolderTwins {
  // Held while the rows are gathered: the system is asked for folders, and nothing of this module is entered.
  CriticalSection lock;
  Lazy<const std::vector<FolderTwin>> rows{lock};
};

constinit ModuleGlobal<ModuleFolderTwins> g_folderTwins(L"redirected_twin");

std::vector<FolderTwin> GatherFolderTwins() {
  std::vector<FolderTwin> twins;
  BOOL wow64 = FALSE;
  if (IsWow64Process(GetCurrentProcess(), &wow64) == FALSE || wow64 == FALSE) return twins;
  AddPair(twins, SystemFolder(), WindowsFolder() + L"\\Sysnative");
  std::wstring native = ShellFolder(CSIDL_PROGRAM_FILES);
  if (EndsText(kX86Suffix, native)) native.resize(native.size() - kX86Suffix.size());
  if (!native.empty()) AddPair(twins, std::wstring(native).append(kX86Suffix), native);
  return twins;
}

std::wstring RedirectedTwin(std::wstring_view path, std::span<const FolderTwin> twins) {
  for (const FolderTwin& row : twins) {
    if (StartsText(row.folder, path)) return std::wstring(row.twin).append(path.substr(row.folder.size()));
  }
  return {};
}

bool FileOrTwinExists(const std::wstring& path) {
  if (IsFile(path)) return true;
  const std::wstring twin = RedirectedTwin(path, g_folderTwins->rows.Get(GatherFolderTwins));
  return !twin.empty() && IsFile(twin);
}

}  // namespace smh
