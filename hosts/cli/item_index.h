// Finds entries by what people and scripts call them, many texts in one list.
#pragma once

#include "hosts/common/item_record.h"

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// Positions in a list, in its order.
using Positions = std::vector<std::size_t>;

// Of some entries of a list, which outlives it unchanged. For one thread.
class ItemIndex {
 public:
  ItemIndex(std::span<const ItemRecord> items, const Positions& candidates);

  // The entries of that name, of names that differ in case the one itself; else those of that caption, else
  // those whose id (short_id.h) begins so, else the same with the text's escapes (text_encoding.h) replaced.
  Positions Find(std::wstring_view text);

 private:
  struct Less {
    bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
  };
  using Texts = std::map<std::wstring_view, Positions, Less>;

  Positions FindNamed(std::wstring_view text) const;
  Positions FindId(std::wstring_view text);

  const std::span<const ItemRecord> items_;
  const Positions candidates_;
  Texts names_;
  Texts captions_;
  // Whole ids, sorted; empty until the first is asked for.
  std::vector<std::pair<std::wstring, std::size_t>> ids_;
};

}  // namespace smh
