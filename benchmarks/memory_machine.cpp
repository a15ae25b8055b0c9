#include "benchmarks/memory_machine.h"

#include "benchmarks/system_calls.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <unordered_map>
#include <utility>

namespace smh::bench {

namespace {

using Bytes = std::vector<BYTE>;

struct MemoryValue {
  std::wstring name;
  DWORD type;
  Bytes data;
};

struct MemoryKey {
  LSTATUS status = ERROR_SUCCESS;
  std::vector<std::wstring> subkeys;
  std::vector<MemoryValue> values;
  HKEY root = nullptr;
  std::wstring path;
  std::unordered_map<std::wstring, MemoryKey*> opened[4];
};

struct MemoryFile {
  DWORD error = ERROR_SUCCESS;
  Bytes bytes;
};

struct MemoryFolder {
  DWORD error = ERROR_SUCCESS;
  std::vector<WIN32_FIND_DATAW> entries;
};

struct MemoryAttributes {
  DWORD error = ERROR_SUCCESS;
  WIN32_FILE_ATTRIBUTE_DATA data{};
};

struct Cursor {
  const MemoryFolder* folder;
  std::size_t next;
};

struct Memory {
  std::deque<MemoryKey> keys;
  std::unordered_map<HKEY, MemoryKey> roots;
  std::unordered_map<std::wstring, MemoryAttributes> attributes;
  std::unordered_map<std::wstring, MemoryFolder> folders;
  std::unordered_map<std::wstring, MemoryFile> files[2];
  std::unordered_map<std::wstring, Bytes> versions;
  std::deque<Cursor> cursors;
};

Memory* g_memory = nullptr;

#define SMH_REAL(name) SMH_GATE(name)::real

// Addresses inside the memory are its handles; no handle of the system lies that high.
bool IsOurs(const void* handle) noexcept {
  const auto value = reinterpret_cast<ULONG_PTR>(handle);
  return value > 0x10000 && value < 0x80000000;
}

MemoryKey& KeyOf(HKEY key) {
  if (IsOurs(key)) return *reinterpret_cast<MemoryKey*>(key);
  MemoryKey& root = g_memory->roots[key];
  root.root = key;
  return root;
}

void ReadValues(HKEY handle, MemoryKey& key) {
  wchar_t name[16384];
  Bytes data(65536);
  for (DWORD i = 0;; ++i) {
    DWORD length = 16384;
    auto size = static_cast<DWORD>(data.size());
    DWORD type = 0;
    if (SMH_REAL(RegEnumValueW)(handle, i, name, &length, nullptr, &type, data.data(), &size) != 0) return;
    key.values.push_back({{name, length}, type, Bytes(data.begin(), data.begin() + static_cast<long>(size))});
  }
}

void ReadSubkeys(HKEY handle, MemoryKey& key) {
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (SMH_REAL(RegEnumKeyExW)(handle, i, name, &length, nullptr, nullptr, nullptr, nullptr) != 0) return;
    key.subkeys.emplace_back(name, length);
  }
}

MemoryKey* ReadKey(const MemoryKey& parent, const wchar_t* path, REGSAM access) {
  MemoryKey& key = g_memory->keys.emplace_back();
  key.root = parent.root;
  key.path = parent.path.empty() ? path : parent.path + L'\\' + path;
  HKEY handle = nullptr;
  key.status = SMH_REAL(RegOpenKeyExW)(key.root, key.path.c_str(), 0, access, &handle);
  if (key.status != ERROR_SUCCESS) return &key;
  ReadValues(handle, key);
  ReadSubkeys(handle, key);
  SMH_REAL(RegCloseKey)(handle);
  return &key;
}

LSTATUS WINAPI OpenKey(HKEY parent, const wchar_t* path, DWORD, REGSAM access, HKEY* opened) {
  MemoryKey& from = KeyOf(parent);
  const std::size_t kind =
      ((access & KEY_WOW64_64KEY) != 0 ? 1 : 0) + ((access & KEY_SET_VALUE) != 0 ? 2 : 0);
  MemoryKey*& key = from.opened[kind][path];
  if (key == nullptr) key = ReadKey(from, path, access);
  *opened = key->status == ERROR_SUCCESS ? reinterpret_cast<HKEY>(key) : nullptr;
  return key->status;
}

LSTATUS WINAPI CloseKey(HKEY key) {
  return IsOurs(key) ? ERROR_SUCCESS : SMH_REAL(RegCloseKey)(key);
}

LSTATUS WINAPI EnumKey(HKEY handle, DWORD index, wchar_t* name, DWORD* length, DWORD*, wchar_t*, DWORD*,
                       FILETIME*) {
  const MemoryKey& key = KeyOf(handle);
  if (index >= key.subkeys.size()) return ERROR_NO_MORE_ITEMS;
  const std::wstring& text = key.subkeys[index];
  std::memcpy(name, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  *length = static_cast<DWORD>(text.size());
  return ERROR_SUCCESS;
}

// Nobody writes into the memory.
LSTATUS WINAPI QueryKey(HKEY, wchar_t*, DWORD*, DWORD*, DWORD*, DWORD*, DWORD*, DWORD*, DWORD*, DWORD*,
                        DWORD*, FILETIME*) {
  return ERROR_SUCCESS;
}

LSTATUS GiveData(const MemoryValue& value, DWORD* type, BYTE* data, DWORD* size) {
  if (type != nullptr) *type = value.type;
  const DWORD room = size == nullptr ? 0 : *size;
  if (size != nullptr) *size = static_cast<DWORD>(value.data.size());
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < value.data.size()) return ERROR_MORE_DATA;
  std::memcpy(data, value.data.data(), value.data.size());
  return ERROR_SUCCESS;
}

LSTATUS WINAPI EnumValue(HKEY handle, DWORD index, wchar_t* name, DWORD* length, DWORD*, DWORD* type,
                         BYTE* data, DWORD* size) {
  const MemoryKey& key = KeyOf(handle);
  if (index >= key.values.size()) return ERROR_NO_MORE_ITEMS;
  const MemoryValue& value = key.values[index];
  std::memcpy(name, value.name.c_str(), (value.name.size() + 1) * sizeof(wchar_t));
  *length = static_cast<DWORD>(value.name.size());
  return GiveData(value, type, data, size);
}

LSTATUS WINAPI QueryValue(HKEY handle, const wchar_t* name, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
  const MemoryKey& key = KeyOf(handle);
  const auto value =
      std::ranges::find(key.values, std::wstring_view(name == nullptr ? L"" : name), &MemoryValue::name);
  return value == key.values.end() ? ERROR_FILE_NOT_FOUND : GiveData(*value, type, data, size);
}

const MemoryAttributes& AttributesOf(const wchar_t* path) {
  const auto [place, isNew] = g_memory->attributes.try_emplace(path);
  MemoryAttributes& attributes = place->second;
  if (isNew && SMH_REAL(GetFileAttributesExW)(path, GetFileExInfoStandard, &attributes.data) == FALSE) {
    attributes.error = GetLastError();
  }
  if (attributes.error != ERROR_SUCCESS) SetLastError(attributes.error);
  return attributes;
}

DWORD WINAPI FileAttributes(const wchar_t* path) {
  const MemoryAttributes& attributes = AttributesOf(path);
  return attributes.error == ERROR_SUCCESS ? attributes.data.dwFileAttributes : INVALID_FILE_ATTRIBUTES;
}

BOOL WINAPI FileAttributesEx(const wchar_t* path, GET_FILEEX_INFO_LEVELS, void* data) {
  const MemoryAttributes& attributes = AttributesOf(path);
  std::memcpy(data, &attributes.data, sizeof(attributes.data));
  return attributes.error == ERROR_SUCCESS;
}

void ReadFolder(const wchar_t* pattern, MemoryFolder& folder) {
  WIN32_FIND_DATAW data;
  const HANDLE find = SMH_REAL(FindFirstFileW)(pattern, &data);
  if (find == INVALID_HANDLE_VALUE) {
    folder.error = GetLastError();
    return;
  }
  do {
    folder.entries.push_back(data);
  } while (SMH_REAL(FindNextFileW)(find, &data) != FALSE);
  SMH_REAL(FindClose)(find);
}

BOOL WINAPI FindNext(HANDLE handle, WIN32_FIND_DATAW* data) {
  auto& cursor = *static_cast<Cursor*>(handle);
  if (cursor.next == cursor.folder->entries.size()) {
    SetLastError(ERROR_NO_MORE_FILES);
    return FALSE;
  }
  *data = cursor.folder->entries[cursor.next++];
  return TRUE;
}

HANDLE WINAPI FindFirst(const wchar_t* pattern, WIN32_FIND_DATAW* data) {
  const auto [place, isNew] = g_memory->folders.try_emplace(pattern);
  if (isNew) ReadFolder(pattern, place->second);
  if (place->second.error != ERROR_SUCCESS) {
    SetLastError(place->second.error);
    return INVALID_HANDLE_VALUE;
  }
  Cursor& cursor = g_memory->cursors.emplace_back(Cursor{&place->second, 0});
  FindNext(&cursor, data);
  return &cursor;
}

BOOL WINAPI FindEnd(HANDLE) {
  return TRUE;
}

void ReadBytes(const wchar_t* path, DWORD access, DWORD share, MemoryFile& file) {
  const HANDLE handle = SMH_REAL(CreateFileW)(path, access, share, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    file.error = GetLastError();
    return;
  }
  LARGE_INTEGER size{};
  if ((access & GENERIC_READ) != 0) SMH_REAL(GetFileSizeEx)(handle, &size);
  file.bytes.resize(static_cast<std::size_t>(size.QuadPart));
  DWORD read = 0;
  SMH_REAL(ReadFile)(handle, file.bytes.data(), static_cast<DWORD>(file.bytes.size()), &read, nullptr);
  SMH_REAL(CloseHandle)(handle);
}

HANDLE WINAPI OpenFile(const wchar_t* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                       DWORD disposition, DWORD flags, HANDLE model) {
  if (disposition != OPEN_EXISTING) {
    return SMH_REAL(CreateFileW)(path, access, share, security, disposition, flags, model);
  }
  const auto [place, isNew] = g_memory->files[access == DELETE ? 1 : 0].try_emplace(path);
  if (isNew) ReadBytes(path, access, share, place->second);
  if (place->second.error == ERROR_SUCCESS) return &place->second;
  SetLastError(place->second.error);
  return INVALID_HANDLE_VALUE;
}

BOOL WINAPI FileSize(HANDLE handle, LARGE_INTEGER* size) {
  if (!IsOurs(handle)) return SMH_REAL(GetFileSizeEx)(handle, size);
  size->QuadPart = static_cast<LONGLONG>(static_cast<const MemoryFile*>(handle)->bytes.size());
  return TRUE;
}

NTSTATUS NTAPI FileInformation(HANDLE handle, IO_STATUS_BLOCK* status, void* facts, ULONG size,
                               FILE_INFORMATION_CLASS kind) {
  if (!IsOurs(handle)) return SMH_REAL(NtQueryInformationFile)(handle, status, facts, size, kind);
  FILE_NETWORK_OPEN_INFORMATION answer = {};
  answer.EndOfFile.QuadPart = static_cast<LONGLONG>(static_cast<const MemoryFile*>(handle)->bytes.size());
  std::memcpy(facts, &answer, std::min<std::size_t>(size, sizeof(answer)));
  return 0;
}

BOOL WINAPI ReadBytesOf(HANDLE handle, void* buffer, DWORD wanted, DWORD* read, OVERLAPPED* overlapped) {
  if (!IsOurs(handle)) return SMH_REAL(ReadFile)(handle, buffer, wanted, read, overlapped);
  const Bytes& bytes = static_cast<const MemoryFile*>(handle)->bytes;
  *read = std::min(wanted, static_cast<DWORD>(bytes.size()));
  std::memcpy(buffer, bytes.data(), *read);
  return TRUE;
}

BOOL WINAPI Close(HANDLE handle) {
  return IsOurs(handle) || SMH_REAL(CloseHandle)(handle);
}

const Bytes& VersionOf(const wchar_t* path) {
  const auto [place, isNew] = g_memory->versions.try_emplace(path);
  if (isNew) {
    DWORD ignored = 0;
    place->second.resize(SMH_REAL(GetFileVersionInfoSizeW)(path, &ignored));
    SMH_REAL(GetFileVersionInfoW)(path, 0, static_cast<DWORD>(place->second.size()), place->second.data());
  }
  return place->second;
}

DWORD WINAPI VersionSize(const wchar_t* path, DWORD*) {
  return static_cast<DWORD>(VersionOf(path).size());
}

BOOL WINAPI VersionInfo(const wchar_t* path, DWORD, DWORD size, void* data) {
  const Bytes& bytes = VersionOf(path);
  std::memcpy(data, bytes.data(), std::min<std::size_t>(size, bytes.size()));
  return TRUE;
}

}  // namespace

