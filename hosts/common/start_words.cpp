#include "hosts/common/start_words.h"

#include "core/contracts/location_table.h"
#include "hosts/common/texts/start_texts.h"

namespace smh {

namespace {

struct ReasonWords {
  std::int32_t flag;
  const Text& words;
};

// Without those that only say where another reason holds, and "disabled", which the state tells.
constexpr ReasonWords kReasons[] = {
    {kReasonSwitchedOff, texts::kReasonOff},   {kReasonPolicy, texts::kReasonByPolicy},
    {kReasonBlocked, texts::kReasonIsBlocked}, {kReasonNotApproved, texts::kReasonUnapproved},
    {kReasonNotRead, texts::kReasonUnread},    {kReasonOnlyInIEMode, texts::kReasonIEMode},
    {kReasonMissing, texts::kReasonNoFile},    {kReasonUnreachable, texts::kReasonOutOfReach},
};

const Text& StartsWord(const ItemRecord& item) noexcept {
  if (item.starts == kStartsNo) return texts::kStartsNot;
  if (item.starts != kStartsYes) return texts::kStartsPerhaps;
  const bool is64 = (item.reasons & kReasonOnlyFor64) != 0;
  const bool is32 = (item.reasons & kReasonOnlyFor32) != 0;
  if (is64 == is32) return texts::kStarts;
  if (IsOfTwoLists(item)) return is64 ? texts::kNotFromList64 : texts::kNotFromList32;
  return is64 ? texts::kNotFor64 : texts::kNotFor32;
}

}  // namespace

const Text& StateText(bool enabled) noexcept {
  return enabled ? texts::kEnabledState : texts::kDisabledState;
}

std::wstring StartsText(const ItemRecord& item) {
  const Text& word = StartsWord(item);
  const Phrase reasons = ReasonsText(item);
  return reasons.IsEmpty() ? word.Get() : Format(texts::kStartsFor, word, reasons);
}

Phrase ReasonsText(const ItemRecord& item) {
  Phrase text;
  for (const ReasonWords& row : kReasons) {
    if ((item.reasons & row.flag) == 0) continue;
    // A switch that can be set is one that can be read.
    const bool isCertain =
        row.flag == kReasonUnreachable || (row.flag == kReasonSwitchedOff && item.canSwitch);
    const bool isEmpty = row.flag == kReasonMissing && item.command.empty();
    const Text& words = isEmpty ? texts::kReasonNoCommand : row.words;
    const bool isSure = item.starts != kStartsUnknown || isCertain;
    text.Append(text.IsEmpty() ? L"" : L", ", isSure ? Phrase(words) : Say(texts::kReasonPerhaps, words));
  }
  return text;
}

const wchar_t* NameMarkText(const ItemRecord& item) noexcept {
  const bool isRunOnce = item.location == sulRegistryUserRunOnce || item.location == sulRegistryCommonRunOnce;
  if (!isRunOnce || !item.value) return L"";
  if (item.value->starts_with(L'!')) return texts::kMarkAfter.Get();
  return item.value->starts_with(L'*') ? texts::kMarkSafeMode.Get() : L"";
}

bool IsSwitchedOff(const ItemRecord& item) noexcept {
  return (item.reasons & kReasonSwitchedOff) != 0 && item.starts == kStartsNo;
}

bool HasSwitchOff(const ItemRecord& item) noexcept {
  // One in no known form cannot be set.
  return (item.reasons & kReasonSwitchedOff) != 0 && (item.starts == kStartsNo || item.canSwitch);
}

bool NeedsSwitch(const ItemRecord& item, bool off) noexcept {
  return off ? !IsSwitchedOff(item) : HasSwitchOff(item);
}

bool IsOfTwoLists(const ItemRecord& item) noexcept {
  return LocationRowOf(item.location).family == LocationFamily::kRunKey;
}

}  // namespace smh
