// Ratings as an INI text lists them: "name=trusted|unknown|risky" under [Companies] and [Files]. Names ignore
// case and blanks around them and may hold "="; the last one splits. Lines that begin with ";" or "#" are
// remarks, the first of two equal names counts, and any other line is passed over.
#pragma once

#include "core/contracts/intf_FileRater.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace smh {

// The text of a file: UTF-16 of either byte order by its byte order mark, else UTF-8 with or without one.
// Bytes that are neither are replaced.
std::wstring DecodeText(std::string_view bytes);

// Constant once it is made.
class RatingTable {
 public:
  RatingTable() = default;
  // Reads the text of a file, any text; lines that make no sense are passed over.
  explicit RatingTable(std::wstring_view text);

  // None for a name that is not listed. Case and blanks around the name do not count.
  std::optional<FileRating> OfCompany(std::wstring_view company) const { return Find(companies_, company); }
  std::optional<FileRating> OfFile(std::wstring_view name) const { return Find(files_, name); }

 private:
  struct IgnoringCase {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
  };
  using Ratings = std::map<std::wstring, FileRating, IgnoringCase>;

  static std::optional<FileRating> Find(const Ratings& ratings, std::wstring_view name);
  Ratings* Section(std::wstring_view header) noexcept;

  Ratings companies_;
  Ratings files_;
};

}  // namespace smh
