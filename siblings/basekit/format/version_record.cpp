#include "siblings/basekit/format/version_record.h"

#include "infra/runtime/ascii_text.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace smh {

namespace {

constexpr std::wstring_view kUsualLanguages[] = {L"040904B0", L"040904E4", L"04090000",
                                                 L"000004B0", L"000004E4", L"00000000"};

// Values and children are aligned to four bytes, counted from the record's start.
constexpr std::size_t kAlignment = 4;

// VS_FIXEDFILEINFO: signature, version of the structure, file version; then what is of no use here.
constexpr std::size_t kFixedPartSize = 52;
constexpr std::uint32_t kFixedPartSignature = 0xFEEF04BD;

struct Block {
  std::wstring key;
  ByteCursor value;     // of the length that the header gives
  ByteCursor text;      // from the value to the block's end
  ByteCursor children;  // behind the value
};

// The code units up to a NUL or the end.
std::wstring ReadText(ByteCursor& in) {
  std::wstring text;
  while (const std::uint16_t unit = in.U16()) text += static_cast<wchar_t>(unit);
  return text;
}

// The block at the cursor, which moves behind it. None when what is left there is no block.
std::optional<Block> NextBlock(ByteCursor& in) {
  constexpr std::size_t kHeaderSize = 6;
  const std::uint16_t length = in.U16();
  if (length < kHeaderSize) return std::nullopt;
  ByteCursor block = in.SubAtMost(length - sizeof(length));
  in.Align(kAlignment);
  const std::uint32_t valueLength = block.U16();
  const bool isText = block.U16() != 0;
  if (!block.Ok()) return std::nullopt;
  std::wstring key = ReadText(block);
  block.Align(kAlignment);
  const ByteCursor text = block;
  const ByteCursor value = block.SubAtMost(isText ? valueLength * sizeof(std::uint16_t) : valueLength);
  block.Align(kAlignment);
  return Block{std::move(key), value, text, block};
}

template <typename Visit>
void ForEachChild(ByteCursor children, Visit&& visit) {
  while (std::optional<Block> child = NextBlock(children)) visit(*child);
}

std::wstring LanguageText(std::uint16_t language, std::uint16_t codePage) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring text;
  for (const unsigned word : {unsigned{language}, unsigned{codePage}}) {
    for (int shift = 12; shift >= 0; shift -= 4) text += kDigits[word >> shift & 0xF];
  }
  return text;
}

// "a.b.c.d"; empty when the bytes are no fixed part.
std::wstring FileVersionOf(ByteCursor fixed) {
  if (fixed.Remaining() < kFixedPartSize || fixed.U32() != kFixedPartSignature) return {};
  fixed.Skip(sizeof(std::uint32_t));
  const std::uint32_t high = fixed.U32();
  const std::uint32_t low = fixed.U32();
  return std::to_wstring(high >> 16) + L'.' + std::to_wstring(high & 0xFFFF) + L'.' +
         std::to_wstring(low >> 16) + L'.' + std::to_wstring(low & 0xFFFF);
}

}  // namespace

class VersionRecord::Reader {
 public:
  explicit Reader(VersionRecord& record) : record_(record) {}

  void Read(ByteCursor bytes) const {
    const std::optional<Block> root = NextBlock(bytes);
    if (!root || !SameAsciiText(root->key, L"VS_VERSION_INFO")) return;
    record_.fileVersionNumber_ = FileVersionOf(root->value);
    ForEachChild(root->children, [this](const Block& part) {
      if (SameAsciiText(part.key, L"StringFileInfo")) {
        ForEachChild(part.children, [this](const Block& table) { ReadTable(table); });
      } else if (SameAsciiText(part.key, L"VarFileInfo")) {
        ForEachChild(part.children, [this](const Block& list) { ReadTranslations(list); });
      }
    });
  }

 private:
  // Compilers disagree on whether a string's value length counts units or bytes: its NUL or the block ends
  // it.
  void ReadTable(const Block& block) const {
    if (record_.tables_.size() == kMostLanguages) return;
    StringTable& table = record_.tables_.emplace_back();
    table.language = block.key;
    ForEachChild(block.children, [&](Block& string) {
      table.strings.emplace_back(std::move(string.key), ReadText(string.text));
    });
  }

  void ReadTranslations(const Block& list) const {
    constexpr std::size_t kEntrySize = 4;
    if (!SameAsciiText(list.key, L"Translation")) return;
    ByteCursor entries = list.value;
    while (entries.Remaining() >= kEntrySize && record_.translations_.size() < kMostLanguages) {
      const std::uint16_t language = entries.U16();
      const std::uint16_t codePage = entries.U16();
      std::wstring text = LanguageText(language, codePage);
      // Asked twice, a language would answer the same.
      if (std::ranges::find(record_.translations_, text) == record_.translations_.end()) {
        record_.translations_.push_back(std::move(text));
      }
    }
  }

  VersionRecord& record_;
};

VersionRecord::VersionRecord(Bytes bytes) {
  Reader(*this).Read(ByteCursor(bytes));
}

const std::wstring* VersionRecord::StringTable::Find(std::wstring_view name) const noexcept {
  const auto row =
      std::ranges::find_if(strings, [&](const auto& pair) { return SameAsciiText(pair.first, name); });
  return row == strings.end() ? nullptr : &row->second;
}

std::wstring_view VersionRecord::StringOfLanguage(std::wstring_view language,
                                                  std::wstring_view name) const noexcept {
  for (const StringTable& table : tables_) {
    if (!language.empty() && !SameAsciiText(table.language, language)) continue;
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
