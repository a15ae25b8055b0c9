#include "hosts/cli/item_filter.h"

#include "hosts/common/text_encoding.h"
#include "infra/runtime/ascii_text.h"

#include <oleauto.h>

#include <algorithm>
#include <cwchar>

namespace smh {

namespace {

// Of "90m" and the like, in days.
struct TimeUnit {
  wchar_t letter;
  double days;
};
constexpr TimeUnit kTimeUnits[] = {{L'm', 1.0 / (24 * 60)}, {L'h', 1.0 / 24}, {L'd', 1}, {L'w', 7}};
// Digits of a count of them.
constexpr std::size_t kLongestCount = 6;

bool Holds(const std::wstring& text, const std::wstring& lowerPart) {
  return LowerCase(text).find(lowerPart) != std::wstring::npos;
}

struct MatchVisitor {
  const std::wstring& part;  // in lower case

  bool operator()(std::monostate) const { return false; }
  bool operator()(bool value) const { return Holds(value ? L"true" : L"false", part); }
  bool operator()(std::int64_t value) const { return Holds(std::to_wstring(value), part); }
  bool operator()(const std::wstring& value) const { return Holds(value, part); }
  bool operator()(const std::vector<std::wstring_view>& names) const {
    return Holds(JoinNames(names, L","), part);
  }
};

bool MatchesAnyColumn(const ItemRecord& item, const std::wstring& text) {
  const std::wstring part = LowerCase(text);
  return std::ranges::any_of(
      ItemFields(), [&](const ItemField& field) { return std::visit(MatchVisitor{part}, field.read(item)); });
}

template <typename Value>
bool Names(const std::vector<Value>& values, Value value) {
  return values.empty() || std::ranges::find(values, value) != values.end();
}

std::optional<double> DateNow() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  double date = 0;
  return SystemTimeToVariantTime(&now, &date) ? std::optional(date) : std::nullopt;
}

std::optional<double> ParseAge(std::wstring_view text) {
  const auto unit = std::ranges::find(kTimeUnits, text.empty() ? L'\0' : text.back(), &TimeUnit::letter);
  const std::wstring count(text.substr(0, text.empty() ? 0 : text.size() - 1));
  const bool isCount = !count.empty() && count.size() <= kLongestCount &&
                       count.find_first_not_of(L"0123456789") == std::wstring::npos;
  const std::optional<double> now = DateNow();
  if (unit == std::end(kTimeUnits) || !isCount || !now) return std::nullopt;
  return *now - static_cast<double>(std::wcstoul(count.c_str(), nullptr, 10)) * unit->days;
}

// The digits of `text` where the pattern has a 0, which must stand between the same characters as there.
bool FitsPattern(std::wstring_view text, std::wstring_view pattern) {
  return text.size() == pattern.size() &&
         std::equal(text.begin(), text.end(), pattern.begin(), [](wchar_t unit, wchar_t wanted) {
           return wanted == L'0' ? unit >= L'0' && unit <= L'9' : unit == wanted;
         });
}

WORD NumberAt(std::wstring_view text, std::size_t begin, std::size_t digits) {
  WORD number = 0;
  for (std::size_t i = begin; i < begin + digits && begin + digits <= text.size(); ++i) {
    number = static_cast<WORD>(number * 10 + (text[i] - L'0'));
  }
  return number;
}

std::optional<double> ParseDate(std::wstring_view text) {
  constexpr std::wstring_view kForms[] = {L"0000-00-00", L"0000-00-00T00:00", L"0000-00-00T00:00:00"};
  if (std::ranges::none_of(kForms, [&](std::wstring_view form) { return FitsPattern(text, form); })) {
    return std::nullopt;
  }
  SYSTEMTIME time = {};
  time.wYear = NumberAt(text, 0, 4);
  time.wMonth = NumberAt(text, 5, 2);
  time.wDay = NumberAt(text, 8, 2);
  time.wHour = NumberAt(text, 11, 2);
  time.wMinute = NumberAt(text, 14, 2);
  time.wSecond = NumberAt(text, 17, 2);
  FILETIME isTime;
  double date = 0;
  // The second function takes the 31st of any month.
  const bool isKnown = SystemTimeToFileTime(&time, &isTime) && SystemTimeToVariantTime(&time, &date);
  return isKnown ? std::optional(date) : std::nullopt;
}

}  // namespace

bool ItemFilter::IsEmpty() const noexcept {
  return locations.empty() && !enabled && ratings.empty() && company.empty() && reachabilities.empty() &&
         match.empty() && !since && !starts;
}

bool ItemFilter::Shows(const ItemRecord& item) const {
  if (enabled && item.enabled != *enabled) return false;
  if (starts && item.starts != (*starts ? kStartsYes : kStartsNo)) return false;
  if (!Names(locations, item.location) || !Names(ratings, item.rating)) return false;
  // Without a command there is no file to miss.
  if (!Names(reachabilities, item.reachability) || (!reachabilities.empty() && item.command.empty())) {
    return false;
  }
  if (since && (!item.lastWriteTime || *item.lastWriteTime < *since)) return false;
  if (!company.empty() && !Holds(item.company, LowerCase(company))) return false;
  return match.empty() || MatchesAnyColumn(item, match);
}

ReadScope ItemFilter::Scope() const {
  const bool all = allLocations || !std::ranges::all_of(locations, IsReadByDefault);
  return all ? ReadScope::kAll : ReadScope::kUsual;
}

bool ItemFilter::NeedsDetails() const noexcept {
  return !ratings.empty() || !match.empty() || since || starts;
}

std::optional<std::int32_t> RatingByName(std::wstring_view name) noexcept {
  for (const std::int32_t rating : {0, 1, 2}) {
    if (SameAsciiText(name, RatingName(rating))) return rating;
  }
  return std::nullopt;
}

std::optional<double> ParseTime(std::wstring_view text) {
  const std::optional<double> date = ParseDate(text);
  return date ? date : ParseAge(text);
}

}  // namespace smh
