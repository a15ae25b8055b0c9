#include "siblings/guardkit/blob_store.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "siblings/guardkit/format/journal_steps.h"

#include <windows.h>
#include <bcrypt.h>

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace smh {

namespace {

void CheckCall(NTSTATUS status) {
  if (status < 0) RaiseOSError(ERROR_INTERNAL_ERROR);
}

UCHAR* BytesOf(const std::byte* bytes) noexcept {
  return reinterpret_cast<UCHAR*>(const_cast<std::byte*>(bytes));
}

// One SHA-256 (FIPS 180-4) of the system's under way; one thread at a time.
class ContentHasher {
 public:
  // This, Add and Finish raise EOSError with ERROR_INTERNAL_ERROR when the system refuses.
  ContentHasher();
  ~ContentHasher();
  ContentHasher(const ContentHasher&) = delete;
  ContentHasher& operator=(const ContentHasher&) = delete;

  // Goes on with these bytes, of any number.
  void Add(std::span<const std::byte> bytes);
  // Once, after everything was added.
  ContentHash Finish();

 private:
  BCRYPT_ALG_HANDLE algorithm_ = nullptr;
  BCRYPT_HASH_HANDLE hash_ = nullptr;
};

ContentHasher::ContentHasher() {
  CheckCall(BCryptOpenAlgorithmProvider(&algorithm_, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
  const NTSTATUS created = BCryptCreateHash(algorithm_, &hash_, nullptr, 0, nullptr, 0, 0);
  if (created < 0) BCryptCloseAlgorithmProvider(algorithm_, 0);
  CheckCall(created);
}

ContentHasher::~ContentHasher() {
  BCryptDestroyHash(hash_);
  BCryptCloseAlgorithmProvider(algorithm_, 0);
}

void ContentHasher::Add(std::span<const std::byte> bytes) {
  CheckCall(BCryptHashData(hash_, BytesOf(bytes.data()), static_cast<ULONG>(bytes.size()), 0));
}

ContentHash ContentHasher::Finish() {
  ContentHash hash;
  CheckCall(BCryptFinishHash(hash_, BytesOf(hash.data()), static_cast<ULONG>(hash.size()), 0));
  return hash;
}

// In lower-case hexadecimal digits.
std::wstring HashText(const ContentHash& hash) {
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  std::wstring text;
  for (const std::byte byte : hash) {
    text += kDigits[std::to_integer<unsigned>(byte) >> 4];
    text += kDigits[std::to_integer<unsigned>(byte) & 15];
  }
  return text;
}

// None for any other text.
std::optional<ContentHash> HashOf(std::wstring_view text) {
  ContentHash hash;
  if (text.size() != 2 * hash.size()) return std::nullopt;
  for (std::size_t i = 0; i < hash.size(); ++i) {
    unsigned value = 0;
    for (const wchar_t digit : text.substr(2 * i, 2)) {
      const bool isLetter = digit >= L'a' && digit <= L'f';
      if (!isLetter && (digit < L'0' || digit > L'9')) return std::nullopt;
      value = value * 16 + static_cast<unsigned>(isLetter ? digit - L'a' + 10 : digit - L'0');
    }
    hash[i] = static_cast<std::byte>(value);
  }
  return hash;
}

constexpr std::size_t kChunk = 64 * 1024;

using Sink = std::function<void(std::span<const std::byte>)>;

StreamState Pump(HANDLE file, const Sink& sink) {
  ContentHasher hasher;
  StreamState stream;
  std::vector<std::byte> buffer(kChunk);
  for (;;) {
    DWORD read = 0;
    if (ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr) == FALSE) {
      RaiseLastOSError();
    }
    if (read == 0) break;
    const std::span<const std::byte> chunk(buffer.data(), read);
    hasher.Add(chunk);
    if (sink) sink(chunk);
    stream.size += read;
  }
  stream.hash = hasher.Finish();
  return stream;
}

Sink WriteTo(HANDLE file) {
  return [file](std::span<const std::byte> chunk) {
    DWORD written = 0;
    if (WriteFile(file, chunk.data(), static_cast<DWORD>(chunk.size()), &written, nullptr) == FALSE) {
      RaiseLastOSError();
    }
    if (written != chunk.size()) RaiseOSError(ERROR_DISK_FULL);
  };
}

ScopedHandle OpenBlob(const std::wstring& path) {
  return ScopedHandle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
}

template <typename Visit>
void ForEachFile(const std::wstring& pattern, Visit&& visit) {
  WIN32_FIND_DATAW found;
  const ScopedFind find(FindFirstFileW(pattern.c_str(), &found));
  if (!find) return;
  do {
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) visit(found);
  } while (FindNextFileW(find.Get(), &found) != FALSE);
}

}  // namespace

void RemoveEvenReadOnly(const std::wstring& path) noexcept {
  if (DeleteFileW(path.c_str()) != FALSE || GetLastError() != ERROR_ACCESS_DENIED) return;
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(path.c_str());
}

StreamState BlobStore::Measure(HANDLE file) {
  return Pump(file, {});
}

StreamState BlobStore::Keep(HANDLE file) const {
  // This one level alone: the journal's folder is held in place, and never made again where it has gone.
  CreateDirectoryW(folder_.c_str(), nullptr);
  const std::wstring staging = StagingFile();
  StreamState stream;
  try {
    const ScopedHandle copy(
        CreateFileW(staging.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!copy) RaiseLastOSError();
    stream = Pump(file, WriteTo(copy.Get()));
    if (FlushFileBuffers(copy.Get()) == FALSE) RaiseLastOSError();
  } catch (...) {
    DeleteFileW(staging.c_str());
    throw;
  }
  if (Holds(stream)) {
    DeleteFileW(staging.c_str());
    return stream;
  }
  const std::wstring path = folder_ + HashText(stream.hash);
  if (MoveFileExW(staging.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ==
      FALSE) {
    const DWORD error = GetLastError();
    DeleteFileW(staging.c_str());
    RaiseOSError(error);
  }
  return stream;
}

// One that was damaged meanwhile is not taken for the content.
bool BlobStore::Holds(const StreamState& stream) const {
  const ScopedHandle kept = OpenBlob(folder_ + HashText(stream.hash));
  return kept && Measure(kept.Get()).hash == stream.hash;
}

void BlobStore::CopyTo(const StreamState& stream, HANDLE file) const {
  const ScopedHandle kept = OpenBlob(folder_ + HashText(stream.hash));
  if (!kept) RaiseLastOSError();
  if (Pump(kept.Get(), WriteTo(file)).hash != stream.hash) RaiseOSError(ERROR_CRC);
}

std::map<ContentHash, std::uint64_t> BlobStore::List() const {
  std::map<ContentHash, std::uint64_t> contents;
  ForEachFile(folder_ + L"*", [&](const WIN32_FIND_DATAW& found) {
    if (const std::optional<ContentHash> hash = HashOf(found.cFileName))
      contents.emplace(*hash, SizeIn(found));
  });
  return contents;
}

void BlobStore::Remove(const ContentHash& hash) const noexcept {
  try {
    DeleteFileW((folder_ + HashText(hash)).c_str());
  } catch (...) {
    // It stays.
  }
}

std::wstring BlobStore::StagingFile() const {
  static LONG count = 0;
  return root_ + Format(L"%d-%d.staging", GetCurrentProcessId(), InterlockedIncrement(&count));
}

void BlobStore::RemoveStagingFiles() const noexcept {
  try {
    ForEachFile(root_ + L"*.staging",
                [&](const WIN32_FIND_DATAW& found) { RemoveEvenReadOnly(root_ + found.cFileName); });
  } catch (...) {
    // They are in nobody's way.
  }
}

}  // namespace smh