// clang-format off
#define SMH_ANSWERED(X) \
  X(RegOpenKeyExW, OpenKey) \
  X(RegCloseKey, CloseKey) \
  X(RegEnumKeyExW, EnumKey) \
  X(RegEnumValueW, EnumValue) \
  X(RegQueryValueExW, QueryValue) \
  X(RegQueryInfoKeyW, QueryKey) \
  X(GetFileAttributesW, FileAttributes) \
  X(GetFileAttributesExW, FileAttributesEx) \
  X(FindFirstFileW, FindFirst) \
  X(FindNextFileW, FindNext) \
  X(FindClose, FindEnd) \
  X(CreateFileW, OpenFile) \
  X(GetFileSizeEx, FileSize) \
  X(NtQueryInformationFile, FileInformation) \
  X(ReadFile, ReadBytesOf) \
  X(CloseHandle, Close) \
  X(GetFileVersionInfoSizeW, VersionSize) \
  X(GetFileVersionInfoW, VersionInfo)
// clang-format on

MemoryMachine::MemoryMachine() {
  g_memory = new Memory;
#define SMH_ANSWER(name, answer) SMH_GATE(name)::next = answer;
  SMH_ANSWERED(SMH_ANSWER)
#undef SMH_ANSWER
}

MemoryMachine::~MemoryMachine() {
#define SMH_ANSWER(name, answer) SMH_GATE(name)::next = SMH_REAL(name);
  SMH_ANSWERED(SMH_ANSWER)
#undef SMH_ANSWER
  delete std::exchange(g_memory, nullptr);
}

}  // namespace smh::bench
