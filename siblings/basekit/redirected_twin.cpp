#include "siblings/basekit/redirected_twin.h"

#include "infra/files/file_facts.h"
#include "infra/files/paths.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"

#include <windows.h>
#include <shlobj.h>

#include <utility>

namespace smh {

namespace {

constexpr std::wstring_view kX86Suffix = L" (x86)";

struct TwinState {
  // A leaf: nothing of this system is entered under it.
  CriticalSection lock;
  std::optional<std::vector<FolderTwin>> twins;
};

TwinState* state = nullptr;

void AddPair(std::vector<FolderTwin>& twins, std::wstring_view a, std::wstring_view b) {
  const std::wstring first = WithTrailingBackslash(a);
  const std::wstring second = WithTrailingBackslash(b);
  twins.push_back({first, second});
  twins.push_back({second, first});
}

// Rows are only read once they are there, so that the reference outlives the lock.
const std::vector<FolderTwin>& FolderTwins() {
  const ScopedLock guard(state->lock);
  if (!state->twins.has_value()) state->twins = GatherFolderTwins();
  return *state->twins;
}

}  // namespace

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
  const std::wstring twin = RedirectedTwin(path, FolderTwins());
  return !twin.empty() && IsFile(twin);
}

void StartFolderTwins() {
  state = new TwinState;
}

void StopFolderTwins() noexcept {
  delete std::exchange(state, nullptr);
}

}  // namespace smh
