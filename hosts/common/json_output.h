// JSON. Unpaired surrogates and control characters are escapes, so the output is always valid UTF-8.
#pragma once

#include "hosts/common/item_record.h"

#include <span>
#include <string>
#include <string_view>

namespace smh {

std::wstring JsonText(std::wstring_view text);
std::wstring JsonValue(const FieldValue& value);

// {"index":0,...} on one line; a non-empty `event` is the first key.
std::wstring JsonObject(const ItemRecord& item, std::wstring_view event = {});
// An array with an element per line, and a line break at the end.
std::wstring JsonArray(std::span<const std::wstring> elements);
std::wstring JsonArray(std::span<const ItemRecord> items);

}  // namespace smh
