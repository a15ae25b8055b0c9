#include "hosts/gui/entry_rows.h"

#include "hosts/common/file_trust.h"
#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <span>
#include <unordered_map>
#include <utility>

namespace smh {

namespace {

// The numbers of rows of a saved state, which are the same after every look.
constexpr RowId kGoneRows = RowId{1} << 63;

// What tells entries of one caption apart: the first of these that differs among them, and among those that
// are still equal the next.
constexpr std::wstring (*kTwinMarks[])(const ItemRecord&) = {
    [](const ItemRecord& item) { return FullTitle(item.location); },
    ViewText,
    [](const ItemRecord& item) {
      if (item.value) return Printable(*item.value);
      return Printable(FileNamePart(item.key.empty() ? item.name : item.key));
    },
};

void TellApart(const std::vector<EntryRow*>& twins,
               std::span<std::wstring (*const)(const ItemRecord&)> marks) {
  if (twins.size() < 2 || marks.empty()) return;
  std::map<std::wstring, std::vector<EntryRow*>> groups;
  for (EntryRow* const row : twins) groups[marks.front()(row->item)].push_back(row);
  for (const auto& [mark, group] : groups) {
    for (EntryRow* const row : group) {
      if (groups.size() > 1 && !mark.empty()) row->twinMark += (row->twinMark.empty() ? L"" : L", ") + mark;
    }
    TellApart(group, marks.subspan(1));
  }
}

// Whether what was found out about the one holds for the other.
bool IsSameFile(const ItemRecord& a, const ItemRecord& b) {
  return RunningFile(a) == RunningFile(b) && a.describedFile == b.describedFile && a.rating == b.rating &&
         a.company == b.company && a.fileSize == b.fileSize && a.lastWriteTime == b.lastWriteTime &&
         a.reachability == b.reachability;
}

std::wstring SearchedText(const ItemRecord& item) {
  std::wstring text = StatusText(item) + L'\n' + TrustText(item) + L'\n' + FullTitle(item.location);
  for (const std::wstring& part : {item.caption, item.command, item.company, item.description,
                                   item.productName, item.version, SignerText(item)}) {
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
  CompareNow();
  MarkTwins();
  Arrange();
}

void EntryRows::Compare(std::shared_ptr<const Snapshot> before) {
  before_ = std::move(before);
  CompareNow();
  MarkTwins();
  Arrange();
}

void EntryRows::CompareNow() {
  std::vector<EntryRow*> rows;
  rows.reserve(rows_.size());
  for (auto& [key, row] : rows_) {
    row.difference.reset();
    rows.push_back(&row);
  }
  gone_.clear();
  differences_ = {};
  if (before_ == nullptr) return;
  std::vector<const ItemRecord*> items;
  items.reserve(rows.size());
  for (const EntryRow* row : rows) items.push_back(&row->item);
  ComparedEntries compared = smh::Compare(*before_, items);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!compared.items[i]) continue;
    ++differences_[static_cast<std::size_t>(compared.items[i]->kind)];
    rows[i]->difference = std::move(compared.items[i]);
  }
  gone_.reserve(compared.gone.size());
  for (const std::size_t position : compared.gone) {
    const SnapshotEntry& entry = before_->entries[position];
    EntryRow row;
    row.id = kGoneRows | position;
    row.isChecked = true;
    row.difference = EntryDifference{DifferenceKind::kRemoved, entry};
    Fill(row, GoneRecord(entry));
    gone_.push_back(std::move(row));
    ++differences_[static_cast<std::size_t>(DifferenceKind::kRemoved)];
  }
}

void EntryRows::ShowOnlyDifferent(bool only) {
  onlyDifferent_ = only;
  Filter();
}

void EntryRows::Put(ItemRecord item) {
  const auto [place, isNew] = rows_.try_emplace(KeyOf(item));
  EntryRow& row = place->second;
  if (isNew) {
    row.id = ++lastId_;
    ++counts_[item.location];
  }
  if (!isNew && IsSameFile(row.item, item)) {
    item.trust = std::move(row.item.trust);
  } else {
    row.isChecked = false;
  }
  Fill(row, std::move(item));
}

void EntryRows::Fill(EntryRow& row, ItemRecord item) const {
  row.searched = SearchedText(item);
  row.sortKey = SortKeyOf(item, first_.column);
  row.secondKey = SortKeyOf(item, second_.column);
  row.item = std::move(item);
}

std::vector<ItemRecord> EntryRows::Unchecked(std::size_t first, std::size_t seen, std::size_t most) const {
  std::vector<ItemRecord> items;
  std::set<RowId> taken;
  const auto take = [&](const EntryRow& row) {
    if (items.size() < most && !row.isChecked && taken.insert(row.id).second) items.push_back(row.item);
  };
  for (std::size_t i = first; i < std::min(first + seen, shown_.size()); ++i) take(*shown_[i]);
  for (const EntryRow* row : shown_) take(*row);
  for (const auto& [key, row] : rows_) take(row);
  return items;
}

std::size_t EntryRows::UncheckedCount() const noexcept {
  return static_cast<std::size_t>(
      std::count_if(rows_.begin(), rows_.end(), [](const auto& each) { return !each.second.isChecked; }));
}

bool EntryRows::TakeTrust(const std::vector<ItemRecord>& checked) {
  bool hasNews = false;
  for (const ItemRecord& item : checked) {
    const auto place = rows_.find(KeyOf(item));
    if (place == rows_.end() || !IsSameFile(place->second.item, item)) continue;
    EntryRow& row = place->second;
    ItemRecord now = row.item;
    now.trust = item.trust;
    row.isChecked = true;
    hasNews = hasNews || TrustText(now) != TrustText(row.item) || SignerText(now) != SignerText(row.item);
    Fill(row, std::move(now));
  }
  const auto isByTrust = [](const Order& order) {
    return order.column == kTrustColumn || order.column == kSignerColumn;
  };
  const bool isArranged = !isByTrust(first_) && !isByTrust(second_) && filters_.none() && words_.empty();
  if (!hasNews || isArranged) return false;
  Arrange();
  return true;
}

void EntryRows::CheckAgain() noexcept {
  for (auto& [key, row] : rows_) row.isChecked = false;
}

void EntryRows::CheckAgain(const EntryKey& key) {
  if (const auto place = rows_.find(key); place != rows_.end()) place->second.isChecked = false;
}

void EntryRows::SetFilters(const FilterSet& filters) {
  filters_ = filters;
  Filter();
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

void EntryRows::Sort(const Order& first, const Order& second) {
  const bool isSwapped = first.column == second_.column && second.column == first_.column;
  const auto renew = [&](EntryRow& row) {
    if (isSwapped) return row.sortKey.swap(row.secondKey);
    if (second.column == first_.column) row.secondKey = row.sortKey;
    if (second.column != first_.column && second.column != second_.column) {
      row.secondKey = SortKeyOf(row.item, second.column);
    }
    if (first.column != first_.column) row.sortKey = SortKeyOf(row.item, first.column);
  };
  for (auto& [key, row] : rows_) renew(row);
  for (EntryRow& row : gone_) renew(row);
  first_ = first;
  second_ = second;
  Arrange();
}

// What has gone is told from what is there, too.
void EntryRows::MarkTwins() {
  std::unordered_map<std::wstring, std::vector<EntryRow*>> captions;
  captions.reserve(rows_.size());
  const auto take = [&captions](EntryRow& row) {
    row.twinMark.clear();
    captions[CaptionText(row.item)].push_back(&row);
  };
  for (auto& [key, row] : rows_) take(row);
  for (EntryRow& row : gone_) take(row);
  for (const auto& [caption, twins] : captions) TellApart(twins, kTwinMarks);
}

void EntryRows::Arrange() {
  order_.clear();
  order_.reserve(rows_.size());
  for (const auto& [key, row] : rows_) order_.push_back(&row);
  for (const EntryRow& row : gone_) order_.push_back(&row);
  // Rows are gathered in the order of their keys, which equal ones keep.
  std::stable_sort(order_.begin(), order_.end(), [this](const EntryRow* a, const EntryRow* b) {
    if (const int order = a->sortKey.compare(b->sortKey); order != 0) return first_.descending == (order > 0);
    const int order = a->secondKey.compare(b->secondKey);
    return second_.descending ? order > 0 : order < 0;
  });
  Filter();
}

void EntryRows::Filter() {
  shown_.clear();
  std::copy_if(order_.begin(), order_.end(), std::back_inserter(shown_), [this](const EntryRow* row) {
    if (ShowsOnlyDifferent() && !row->difference) return false;
    return locations_[row->item.location] && PassesFilters(filters_, row->item) && HasWords(*row);
  });
}

bool EntryRows::HasWords(const EntryRow& row) const {
  const std::wstring_view mark = row.difference ? DifferenceText(row.difference->kind).Get() : L"";
  return std::all_of(words_.begin(), words_.end(), [&](const std::wstring& word) {
    return row.searched.find(word) != std::wstring::npos || mark.find(word) != std::wstring_view::npos;
  });
}

std::size_t EntryRows::Count(Limit limit) const {
  const bool ofLocations = limit != Limit::kSearchAndFilters;
  const bool ofSearch = limit != Limit::kLocations;
  const bool ofFilters = limit == Limit::kSearchAndFilters;
  const auto fits = [&](const EntryRow* row) {
    return (!ofLocations || locations_[row->item.location]) && (!ofSearch || HasWords(*row)) &&
           (!ofFilters || PassesFilters(filters_, row->item));
  };
  return static_cast<std::size_t>(std::count_if(order_.begin(), order_.end(), fits));
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
