#include "sysutil/wow64_paths.h"

#include "infra/runtime/text.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

using Folder = const std::wstring& (*)();

struct Redirection {
  Folder prefix;
  Folder twin;
};

constexpr Redirection kRedirections[] = {
    {FileUtils::GetSystemDir, FileUtils::GetSysnativeDir},
    {FileUtils::GetSysnativeDir, FileUtils::GetSystemDir},
    {FileUtils::GetProgramFilesX86Dir, FileUtils::GetProgramFilesNativeDir},
    {FileUtils::GetProgramFilesNativeDir, FileUtils::GetProgramFilesX86Dir},
};

// Whether the path passes as given or as its twin, which then replaces it.
template <typename Text>
bool ExistsOrTwin(Text& path, bool (*exists)(PathView) noexcept) {
  if (exists(path)) return true;
  if (!WinVersionInfo::IsWow64()) return false;
  const auto rule = std::ranges::find_if(
      kRedirections, [&path](const Redirection& candidate) { return StartsText(candidate.prefix(), path); });
  if (rule == std::end(kRedirections)) return false;
  // Kept on purpose: every occurrence of the prefix is replaced, not only the leading one.
  std::wstring twin = ReplaceText(path, rule->prefix(), rule->twin());
  if (!exists(twin)) return false;
  path = Text(std::move(twin));
  return true;
}

}  // namespace

bool FileUtils::FileExists(PathView path) noexcept {
  return IsFile(path);
}

bool FileUtils::DirectoryExists(PathView path) noexcept {
  return IsFolder(path);
}

bool FileUtils::FileExistsWow64(std::wstring& path) {
  return ExistsOrTwin(path, IsFile);
}

bool FileUtils::FileExistsWow64(SharedText& path) {
  return ExistsOrTwin(path, IsFile);
}

std::wstring FileUtils::DirectoryExistsWow64(std::wstring_view path) {
  std::wstring result(path);
  ExistsOrTwin(result, IsFolder);
  return result;
}

std::wstring FileUtils::MapWow64Path(std::wstring_view path) {
  std::wstring result(path);
  FileExistsWow64(result);
  return result;
}

}  // namespace smh
