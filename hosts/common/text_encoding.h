// Text on its way between UTF-16 and bytes, to people and into searches, and the escapes for what cannot be
// printed. Pure functions, for any thread.
//
// Names in the registry are any sequence of UTF-16 code units, unpaired surrogates and control characters
// among them; nothing here that converts such a name loses a unit of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace smh {

// One code point of a UTF-16 text; an unpaired surrogate is a code point of its own.
struct CodePoint {
  std::uint32_t value;
  std::size_t units;  // code units that it takes: 1 or 2
};
// `position` is a code unit inside the text; the second half of a pair counts as unpaired there.
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
// Whether the code point is half of a pair, which a well-formed text has no use for.
bool IsSurrogate(std::uint32_t codePoint) noexcept;

// UTF-8, with an unpaired surrogate as three bytes of its own, as generalized UTF-8 (WTF-8) has it. The
// reverse function takes those back; each byte that begins no code point becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

// Whether a code point must not reach people or their consoles as it is: control characters of both sets,
// marks that break lines or turn the direction of text, and unpaired surrogates.
bool IsUnprintable(std::uint32_t codePoint) noexcept;
// For people, in one line: what is unprintable as \u{1f}. What is printable stays as it is.
std::wstring Printable(std::wstring_view text);
// The escapes \uXXXX and \u{X...}, up to 10FFFF, replaced by their code units; anything else stays,
// backslashes included.
std::wstring DecodeEscapes(std::wstring_view text);

// Cells that a text takes on a console: East Asian wide characters take two, combining marks none. An
// estimate by the blocks of Unicode; control characters count one.
std::size_t DisplayWidth(std::wstring_view text) noexcept;
// The text cut at its end, or at its beginning, to at most `width` cells, one of them an ellipsis; empty for
// a width of 0. No pair of surrogates is cut in two.
std::wstring CutEnd(std::wstring_view text, std::size_t width);
std::wstring CutBeginning(std::wstring_view text, std::size_t width);

// As searches compare it: by the system's rules for letters, code unit by code unit. What is searched in and
// what is searched for both pass through here.
std::wstring LowerCase(std::wstring text);

}  // namespace smh
