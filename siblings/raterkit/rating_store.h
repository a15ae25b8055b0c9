// The ratings of the default file beside the library and of the user's own file, which comes first. Each file
// is read on first use and again when it has changed, appeared or gone.
//
// A file lists ratings as an INI text: "name=trusted|unknown|risky" under [Companies] and [Files]. Names
// ignore case and blanks around them and may hold "="; the last one behind which a rating stands splits. A
// rating may name who signs such files: "name=trusted; signer=organisation". Lines that begin with ";" or "#"
// are remarks, the first of two equal names counts, and any other line is passed over.
#pragma once

#include "core/contracts/intf_FileRater.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/critical_section.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace smh {

// The text of a file: UTF-16 of either byte order by its byte order mark, else UTF-8 with or without one.
// Bytes that are neither are replaced.
std::wstring DecodeText(std::string_view bytes);

struct Rating {
  FileRating rating = kRatingUnknown;
  // As it stands, without blanks around it; empty when the line names none.
  std::wstring signer;
};

// Constant once it is made.
class RatingTable {
 public:
  RatingTable() = default;
  // Reads the text of a file, any text; lines that make no sense are passed over.
  explicit RatingTable(std::wstring_view text);

  // Null for a name that is not listed. Case and blanks around the name do not count. Borrowed.
  const Rating* OfCompany(std::wstring_view company) const { return Find(companies_, company); }
  const Rating* OfFile(std::wstring_view name) const { return Find(files_, name); }

 private:
  struct IgnoringCase {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
  };
  using Ratings = std::map<std::wstring, Rating, IgnoringCase>;

  static const Rating* Find(const Ratings& ratings, std::wstring_view name);
  Ratings* Section(std::wstring_view header) noexcept;

  Ratings companies_;
  Ratings files_;
};

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
  // Whom the line names that rates such a file trusted: the company's, else the name's. Empty without one.
  std::wstring TrustedSigner(std::wstring_view company, std::wstring_view name);

 private:
  using Lookup = const Rating* (RatingTable::*)(std::wstring_view name) const;
  Rating Find(Lookup lookup, std::wstring_view name);

  // A leaf: nothing of this system is entered under it. Held while a file is read.
  CriticalSection lock_;
  std::array<RatingFile, 2> files_ SMH_GUARDED_BY(lock_);
};

}  // namespace smh
