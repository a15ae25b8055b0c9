#include "hosts/cli/item_selector.h"

#include "hosts/cli/item_index.h"
#include "hosts/cli/standard_input.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/operations.h"
#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"
#include "infra/files/file_reading.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

// Of a list of ITEMs, in bytes.
constexpr std::size_t kLargestFile = 16 * 1024 * 1024;

template <typename Fits>
Positions Find(std::span<const ItemRecord> items, const Positions& candidates, Fits&& fits) {
  Positions found;
  for (const std::size_t position : candidates) {
    if (fits(items[position])) found.push_back(position);
  }
  return found;
}

bool IsPattern(std::wstring_view text) noexcept {
  return text.find_first_of(L"*?") != std::wstring_view::npos;
}

// Both in lower case. Goes back to the last * where the rest does not fit.
bool FitsPattern(std::wstring_view text, std::wstring_view pattern) noexcept {
  std::size_t star = std::wstring_view::npos;
  std::size_t begin = 0;
  std::size_t at = 0;
  for (std::size_t i = 0; i < text.size();) {
    if (at < pattern.size() && pattern[at] == L'*') {
      star = at++;
      begin = i;
    } else if (at < pattern.size() && (pattern[at] == L'?' || pattern[at] == text[i])) {
      ++at;
      ++i;
    } else if (star != std::wstring_view::npos) {
      at = star + 1;
      i = ++begin;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'*', at) == std::wstring_view::npos;
}

Positions FindPattern(std::span<const ItemRecord> items, const Positions& candidates,
                      std::wstring_view text) {
  const std::wstring pattern = LowerCase(std::wstring(text));
  return Find(items, candidates, [&](const ItemRecord& item) {
    return FitsPattern(LowerCase(item.name), pattern) || FitsPattern(LowerCase(item.caption), pattern);
  });
}

// Where one of them needs the change, the others are not meant.
void Prefer(std::span<const ItemRecord> items, Positions& found, std::optional<bool> preferred) {
  const auto isIdle = [&](std::size_t at) {
    const bool isOff = !*preferred && HasSwitchOff(items[at]);
    return items[at].enabled != *preferred && !isOff;
  };
  if (preferred && !std::ranges::all_of(found, isIdle)) std::erase_if(found, isIdle);
}

[[noreturn]] void RaiseNone(const std::wstring& text, const ItemFilter& filter) {
  if (filter.locations.size() == 1) {
    throw HostError(Say(texts::kNoEntryNamedIn, text, LocationName(filter.locations.front())));
  }
  throw HostError(Say(filter.IsEmpty() ? texts::kNoEntryNamed : texts::kNoEntryNamedLeft, text));
}

[[noreturn]] void RaiseSeveral(const std::wstring& text, std::span<const ItemRecord> items,
                               const Positions& found) {
  std::vector<std::wstring> lines;
  for (const std::size_t at : found) {
    const ItemRecord& item = items[at];
    lines.push_back(
        Format(texts::kEntryLine, item.id, item.name, LocationName(item.location), StateText(item.enabled)));
  }
  throw HostError(Say(texts::kSeveralEntries, text), lines);
}

Positions All(std::span<const ItemRecord> items, const ItemFilter& filter) {
  Positions positions;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (filter.Shows(items[i])) positions.push_back(i);
  }
  return positions;
}

// What one text means; several only by a pattern.
Positions Resolve(std::span<const ItemRecord> items, const Positions& candidates, ItemIndex& index,
                  const Selector& selector, const std::wstring& text, bool mayBePattern) {
  Positions found = index.Find(text);
  if (found.size() > 1) Prefer(items, found, selector.preferred);
  if (found.size() > 1) RaiseSeveral(text, items, found);
  if (found.empty() && mayBePattern && IsPattern(text)) found = FindPattern(items, candidates, text);
  if (found.empty()) RaiseNone(text, selector.filter);
  return found;
}

