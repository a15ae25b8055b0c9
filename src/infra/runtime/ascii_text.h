// Texts whose case matters for ASCII letters only: identifiers, names of entries.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// Changes only "A" to "Z".
std::wstring AsciiLowerCase(std::wstring_view text);
bool SameAsciiText(std::wstring_view a, std::wstring_view b) noexcept;
// The same for texts that SameAsciiText calls the same.
struct AsciiTextHash {
  std::size_t operator()(std::wstring_view text) const noexcept;
};

}  // namespace smh
