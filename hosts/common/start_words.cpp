#include "hosts/common/start_words.h"

namespace smh {

namespace {

struct ReasonRow {
  std::int32_t flag;
  std::wstring_view name;
  std::wstring_view words;  // empty for what only says where another reason holds
};

// By StartReason.
constexpr ReasonRow kReasons[] = {
    {kReasonDisabled, L"disabled", L"disabled"},
    {kReasonSwitchedOff, L"switchedOff", L"switched off in Task Manager"},
    {kReasonPolicy, L"policy", L"forbidden by a policy"},
    {kReasonBlocked, L"blocked", L"blocked"},
    {kReasonNotApproved, L"notApproved", L"not approved"},
    {kReasonNotRead, L"notRead", L"not read by this Windows"},
    {kReasonOnlyInIEMode, L"onlyInIEMode", L"only in IE mode"},
    {kReasonMissing, L"missing", L"file missing"},
    {kReasonUnreachable, L"unreachable", L"file out of reach"},
    {kReasonOnlyFor64, L"onlyFor64", L""},
    {kReasonOnlyFor32, L"onlyFor32", L""},
};

}  // namespace

std::wstring_view StartsName(std::int32_t starts) noexcept {
  return starts == kStartsYes ? L"yes" : starts == kStartsNo ? L"no" : L"unknown";
}

std::vector<std::wstring_view> ReasonNames(std::int32_t reasons) {
  std::vector<std::wstring_view> names;
  for (const ReasonRow& row : kReasons) {
    if ((reasons & row.flag) != 0) names.push_back(row.name);
  }
  return names;
}

std::wstring StartsText(const ItemRecord& item) {
  std::wstring text(StartsName(item.starts));
  if (item.starts == kStartsYes) {
    const bool is64 = (item.reasons & kReasonOnlyFor64) != 0;
    const bool is32 = (item.reasons & kReasonOnlyFor32) != 0;
    if (is64 != is32) text.append(L", but not for ").append(is64 ? L"64" : L"32").append(L"-bit programs");
  }
  const std::wstring reasons = ReasonsText(item);
  return reasons.empty() ? text : text.append(L": ").append(reasons);
}

std::wstring ReasonsText(const ItemRecord& item) {
  std::wstring text;
  for (const ReasonRow& row : kReasons) {
    if ((item.reasons & row.flag & ~kReasonDisabled) == 0 || row.words.empty()) continue;
    if (!text.empty()) text += L", ";
    if (item.starts == kStartsUnknown && row.flag != kReasonUnreachable) text += L"perhaps ";
    text += row.words;
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

}  // namespace smh
