#include "siblings/raterkit/opened_file.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/import_function.h"
#include "infra/runtime/text.h"
#include "siblings/raterkit/system_trust.h"

#include <bcrypt.h>
#include <winioctl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace smh {

namespace {

constexpr DWORD kChunkBytes = 1u << 18;
constexpr std::size_t kLongestExtension = 16;
constexpr std::wstring_view kSystem32 = L"System32\\";
constexpr std::wstring_view kSysnative = L"Sysnative\\";

// The redirection of this thread, for a scope; nothing where there is none. No library may be loaded
// meanwhile.
class RedirectionOff {
 public:
  RedirectionOff() noexcept {
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto disable =
        ImportFunction<decltype(&Wow64DisableWow64FsRedirection)>(kernel, "Wow64DisableWow64FsRedirection");
    revert_ =
        ImportFunction<decltype(&Wow64RevertWow64FsRedirection)>(kernel, "Wow64RevertWow64FsRedirection");
    isOff_ = disable != nullptr && revert_ != nullptr && disable(&before_) != FALSE;
  }
  ~RedirectionOff() {
    if (isOff_) revert_(before_);
  }
  RedirectionOff(const RedirectionOff&) = delete;
  RedirectionOff& operator=(const RedirectionOff&) = delete;

  bool IsOff() const noexcept { return isOff_; }

 private:
  decltype(&Wow64RevertWow64FsRedirection) revert_ = nullptr;
  void* before_ = nullptr;
  bool isOff_ = false;
};

// The path with one folder of the Windows folder in place of the other.
std::wstring WithFolder(std::wstring_view path, std::wstring_view from, std::wstring_view to) {
  wchar_t windows[MAX_PATH] = {};
  const UINT units = GetSystemWindowsDirectoryW(windows, MAX_PATH);
  const std::wstring prefix = WithTrailingBackslash({windows, units < MAX_PATH ? units : 0});
  std::wstring result(path);
  if (StartsText(prefix, path) && StartsText(from, path.substr(prefix.size())))
    result.replace(prefix.size(), from.size(), to);
  return result;
}

bool IsDevice(std::wstring_view path) noexcept {
  return StartsText(L"\\\\.\\", path) || IsDeviceName(FileNamePart(path));
}

// Free of links, none of whose folders can be renamed while the file is open; empty when the system has none.
std::wstring FinalPathOf(HANDLE file) {
  constexpr std::wstring_view kPrefix = L"\\\\?\\";
  constexpr std::wstring_view kShare = L"\\\\?\\UNC\\";
  std::wstring path(GetFinalPathNameByHandleW(file, nullptr, 0, VOLUME_NAME_DOS), L'\0');
  const DWORD units =
      GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), VOLUME_NAME_DOS);
  if (units == 0 || units >= path.size()) return {};
  path.resize(units);
  if (path.size() < MAX_PATH && StartsText(kShare, path)) return path.replace(0, kShare.size(), L"\\\\");
  if (path.size() < MAX_PATH && StartsText(kPrefix, path)) path.erase(0, kPrefix.size());
  return path;
}

// What a server or a medium that is carried about says of its files proves nothing.
bool IsOnFixedDisk(const std::wstring& path) {
  std::wstring volume(path.size() + MAX_PATH, L'\0');
  return GetVolumePathNameW(path.c_str(), volume.data(), static_cast<DWORD>(volume.size())) != FALSE &&
         GetDriveTypeW(volume.c_str()) == DRIVE_FIXED;
}

// 0 where the volume does not say.
std::int64_t ChangeNumber(HANDLE file) noexcept {
  alignas(8) std::array<std::byte, sizeof(USN_RECORD) + MAX_PATH * sizeof(wchar_t)> record = {};
  DWORD bytes = 0;
  if (DeviceIoControl(file, FSCTL_READ_FILE_USN_DATA, nullptr, 0, record.data(),
                      static_cast<DWORD>(record.size()), &bytes, nullptr) == FALSE ||
      bytes < offsetof(USN_RECORD, FileName)) {
    return 0;
  }
  return reinterpret_cast<const USN_RECORD*>(record.data())->Usn;
}

