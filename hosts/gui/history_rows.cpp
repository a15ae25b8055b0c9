#include "hosts/gui/history_rows.h"

#include "hosts/common/journal_words.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/texts/history_texts.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

bool IsChange(const CheckpointRecord& action) noexcept {
  return action.info.undoes == 0;
}

bool IsListed(const CheckpointRecord& action) noexcept {
  return IsChange(action) || action.info.state == CheckpointState::kInterrupted;
}

bool Stands(const CheckpointRecord& record) noexcept {
  const CheckpointState state = record.info.state;
  return state == CheckpointState::kDone || state == CheckpointState::kInterrupted ||
         state == CheckpointState::kPartlyDone;
}

bool IsFound(const CheckpointRecord& record, const std::wstring& search) {
  return search.empty() || LowerCase(ShownTitle(record.title)).find(search) != std::wstring::npos;
}

bool IsUndone(const HistoryRow& row) noexcept {
  return row.Record().info.state == CheckpointState::kUndone;
}

std::wstring DayOf(const FILETIME& time) {
  return IsoTimeOf(time).substr(0, 10);
}

// Of the action, which decides for its parts.
const Text* WhyNever(CheckpointState state) noexcept {
  switch (state) {
    case CheckpointState::kOpen:
      return &texts::kStillAtWork;
    case CheckpointState::kDamaged:
      return &texts::kDamagedRecord;
    case CheckpointState::kDropped:
      return &texts::kDroppedRecord;
    default:
      return nullptr;
  }
}

}  // namespace

bool CanBeUndone(const HistoryRow& row) noexcept {
  const bool mayFail = row.Record().info.state == CheckpointState::kFailed;
  return WhyNever(row.action->info.state) == nullptr && (Stands(row.Record()) || mayFail);
}

std::wstring HistoryStateText(const CheckpointRecord& record) {
  const auto index = static_cast<std::size_t>(record.info.state);
  const std::wstring day =
      record.info.state == CheckpointState::kDropped ? DayOf(record.info.dropped) : std::wstring();
  if (!day.empty()) return Format(texts::kDroppedOn, day);
  return index < std::size(texts::kHistoryStates) ? texts::kHistoryStates[index].Get() : L"";
}

std::wstring CountedTitle(const CheckpointRecord& record) {
  const std::wstring count = std::to_wstring(record.info.parts);
  if (record.info.parts < 2 || record.title.find(L" " + count + L" ") != std::wstring::npos)
    return ShownTitle(record.title);
  return Format(texts::kTitleOfMany, ShownTitle(record.title), count);
}

void HistoryRows::Take(HistorySnapshot snapshot) {
  snapshot_ = std::move(snapshot);
  Filter();
}

void HistoryRows::Open(std::uint32_t action, std::vector<CheckpointRecord> parts) {
  snapshot_.parts.insert_or_assign(action, std::move(parts));
  Filter();
}

void HistoryRows::Close(std::uint32_t action) {
  snapshot_.parts.erase(action);
  Filter();
}

std::vector<std::uint32_t> HistoryRows::Opened() const {
  std::vector<std::uint32_t> ids;
  for (const auto& [id, parts] : snapshot_.parts) ids.push_back(id);
  return ids;
}

void HistoryRows::Search(std::wstring_view text) {
  search_ = LowerCase(Trim(text));
  Filter();
}

void HistoryRows::Filter() {
  shown_.clear();
  for (auto action = snapshot_.actions.rbegin(); action != snapshot_.actions.rend(); ++action) {
    if (!IsListed(*action)) continue;
    const bool isFound = IsFound(*action, search_);
    std::vector<HistoryRow> parts;
    if (const auto opened = snapshot_.parts.find(action->info.id); opened != snapshot_.parts.end()) {
      for (const CheckpointRecord& part : opened->second) {
        if (isFound || IsFound(part, search_)) parts.push_back({&*action, &part});
      }
    }
    if (!isFound && parts.empty()) continue;
    shown_.push_back({&*action});
    shown_.insert(shown_.end(), parts.begin(), parts.end());
  }
}

std::size_t HistoryRows::ActionCount() const noexcept {
  return static_cast<std::size_t>(
      std::ranges::count_if(shown_, [](const HistoryRow& row) { return row.part == nullptr; }));
}

std::wstring HistoryRows::Title(std::size_t row) const {
  const HistoryRow& shown = shown_[row];
  std::wstring title = L"   ";
  if (shown.part != nullptr) {
    title = L"        ";
  } else if (HasParts(row)) {
    title = IsOpened(shown.action->info.id) ? L"\u2013 " : L"+ ";
  }
  return title + Printable(CountedTitle(shown.Record()));
}

