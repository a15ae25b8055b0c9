#include "shelllink/link_file.h"

#include "infra/files/file_reading.h"
#include "infra/runtime/format.h"

namespace smh {

EFOpenError::EFOpenError(std::wstring_view fileName, DWORD code)
    : EFileStreamError(Format(L"Cannot open file \"%s\". %s", fileName, SystemErrorText(code)), code) {}

LinkFile::LinkFile(const std::wstring& fileName)
    : file_(CreateFileW(fileName.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {
  const std::optional<FileStamp> stamp = file_ ? StampOfOpenFile(file_.Get()) : std::nullopt;
  if (!stamp.has_value()) throw EFOpenError(fileName, GetLastError());
  stamp_ = *stamp;
}

std::unique_ptr<std::byte[]> LinkFile::ReadAll() const {
  const auto size = static_cast<std::size_t>(stamp_.size);
  auto bytes = std::make_unique_for_overwrite<std::byte[]>(size);
  ReadAllBytes(file_.Get(), {bytes.get(), size});
  return bytes;
}

}  // namespace smh
