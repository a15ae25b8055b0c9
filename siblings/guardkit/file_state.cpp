#include "siblings/guardkit/file_state.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/security_state.h"

#include <functional>

namespace smh {

namespace {

constexpr DWORD kOpenItself = FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS;
constexpr std::wstring_view kContentStream = L"::$DATA";
constexpr std::wstring_view kStreamType = L":$DATA";
// What can be set; the others belong to the file system.
constexpr DWORD kSettableAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                      FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                      FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

using Reader = std::function<StreamState(HANDLE)>;

ScopedHandle OpenToRead(const std::wstring& path, DWORD flags) {
  return ScopedHandle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, flags, nullptr));
}

ByteVector SecurityOf(const std::wstring& path) {
  ByteVector security(512);
  for (;;) {
    DWORD needed = 0;
    if (GetFileSecurityW(path.c_str(), kKeptSecurity, security.data(), static_cast<DWORD>(security.size()),
                         &needed) != FALSE) {
      security.resize(GetSecurityDescriptorLength(security.data()));
      return security;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed <= security.size()) RaiseLastOSError();
    security.resize(needed);
  }
}

// ":name" of every stream but the content. A file system without streams has none.
std::vector<std::wstring> OtherStreams(const std::wstring& path) {
  std::vector<std::wstring> names;
  WIN32_FIND_STREAM_DATA found;
  const ScopedFind find(FindFirstStreamW(path.c_str(), FindStreamInfoStandard, &found, 0));
  if (!find) {
    const DWORD error = GetLastError();
    if (error == ERROR_HANDLE_EOF || error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_SUPPORTED ||
        error == ERROR_CALL_NOT_IMPLEMENTED || error == ERROR_INVALID_FUNCTION) {
      return names;
    }
    RaiseOSError(error);
  }
  do {
    const std::wstring_view name = found.cStreamName;
    if (name == kContentStream) continue;
    if (!EndsText(kStreamType, name)) RaiseOSError(ERROR_NOT_SUPPORTED);
    names.emplace_back(name.substr(0, name.size() - kStreamType.size()));
  } while (FindNextStreamW(find.Get(), &found) != FALSE);
  if (GetLastError() != ERROR_HANDLE_EOF) RaiseLastOSError();
  return names;
}

FileState ReadOpenState(HANDLE file, const std::wstring& path, const Reader& read) {
  FileState state;
  BY_HANDLE_FILE_INFORMATION information;
  if (GetFileInformationByHandle(file, &information) == FALSE) RaiseLastOSError();
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
    RaiseOSError(ERROR_CANT_ACCESS_FILE);
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) RaiseOSError(ERROR_ACCESS_DENIED);
  state.exists = true;
  state.attributes = information.dwFileAttributes;
  state.created = NumberOf(information.ftCreationTime);
  state.accessed = NumberOf(information.ftLastAccessTime);
  state.written = NumberOf(information.ftLastWriteTime);
  state.security = SecurityOf(path);
  state.streams.push_back(read(file));
  for (const std::wstring& name : OtherStreams(path)) {
    const ScopedHandle stream = OpenToRead(path + name, 0);
    if (!stream) RaiseLastOSError();
    state.streams.push_back(read(stream.Get()));
    state.streams.back().name = name;
  }
  return state;
}

FileState ReadState(const std::wstring& path, const Reader& read) {
  const ScopedHandle file = OpenToRead(path, kOpenItself);
  if (file) return ReadOpenState(file.Get(), path, read);
  const DWORD error = GetLastError();
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return {};
  RaiseOSError(error);
}

ScopedHandle OpenToWrite(const std::wstring& path, DWORD disposition) {
  ScopedHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) RaiseLastOSError();
  return file;
}

void WriteStreams(const FileState& state, const std::wstring& path, const BlobStore& blobs) {
  for (const StreamState& stream : state.streams) {
    // A name from the journal leads into the file itself and nowhere else.
    const bool isContent = stream.name.empty();
    if (!isContent &&
        (stream.name.front() != L':' || stream.name.find_first_of(L"\\/") != std::wstring::npos)) {
      RaiseOSError(ERROR_INVALID_NAME);
    }
    const ScopedHandle file = OpenToWrite(path + stream.name, isContent ? CREATE_NEW : CREATE_ALWAYS);
    blobs.CopyTo(stream, file.Get());
    if (FlushFileBuffers(file.Get()) == FALSE) RaiseLastOSError();
  }
}

void SetTimes(const FileState& state, const std::wstring& path) {
  const ScopedHandle file(
      CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  const FILETIME created = FileTimeOf(state.created);
  const FILETIME accessed = FileTimeOf(state.accessed);
  const FILETIME written = FileTimeOf(state.written);
  if (!file || SetFileTime(file.Get(), &created, &accessed, &written) == FALSE) RaiseLastOSError();
}

std::wstring VolumeOf(const std::wstring& path) {
  std::wstring volume(path.size() + MAX_PATH, L'\0');
  if (GetVolumePathNameW(path.c_str(), volume.data(), static_cast<DWORD>(volume.size())) == FALSE) {
    RaiseLastOSError();
  }
  return volume.c_str();
}

}  // namespace

FileState ReadFileState(const std::wstring& path) {
  return ReadState(path, &BlobStore::Measure);
}

FileState ReadOpenFileState(HANDLE file, const std::wstring& path) {
  if (SetFilePointerEx(file, {}, nullptr, FILE_BEGIN) == FALSE) RaiseLastOSError();
  return ReadOpenState(file, path, &BlobStore::Measure);
}

FileState KeepFileState(const std::wstring& path, const BlobStore& blobs) {
  return ReadState(path, [&](HANDLE file) { return blobs.Keep(file); });
}

bool IsSameState(FileState now, const FileState& before) {
  now.accessed = before.accessed;
  return now == before;
}

void MakeFile(const FileState& state, const std::wstring& path, const BlobStore& blobs) {
  try {
    WriteStreams(state, path, blobs);
    SetTimes(state, path);
    const DWORD attributes = state.attributes & kSettableAttributes;
    if (SetFileAttributesW(path.c_str(), attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL) == FALSE) {
      RaiseLastOSError();
    }
    if (!state.security.empty()) CheckStatus(ApplyFileSecurity(path, state.security));
  } catch (...) {
    DeleteFileW(path.c_str());
    throw;
  }
}

LSTATUS ApplyFileSecurity(const std::wstring& path, const ByteVector& security) noexcept {
  return ApplySecurity(security, [&](SECURITY_INFORMATION parts, PSECURITY_DESCRIPTOR descriptor) {
    return SetFileSecurityW(path.c_str(), parts, descriptor) != FALSE ? ERROR_SUCCESS : GetLastError();
  });
}

bool OnOneVolume(const std::wstring& a, const std::wstring& b) {
  return SameText(VolumeOf(a), VolumeOf(b));
}

}  // namespace smh
