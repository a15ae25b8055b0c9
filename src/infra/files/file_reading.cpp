#include "infra/files/file_reading.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"

namespace smh {

namespace {

std::size_t CappedSize(HANDLE file, std::uint64_t cap) {
  const std::optional<std::uint64_t> size = SizeOfOpenFile(file);
  if (!size.has_value()) RaiseLastOSError();
  if (*size > cap) RaiseOSError(ERROR_FILE_TOO_LARGE);
  return static_cast<std::size_t>(*size);
}

}  // namespace

std::optional<std::uint64_t> SizeOfOpenFile(HANDLE file) noexcept {
  LARGE_INTEGER size;
  if (GetFileSizeEx(file, &size) == FALSE) return std::nullopt;
  return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t ReadBytes(HANDLE file, std::span<std::byte> bytes) {
  DWORD read = 0;
  if (ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == FALSE) {
    RaiseLastOSError();
  }
  return read;
}

void ReadAllBytes(HANDLE file, std::span<std::byte> bytes) {
  if (ReadBytes(file, bytes) != bytes.size()) RaiseOSError(ERROR_HANDLE_EOF);
}

std::vector<std::byte> ReadOpenFile(HANDLE file, std::uint64_t cap) {
  std::vector<std::byte> bytes(CappedSize(file, cap));
  bytes.resize(ReadBytes(file, bytes));
  return bytes;
}

std::string ReadWholeFile(const std::wstring& path, DWORD sharing, std::uint64_t cap) {
  const ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) RaiseLastOSError();
  std::string text(CappedSize(file.Get(), cap), '\0');
  const std::span<std::byte> bytes = std::as_writable_bytes(std::span(text));
  if ((sharing & FILE_SHARE_WRITE) == 0) {
    ReadAllBytes(file.Get(), bytes);
  } else {
    text.resize(ReadBytes(file.Get(), bytes));
  }
  return text;
}

}  // namespace smh
