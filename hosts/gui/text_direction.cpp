#include "hosts/gui/text_direction.h"

#include "hosts/common/language.h"

#include <algorithm>

namespace smh {

namespace {

// Embeddings: Windows 7 does not know the isolates that came later.
constexpr wchar_t kLeftToRight = L'\u202A';
constexpr wchar_t kRightToLeft = L'\u202B';
constexpr wchar_t kEnd = L'\u202C';

bool RunsFromRight(wchar_t unit) noexcept {
  return (unit >= 0x0590 && unit <= 0x08FF) || (unit >= 0xFB1D && unit <= 0xFDFF) ||
         (unit >= 0xFE70 && unit <= 0xFEFC);
}

wchar_t MarkFor(const std::wstring& text) noexcept {
  return std::ranges::any_of(text, RunsFromRight) ? kRightToLeft : kLeftToRight;
}

}  // namespace

std::wstring Directed(const std::wstring& text, std::size_t room) {
  const std::wstring blanks(room, L' ');
  if (text.empty() || !IsMirrored(CurrentLanguage())) return blanks + text;
  std::wstring kept(1, MarkFor(text));
  // A mark means its own line only.
  for (const wchar_t unit : text) {
    if (unit == L'\n') kept += kEnd;
    kept += unit;
    if (unit == L'\n') kept += kept.front();
  }
  kept += kEnd;
  return room == 0 ? kept : kRightToLeft + blanks + kept + kEnd;
}

VisibleText Directed(const VisibleText& text) {
  if (text.text.empty() || !IsMirrored(CurrentLanguage())) return text;
  VisibleText kept = {std::wstring(1, MarkFor(text.text)), {{0, 1, {}}}};
  kept += text;
  kept += VisibleText{std::wstring(1, kEnd), {{0, 1, {}}}};
  return kept;
}

}  // namespace smh
