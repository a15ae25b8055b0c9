#include "siblings/raterkit/rating_store.h"

#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"

#include <windows.h>

namespace smh {

namespace {

// Far above any list that people keep.
constexpr DWORD kLargestFile = 16u << 20;

// Nothing when the file cannot be read now.
std::optional<std::string> ReadBytes(const std::wstring& path) {
  try {
    return ReadWholeFile(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, kLargestFile);
  } catch (const EOSError&) {
    return std::nullopt;
  }
}

}  // namespace

// The stamp is older than the text: a change in between shows in the next call. A file that exists but cannot
// be read, because it is being written, keeps the ratings read before and is tried again.
const RatingTable& RatingFile::Table() {
  const std::optional<FileStamp> current = StampOf(path_);
  if (current == stamp_) return table_;
  const std::optional<std::string> bytes = current.has_value() ? ReadBytes(path_) : std::string();
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
