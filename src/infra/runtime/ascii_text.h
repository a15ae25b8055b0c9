// Texts whose case matters for ASCII letters only: identifiers, names of entries. No state: any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// Changes only "A" to "Z". Raises std::bad_alloc.
std::wstring AsciiLowerCase(std::wstring_view text);
// Whether the two are equal but for the case of ASCII letters.
bool SameAsciiText(std::wstring_view a, std::wstring_view b) noexcept;
// For hash tables: the same hash for texts that SameAsciiText calls the same.
struct AsciiTextHash {
  std::size_t operator()(std::wstring_view text) const noexcept;
};

}  // namespace smh
