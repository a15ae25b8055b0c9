#include "sysutil/program_file.h"

#include "core/contracts/intf_general.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"
#include "sysutil/file_search.h"
#include "sysutil/uFileUtils.h"

#include <optional>
#include <utility>

namespace smh {

namespace {

// In units; the system takes no longer path.
constexpr std::size_t kLongestPath = 32'767;

// Of a file: as it is written, or the implied ones as well.
enum class Extensions { kWritten, kImplied };

bool IsSeparator(wchar_t unit) noexcept {
  return unit == L'\\' || unit == L'/';
}

bool HasDrive(std::wstring_view path) noexcept {
  return path.size() > 1 && path[1] == L':';
}

// What the system takes from the current folder is taken from the user's own.
std::wstring FromProfile(std::wstring_view path) {
  const std::wstring& profile = FileUtils::GetProfileDir();
  const std::wstring_view drive =
      std::wstring_view(HasDrive(profile) ? profile : FileUtils::GetSystemDir()).substr(0, 2);
  std::wstring full;
  if (IsSeparator(path.front())) {
    full.append(drive).append(path);
  } else if (!HasDrive(path)) {
    full.append(profile).append(path);
  } else if (SameText(path.substr(0, 2), profile.substr(0, 2))) {
    full.append(profile).append(path.substr(2));
  } else {
    full.append(path.substr(0, 2)).append(1, L'\\').append(path.substr(2));
  }
  return FullPathOf(full.c_str()).value_or(full);
}

// A full path that the system takes as it stands.
bool IsPlainPath(std::wstring_view path) noexcept {
  if (path.size() < 3 || path[1] != L':' || path[2] != L'\\') return false;
  if (path.find(L':', 2) != std::wstring_view::npos || IsDeviceName(FileNamePart(path))) return false;
  wchar_t last = L':';
  for (const wchar_t unit : path.substr(2)) {
    const bool endsPart = last == L'\\' || last == L'.' || last == L' ';
    if (unit == L'/' || (unit == L'\\' && endsPart)) return false;
    last = unit;
  }
  return last != L'.' && last != L' ';
}

// Whether the system looks for it in the search folders. One that is too long is nowhere.
bool IsSearched(std::wstring_view path) noexcept {
  return !IsSeparator(path.front()) && !HasDrive(path) && path.front() != L'.' && path.size() < MAX_PATH;
}

// Of a path that has none and is no file itself.
bool AddImpliedExtension(std::wstring& path) {
  const std::wstring_view name = FileNamePart(path);
  if (name.empty() || !ExtensionPart(name).empty()) return false;
  for (const std::wstring_view extension : kImpliedExtensions) {
    std::wstring longer = path + std::wstring(extension);
    if (!FileUtils::FileExistsWow64(longer)) continue;
    path = std::move(longer);
    return true;
  }
  return false;
}

bool Complete(std::wstring& path, Extensions extensions) {
  if (FileUtils::FileExistsWow64(path)) return true;
  return extensions == Extensions::kImplied && AddImpliedExtension(path);
}

// The text itself, shared, where the system takes it as it stands.
SharedText FullPathAsText(const SharedText& text) {
  const std::optional<std::wstring> path = FullPathOf(text.c_str());
  return !path || *path == text ? text : SharedText(*path);
}

std::wstring SearchRelative(std::wstring_view path, Extensions extensions) {
  for (const std::wstring& folder : FileUtils::SearchDirectories()) {
    if (!IsFullPath(folder)) continue;
    const std::wstring joined = folder + std::wstring(path);
    std::wstring candidate = FullPathOf(joined.c_str()).value_or(joined);
    if (Complete(candidate, extensions)) return candidate;
  }
  return {};
}

std::wstring Search(const std::wstring& path, bool isBare, Extensions extensions) {
  if (!isBare) return IsSearched(path) ? SearchRelative(path, extensions) : std::wstring();
  std::wstring found;
  FileUtils::FindFileByName(path, found);
  // Through an empty entry of PATH.
  return found.empty() || IsFullPath(found) ? found : FullPathOf(found.c_str()).value_or(found);
}

ProgramFile FindRelative(const SharedText& text, Extensions extensions) {
  const std::wstring path(text);
  const bool isBare = FileNamePart(path) == path;
  std::wstring found = Search(path, isBare, extensions);
  if (!found.empty()) return {SharedText(std::move(found)), true};
  found = FromProfile(path);
  if (Complete(found, extensions)) return {SharedText(std::move(found)), true};
  return {isBare ? text : SharedText(std::move(found)), false};
}

ProgramFile Find(const SharedText& named, Extensions extensions) {
  const SharedText text = FileUtils::ExpandedText(named);
  if (text.empty() || text.size() > kLongestPath || IsUrl(text)) return {text, false};
  // The system adds no extension behind a dot.
  if (text.c_str()[text.size() - 1] == L'.') extensions = Extensions::kWritten;
  if (!IsFullPath(text)) return FindRelative(text, extensions);
  SharedText path = IsPlainPath(text) ? text : FullPathAsText(text);
  if (FileUtils::FileExistsWow64(path)) return {path, true};
  std::wstring longer(path);
  if (extensions == Extensions::kImplied && AddImpliedExtension(longer))
    return {SharedText(std::move(longer)), true};
  return {path, false};
}

}  // namespace

bool IsUrl(std::wstring_view text) noexcept {
  const std::size_t colon = text.find(L':');
  return colon != std::wstring_view::npos && colon > 1 && text.find_first_of(L"\\/") > colon;
}

bool CompleteProgramPath(std::wstring& path) {
  return Complete(path, Extensions::kImplied);
}

ProgramFile FindProgramFile(const SharedText& program) {
  return Find(program, Extensions::kImplied);
}

std::wstring ExistingFile(std::wstring_view argument) {
  const ProgramFile file = Find(SharedText(argument), Extensions::kWritten);
  return file.exists ? std::wstring(file.path) : std::wstring();
}

}  // namespace smh
