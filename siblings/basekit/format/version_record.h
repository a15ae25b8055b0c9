// A file's version record: the tree of blocks of a VS_VERSIONINFO resource (the platform's documentation of
// that structure).
#pragma once

#include "infra/runtime/byte_cursor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// Any bytes may be given: what does not fit its surrounding block is cut or left out. Nothing is nested
// deeper than the documented four levels, and of languages a record has at most kMostLanguages, in its
// strings and in its translation list each; what follows them is ignored. So a look-up takes time in
// proportion to the record, of which no more than 64 KB are read.
//
// Owns its texts; names and languages are compared ignoring the case of ASCII letters. Not changed once made:
// any thread.
class VersionRecord {
 public:
  static constexpr std::size_t kMostLanguages = 256;

  // No record: every text is empty.
  VersionRecord() = default;
  // Copies what it needs of `bytes`, which may be empty. Raises std::bad_alloc.
  explicit VersionRecord(Bytes bytes);

  // A string by its name: from the languages of the translation list in order, then from the usual English
  // and neutral ones, then from any; the first that is not empty. Valid as long as the record.
  std::wstring_view String(std::wstring_view name) const noexcept;
  // The fixed part's file version as "a.b.c.d"; empty without a fixed part. Valid as long as the record.
  const std::wstring& FileVersionNumber() const noexcept { return fileVersionNumber_; }

 private:
  // A part of `units_`.
  struct Text {
    std::size_t begin = 0;
    std::size_t length = 0;
  };
  struct StringRow {
    Text name;
    Text value;
  };
  struct StringTable {
    // Eight hexadecimal digits: language, code page.
    Text language;
    // In `strings_`.
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  class Reader;

  std::wstring_view View(Text text) const noexcept {
    return std::wstring_view(units_).substr(text.begin, text.length);
  }
  std::wstring_view Find(const StringTable& table, std::wstring_view name) const noexcept;
  std::wstring_view StringOfLanguage(std::wstring_view language, std::wstring_view name) const noexcept;

  // Every text of the record, one behind the other: a block of memory for each would cost more than the rest.
  std::wstring units_;
  std::vector<StringRow> strings_;
  std::vector<Text> translations_;
  std::vector<StringTable> tables_;
  std::wstring fileVersionNumber_;
};

}  // namespace smh
