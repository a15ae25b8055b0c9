// JSON that somebody else wrote, read with hard limits: one object of plain values, in which one member may
// be a list of such objects. Nothing is kept of what does not fit: reading ends there, however much follows.
// Pure functions, for any thread.
#pragma once

#include "hosts/common/text.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace smh {

// What does not fit, for people: the end of a sentence, with its full stop.
class JsonFault {
 public:
  explicit JsonFault(std::wstring reason) : reason_(std::move(reason)) {}
  const std::wstring& Reason() const noexcept { return reason_; }

 private:
  std::wstring reason_;
};

// null, a truth value, a whole number, or a text, which may hold NULs.
using JsonScalar = std::variant<std::monostate, bool, std::int64_t, std::wstring>;

// An object of plain values; no key comes twice.
class FlatObject {
 public:
  // Raises JsonFault when there is a member of that key, or too many members.
  void Add(std::string key, JsonScalar value);
  const std::vector<std::pair<std::string, JsonScalar>>& Members() const noexcept { return members_; }

  // The member of that key; none when it is absent or null. Raise JsonFault when it is of another type.
  std::optional<std::wstring> Text(std::string_view key) const;
  std::optional<std::int64_t> Number(std::string_view key) const;
  std::optional<bool> Flag(std::string_view key) const;

 private:
  template <typename Value>
  std::optional<Value> Get(std::string_view key, const smh::Text& isNone) const;

  std::vector<std::pair<std::string, JsonScalar>> members_;
};

// Raises JsonFault without a value.
[[noreturn]] void RaiseMissing(const wchar_t* key);
template <typename Value>
Value Required(std::optional<Value> value, const wchar_t* key) {
  if (!value) RaiseMissing(key);
  return *std::move(value);
}

// How many objects the list may hold.
inline constexpr std::size_t kMostRows = 100'000;

// Takes one object of the list, with the members that stand before the list.
using RowTaker = std::function<void(const FlatObject& head, const FlatObject& row)>;

// Reads UTF-8: an object, whose member `rows` is a list of objects that `take` gets one after the other;
// without `rows` there must be none. Answers the other members. Raises JsonFault for anything else, and
// passes what `take` raises.
FlatObject ReadFlatJson(std::string_view bytes, std::string_view rows = {}, const RowTaker& take = {});

}  // namespace smh
