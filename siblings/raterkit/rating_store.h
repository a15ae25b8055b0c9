// The ratings of the default file beside the library and of the user's own file, which comes first. Each file
// is read on first use and again when it has changed, appeared or gone.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/critical_section.h"
#include "siblings/raterkit/rating_table.h"

#include <array>
#include <optional>
#include <string>

namespace smh {

// A rating file and what was read from it. Used under the store's lock.
class RatingFile {
 public:
  // `path` is full; an empty one is a file that does not exist.
  explicit RatingFile(std::wstring path) : path_(std::move(path)) {}

  // The ratings by now, valid until the next call; none without a file. A file that cannot be read keeps the
  // ratings read before. Asks the disk.
  const RatingTable& Table();

 private:
  std::wstring path_;
  // None as long as there was no file.
  std::optional<FileStamp> stamp_;
  RatingTable table_;
};

// Any thread may call it. Every question asks the disk whether a file has changed.
class RatingStore {
 public:
  // Reads nothing yet.
  RatingStore(std::wstring userFile, std::wstring defaultFile);

  // By the company of a version record, or by a file's name without folder; kRatingUnknown when neither file
  // lists it.
  FileRating OfCompany(std::wstring_view company);
  FileRating OfFile(std::wstring_view name);

 private:
  // A leaf: nothing of this system is entered under it. Held while a file is read.
  CriticalSection lock_;
  std::array<RatingFile, 2> files_;
};

}  // namespace smh