FileKey KeyOf(HANDLE file, std::wstring_view path) {
  BY_HANDLE_FILE_INFORMATION facts;
  if (GetFileInformationByHandle(file, &facts) == FALSE) RaiseLastOSError();
  if ((facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) RaiseOSError(ERROR_ACCESS_DENIED);
  FILE_BASIC_INFO times = {};
  GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof(times));
  FileKey key;
  key.volume = facts.dwVolumeSerialNumber;
  key.index = JoinHalves(facts.nFileIndexHigh, facts.nFileIndexLow);
  key.size = SizeIn(facts);
  key.written = NumberOf(facts.ftLastWriteTime);
  key.changed = static_cast<std::uint64_t>(times.ChangeTime.QuadPart);
  key.change = ChangeNumber(file);
  const std::wstring_view extension = ExtensionPart(path);
  if (extension.size() <= kLongestExtension) key.extension = extension;
  // A stream beside the file's contents shares all the rest with it.
  const std::size_t stream = path.find(L':', std::min(path.rfind(L'\\'), path.size()));
  if (stream != std::wstring_view::npos) key.extension = path.substr(stream);
  for (wchar_t& unit : key.extension) {
    if (unit >= L'A' && unit <= L'Z') unit = static_cast<wchar_t>(unit - L'A' + L'a');
  }
  return key;
}

// The functions of bcrypt.dll, as long as an object is used.
struct Hashing {
  Hashing() {
    const HMODULE module = LoadFromSystemFolder(L"bcrypt.dll");
    open = ImportFunction<decltype(open)>(module, "BCryptOpenAlgorithmProvider");
    close = ImportFunction<decltype(close)>(module, "BCryptCloseAlgorithmProvider");
    create = ImportFunction<decltype(create)>(module, "BCryptCreateHash");
    destroy = ImportFunction<decltype(destroy)>(module, "BCryptDestroyHash");
    add = ImportFunction<decltype(add)>(module, "BCryptHashData");
    finish = ImportFunction<decltype(finish)>(module, "BCryptFinishHash");
    library.Reset(module);
    const bool isComplete = open != nullptr && close != nullptr && create != nullptr && destroy != nullptr &&
                            add != nullptr && finish != nullptr;
    if (!isComplete) RaiseOSError(ERROR_PROC_NOT_FOUND);
    Check(open(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
    const NTSTATUS created = create(algorithm, &hash, nullptr, 0, nullptr, 0, 0);
    if (created < 0) close(algorithm, 0);
    Check(created);
  }
  ~Hashing() {
    destroy(hash);
    close(algorithm, 0);
  }
  Hashing(const Hashing&) = delete;
  Hashing& operator=(const Hashing&) = delete;

  static void Check(NTSTATUS status) {
    if (status < 0) RaiseOSError(ERROR_INTERNAL_ERROR);
  }

  ScopedModule library;
  decltype(&BCryptOpenAlgorithmProvider) open;
  decltype(&BCryptCloseAlgorithmProvider) close;
  decltype(&BCryptCreateHash) create;
  decltype(&BCryptDestroyHash) destroy;
  decltype(&BCryptHashData) add;
  decltype(&BCryptFinishHash) finish;
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  BCRYPT_HASH_HANDLE hash = nullptr;
};

}  // namespace

OpenedFile::OpenedFile(std::wstring_view path) {
  if (!IsFullPath(path) || HoldsNul(path) || IsDevice(path)) RaiseOSError(ERROR_INVALID_NAME);
  std::wstring native(path);
  bool isRedirected = false;
  DWORD error = ERROR_SUCCESS;
  {
    const std::wstring unredirected = WithFolder(path, kSysnative, kSystem32);
    const RedirectionOff off;
    isRedirected = off.IsOff();
    if (isRedirected) native = unredirected;
    // A pipe's other end learns nothing about the caller.
    file_ = ScopedHandle(CreateFileW(native.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_SEQUENTIAL_SCAN | SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS,
                                     nullptr));
    error = GetLastError();
  }
  if (!file_) RaiseOSError(error);
  if (GetFileType(file_.Get()) != FILE_TYPE_DISK) RaiseOSError(ERROR_INVALID_NAME);
  key_ = KeyOf(file_.Get(), native);
  if (std::wstring real = FinalPathOf(file_.Get()); !real.empty()) native = std::move(real);
  if (key_.change != 0 && !IsOnFixedDisk(native)) key_.change = 0;
  pathHere_ = isRedirected ? WithFolder(native, kSystem32, kSysnative) : native;
}

Sha256 OpenedFile::Hash() const {
  const Hashing hashing;
  std::vector<UCHAR> chunk(kChunkBytes);
  if (SetFilePointer(file_.Get(), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER) RaiseLastOSError();
  for (DWORD read = 1; read > 0;) {
    if (ReadFile(file_.Get(), chunk.data(), kChunkBytes, &read, nullptr) == FALSE) RaiseLastOSError();
    Hashing::Check(hashing.add(hashing.hash, chunk.data(), read, 0));
  }
  Sha256 hash;
  Hashing::Check(hashing.finish(hashing.hash, reinterpret_cast<UCHAR*>(hash.data()),
                                static_cast<ULONG>(hash.size()), 0));
  return hash;
}

}  // namespace smh
