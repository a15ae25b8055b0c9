// Texts whose case matters for ASCII letters only: identifiers, names of entries.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// Changes only "A" to "Z".
std::wstring AsciiLowerCase(std::wstring_view text);
bool SameAsciiText(std::wstring_view a, std::wstring_view b) noexcept;
// For hashed containers whose keys are compared by SameAsciiText; look-ups need no copy of the text.
struct AsciiTextHash {
  using is_transparent = void;
  std::size_t operator()(std::wstring_view text) const noexcept;
};
struct AsciiTextEqual {
  using is_transparent = void;
  bool operator()(std::wstring_view a, std::wstring_view b) const noexcept { return SameAsciiText(a, b); }
};

}  // namespace smh
