#include "locations/folders/folder_files.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"
#include "sysutil/wow64_paths.h"

#include <algorithm>

namespace smh {

namespace {

constexpr DWORD kLargestShortcut = 0x500000;

constexpr const wchar_t* kDeviceNames[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
constexpr const wchar_t* kNumberedDeviceNames[] = {L"COM", L"LPT"};

bool IsForbiddenUnit(wchar_t unit) noexcept {
  return unit < L' ' || std::wstring_view(L"\\/:*?\"<>|").find(unit) != std::wstring_view::npos;
}

// A device answers to its name with any extension and with blanks before it.
bool IsDeviceName(std::wstring_view name) noexcept {
  std::wstring_view base = name.substr(0, name.find(L'.'));
  while (base.ends_with(L' ')) base.remove_suffix(1);
  const auto isBase = [&](const wchar_t* device) { return SameText(base, device); };
  if (std::ranges::any_of(kDeviceNames, isBase)) return true;
  if (base.size() != 4) return false;
  const bool numbered = std::wstring_view(L"123456789\xB9\xB2\xB3").find(base[3]) != std::wstring_view::npos;
  const auto isStem = [&](const wchar_t* device) { return SameText(base.substr(0, 3), device); };
  return numbered && std::ranges::any_of(kNumberedDeviceNames, isStem);
}

ScopedHandle OpenOrRaise(const std::wstring& path, DWORD access, DWORD share, DWORD disposition) {
  ScopedHandle file(
      CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) RaiseLastOSError();
  return file;
}

}  // namespace

std::vector<std::wstring> FileNamesIn(const std::wstring& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW data;
  const ScopedFind find(FindFirstFileW((folder + L"*").c_str(), &data));
  if (!find) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return names;
    RaiseOSError(error);
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
  for (int number = 1; FileUtils::FileExists(unique); ++number) {
    unique = Format(L"%s\\%s (%d)%s", folder, base, number, extension);
  }
  return unique;
}

void MakeFolderPath(const std::wstring& folder) {
  const std::wstring path = WithoutTrailingBackslash(folder);
  if (FileUtils::DirectoryExists(path)) return;
  const std::wstring parent(FolderPart(path));
  if (parent.size() > 3 && parent.size() < path.size()) MakeFolderPath(parent);
  if (CreateDirectoryW(path.c_str(), nullptr) == FALSE && GetLastError() != ERROR_ALREADY_EXISTS) {
    RaiseLastOSError();
  }
}

std::wstring WithLinkExtension(std::wstring_view name) {
  name.remove_suffix(ExtensionPart(name).size());
  return std::wstring(name).append(L".lnk");
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
  const ScopedHandle file =
      OpenOrRaise(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING);
  LARGE_INTEGER size;
  if (GetFileSizeEx(file.Get(), &size) == FALSE) RaiseLastOSError();
  if (size.QuadPart > kLargestShortcut) RaiseOSError(ERROR_FILE_TOO_LARGE);
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == FALSE) {
    RaiseLastOSError();
  }
  if (read != bytes.size()) RaiseOSError(ERROR_HANDLE_EOF);
  return bytes;
}

void WriteNewFile(const std::wstring& path, std::string_view bytes) {
  ScopedHandle file = OpenOrRaise(path, GENERIC_WRITE, 0, CREATE_NEW);
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
