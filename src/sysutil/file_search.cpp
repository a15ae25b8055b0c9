#include "sysutil/file_search.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/registry/registry_values.h"
#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace smh {

namespace {

constexpr wchar_t kAppPathsKey[] = L"\\Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";
constexpr wchar_t kSharedDllsKey[] = L"\\Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

constexpr std::size_t kLongestName = 255;

std::wstring Joined(std::wstring_view folder, std::wstring_view name, std::wstring_view extension) {
  return std::wstring(folder).append(name).append(extension);
}

// Whether a file or registry key may have this name: an absurd one is not worth a walk over all folders.
bool CanBeName(std::wstring_view name) noexcept {
  return name.size() <= kLongestName && !HoldsNul(name);
}

bool HasFolderPart(std::wstring_view path) noexcept {
  return !SameText(FileNamePart(path), path);
}

// The registry may change or fail under the reader's feet; it then counts as one without the entry.
template <typename Read>
auto OrNothing(Read&& read) -> decltype(read()) {
  try {
    return read();
  } catch (const Exception&) {
    return {};
  }
}

// Empty for a missing value and for one that is no text.
std::wstring TextValue(const TRegistryEx& registry, const std::wstring& name) {
  return OrNothing([&] {
    const std::optional<RegistryData> data = QueryRegistryValue(registry.CurrentKey(), name);
    return data.has_value() ? data->Text() : std::wstring();
  });
}

std::vector<std::wstring> SharedDllNames(REGSAM view) {
  return OrNothing([view]() -> std::vector<std::wstring> {
    TRegistryEx registry(KEY_READ | view);
    registry.SetRootKey(HKEY_LOCAL_MACHINE);
    if (!registry.OpenKey(kSharedDllsKey, false)) return {};
    return registry.ValueNames();
  });
}

// The first path whose file name is `target`; null without one.
const std::wstring* PathOfFile(const std::vector<std::wstring>& paths, std::wstring_view target) {
  const auto found = std::ranges::find_if(
      paths, [target](const std::wstring& path) { return SameText(FileNamePart(path), target); });
  return found == paths.end() ? nullptr : &*found;
}

}  // namespace

std::wstring FileUtils::SearchInPath(std::wstring_view name, std::wstring_view extension) {
  std::wstring result;
  for (const std::wstring& folder : SearchDirectories()) {
    if (!extension.empty()) {
      std::wstring candidate = Joined(folder, name, extension);
      if (FileExistsWow64(candidate)) return candidate;
      continue;
    }
    // Kept on purpose: without an extension the last folder that holds a match wins.
    for (const std::wstring& tried : ExecutableExtensions()) {
      std::wstring candidate = Joined(folder, name, tried);
      if (!FileExistsWow64(candidate)) continue;
      result = std::move(candidate);
      break;
    }
  }
  return result;
}

std::wstring FileUtils::ReadAppPathKey(TRegistryEx& registry, std::wstring_view key, std::wstring_view name,
                                       std::wstring_view extension) {
  if (!registry.OpenKey(key, false)) return {};
  std::wstring result(NormalizePath(SharedText(TextValue(registry, L""))));
  if (!HasFolderPart(result)) result.clear();
  if (result.empty()) {
    const std::wstring folder = TextValue(registry, L"Path");
    if (!folder.empty()) result = Joined(NormalizeDirectory(folder), name, extension);
  }
  registry.CloseKey();
  return result;
}

std::wstring FileUtils::SearchAppPaths(REGSAM view, std::wstring_view name, std::wstring_view extension) {
  TRegistryEx registry(KEY_READ | view);
  registry.SetRootKey(HKEY_LOCAL_MACHINE);
  const auto lookUp = [&](std::wstring_view tried) {
    std::wstring path = ReadAppPathKey(registry, Joined(kAppPathsKey, name, tried), name, tried);
    return !path.empty() && FileExistsWow64(path) ? path : std::wstring();
  };
  if (!extension.empty()) return lookUp(extension);
  for (const std::wstring& tried : ExecutableExtensions()) {
    std::wstring path = lookUp(tried);
    if (!path.empty()) return path;
  }
  return {};
}

std::wstring FileUtils::SearchSharedDlls(REGSAM view, std::wstring_view name, std::wstring_view extension) {
  const std::vector<std::wstring> paths = SharedDllNames(view);
  const std::wstring* match = nullptr;
  if (!extension.empty()) {
    match = PathOfFile(paths, Joined({}, name, extension));
  } else {
    // Kept on purpose: the last extension that matches wins, whether or not its file exists.
    for (const std::wstring& tried : ExecutableExtensions()) {
      if (const std::wstring* const found = PathOfFile(paths, Joined({}, name, tried))) match = found;
    }
  }
  if (match == nullptr) return {};
  std::wstring result = *match;
  return FileExistsWow64(result) ? result : std::wstring();
}

bool FileUtils::FindFileByName(std::wstring_view name, std::wstring& path) {
  path.clear();
  if (HasFolderPart(name) || !CanBeName(name)) return false;
  const std::wstring file(name);
  const std::wstring base = TakeText(
      [&](BoundaryText* out) { return DLLGlobals::Helper().GetFileNameWithoutExt(file.c_str(), out); });
  const std::wstring_view extension = ExtensionPart(file);
  const bool wow64 = WinVersionInfo::IsWow64();
  path = SearchInPath(base, extension);
  if (path.empty()) path = SearchAppPaths(0, base, extension);
  if (path.empty() && wow64) path = SearchAppPaths(KEY_WOW64_64KEY, base, extension);
  if (path.empty()) {
    path = SearchSharedDlls(0, base, extension);
    // Kept on purpose: what the 64-bit view says replaces the other answer, even when it finds nothing.
    if (wow64) path = SearchSharedDlls(KEY_WOW64_64KEY, base, extension);
  }
  return !path.empty();
}

}  // namespace smh
