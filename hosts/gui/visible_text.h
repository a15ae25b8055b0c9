// Texts of the machine as people may read them: what would be overlooked in them is made visible. Pure, for
// any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// A part of a shown text that stands for something else, in code units of the shown text.
struct ShownMark {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::wstring original;
  bool operator==(const ShownMark&) const = default;
};

// A text to show, and what its marks stand for. The marks are in rising order and do not overlap.
struct VisibleText {
  std::wstring text;
  std::vector<ShownMark> marks;

  bool operator==(const VisibleText&) const = default;
  VisibleText& operator+=(const VisibleText& other);
  // Takes a text that is shown as it is.
  VisibleText& operator+=(std::wstring_view plain);
};

// A middle dot stands for a blank at the begin or end, "·×300" for a run of 300 blanks, "\u{202e}" for what
// is not printable or is a blank of another kind, "\u{a0}×40" for a run of it. A single blank between two
// words stays.
VisibleText MakeVisible(std::wstring_view text);
// A text of this program's own, which has nothing to make visible.
VisibleText PlainText(std::wstring text);

// The part from `begin` to `end` of what is shown, every mark that lies there in part or whole as what it
// stands for.
std::wstring AsItWas(const VisibleText& shown, std::size_t begin, std::size_t end);

}  // namespace smh
