// Text on its way between UTF-16 and bytes, and the escapes for what cannot be printed.
//
// Names in the registry are any sequence of UTF-16 units, unpaired surrogates and control characters among
// them; none of these conversions loses a unit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace smh {

// One code point of a UTF-16 text; an unpaired surrogate is a code point of its own.
struct CodePoint {
  std::uint32_t value;
  std::size_t units;
};
// `position` is inside the text.
CodePoint CodePointAt(std::wstring_view text, std::size_t position) noexcept;
// Calls `visit` with each code point's value and its part of the text, in order.
template <typename Visit>
void ForEachCodePoint(std::wstring_view text, Visit&& visit) {
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint point = CodePointAt(text, i);
    visit(point.value, text.substr(i, point.units));
    i += point.units;
  }
}
bool IsSurrogate(std::uint32_t codePoint) noexcept;

// UTF-8, with an unpaired surrogate as its own three bytes; the reverse function takes those back. Bytes
// that are no UTF-8 become U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

// For people: control characters, those that turn the direction of text, and unpaired surrogates as \u{1F}.
std::wstring Printable(std::wstring_view text);
// As above, but line breaks stay: for messages.
std::wstring PrintableLines(std::wstring_view text);
// The escapes \uXXXX and \u{X...} replaced by their units; anything else stays, backslashes included.
std::wstring DecodeEscapes(std::wstring_view text);

// Cells that a text takes on a console: East Asian wide characters take two, combining marks none.
std::size_t DisplayWidth(std::wstring_view text) noexcept;
// The text cut at its end, or at its beginning, to at most `width` cells, one of them an ellipsis.
std::wstring CutEnd(std::wstring_view text, std::size_t width);
std::wstring CutBeginning(std::wstring_view text, std::size_t width);

}  // namespace smh
