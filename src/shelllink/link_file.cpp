#include "shelllink/link_file.h"

#include "infra/runtime/format.h"

namespace smh {

EFOpenError::EFOpenError(std::wstring_view fileName, DWORD code)
    : EFileStreamError(Format(L"Cannot open file \"%s\". %s", fileName, SystemErrorText(code)), code) {}

LinkFile::LinkFile(const std::wstring& fileName)
    : file_(CreateFileW(fileName.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {
  LARGE_INTEGER size{};
  if (!file_ || GetFileSizeEx(file_.Get(), &size) == FALSE) throw EFOpenError(fileName, GetLastError());
  size_ = static_cast<std::uint64_t>(size.QuadPart);
}

std::unique_ptr<std::byte[]> LinkFile::ReadAll() const {
  const auto size = static_cast<std::size_t>(size_);
  auto bytes = std::make_unique_for_overwrite<std::byte[]>(size);
  DWORD read = 0;
  if (ReadFile(file_.Get(), bytes.get(), static_cast<DWORD>(size), &read, nullptr) == FALSE) {
    RaiseLastOSError();
  }
  // Nobody else can have shortened the file since it was opened.
  if (read != size) RaiseOSError(ERROR_HANDLE_EOF);
  return bytes;
}

}  // namespace smh
