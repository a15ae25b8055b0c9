#include "hosts/cli/item_index.h"

#include "hosts/common/short_id.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/ascii_text.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

bool ItemIndex::Less::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
  return CompareText(a, b) < 0;
}

ItemIndex::ItemIndex(std::span<const ItemRecord> items, const Positions& candidates)
    : items_(items), candidates_(candidates) {
  for (const std::size_t at : candidates_) {
    names_[items_[at].name].push_back(at);
    captions_[items_[at].caption].push_back(at);
  }
}

Positions ItemIndex::FindNamed(std::wstring_view text) const {
  if (const auto named = names_.find(text); named != names_.end()) {
    const Positions& found = named->second;
    const auto exact = std::ranges::find_if(found, [&](std::size_t at) { return items_[at].name == text; });
    return exact != found.end() ? Positions{*exact} : found;
  }
  const auto captioned = captions_.find(text);
  return captioned != captions_.end() ? captioned->second : Positions();
}

Positions ItemIndex::FindId(std::wstring_view text) {
  if (ids_.empty()) {
    ids_.reserve(candidates_.size());
    for (const std::size_t at : candidates_) {
      ids_.emplace_back(WholeId(items_[at].location, items_[at].name), at);
    }
    std::ranges::sort(ids_);
  }
  const std::wstring id = AsciiLowerCase(text);
  Positions found;
  const auto first = std::ranges::lower_bound(ids_, id, {}, &decltype(ids_)::value_type::first);
  for (auto row = first; row != ids_.end() && row->first.starts_with(id); ++row) {
    found.push_back(row->second);
  }
  std::ranges::sort(found);
  return found;
}

Positions ItemIndex::Find(std::wstring_view text) {
  Positions found = FindNamed(text);
  if (found.empty() && IsIdText(text)) found = FindId(text);
  const std::wstring decoded = found.empty() ? DecodeEscapes(text) : std::wstring();
  return found.empty() && decoded != text ? FindNamed(decoded) : found;
}

}  // namespace smh
