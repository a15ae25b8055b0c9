// A file's version record: the tree of blocks of a VS_VERSIONINFO resource (the platform's documentation of
// that structure). Any bytes may be given: what does not fit its surrounding block is cut or left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

class VersionRecord {
 public:
  // No record: every text is empty.
  VersionRecord() = default;
  explicit VersionRecord(std::span<const std::byte> bytes);

  // A string by its name, ignoring case: from the languages of the translation list in order, then from the
  // usual English and neutral ones, then from any; the first that is not empty. Valid as long as the record.
  std::wstring_view String(std::wstring_view name) const noexcept;
  // The fixed part's file version as "a.b.c.d"; empty without a fixed part.
  const std::wstring& FileVersionNumber() const noexcept { return fileVersionNumber_; }

 private:
  struct StringTable {
    std::wstring language;  // eight hexadecimal digits: language, code page
    std::vector<std::pair<std::wstring, std::wstring>> strings;

    const std::wstring* Find(std::wstring_view name) const noexcept;
  };
  class Reader;

  std::wstring_view StringOfLanguage(std::wstring_view language, std::wstring_view name) const noexcept;

  std::vector<std::wstring> translations_;
  std::vector<StringTable> tables_;
  std::wstring fileVersionNumber_;
};

}  // namespace smh
