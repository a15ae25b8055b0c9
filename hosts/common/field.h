// What the outputs share: a record as columns with keys. Any thread.
#pragma once

#include "infra/runtime/ascii_text.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace smh {

// A field as the outputs write it: none (no such file), a truth value, a number, a text, or names, which are
// literals.
using FieldValue =
    std::variant<std::monostate, bool, std::int64_t, std::wstring, std::vector<std::wstring_view>>;

// One column: its key, and a function that takes the column's value out of a record.
template <typename Record>
struct Field {
  std::wstring_view key;
  FieldValue (*read)(const Record& record);
};

// Raises a usage error that names the columns that there are.
[[noreturn]] void RefuseKey(const std::wstring& key, std::span<const std::wstring_view> known);

// The fields with those keys, ASCII case ignored, in the order of the keys; all of them without keys. Raises
// a usage error for a key that is none.
template <typename Record>
std::vector<Field<Record>> SelectFields(std::span<const Field<Record>> all,
                                        std::span<const std::wstring> keys) {
  if (keys.empty()) return {all.begin(), all.end()};
  std::vector<std::wstring_view> known;
  for (const Field<Record>& field : all) known.push_back(field.key);
  std::vector<Field<Record>> selected;
  for (const std::wstring& key : keys) {
    const auto field =
        std::ranges::find_if(all, [&key](const Field<Record>& each) { return SameAsciiText(each.key, key); });
    if (field == all.end()) RefuseKey(key, known);
    selected.push_back(*field);
  }
  return selected;
}

// Names one after the other, with `separator` between two.
std::wstring JoinNames(std::span<const std::wstring_view> names, std::wstring_view separator);

}  // namespace smh
