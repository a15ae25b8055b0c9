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
class SharedText {
 public:
  SharedText() noexcept = default;
  // Made of a text, by a copy of it. Raise std::bad_alloc.
  SharedText(std::wstring_view text) : text_(text) {}
  SharedText(const std::wstring& text) : text_(text) {}
  SharedText(const wchar_t* text) : text_(std::wstring_view(text)) {}
  // Of two texts, one after the other.
  SharedText(std::wstring_view text, std::wstring_view rest) : text_(text, rest) {}
  // Takes over a text that a sibling library answered.
  explicit SharedText(BoundaryString text) noexcept : text_(std::move(text)) {}

  operator std::wstring_view() const noexcept { return text_.View(); }
  operator std::wstring() const { return text_.Text(); }
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

// As TakeText, keeping the block that the call answered.
template <typename Call>
SharedText TakeSharedText(Call&& call) {
  BoundaryString text;
  return SUCCEEDED(call(text.Put())) ? SharedText(std::move(text)) : SharedText();
}

}  // namespace smh
