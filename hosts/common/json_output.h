// JSON after RFC 8259. Unpaired surrogates and control characters are escapes, so the output is always valid
// UTF-8. Pure functions, for any thread.
#pragma once

#include "hosts/common/item_record.h"

#include <span>
#include <string>
#include <string_view>

namespace smh {

// A string with its quotes.
std::wstring JsonText(std::wstring_view text);
// null, true or false, a number, a string, or an array of strings.
std::wstring JsonValue(const FieldValue& value);

// {"index":0,...} on one line without a line end, with the keys of ItemFields; a non-empty `event` is the
// first key.
std::wstring JsonObject(const ItemRecord& item, std::wstring_view event = {});
// An array with an element per line, each of them JSON already, and a line break at the end.
std::wstring JsonArray(std::span<const std::wstring> elements);
std::wstring JsonArray(std::span<const ItemRecord> items);

}  // namespace smh
