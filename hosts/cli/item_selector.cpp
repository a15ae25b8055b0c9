#include "hosts/cli/item_selector.h"

#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/operations.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

using Matches = std::vector<const ItemRecord*>;
using TextMember = std::wstring ItemRecord::*;

Matches MatchesOf(std::span<const ItemRecord> items, std::wstring_view text,
                  std::optional<std::int32_t> location, TextMember member) {
  Matches matches;
  for (const ItemRecord& item : items) {
    if (location && item.location != *location) continue;
    if (SameText(item.*member, text)) matches.push_back(&item);
  }
  return matches;
}

// The name itself wins over names that differ in case.
void PreferExact(Matches& matches, std::wstring_view text) {
  for (const ItemRecord* item : matches) {
    if (item->name == text) {
      matches.assign(1, item);
      return;
    }
  }
}

Matches MatchesOf(std::span<const ItemRecord> items, std::wstring_view text,
                  std::optional<std::int32_t> location) {
  Matches matches = MatchesOf(items, text, location, &ItemRecord::name);
  if (matches.empty()) return MatchesOf(items, text, location, &ItemRecord::caption);
  PreferExact(matches, text);
  return matches;
}

std::vector<std::wstring> CandidateLines(const Matches& matches) {
  std::vector<std::wstring> lines;
  for (const ItemRecord* item : matches) {
    lines.push_back(L"  " + item->name + L"  (" + std::wstring(LocationName(item->location)) + L", " +
                    std::wstring(StateName(item->enabled)) + L")");
  }
  return lines;
}

}  // namespace

bool ItemFilter::Shows(const ItemRecord& item) const {
  if (enabled && item.enabled != *enabled) return false;
  return locations.empty() || std::find(locations.begin(), locations.end(), item.location) != locations.end();
}

ReadScope ItemFilter::Scope() const {
  const bool all = allLocations || !std::all_of(locations.begin(), locations.end(), IsReadByDefault);
  return all ? ReadScope::kAll : ReadScope::kUsual;
}

std::vector<ItemRecord> ItemFilter::Select(std::span<const ItemRecord> items) const {
  std::vector<ItemRecord> shown;
  std::copy_if(items.begin(), items.end(), std::back_inserter(shown),
               [this](const ItemRecord& item) { return Shows(item); });
  return shown;
}

const ItemRecord& SelectItem(std::span<const ItemRecord> items, std::wstring_view text,
                             std::optional<std::int32_t> location, std::optional<bool> preferred) {
  Matches matches = MatchesOf(items, text, location);
  if (matches.empty()) matches = MatchesOf(items, DecodeEscapes(text), location);
  const std::wstring quoted = L"\"" + std::wstring(text) + L"\"";
  if (matches.empty()) {
    throw HostError(L"No entry has the name or caption " + quoted +
                    (location ? L" in " + std::wstring(LocationName(*location)) : L"") + L".");
  }
  const auto isIdle = [&](const ItemRecord* item) { return item->enabled != *preferred; };
  if (matches.size() > 1 && preferred && !std::ranges::all_of(matches, isIdle))
    std::erase_if(matches, isIdle);
  if (matches.size() > 1) {
    throw HostError(quoted + L" means several entries; give the full name of one:", CandidateLines(matches));
  }
  return *matches.front();
}

ComPtr<IStartupItem> RequireListedItem(const Library& library, const ItemRecord& item) {
  ComPtr<IStartupItem> listed = FindListedItem(library, item.location, item.name);
  if (!listed) throw HostError(Describe(item) + L" has gone meanwhile.");
  return listed;
}

}  // namespace smh
