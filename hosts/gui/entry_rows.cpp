#include "hosts/gui/entry_rows.h"

#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr EntryColumn kColumns[] = {
    {L"Name", 155, CaptionText},
    {L"Status", 100, StatusText},
    {L"Company", 125, [](const ItemRecord& item) { return Printable(item.company); }},
    {L"Rating", 80, RatingText},
    {L"Command", 205, [](const ItemRecord& item) { return Printable(item.command); }},
    {L"Location", 140, [](const ItemRecord& item) { return FullTitle(item.location); }},
};

// By the rules of the user's locale, in a form that compares byte by byte.
std::string SortKeyOf(const std::wstring& text) {
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

std::wstring SearchedText(const ItemRecord& item) {
  std::wstring text = StatusText(item) + L'\n' + RatingText(item) + L'\n' + FullTitle(item.location);
  for (const std::wstring& part :
       {item.caption, item.command, item.company, item.description, item.productName}) {
    text.append(1, L'\n').append(part);
  }
  return LowerCase(text);
}

std::vector<std::wstring> WordsOf(const std::wstring& text) {
  std::vector<std::wstring> words;
  for (std::size_t end = 0;;) {
    const std::size_t begin = text.find_first_not_of(L" \t", end);
    if (begin == std::wstring::npos) return words;
    end = std::min(text.find_first_of(L" \t", begin), text.size());
    words.push_back(text.substr(begin, end - begin));
  }
}

}  // namespace

std::span<const EntryColumn> EntryColumns() noexcept {
  return kColumns;
}

bool IsFileMissing(const ItemRecord& item) noexcept {
  return !item.fileFound && !IsFileUnreachable(item) && !item.command.empty();
}

bool IsFileUnreachable(const ItemRecord& item) noexcept {
  return item.reachability == kFileUnreachable;
}

bool IsLocked(const ItemRecord& item) noexcept {
  return !item.Can(kActionEnable) && !item.Can(kActionDisable) && !item.Can(kActionDelete);
}

std::wstring StatusText(const ItemRecord& item) {
  std::wstring text = item.enabled ? L"On" : L"Off";
  if (IsFileMissing(item)) text += L", file missing";
  if (IsFileUnreachable(item)) text += L", file out of reach";
  if (IsLocked(item)) text += L", locked";
  return text;
}

std::wstring RatingText(const ItemRecord& item) {
  std::wstring text(RatingName(item.rating));
  text.front() = static_cast<wchar_t>(text.front() - L'a' + L'A');
  return text;
}

std::wstring CaptionText(const ItemRecord& item) {
  if (!item.caption.empty()) return Printable(item.caption);
  return item.root.empty() ? Printable(FileNamePart(item.name)) : L"(Default)";
}

void EntryRows::Apply(std::vector<WatchEvent> events) {
  for (WatchEvent& event : events) {
    if (event.kind == L"removed") {
      Remove(KeyOf(event.item));
    } else if (event.before) {
      Rename(KeyOf(*event.before), std::move(event.item));
    } else {
      Put(std::move(event.item));
    }
  }
  Arrange();
}

void EntryRows::Put(ItemRecord item) {
  const auto [place, isNew] = rows_.try_emplace(KeyOf(item));
  EntryRow& row = place->second;
  if (isNew) {
    row.id = ++lastId_;
    ++counts_[item.location];
  }
  row.searched = SearchedText(item);
  row.sortKey = SortKeyOf(EntryColumns()[column_].text(item));
  row.item = std::move(item);
}

void EntryRows::Remove(const EntryKey& key) {
  if (rows_.erase(key) != 0) --counts_[key.location];
}

void EntryRows::Rename(const EntryKey& from, ItemRecord to) {
  auto node = rows_.extract(from);
  if (!node.empty()) {
    node.key() = KeyOf(to);
    const auto inserted = rows_.insert(std::move(node));
    if (!inserted.inserted) --counts_[from.location];
  }
  Put(std::move(to));
}

void EntryRows::ShowLocations(LocationSet locations) {
  locations_ = locations;
  Filter();
}

void EntryRows::Search(std::wstring_view text) {
  words_ = WordsOf(LowerCase(std::wstring(text)));
  Filter();
}

void EntryRows::Sort(std::size_t column, bool descending) {
  if (column != column_) {
    column_ = column;
    for (auto& [key, row] : rows_) row.sortKey = SortKeyOf(EntryColumns()[column].text(row.item));
  }
  descending_ = descending;
  Arrange();
}

void EntryRows::Arrange() {
  order_.clear();
  order_.reserve(rows_.size());
  for (const auto& [key, row] : rows_) order_.push_back(&row);
  // Rows are gathered in the order of their keys, which equal ones keep.
  std::stable_sort(order_.begin(), order_.end(), [this](const EntryRow* a, const EntryRow* b) {
    return descending_ ? b->sortKey < a->sortKey : a->sortKey < b->sortKey;
  });
  Filter();
}

void EntryRows::Filter() {
  shown_.clear();
  std::copy_if(order_.begin(), order_.end(), std::back_inserter(shown_), [this](const EntryRow* row) {
    return locations_[row->item.location] &&
           std::all_of(words_.begin(), words_.end(), [row](const std::wstring& word) {
             return row->searched.find(word) != std::wstring::npos;
           });
  });
}

std::vector<RowId> EntryRows::IdsAt(const std::vector<std::size_t>& positions) const {
  std::vector<RowId> ids;
  for (const std::size_t position : positions) {
    if (position < shown_.size()) ids.push_back(shown_[position]->id);
  }
  return ids;
}

std::vector<std::size_t> EntryRows::PositionsOf(const std::set<RowId>& ids) const {
  std::vector<std::size_t> positions;
  for (std::size_t position = 0; position < shown_.size(); ++position) {
    if (ids.contains(shown_[position]->id)) positions.push_back(position);
  }
  return positions;
}

}  // namespace smh
