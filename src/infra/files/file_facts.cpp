#include "infra/files/file_facts.h"

#include "infra/runtime/growing_text.h"
#include "infra/runtime/text.h"

#include <windows.h>
#include <winternl.h>
#include <shlobj.h>

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr const wchar_t* kDeviceNames[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
constexpr const wchar_t* kNumberedDeviceNames[] = {L"COM", L"LPT"};

constexpr wchar_t kDevicePrefix[] = L"\\\\.\\";
// Has room for the path of any of them.
constexpr DWORD kDevicePathUnits = 16;

bool IsSeparator(wchar_t unit) noexcept {
  return unit == L'\\' || unit == L'/';
}

// Whether it begins with a drive and its root.
bool IsOnDrive(std::wstring_view path) noexcept {
  if (path.size() < 3 || path[1] != L':' || !IsSeparator(path[2])) return false;
  const wchar_t letter = static_cast<wchar_t>(path[0] | 0x20);
  return letter >= L'a' && letter <= L'z';
}

// Which names are taken for devices differs between the versions of Windows: the system has the last word.
bool IsDevice(std::wstring_view path) noexcept {
  if (path.size() > 3 && IsSeparator(path[0]) && IsSeparator(path[1]) && IsSeparator(path[3])) {
    if (path[2] == L'.') return !IsOnDrive(path.substr(4));
    if (path[2] == L'?') return false;
  }
  std::wstring_view name = path.substr(path.find_last_of(L"\\/") + 1);
  if (name.size() > 1 && name[1] == L':') name.remove_prefix(2);
  if (!IsDeviceName(name.substr(0, name.find(L':')))) return false;
  wchar_t full[kDevicePathUnits];
  const DWORD length = GetFullPathNameW(path.data(), kDevicePathUnits, full, nullptr);
  return length != 0 && length < kDevicePathUnits && StartsText(kDevicePrefix, full);
}

bool NamesNothing(PathView path) noexcept {
  if (!path.IsCut() && !IsDevice(path.c_str())) return false;
  SetLastError(ERROR_INVALID_NAME);
  return true;
}

}  // namespace

bool IsFullPath(std::wstring_view path) noexcept {
  if (path.size() > 2 && IsSeparator(path[0]) && IsSeparator(path[1])) return !IsSeparator(path[2]);
  return IsOnDrive(path);
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

DWORD AttributesOf(PathView path) noexcept {
  return NamesNothing(path) ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(path.c_str());
}

bool IsFile(PathView path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool IsFolder(PathView path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool Exists(PathView path) noexcept {
  return AttributesOf(path) != INVALID_FILE_ATTRIBUTES;
}

std::optional<FileStamp> StampOf(PathView path) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (path.IsEmpty() || NamesNothing(path)) return std::nullopt;
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) return std::nullopt;
  return FileStamp{(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, SizeIn(data),
                   NumberOf(data.ftLastWriteTime)};
}

// The system's own call: one, where those of kernel32 for size and time are two.
std::optional<FileStamp> StampOfOpenFile(HANDLE file) noexcept {
  IO_STATUS_BLOCK status = {};
  FILE_NETWORK_OPEN_INFORMATION facts = {};
  const NTSTATUS answer =
      NtQueryInformationFile(file, &status, &facts, sizeof(facts), FileNetworkOpenInformation);
  if (!NT_SUCCESS(answer)) {
    SetLastError(RtlNtStatusToDosError(answer));
    return std::nullopt;
  }
  return FileStamp{false, static_cast<std::uint64_t>(facts.EndOfFile.QuadPart),
                   static_cast<std::uint64_t>(facts.LastWriteTime.QuadPart)};
}

std::optional<std::wstring> FullPathOf(const wchar_t* text) {
  if (*text == L'\0') {
    SetLastError(ERROR_INVALID_NAME);
    return std::nullopt;
  }
  std::wstring path = GrowingText(
      [text](wchar_t* buffer, DWORD size) { return GetFullPathNameW(text, size, buffer, nullptr); });
  return path.empty() ? std::nullopt : std::optional(std::move(path));
}

std::wstring ShellFolder(int csidl) {
  wchar_t folder[MAX_PATH] = {};
  if (SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) return {};
  return WithoutTrailingBackslash(folder);
}

std::wstring TempShortcutsIn(std::wstring_view dataFolder) {
  return std::wstring(dataFolder).append(L"TempShortcuts\\");
}

}  // namespace smh