bool HistoryRows::HasParts(std::size_t row) const noexcept {
  const CheckpointInfo& info = shown_[row].action->info;
  return info.parts > 1 && info.state != CheckpointState::kDropped;
}

HistoryTarget HistoryRows::TargetOf(const std::vector<std::size_t>& positions) const {
  HistoryTarget target;
  for (const std::size_t position : positions) {
    if (position >= shown_.size()) return {};
    const HistoryRow& row = shown_[position];
    const bool isOther = target.action != 0 && target.action != row.action->info.id;
    if (isOther || (row.part == nullptr && positions.size() > 1)) return {};
    target.action = row.action->info.id;
    if (row.part != nullptr) target.parts.push_back(row.part->info.id);
  }
  return target;
}

std::vector<std::size_t> HistoryRows::PositionsOf(const HistoryTarget& target) const {
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const HistoryRow& row = shown_[i];
    const bool isWanted = row.part == nullptr ? target.parts.empty()
                                              : std::ranges::binary_search(target.parts, row.part->info.id);
    if (row.action->info.id == target.action && isWanted) positions.push_back(i);
  }
  return positions;
}

std::vector<HistoryRow> HistoryRows::RowsOf(const HistoryTarget& target) const {
  std::vector<HistoryRow> rows;
  for (const std::size_t position : PositionsOf(target)) rows.push_back(shown_[position]);
  return rows;
}

std::wstring HistoryRows::WhyNotUndone(const HistoryTarget& target) const {
  for (const HistoryRow& row : RowsOf(target)) {
    if (CanBeUndone(row)) continue;
    if (const Text* const never = WhyNever(row.action->info.state)) return never->Get();
    return (IsUndone(row) ? texts::kUndoneAlready : texts::kNotUndoable).Get();
  }
  return {};
}

bool HistoryRows::CanUndo(const HistoryTarget& target) const {
  const std::vector<HistoryRow> rows = RowsOf(target);
  return !rows.empty() && std::ranges::all_of(rows, CanBeUndone);
}

bool HistoryRows::CanRedo(const HistoryTarget& target) const {
  const std::vector<HistoryRow> rows = RowsOf(target);
  if (rows.empty()) return false;
  if (!target.parts.empty()) return std::ranges::all_of(rows, IsUndone);
  return std::ranges::any_of(snapshot_.actions, [&target](const CheckpointRecord& each) {
    return each.info.undoes == target.action && Stands(each);
  });
}

std::wstring HistoryRows::NameOf(const HistoryTarget& target) const {
  const std::vector<HistoryRow> rows = RowsOf(target);
  if (rows.size() == 1) return CountedTitle(rows.front().Record());
  return rows.empty() ? L"" : Format(texts::kPartsOf, rows.size(), ShownTitle(rows.front().action->title));
}

bool HistoryRows::CanUndoLatest() const noexcept {
  return std::ranges::any_of(snapshot_.actions, [this](const CheckpointRecord& each) {
    return IsListed(each) && Stands(each) && !IsUndo(each);
  });
}

bool HistoryRows::HasInterrupted() const noexcept {
  return std::ranges::any_of(snapshot_.actions, [](const CheckpointRecord& each) {
    return each.info.state == CheckpointState::kInterrupted;
  });
}

const CheckpointRecord* HistoryRows::Find(std::uint32_t action) const noexcept {
  const auto found =
      std::ranges::find(snapshot_.actions, action, [](const CheckpointRecord& each) { return each.info.id; });
  return found == snapshot_.actions.end() ? nullptr : &*found;
}

// What takes an undo back is a redo, which is none.
bool HistoryRows::IsUndo(const CheckpointRecord& action) const noexcept {
  const CheckpointRecord* const undone = Find(action.info.undoes);
  return undone != nullptr && IsChange(*undone);
}

const CheckpointRecord* HistoryRows::LatestUndo() const noexcept {
  for (auto each = snapshot_.actions.rbegin(); each != snapshot_.actions.rend(); ++each) {
    const CheckpointState state = each->info.state;
    if (IsChange(*each)) {
      if (state != CheckpointState::kUndone && state != CheckpointState::kFailed) return nullptr;
      continue;
    }
    if (IsUndo(*each) && Stands(*each)) return &*each;
  }
  return nullptr;
}

}  // namespace smh