std::wstring TextOfBytes(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) {
    std::wstring text;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
      const auto low = static_cast<unsigned char>(bytes[i]);
      text += static_cast<wchar_t>(low | static_cast<unsigned char>(bytes[i + 1]) << 8);
    }
    return text;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return FromUtf8(bytes);
}

std::vector<std::wstring> LinesOf(std::wstring_view text) {
  std::vector<std::wstring> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(L'\n', begin), text.size());
    std::wstring line = Trim(text.substr(begin, end - begin));
    if (!line.empty()) lines.push_back(std::move(line));
    begin = end + 1;
  }
  return lines;
}

}  // namespace

Selection SelectItems(std::span<const ItemRecord> items, const Selector& selector) {
  const Positions candidates = All(items, selector.filter);
  Selection selection;
  if (selector.items.empty() && selector.lines.empty()) {
    selection.positions = candidates;
    selection.isBroad = candidates.size() > 1;
    return selection;
  }
  ItemIndex index(items, candidates);
  std::vector<bool> isTaken(items.size());
  const auto take = [&](const Positions& found) {
    for (const std::size_t at : found) {
      if (!isTaken[at]) selection.positions.push_back(at);
      isTaken[at] = true;
    }
  };
  for (const std::wstring& text : selector.items) {
    const Positions found = Resolve(items, candidates, index, selector, text, true);
    selection.isBroad = selection.isBroad || found.size() > 1;
    take(found);
  }
  for (const std::wstring& text : selector.lines)
    take(Resolve(items, candidates, index, selector, text, false));
  selection.isBroad = selection.isBroad || selector.lines.size() > 1;
  return selection;
}

void RequireUnambiguous(std::span<const ItemRecord> items, const Selector& selector) {
  ItemIndex index(items, All(items, selector.filter));
  for (const std::vector<std::wstring>* const texts : {&selector.items, &selector.lines}) {
    for (const std::wstring& text : *texts) {
      const Positions found = index.Find(text);
      if (found.size() > 1) RaiseSeveral(text, items, found);
    }
  }
}

bool IsMeant(const Selector& selector, const ItemRecord& item) {
  if (!selector.filter.Shows(item)) return false;
  if (selector.items.empty() && selector.lines.empty()) return true;
  const std::span<const ItemRecord> one(&item, 1);
  ItemIndex index(one, {0});
  const auto isIt = [&](const std::wstring& text) { return !index.Find(text).empty(); };
  return std::ranges::any_of(selector.lines, isIt) ||
         std::ranges::any_of(selector.items, [&](const std::wstring& text) {
           return isIt(text) || (IsPattern(text) && !FindPattern(one, {0}, text).empty());
         });
}

const ItemRecord& SelectItem(std::span<const ItemRecord> items, std::wstring_view text,
                             std::optional<std::int32_t> location) {
  Selector selector;
  if (location) selector.filter.locations = {*location};
  const std::wstring wanted(text);
  const Positions candidates = All(items, selector.filter);
  ItemIndex index(items, candidates);
  const Positions found = Resolve(items, candidates, index, selector, wanted, true);
  if (found.size() > 1) RaiseSeveral(wanted, items, found);
  return items[found.front()];
}

std::vector<std::wstring> ReadItemLines(const std::wstring& file) {
  if (file == L"-") return LinesOf(TextOfBytes(ReadStandardInput(kLargestFile)));
  try {
    return LinesOf(TextOfBytes(ReadWholeFile(file, FILE_SHARE_READ, kLargestFile)));
  } catch (...) {
    throw HostError(Say(texts::kCannotReadInput, file, CurrentFault()));
  }
}

ComPtr<IStartupItem> RequireListedItem(const Library& library, const ItemRecord& item) {
  ComPtr<IStartupItem> listed = FindListedItem(library, item.location, item.name);
  if (!listed) throw HostError(Say(texts::kHasGoneMeanwhile, Describe(item)));
  return listed;
}

}  // namespace smh
