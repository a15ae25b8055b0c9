#include "siblings/raterkit/rating_store.h"

#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

#include <windows.h>

#include <algorithm>

namespace smh {

namespace {

struct RatingWord {
  std::wstring_view word;
  FileRating rating;
};

constexpr RatingWord kRatingWords[] = {
    {L"trusted", kRatingTrusted},
    {L"unknown", kRatingUnknown},
    {L"risky", kRatingRisky},
};

std::optional<FileRating> ParseRating(std::wstring_view text) {
  for (const RatingWord& row : kRatingWords) {
    if (SameText(row.word, text)) return row.rating;
  }
  return std::nullopt;
}

constexpr std::wstring_view kSigner = L"signer";

// What stands behind a name's "=".
std::optional<Rating> RatingOf(std::wstring_view text) {
  const std::size_t end = std::min(text.find(L';'), text.size());
  const std::optional<FileRating> rating = ParseRating(TrimmedPart(text.substr(0, end)));
  if (!rating) return std::nullopt;
  Rating result;
  result.rating = *rating;
  if (end == text.size()) return result;
  text = TrimmedPart(text.substr(end + 1));
  if (!StartsText(kSigner, text)) return std::nullopt;
  text = TrimmedPart(text.substr(kSigner.size()));
  if (!text.starts_with(L'=')) return std::nullopt;
  result.signer = Trim(text.substr(1));
  return result;
}

// The first line, removed from `text` with its end.
std::wstring TakeLine(std::wstring_view& text) {
  const std::size_t end = text.find_first_of(L"\r\n");
  std::wstring line = Trim(text.substr(0, end));
  text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
  return line;
}

std::wstring DecodeUtf16(std::string_view bytes, bool bigEndian) {
  std::wstring text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<wchar_t>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return text;
}

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

std::wstring DecodeText(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return DecodeUtf16(bytes.substr(2), false);
  if (bytes.starts_with("\xFE\xFF")) return DecodeUtf16(bytes.substr(2), true);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  const auto decodeInto = [bytes](wchar_t* target, std::size_t room) {
    return MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), target,
                               static_cast<int>(room));
  };
  std::wstring text(static_cast<std::size_t>(decodeInto(nullptr, 0)), L'\0');
  decodeInto(text.data(), text.size());
  return text;
}

bool RatingTable::IgnoringCase::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
  return CompareText(a, b) < 0;
}

RatingTable::RatingTable(std::wstring_view text) {
  Ratings* section = nullptr;
  while (!text.empty()) {
    const std::wstring line = TakeLine(text);
    if (line.empty() || line.front() == L';' || line.front() == L'#') continue;
    if (line.front() == L'[') {
      section = Section(line);
      continue;
    }
    if (section == nullptr) continue;
    for (std::size_t split = line.rfind(L'='); split != std::wstring::npos && split > 0;
         split = line.rfind(L'=', split - 1)) {
      std::optional<Rating> rating = RatingOf(std::wstring_view(line).substr(split + 1));
      if (!rating) continue;
      section->emplace(Trim(line.substr(0, split)), std::move(*rating));
      break;
    }
  }
}

const Rating* RatingTable::Find(const Ratings& ratings, std::wstring_view name) {
  const auto row = ratings.find(Trim(name));
  return row == ratings.end() ? nullptr : &row->second;
}

RatingTable::Ratings* RatingTable::Section(std::wstring_view header) noexcept {
  if (SameText(header, L"[Companies]")) return &companies_;
  if (SameText(header, L"[Files]")) return &files_;
  return nullptr;
}

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

Rating RatingStore::Find(Lookup lookup, std::wstring_view name) {
  const ScopedLock guard(lock_);
  for (RatingFile& file : files_) {
    if (const Rating* const rating = (file.Table().*lookup)(name)) return *rating;
  }
  return {};
}

FileRating RatingStore::OfCompany(std::wstring_view company) {
  return Find(&RatingTable::OfCompany, company).rating;
}

FileRating RatingStore::OfFile(std::wstring_view name) {
  return Find(&RatingTable::OfFile, name).rating;
}

std::wstring RatingStore::TrustedSigner(std::wstring_view company, std::wstring_view name) {
  Rating rating = Find(&RatingTable::OfCompany, company);
  if (rating.rating == kRatingUnknown) rating = Find(&RatingTable::OfFile, name);
  return rating.rating == kRatingTrusted ? rating.signer : std::wstring();
}

}  // namespace smh
