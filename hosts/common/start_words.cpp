#include "hosts/common/start_words.h"

#include "core/contracts/location_table.h"

namespace smh {

namespace {

struct ReasonWords {
  std::int32_t flag;
  std::wstring_view words;
};

// Without those that only say where another reason holds, and "disabled", which the state tells.
constexpr ReasonWords kReasons[] = {
    {kReasonSwitchedOff, L"switched off in Task Manager"},
    {kReasonPolicy, L"forbidden by a policy"},
    {kReasonBlocked, L"blocked"},
    {kReasonNotApproved, L"not approved"},
    {kReasonNotRead, L"not read by this Windows"},
    {kReasonOnlyInIEMode, L"only in IE mode"},
    {kReasonMissing, L"file missing"},
    {kReasonUnreachable, L"file out of reach"},
};

}  // namespace

std::wstring StartsText(const ItemRecord& item) {
  std::wstring text(StartsName(item.starts));
  if (item.starts == kStartsYes) {
    const bool is64 = (item.reasons & kReasonOnlyFor64) != 0;
    const bool is32 = (item.reasons & kReasonOnlyFor32) != 0;
    const bool isOfLists = IsOfTwoLists(item);
    if (is64 != is32) {
      text.append(isOfLists ? L", but not from the " : L", but not for ").append(is64 ? L"64" : L"32");
      text.append(isOfLists ? L"-bit list" : L"-bit programs");
    }
  }
  const std::wstring reasons = ReasonsText(item);
  return reasons.empty() ? text : text.append(L": ").append(reasons);
}

std::wstring ReasonsText(const ItemRecord& item) {
  std::wstring text;
  for (const ReasonWords& row : kReasons) {
    if ((item.reasons & row.flag) == 0) continue;
    if (!text.empty()) text += L", ";
    // A switch that can be set is one that can be read.
    const bool isCertain =
        row.flag == kReasonUnreachable || (row.flag == kReasonSwitchedOff && item.canSwitch);
    if (item.starts == kStartsUnknown && !isCertain) text += L"perhaps ";
    text += row.flag == kReasonMissing && item.command.empty() ? L"it has no command" : row.words;
  }
  return text;
}

std::wstring_view NameMarkText(const ItemRecord& item) noexcept {
  const bool isRunOnce = item.location == sulRegistryUserRunOnce || item.location == sulRegistryCommonRunOnce;
  if (!isRunOnce || !item.value) return {};
  if (item.value->starts_with(L'!')) {
    return L"\"!\" before the name: Windows removes the entry after its command has run, not before";
  }
  return item.value->starts_with(L'*') ? L"\"*\" before the name: it runs in safe mode, too" : L"";
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
