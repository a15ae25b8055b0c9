#include "hosts/gui/entry_columns.h"

#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/entry_words.h"
#include "hosts/gui/texts/column_texts.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace smh {

namespace {

std::wstring DisabledByText(const ItemRecord& item) {
  return item.disabledBy == L"own" ? L"Startup Manager" : Printable(item.disabledBy);
}

std::string TrustKey(const ItemRecord& item);

// Dates lie in the order of their numbers; none comes first.
std::string FileDateKey(const ItemRecord& item) {
  if (!item.lastWriteTime || *item.lastWriteTime < 0) return {};
  const auto bits = std::bit_cast<std::uint64_t>(*item.lastWriteTime);
  std::string key;
  for (int shift = 56; shift >= 0; shift -= 8) key.push_back(static_cast<char>(bits >> shift & 0xFF));
  return key;
}

// Numbers lie in the order of their values: 9 before 10.
std::string VersionKey(const ItemRecord& item) {
  const std::wstring text = Printable(item.version);
  std::string key;
  const auto put = [&key](std::size_t unit) {
    key.push_back(static_cast<char>(unit >> 8 & 0xFF));
    key.push_back(static_cast<char>(unit & 0xFF));
  };
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = std::min(text.find_first_not_of(L"0123456789", i), text.size());
    if (end == i) {
      put(text[i++]);
      continue;
    }
    const std::size_t begin = std::min(text.find_first_not_of(L'0', i), end);
    put(L'0');
    put(end - begin);
    for (i = begin; i < end; ++i) put(text[i]);
  }
  return key;
}

// What is new comes last: settings name columns by their numbers.
constexpr EntryColumn kColumns[] = {
    {texts::kNameTitle, 155, true, CaptionText, nullptr},
    {texts::kStatusTitle, 232, true, StatusText, nullptr},
    {texts::kCompanyTitle, 125, true, [](const ItemRecord& item) { return Printable(item.company); },
     nullptr},
    {texts::kTrustTitle, 120, true, TrustText, TrustKey},
    {texts::kCommandTitle, 205, true, [](const ItemRecord& item) { return Printable(item.command); },
     nullptr},
    {texts::kLocationTitle, 140, true, [](const ItemRecord& item) { return FullTitle(item.location); },
     nullptr},
    {texts::kDescriptionTitle, 200, false, [](const ItemRecord& item) { return Printable(item.description); },
     nullptr},
    {texts::kVersionTitle, 90, false, [](const ItemRecord& item) { return Printable(item.version); },
     VersionKey},
    {texts::kSignerTitle, 140, false, SignerText, nullptr},
    {texts::kStartsTitle, 110, false, StartsAnswerText, nullptr},
    {texts::kFileDateTitle, 130, false,
     [](const ItemRecord& item) { return LocalTimeText(item.lastWriteTime); }, FileDateKey},
    {texts::kViewTitle, 90, false, ViewText, nullptr},
    {texts::kDisabledByTitle, 130, false, DisabledByText, nullptr},
    {texts::kFileTitle, 260, false, [](const ItemRecord& item) { return Printable(ShownFile(item)); },
     nullptr},
};
static_assert(kColumns[kNameColumn].text == CaptionText && kColumns[kTrustColumn].text == TrustText &&
              kColumns[kSignerColumn].text == SignerText && kColumns[kStatusColumn].text == StatusText &&
              kColumns[kStartsColumn].text == StartsAnswerText);

// By the rules of the user's locale.
std::string TextKey(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  constexpr DWORD kFlags = LCMAP_SORTKEY | NORM_IGNORECASE;
  const int size =
      length == 0 ? 0 : LCMapStringW(LOCALE_USER_DEFAULT, kFlags, text.c_str(), length, nullptr, 0);
  std::string key(static_cast<std::size_t>(std::max(size, 0)), '\0');
  if (size > 0) {
    LCMapStringW(LOCALE_USER_DEFAULT, kFlags, text.c_str(), length, reinterpret_cast<wchar_t*>(key.data()),
                 size);
  }
  return key;
}

std::string TrustKey(const ItemRecord& item) {
  std::string key = TextKey(TrustText(item));
  key.insert(key.begin(), static_cast<char>(TrustRank(item) + 1));
  return key;
}

}  // namespace

std::span<const EntryColumn> EntryColumns() noexcept {
  return kColumns;
}

std::string SortKeyOf(const ItemRecord& item, std::size_t column) {
  const EntryColumn& row = EntryColumns()[column];
  return row.sortKey != nullptr ? row.sortKey(item) : TextKey(row.text(item));
}

std::wstring SignerText(const ItemRecord& item) {
  return item.trust ? Printable(item.trust->Signer()) : std::wstring();
}

std::wstring ViewText(const ItemRecord& item) {
  if (item.view == 0) return {};
  if (item.twin == kTwinSame) return texts::kBothViews.Get();
  return (item.view == 64 ? texts::kView64 : texts::kView32).Get();
}

}  // namespace smh
