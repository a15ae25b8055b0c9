#include "sysutil/uFileUtils.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/text.h"
#include "sysutil/network_roots.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <shlobj.h>

#include <algorithm>
#include <iterator>

namespace smh {

using TextList = std::vector<std::wstring>;

struct FileCaches {
  // Held while one of them is made. Under it come the siblings' lock and what that takes, and no other.
  CriticalSection lock;
  Lazy<const std::wstring> win16SystemDir{lock};
  Lazy<const std::wstring> systemDir{lock};
  Lazy<const std::wstring> sysnativeDir{lock};
  Lazy<const std::wstring> programFilesX86Dir{lock};
  Lazy<const std::wstring> programFilesNativeDir{lock};
  Lazy<const std::wstring> profileDir{lock};
  Lazy<const TextList> searchDirectories{lock};
  Lazy<const TextList> executableExtensions{lock};
  Lazy<const TextList> startableExtensions{lock};
};

constinit ModuleGlobal<FileCaches> g_fileCaches(L"uFileUtils");

namespace {

constexpr std::wstring_view kDefaultExtensions[] = {L".com", L".exe", L".bat", L".cmd"};
constexpr std::wstring_view kX86Suffix = L" (x86)";

std::wstring WindowsDir() {
  return TakeText([](BoundaryText* folder) { return DLLGlobals::Helper().GetWindowsFolder(folder); });
}

std::wstring SpecialFolder(std::int32_t csidl) {
  return TakeText(
      [csidl](BoundaryText* folder) { return DLLGlobals::ShellHelper().GetSpecialFolder(csidl, 0, folder); });
}

// Where the separator that ends the entry at the beginning of `text` stands. Inside a pair of quotes there is
// none; a quote that is never closed is an ordinary character.
std::size_t EntryEnd(std::wstring_view text) noexcept {
  std::size_t from = 0;
  if (text.starts_with(L'"')) {
    const std::size_t close = text.find(L'"', 1);
    if (close != std::wstring_view::npos) from = close;
  }
  return text.find(L';', from);
}

// The entries of an environment list. n separators give n + 1 entries, blanks belong to them; an empty text
// has none.
TextList SplitList(std::wstring_view text) {
  TextList entries;
  if (text.empty()) return entries;
  for (;;) {
    const std::size_t end = EntryEnd(text);
    entries.push_back(DequoteText(text.substr(0, end)));
    if (end == std::wstring_view::npos) return entries;
    text.remove_prefix(end + 1);
  }
}

auto FindText(TextList& list, std::wstring_view text) {
  return std::ranges::find_if(list, [text](const std::wstring& entry) { return SameText(entry, text); });
}

void MoveToFront(TextList& list, const std::wstring& folder) {
  if (const auto present = FindText(list, folder); present != list.end()) list.erase(present);
  list.insert(list.begin(), folder);
}

TextList MakeSearchDirectories() {
  TextList list = SplitList(FileUtils::GetEnvironmentValue(L"PATH"));
  for (std::wstring& entry : list) entry = FileUtils::NormalizeDirectory(entry);
  MoveToFront(list, FileUtils::NormalizeDirectory(WindowsDir()));
  MoveToFront(list, FileUtils::GetSystemDir());
  MoveToFront(list, FileUtils::GetWin16SystemDir());
  return list;
}

TextList MakeExecutableExtensions() {
  TextList list = SplitList(FileUtils::GetEnvironmentValue(L"PATHEXT"));
  for (std::wstring& entry : list) {
    if (!entry.starts_with(L'.')) entry.insert(0, 1, L'.');
  }
  for (const std::wstring_view extension : kDefaultExtensions) {
    if (FindText(list, extension) == list.end()) list.emplace_back(extension);
  }
  return list;
}

std::wstring MakeProgramFilesX86Dir() {
  if (!WinVersionInfo::IsWow64()) return WithTrailingBackslash(SpecialFolder(CSIDL_PROGRAM_FILES));
  std::wstring folder = WithoutTrailingBackslash(SpecialFolder(CSIDL_PROGRAM_FILESX86));
  if (!EndsText(kX86Suffix, folder)) folder += kX86Suffix;
  return WithTrailingBackslash(folder);
}

// To a 32-bit process the shell names the 32-bit folder even when it is asked for the native one.
std::wstring MakeProgramFilesNativeDir() {
  std::wstring folder = SpecialFolder(CSIDL_PROGRAM_FILES);
  if (WinVersionInfo::IsWow64()) {
    folder = WithoutTrailingBackslash(folder);
    if (EndsText(kX86Suffix, folder)) folder.resize(folder.size() - kX86Suffix.size());
  }
  return WithTrailingBackslash(folder);
}

}  // namespace

std::wstring FileUtils::GetEnvironmentValue(const std::wstring& name) {
  DWORD size = GetEnvironmentVariableW(name.c_str(), nullptr, 0);
  for (;;) {
    if (size == 0) return {};
    std::wstring value(size, L'\0');
    const DWORD length = GetEnvironmentVariableW(name.c_str(), value.data(), size);
    if (length < size) {
      value.resize(length);
      return value;
    }
    // It grew between the two calls.
    size = length;
  }
}

const std::wstring& FileUtils::GetWin16SystemDir() {
  return g_fileCaches->win16SystemDir.Get([] { return WithTrailingBackslash(WindowsDir()) + L"system\\"; });
}

const std::wstring& FileUtils::GetSystemDir() {
  return g_fileCaches->systemDir.Get([] {
    return WithTrailingBackslash(
        TakeText([](BoundaryText* folder) { return DLLGlobals::Helper().GetSystemFolder(folder); }));
  });
}

const std::wstring& FileUtils::GetSysnativeDir() {
  return g_fileCaches->sysnativeDir.Get([] {
    return WinVersionInfo::IsWow64() ? WithTrailingBackslash(WindowsDir()) + L"Sysnative\\" : GetSystemDir();
  });
}

const std::wstring& FileUtils::GetProgramFilesX86Dir() {
  return g_fileCaches->programFilesX86Dir.Get(MakeProgramFilesX86Dir);
}

const std::wstring& FileUtils::GetProgramFilesNativeDir() {
  return g_fileCaches->programFilesNativeDir.Get(MakeProgramFilesNativeDir);
}

const std::wstring& FileUtils::GetProfileDir() {
  return g_fileCaches->profileDir.Get([] { return WithTrailingBackslash(SpecialFolder(CSIDL_PROFILE)); });
}

SharedText FileUtils::ExpandedText(const SharedText& text) {
  const std::wstring_view given = text;
  SharedText path = given.starts_with(L'"') ? SharedText(DequoteText(given)) : text;
  // Without a reference there is nothing to ask the helper for.
  if (std::wstring_view(path).find(L'%') == std::wstring_view::npos) return path;
  return TakeSharedText(
      [&](BoundaryText* out) { return DLLGlobals::ShellHelper().ExpandPath(path.c_str(), out); });
}

SharedText FileUtils::NormalizePath(const SharedText& text) {
  const SharedText path = ExpandedText(text);
  return TakeSharedText(
      [&](BoundaryText* out) { return DLLGlobals::Helper().CanonicalizePath(path.c_str(), out); });
}

std::wstring FileUtils::NormalizeDirectory(std::wstring_view text) {
  const SharedText folder = NormalizePath(SharedText(text));
  return folder.empty() ? std::wstring() : WithTrailingBackslash(folder);
}

const std::vector<std::wstring>& FileUtils::SearchDirectories() {
  return g_fileCaches->searchDirectories.Get(MakeSearchDirectories);
}

const std::vector<std::wstring>& FileUtils::ExecutableExtensions() {
  return g_fileCaches->executableExtensions.Get(MakeExecutableExtensions);
}

const std::vector<std::wstring>& FileUtils::StartableExtensions() {
  return g_fileCaches->startableExtensions.Get([] {
    return SplitList(TakeText(
        [](BoundaryText* extensions) { return DLLGlobals::Helper().GetExecutableExtensions(extensions); }));
  });
}

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
bool ExistsOrTwin(Text& path, bool (*exists)(PathView)) {
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

bool FileUtils::FileExists(PathView path) {
  return IsReachableFile(path);
}

bool FileUtils::DirectoryExists(PathView path) {
  return IsReachableFolder(path);
}

bool FileUtils::FileExistsWow64(std::wstring& path) {
  return ExistsOrTwin(path, IsReachableFile);
}

bool FileUtils::FileExistsWow64(SharedText& path) {
  return ExistsOrTwin(path, IsReachableFile);
}

std::wstring FileUtils::DirectoryExistsWow64(std::wstring_view path) {
  std::wstring result(path);
  ExistsOrTwin(result, IsReachableFolder);
  return result;
}

std::wstring FileUtils::MapWow64Path(std::wstring_view path) {
  std::wstring result(path);
  FileExistsWow64(result);
  return result;
}

}  // namespace smh
