// Texts of the libraries, of which the English words are all that is known, in the language of the process.
// Pure; any thread.
#pragma once

#include "hosts/common/phrase.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// What `text` has in the places of "%1" to "%3", which come in this order in the English text of the row;
// empty when it does not fit.
std::optional<std::vector<std::wstring>> ArgumentsIn(const Text& row, std::wstring_view text);
// The text by the first row that it fits, as Say gives it; of none, as it stands.
Phrase Known(std::span<const Text> rows, std::wstring_view text);

}  // namespace smh
