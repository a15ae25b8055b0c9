#include "siblings/basekit/version_record.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "infra/runtime/format.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

constexpr std::wstring_view kUsualLanguages[] = {L"040904B0", L"040904E4", L"04090000",
                                                 L"000004B0", L"000004E4", L"00000000"};

// length, value length, type: three words
constexpr std::size_t kHeaderSize = 6;

struct Block {
  std::wstring key;
  std::size_t value = 0;
  std::size_t valueEnd = 0;  // as the header gives it, for binary values
  std::size_t children = 0;
  std::size_t end = 0;
  std::size_t next = 0;
};

std::wstring LanguageText(std::uint16_t language, std::uint16_t codePage) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring text;
  for (const unsigned word : {unsigned{language}, unsigned{codePage}}) {
    for (int shift = 12; shift >= 0; shift -= 4) text += kDigits[word >> shift & 0xF];
  }
  return text;
}

}  // namespace

// Reads the blocks of a record. Values and children are aligned to four bytes, counted from the record's
// start.
class VersionRecord::Reader {
 public:
  Reader(std::span<const std::byte> bytes, VersionRecord& record) : bytes_(bytes), record_(record) {}

  void Read() {
    Block root;
    if (!ReadBlock(0, bytes_.size(), root) || !SameText(root.key, L"VS_VERSION_INFO")) return;
    ReadFixedPart(root);
    ForEachChild(root, [this](const Block& part) {
      if (SameText(part.key, L"StringFileInfo")) {
        ForEachChild(part, [this](const Block& table) { ReadTable(table); });
      } else if (SameText(part.key, L"VarFileInfo")) {
        ForEachChild(part, [this](const Block& list) { ReadTranslations(list); });
      }
    });
  }

 private:
  std::uint16_t Word(std::size_t at) const {
    std::uint16_t word;
    std::memcpy(&word, bytes_.data() + at, sizeof(word));
    return word;
  }

  // The units from `at` up to a zero or `end`.
  std::wstring Text(std::size_t at, std::size_t end) const {
    std::size_t units = 0;
    while (end - at >= (units + 1) * sizeof(wchar_t) && Word(at + units * sizeof(wchar_t)) != 0) ++units;
    std::wstring text(units, L'\0');
    if (units > 0) std::memcpy(text.data(), bytes_.data() + at, units * sizeof(wchar_t));
    return text;
  }

  bool ReadBlock(std::size_t at, std::size_t end, Block& block) const {
    if (end - at < kHeaderSize) return false;
    const std::size_t length = Word(at);
    if (length < kHeaderSize) return false;
    block.end = at + std::min(length, end - at);
    block.next = std::min(Aligned(at + length), end);
    block.key = Text(at + kHeaderSize, block.end);
    const std::size_t keyEnd = at + kHeaderSize + (block.key.size() + 1) * sizeof(wchar_t);
    block.value = std::min(Aligned(keyEnd), block.end);
    const std::size_t unitSize = Word(at + 4) == 0 ? 1 : sizeof(wchar_t);
    block.valueEnd = block.value + std::min(Word(at + 2) * unitSize, block.end - block.value);
    block.children = std::min(Aligned(block.valueEnd), block.end);
    return true;
  }

  template <typename Visit>
  void ForEachChild(const Block& parent, Visit&& visit) const {
    Block child;
    for (std::size_t at = parent.children; ReadBlock(at, parent.end, child); at = child.next) visit(child);
  }

  void ReadFixedPart(const Block& root) const {
    VS_FIXEDFILEINFO fixed;
    if (root.valueEnd - root.value < sizeof(fixed)) return;
    std::memcpy(&fixed, bytes_.data() + root.value, sizeof(fixed));
    if (fixed.dwSignature != VS_FFI_SIGNATURE) return;
    record_.fileVersionNumber_ =
        Format(L"%d.%d.%d.%d", HIWORD(fixed.dwFileVersionMS), LOWORD(fixed.dwFileVersionMS),
               HIWORD(fixed.dwFileVersionLS), LOWORD(fixed.dwFileVersionLS));
  }

  // Compilers disagree on whether a string's value length counts units or bytes: its zero or the block ends
  // it.
  void ReadTable(const Block& block) const {
    StringTable table{block.key, {}};
    ForEachChild(block, [&](Block& string) {
      table.strings.emplace_back(std::move(string.key), Text(string.value, string.end));
    });
    record_.tables_.push_back(std::move(table));
  }

  void ReadTranslations(const Block& list) const {
    if (!SameText(list.key, L"Translation")) return;
    for (std::size_t at = list.value; list.valueEnd - at >= 4; at += 4) {
      record_.translations_.push_back(LanguageText(Word(at), Word(at + 2)));
    }
  }

  static constexpr std::size_t Aligned(std::size_t at) { return (at + 3) & ~std::size_t{3}; }

  std::span<const std::byte> bytes_;
  VersionRecord& record_;
};

VersionRecord::VersionRecord(std::span<const std::byte> bytes) {
  Reader(bytes, *this).Read();
}

const std::wstring* VersionRecord::StringTable::Find(std::wstring_view name) const noexcept {
  const auto row =
      std::ranges::find_if(strings, [&](const auto& pair) { return SameText(pair.first, name); });
  return row == strings.end() ? nullptr : &row->second;
}

std::wstring_view VersionRecord::StringOfLanguage(std::wstring_view language,
                                                  std::wstring_view name) const noexcept {
  for (const StringTable& table : tables_) {
    if (!language.empty() && !SameText(table.language, language)) continue;
    const std::wstring* const text = table.Find(name);
    if (text != nullptr && !text->empty()) return *text;
  }
  return {};
}

std::wstring_view VersionRecord::String(std::wstring_view name) const noexcept {
  std::wstring_view text;
  for (std::size_t i = 0; i < translations_.size() && text.empty(); ++i) {
    text = StringOfLanguage(translations_[i], name);
  }
  for (std::size_t i = 0; i < std::size(kUsualLanguages) && text.empty(); ++i) {
    text = StringOfLanguage(kUsualLanguages[i], name);
  }
  return text.empty() ? StringOfLanguage({}, name) : text;
}

}  // namespace smh
