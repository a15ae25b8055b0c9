#include "hosts/gui/visible_text.h"

#include "hosts/common/text_encoding.h"

#include <windows.h>

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kBlank = L'\u00B7';
constexpr wchar_t kTimes = L'\u00D7';

// Blanks that are as wide as nothing or as a common blank, and are none.
bool IsOddBlank(std::uint32_t value) noexcept {
  return value == 0xA0 || value == 0x1680 || (value >= 0x2000 && value <= 0x200A) || value == 0x202F ||
         value == 0x205F || value == 0x2800 || value == 0x3000 || value == 0x3164;
}

std::wstring MarkOf(std::uint32_t value) {
  if (value == L' ') return std::wstring(1, kBlank);
  wchar_t escape[16];
  wsprintfW(escape, L"\\u{%x}", static_cast<unsigned>(value));
  return escape;
}

}  // namespace

VisibleText& VisibleText::operator+=(const VisibleText& other) {
  const std::size_t shift = text.size();
  text += other.text;
  marks.reserve(marks.size() + other.marks.size());
  for (const ShownMark& mark : other.marks) {
    marks.push_back({mark.begin + shift, mark.end + shift, mark.original});
  }
  return *this;
}

VisibleText& VisibleText::operator+=(std::wstring_view plain) {
  text += plain;
  return *this;
}

VisibleText PlainText(std::wstring text) {
  return {std::move(text), {}};
}

VisibleText MakeVisible(std::wstring_view text) {
  VisibleText shown;
  shown.text.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto [value, units] = CodePointAt(text, i);
    std::size_t count = 1;
    while (text.substr(i + count * units, units) == text.substr(i, units)) ++count;
    const std::size_t end = i + count * units;
    const bool isInside = count == 1 && i > 0 && end < text.size();
    const bool isMarked = value == L' ' ? !isInside : IsUnprintable(value) || IsOddBlank(value);
    if (!isMarked) {
      shown.text += text.substr(i, end - i);
    } else {
      const std::size_t begin = shown.text.size();
      shown.text += MarkOf(value);
      if (count > 1) shown.text.append(1, kTimes).append(std::to_wstring(count));
      // Kept on purpose: a NUL would end what others read of a copy, so its mark stands for itself.
      if (value != 0) {
        shown.marks.push_back({begin, shown.text.size(), std::wstring(text.substr(i, end - i))});
      }
    }
    i = end;
  }
  return shown;
}

std::wstring AsItWas(const VisibleText& shown, std::size_t begin, std::size_t end) {
  end = std::min(end, shown.text.size());
  std::wstring text;
  std::size_t position = begin;
  for (const ShownMark& mark : shown.marks) {
    if (mark.end <= position || mark.begin >= end) continue;
    if (mark.begin > position) text.append(shown.text, position, mark.begin - position);
    text += mark.original;
    position = mark.end;
  }
  if (position < end) text.append(shown.text, position, end - position);
  return text;
}

}  // namespace smh
