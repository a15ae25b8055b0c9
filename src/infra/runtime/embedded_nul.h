// Counted texts that the system would take up to their first NUL only.
#pragma once

#include <string_view>

namespace smh {

// Whether a terminated call would see only a part of the text, as a name that is somebody else's.
constexpr bool HoldsNul(std::wstring_view text) noexcept {
  return text.find(L'\0') != std::wstring_view::npos;
}

// The part that a terminated call would see. A view into `text`.
constexpr std::wstring_view UpToNul(std::wstring_view text) noexcept {
  return text.substr(0, text.find(L'\0'));
}

}  // namespace smh
