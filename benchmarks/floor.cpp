#include "benchmarks/floor.h"

#include <commctrl.h>
#include <shellapi.h>

namespace smh::bench {

namespace {

constexpr const wchar_t* kRunPaths[] = {L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                                        L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce"};
constexpr const wchar_t* kSuffixes[] = {L"", L"\\Disabled (Startup Manager)",
                                        L"\\Disabled (Quillmark Startup Manager)", L"\\AutorunsDisabled",
                                        L"-"};

std::vector<REGSAM> Views() {
  BOOL wow64 = FALSE;
  IsWow64Process(GetCurrentProcess(), &wow64);
  return wow64 != FALSE ? std::vector<REGSAM>{KEY_WOW64_64KEY, 0} : std::vector<REGSAM>{0};
}

HKEY Open(HKEY root, const wchar_t* path, REGSAM access) {
  HKEY key = nullptr;
  return RegOpenKeyExW(root, path, 0, access, &key) == ERROR_SUCCESS ? key : nullptr;
}

bool MayChange(HKEY root, const wchar_t* path, REGSAM view) {
  const HKEY key = Open(root, path, view | KEY_ALL_ACCESS);
  if (key != nullptr) RegCloseKey(key);
  return key != nullptr;
}

std::wstring DefaultText(HKEY key) {
  wchar_t text[2048];
  DWORD size = sizeof(text);
  DWORD type = 0;
  if (RegQueryValueExW(key, L"", nullptr, &type, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS) {
    return {};
  }
  return text;
}

std::wstring ProgramOf(const std::wstring& command) {
  if (!command.starts_with(L'"')) return command;
  return command.substr(1, command.find(L'"', 1) - 1);
}

bool FileExists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void TakeVersion(const std::wstring& file, FloorResult& result) {
  const auto [place, isNew] = result.versions.try_emplace(file);
  if (!isNew) return;
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
  if (size == 0) return;
  place->second.resize(size);
  GetFileVersionInfoW(file.c_str(), 0, size, place->second.data());
}

void TakeItem(FloorItem item, FloorResult& result) {
  item.file = ProgramOf(item.command);
  FileExists(item.file);
  item.isFound = FileExists(item.file);
  if (item.isFound) TakeVersion(item.file, result);
  result.items.push_back(std::move(item));
}

// A value that the second view shows once more is not taken again.
void ReadRunKey(HKEY root, const std::wstring& path, REGSAM view, bool isAgain, FloorResult& result) {
  const bool isProtected = !MayChange(root, path.c_str(), view);
  const HKEY key = Open(root, path.c_str(), view | KEY_READ);
  if (key == nullptr) return;
  std::vector<wchar_t> name(16384);
  std::vector<BYTE> data(4096);
  for (DWORD i = 0;; ++i) {
    auto length = static_cast<DWORD>(name.size());
    auto size = static_cast<DWORD>(data.size());
    DWORD type = 0;
    if (RegEnumValueW(key, i, name.data(), &length, nullptr, &type, data.data(), &size) != ERROR_SUCCESS)
      break;
    if (isAgain) continue;
    FloorItem item{std::wstring(name.data(), length), reinterpret_cast<const wchar_t*>(data.data()), {}};
    item.isProtected = isProtected;
    TakeItem(std::move(item), result);
  }
  RegCloseKey(key);
}

void ReadHandlers(HKEY root, const std::wstring& list, REGSAM view, bool isAgain, FloorResult& result) {
  const HKEY key = Open(root, list.c_str(), view | KEY_READ);
  if (key == nullptr) return;
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    FloorItem item{std::wstring(name, length), {}, {}};
    item.isProtected = !MayChange(key, name, view);
    const HKEY handler = Open(key, name, view | KEY_READ);
    const std::wstring path = L"CLSID\\" + DefaultText(handler) + L"\\InprocServer32";
    RegCloseKey(handler);
    const HKEY server = Open(HKEY_CLASSES_ROOT, path.c_str(), view | KEY_READ);
    if (server == nullptr) continue;
    item.command = DefaultText(server);
    RegCloseKey(server);
    if (!isAgain) TakeItem(std::move(item), result);
  }
  RegCloseKey(key);
}

std::vector<BYTE> ReadAll(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  LARGE_INTEGER size{};
  GetFileSizeEx(file, &size);
  std::vector<BYTE> bytes(static_cast<std::size_t>(size.QuadPart));
  DWORD read = 0;
  ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  CloseHandle(file);
  return bytes;
}

// The local base path of the LinkInfo behind the header, which is all these shortcuts have.
std::wstring TargetOf(const std::vector<BYTE>& link) {
  constexpr std::size_t kInfo = 76;
  const auto* const offset = reinterpret_cast<const DWORD*>(link.data() + kInfo + 16);
  const auto* const path = reinterpret_cast<const char*>(link.data() + kInfo + *offset);
  return std::wstring(path, path + strlen(path));
}

int AppendIcon(HIMAGELIST large, HIMAGELIST small, const std::wstring& file) {
  HICON largeIcon = nullptr;
  HICON smallIcon = nullptr;
  const UINT count = ExtractIconExW(file.c_str(), 0, &largeIcon, &smallIcon, 1);
  if (count == 0 || count == UINT_MAX) {
    SHFILEINFOW info = {};
    SHGetFileInfoW(file.c_str(), 0, &info, sizeof(info), SHGFI_ICON | SHGFI_LARGEICON);
    largeIcon = info.hIcon;
    SHGetFileInfoW(file.c_str(), 0, &info, sizeof(info), SHGFI_ICON | SHGFI_SMALLICON);
    smallIcon = info.hIcon;
  }
  const int index = ImageList_ReplaceIcon(large, -1, largeIcon);
  ImageList_ReplaceIcon(small, -1, smallIcon);
  DestroyIcon(largeIcon);
  DestroyIcon(smallIcon);
  return index;
}

void ReadRunKeys(bool isAgain, FloorResult& result) {
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    for (const wchar_t* const path : kRunPaths) {
      for (const wchar_t* const suffix : kSuffixes) {
        bool isKnown = isAgain;
        for (const REGSAM view : Views()) {
          ReadRunKey(root, std::wstring(path) + suffix, view, isKnown, result);
          isKnown = true;
        }
      }
    }
  }
}

}  // namespace

void FloorRunKeys(FloorResult& result) {
  ReadRunKeys(false, result);
}

void FloorRunKeysAgain() {
  FloorResult nothing;
  ReadRunKeys(true, nothing);
}

void FloorShortcuts(const std::vector<std::wstring>& folders, FloorResult& result) {
  for (const std::wstring& folder : folders) {
    WIN32_FIND_DATAW data;
    const HANDLE find = FindFirstFileW((folder + L"*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) continue;
    do {
      if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) continue;
      FloorItem item{folder + data.cFileName, {}, {}};
      const HANDLE file =
          CreateFileW(item.name.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, 0, nullptr);
      item.isProtected = file == INVALID_HANDLE_VALUE;
      if (!item.isProtected) CloseHandle(file);
      item.command = TargetOf(ReadAll(item.name));
      TakeItem(std::move(item), result);
    } while (FindNextFileW(find, &data) != FALSE);
    FindClose(find);
  }
}

void FloorHandlers(const std::wstring& list, FloorResult& result) {
  for (const wchar_t* const side : {L"", L"\\AutorunsDisabled"}) {
    bool isAgain = false;
    for (const REGSAM view : Views()) {
      for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        ReadHandlers(root, list + side, view, isAgain, result);
      }
      isAgain = true;
    }
  }
}

std::unordered_map<std::wstring, FloorDetails> FloorExtended(const FloorResult& result) {
  std::unordered_map<std::wstring, FloorDetails> details;
  const HIMAGELIST large = ImageList_Create(32, 32, ILC_COLOR32 | ILC_MASK, 4, 4);
  const HIMAGELIST small = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 4, 4);
  for (const FloorItem& item : result.items) {
    const auto [place, isNew] = details.try_emplace(item.file);
    if (!isNew || !item.isFound) continue;
    const HANDLE find = FindFirstFileW(item.file.c_str(), &place->second.data);
    if (find != INVALID_HANDLE_VALUE) FindClose(find);
    SHFILEINFOW info = {};
    SHGetFileInfoW(item.file.c_str(), FILE_ATTRIBUTE_NORMAL, &info, sizeof(info),
                   SHGFI_TYPENAME | SHGFI_USEFILEATTRIBUTES);
    place->second.typeName = info.szTypeName;
    place->second.imageIndex = AppendIcon(large, small, item.file);
  }
  ImageList_Destroy(large);
  ImageList_Destroy(small);
  return details;
}

}  // namespace smh::bench
