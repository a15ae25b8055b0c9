#include "siblings/raterkit/rating_store.h"

#include <windows.h>

#include "infra/runtime/handle.h"

namespace smh {

namespace {

// Far above any list that people keep.
constexpr DWORD kLargestFile = 16u << 20;

std::uint64_t Wide(DWORD high, DWORD low) noexcept {
  return static_cast<std::uint64_t>(high) << 32 | low;
}

// Nothing when the file cannot be read now.
std::optional<std::string> ReadBytes(const std::wstring& path) {
  const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size = {};
  if (!file || GetFileSizeEx(file.Get(), &size) == FALSE || size.QuadPart > kLargestFile) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == FALSE) {
    return std::nullopt;
  }
  bytes.resize(read);
  return bytes;
}

}  // namespace

RatingFile::Stamp RatingFile::CurrentStamp() const noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (GetFileAttributesExW(path_.c_str(), GetFileExInfoStandard, &data) == FALSE) return {};
  return {true, Wide(data.nFileSizeHigh, data.nFileSizeLow),
          Wide(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}

// The stamp is older than the text: a change in between shows in the next call. A file that exists but cannot
// be read, because it is being written, keeps the ratings read before and is tried again.
const RatingTable& RatingFile::Table() {
  const Stamp current = CurrentStamp();
  if (current == stamp_) return table_;
  const std::optional<std::string> bytes = current.exists ? ReadBytes(path_) : std::string();
  if (bytes.has_value()) {
    table_ = RatingTable(DecodeText(*bytes));
    stamp_ = current;
  }
  return table_;
}

RatingStore::RatingStore(std::wstring userFile, std::wstring defaultFile)
    : files_{RatingFile(std::move(userFile)), RatingFile(std::move(defaultFile))} {}

FileRating RatingStore::OfCompany(std::wstring_view company) {
  const ScopedLock guard(lock_);
  for (RatingFile& file : files_) {
    if (const std::optional<FileRating> rating = file.Table().OfCompany(company)) return *rating;
  }
  return kRatingUnknown;
}

FileRating RatingStore::OfFile(std::wstring_view name) {
  const ScopedLock guard(lock_);
  for (RatingFile& file : files_) {
    if (const std::optional<FileRating> rating = file.Table().OfFile(name)) return *rating;
  }
  return kRatingUnknown;
}

}  // namespace smh
