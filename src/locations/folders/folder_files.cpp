#include "locations/folders/folder_files.h"

#include "infra/files/file_facts.h"
#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

bool IsForbiddenUnit(wchar_t unit) noexcept {
  return unit < L' ' || std::wstring_view(L"\\/:*?\"<>|").find(unit) != std::wstring_view::npos;
}

}  // namespace

bool IsMissing(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

std::vector<std::wstring> FileNamesIn(const std::wstring& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW data;
  const ScopedFind find(FindFirstFileW((folder + L"*").c_str(), &data));
  if (!find) {
    const DWORD error = GetLastError();
    if (!IsMissing(error)) RaiseOSError(error);
    if (IsFile(WithoutTrailingBackslash(folder))) RaiseOSError(ERROR_DIRECTORY);
    return names;
  }
  do {
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) names.emplace_back(data.cFileName);
  } while (FindNextFileW(find.Get(), &data) != FALSE);
  if (GetLastError() != ERROR_NO_MORE_FILES) RaiseLastOSError();
  return names;
}

bool CanDeleteFile(const wchar_t* path) noexcept {
  return static_cast<bool>(
      ScopedHandle(CreateFileW(path, DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, 0, nullptr)));
}

std::wstring MakeUniqueFileName(const std::wstring& path) {
  std::wstring unique = path;
  const std::wstring folder = WithoutTrailingBackslash(FolderPart(path));
  const std::wstring_view extension = ExtensionPart(path);
  std::wstring_view base = FileNamePart(path);
  base.remove_suffix(extension.size());
  for (int number = 1; IsFile(unique); ++number) {
    unique = Format(L"%s\\%s (%d)%s", folder, base, number, extension);
  }
  return unique;
}

std::wstring WithLinkExtension(std::wstring_view name) {
  name.remove_suffix(ExtensionPart(name).size());
  return std::wstring(name).append(kShortcutExtension);
}

bool IsPlainFileName(std::wstring_view name) noexcept {
  if (name.empty() || name.ends_with(L' ') || name.ends_with(L'.')) return false;
  return std::ranges::none_of(name, IsForbiddenUnit) && !IsDeviceName(name);
}

std::wstring PlainFileName(std::wstring_view name) {
  std::wstring plain(name);
  std::ranges::replace_if(plain, IsForbiddenUnit, L'_');
  if (plain.ends_with(L' ') || plain.ends_with(L'.')) plain.back() = L'_';
  if (!IsPlainFileName(plain)) plain.insert(0, 1, L'_');
  return plain;
}

std::string ReadShortcutBytes(const std::wstring& path) {
  return ReadWholeFile(path, FILE_SHARE_READ | FILE_SHARE_DELETE, kLargestShortcut);
}

void WriteNewFile(const std::wstring& path, std::string_view bytes) {
  ScopedHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) RaiseLastOSError();
  DWORD written = 0;
  const bool complete =
      WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
      written == bytes.size() && FlushFileBuffers(file.Get());
  if (complete) return;
  const DWORD error = GetLastError();
  file.Reset();
  DeleteFileW(path.c_str());
  RaiseOSError(error != ERROR_SUCCESS ? error : ERROR_WRITE_FAULT);
}

}  // namespace smh
