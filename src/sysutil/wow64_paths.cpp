#include "sysutil/wow64_paths.h"

#include "infra/runtime/text.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <windows.h>

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

// What follows a zero character would not be looked at.
template <typename Text>
DWORD AttributesOf(const Text& path) noexcept {
  const std::wstring_view view = path;
  return view.find(L'\0') == std::wstring_view::npos ? GetFileAttributesW(path.c_str())
                                                     : INVALID_FILE_ATTRIBUTES;
}

constexpr auto kIsFile = [](const auto& path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
};

constexpr auto kIsFolder = [](const auto& path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
};

// Whether the path passes as given or as its twin, which then replaces it.
template <typename Text, typename ExistenceTest>
bool ExistsOrTwin(Text& path, ExistenceTest exists) {
  if (exists(path)) return true;
  if (!WinVersionInfo::IsWow64()) return false;
  const auto rule = std::ranges::find_if(
      kRedirections, [&path](const Redirection& candidate) { return StartsText(candidate.prefix(), path); });
  if (rule == std::end(kRedirections)) return false;
  // Kept on purpose: every occurrence of the prefix is replaced, not only the leading one.
  std::wstring twin = ReplaceText(path, rule->prefix(), rule->twin());
  if (!exists(twin)) return false;
  path = std::move(twin);
  return true;
}

}  // namespace

bool FileUtils::FileExists(const std::wstring& path) noexcept {
  return kIsFile(path);
}

bool FileUtils::FileExists(const SharedText& path) noexcept {
  return kIsFile(path);
}

bool FileUtils::DirectoryExists(const std::wstring& path) noexcept {
  return kIsFolder(path);
}

bool FileUtils::FileExistsWow64(std::wstring& path) {
  return ExistsOrTwin(path, kIsFile);
}

bool FileUtils::FileExistsWow64(SharedText& path) {
  return ExistsOrTwin(path, kIsFile);
}

std::wstring FileUtils::DirectoryExistsWow64(std::wstring_view path) {
  std::wstring result(path);
  ExistsOrTwin(result, kIsFolder);
  return result;
}

std::wstring FileUtils::MapWow64Path(std::wstring_view path) {
  std::wstring result(path);
  FileExistsWow64(result);
  return result;
}

}  // namespace smh
