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

  void Read(ByteCursor bytes) {
    const std::optional<Block> root = NextBlock(bytes);
    if (!root || !IsKey(*root, L"VS_VERSION_INFO")) return;
    record_.fileVersionNumber_ = FileVersionOf(root->value);
    ForEachChild(root->children, [this](const Block& part) {
      if (IsKey(part, L"StringFileInfo")) {
        ForEachChild(part.children, [this](const Block& table) { ReadTable(table); });
      } else if (IsKey(part, L"VarFileInfo")) {
        ForEachChild(part.children, [this](const Block& list) { ReadTranslations(list); });
      }
    });
  }

 private:
  struct Block {
    Text key;
    ByteCursor value;     // of the length that the header gives
    ByteCursor text;      // from the value to the block's end
    ByteCursor children;  // behind the value
  };

  bool IsKey(const Block& block, std::wstring_view key) const noexcept {
    return SameAsciiText(record_.View(block.key), key);
  }

  // The code units up to a NUL or the end.
  Text ReadText(ByteCursor& in) {
    std::wstring& units = record_.units_;
    const std::size_t begin = units.size();
    while (const std::uint16_t unit = in.U16()) units += static_cast<wchar_t>(unit);
    return {begin, units.size() - begin};
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
    const Text key = ReadText(block);
    block.Align(kAlignment);
    const ByteCursor text = block;
    const ByteCursor value = block.SubAtMost(isText ? valueLength * sizeof(std::uint16_t) : valueLength);
    block.Align(kAlignment);
    return Block{key, value, text, block};
  }

  template <typename Visit>
  void ForEachChild(ByteCursor children, Visit&& visit) {
    while (std::optional<Block> child = NextBlock(children)) visit(*child);
  }

  // Compilers disagree on whether a string's value length counts units or bytes: its NUL or the block ends
  // it.
  void ReadTable(const Block& block) {
    if (record_.tables_.size() == kMostLanguages) return;
    const std::size_t begin = record_.strings_.size();
    ForEachChild(block.children, [this](Block& string) {
      record_.strings_.push_back({string.key, ReadText(string.text)});
    });
    record_.tables_.push_back({block.key, begin, record_.strings_.size()});
  }

  void ReadTranslations(const Block& list) {
    constexpr std::size_t kEntrySize = 4;
    if (!IsKey(list, L"Translation")) return;
    ByteCursor entries = list.value;
    while (entries.Remaining() >= kEntrySize && record_.translations_.size() < kMostLanguages) {
      const std::uint16_t language = entries.U16();
      AddTranslation(language, entries.U16());
    }
  }

  // Asked twice, a language would answer the same.
  void AddTranslation(std::uint16_t language, std::uint16_t codePage) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    std::wstring& units = record_.units_;
    const std::size_t begin = units.size();
    for (const unsigned word : {unsigned{language}, unsigned{codePage}}) {
      for (int shift = 12; shift >= 0; shift -= 4) units += kDigits[word >> shift & 0xF];
    }
    const Text text{begin, units.size() - begin};
    const auto isSame = [&](Text known) { return record_.View(known) == record_.View(text); };
    if (std::ranges::any_of(record_.translations_, isSame)) {
      units.resize(begin);
    } else {
      record_.translations_.push_back(text);
    }
  }

  VersionRecord& record_;
};

VersionRecord::VersionRecord(Bytes bytes) {
  constexpr std::size_t kUsualStrings = 16;
  units_.reserve(bytes.size() / sizeof(std::uint16_t));
  strings_.reserve(kUsualStrings);
  Reader(*this).Read(ByteCursor(bytes));
}

std::wstring_view VersionRecord::Find(const StringTable& table, std::wstring_view name) const noexcept {
  for (std::size_t i = table.begin; i < table.end; ++i) {
    if (SameAsciiText(View(strings_[i].name), name)) return View(strings_[i].value);
  }
  return {};
}

std::wstring_view VersionRecord::StringOfLanguage(std::wstring_view language,
                                                  std::wstring_view name) const noexcept {
  for (const StringTable& table : tables_) {
    if (!language.empty() && !SameAsciiText(View(table.language), language)) continue;
    const std::wstring_view text = Find(table, name);
    if (!text.empty()) return text;
  }
  return {};
}

std::wstring_view VersionRecord::String(std::wstring_view name) const noexcept {
  std::wstring_view text;
  const std::wstring_view any = StringOfLanguage({}, name);
  if (any.empty()) return any;
  for (std::size_t i = 0; i < translations_.size() && text.empty(); ++i) {
    text = StringOfLanguage(View(translations_[i]), name);
  }
  for (std::size_t i = 0; i < std::size(kUsualLanguages) && text.empty(); ++i) {
    text = StringOfLanguage(kUsualLanguages[i], name);
  }
  return text.empty() ? any : text;
}

}  // namespace smh
