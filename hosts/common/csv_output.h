// CSV after RFC 4180: a header row, CRLF line ends, the same columns as the keys of the JSON output. The
// texts are UTF-16 without unpaired surrogates, so their UTF-8 is always valid. Pure functions, for any
// thread.
#pragma once

#include "hosts/common/item_record.h"

#include <span>
#include <string>
#include <string_view>

namespace smh {

// One field, quoted where it has to be. A text that a spreadsheet would take for a formula gets an apostrophe
// in front; unpaired surrogates, which UTF-8 cannot hold, are written as \u{d800}.
std::wstring CsvField(std::wstring_view text);

// The header row with its line end; with a column "event" in front when `withEvent`.
std::wstring CsvHeader(bool withEvent = false);
// One row with its line end, in the columns of CsvHeader; a non-empty `event` is the first field.
std::wstring CsvRow(const ItemRecord& item, std::wstring_view event = {});
// Header and rows.
std::wstring CsvTable(std::span<const ItemRecord> items);

}  // namespace smh
