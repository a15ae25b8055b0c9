// Text that many hold at once: one immutable block with its count, so that a copy costs neither memory nor
// time. The block is a boundary string (boundary_string.h): what a sibling library answered is kept as it
// came.
#pragma once

#include "core/contracts/boundary_string.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace smh {

// Copies may be taken and let go of by any thread; one object belongs to one thread at a time, as any text.
// Read as a view for nothing. A way that copies the text is spelled out: SharedText(text) into one,
// std::wstring(shared) out of one.
class SharedText {
 public:
  SharedText() noexcept = default;
  // By a copy of a text, and of another after it. Raises std::bad_alloc.
  explicit SharedText(std::wstring_view text, std::wstring_view rest = {}) : text_(text, rest) {}
  // Takes over a text that a sibling library answered.
  explicit SharedText(BoundaryString text) noexcept : text_(std::move(text)) {}

  // Valid as long as somebody holds the block.
  operator std::wstring_view() const noexcept { return text_.View(); }
  // Terminated, never null; valid as the view.
  const wchar_t* c_str() const noexcept { return empty() ? L"" : text_.View().data(); }
  std::size_t size() const noexcept { return text_.View().size(); }
  bool empty() const noexcept { return size() == 0; }

  friend bool operator==(const SharedText& a, std::wstring_view b) noexcept { return a.text_.View() == b; }
  // Of two of them only: any other text is compared above, without making one.
  template <std::same_as<SharedText> Text>
  friend bool operator==(const Text& a, const Text& b) noexcept {
    return a.text_.View() == b.text_.View();
  }

 private:
  BoundaryString text_;
};

// As TakeText, keeping the block that the call answered: runs a call that fills one out text, empty when it
// fails.
template <typename Call>
SharedText TakeSharedText(Call&& call) {
  BoundaryString text;
  return SUCCEEDED(call(text.Put())) ? SharedText(std::move(text)) : SharedText();
}

}  // namespace smh
