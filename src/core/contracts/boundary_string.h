// Text as it crosses a module boundary. Hosts and sibling libraries include this one header.
//
// A boundary string is a pointer to the first UTF-16 unit of a zero-terminated text. Two 32-bit words lie
// before it: the reference count at -8 and the length in units, without the terminator, at -4. The block
// comes from the process heap (GetProcessHeap) and is freed by whoever drops the count to zero, whichever
// module that is. A null pointer is the empty text. Text that goes in is any zero-terminated UTF-16 pointer;
// null is the empty text there too. An out argument is overwritten without releasing what it held.
#pragma once

#include <windows.h>

#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace smh {

using BoundaryText = const wchar_t*;

namespace detail {

struct BoundaryTextHead {
  LONG references;
  std::uint32_t length;
};
static_assert(sizeof(BoundaryTextHead) == 8);

inline BoundaryTextHead* HeadOf(BoundaryText text) noexcept {
  return reinterpret_cast<BoundaryTextHead*>(const_cast<wchar_t*>(text)) - 1;
}

}  // namespace detail

// Makes a boundary string of a text and what follows it, with one reference, owned by the caller. Throws
// std::bad_alloc.
inline BoundaryText MakeBoundaryText(std::wstring_view text, std::wstring_view rest = {}) {
  const std::size_t length = text.size() + rest.size();
  if (length == 0) return nullptr;
  const std::size_t bytes = sizeof(detail::BoundaryTextHead) + (length + 1) * sizeof(wchar_t);
  void* const block = HeapAlloc(GetProcessHeap(), 0, bytes);
  if (block == nullptr) throw std::bad_alloc();
  auto* const head = new (block) detail::BoundaryTextHead{1, static_cast<std::uint32_t>(length)};
  auto* const units = reinterpret_cast<wchar_t*>(head + 1);
  text.copy(units, text.size());
  rest.copy(units + text.size(), rest.size());
  units[length] = L'\0';
  return units;
}

inline void AddRefBoundaryText(BoundaryText text) noexcept {
  if (text != nullptr) InterlockedIncrement(&detail::HeadOf(text)->references);
}

inline void ReleaseBoundaryText(BoundaryText text) noexcept {
  if (text == nullptr) return;
  detail::BoundaryTextHead* const head = detail::HeadOf(text);
  if (InterlockedDecrement(&head->references) == 0) HeapFree(GetProcessHeap(), 0, head);
}

inline std::wstring_view BoundaryTextView(BoundaryText text) noexcept {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, detail::HeadOf(text)->length);
}

// Owns one reference to a boundary string.
class BoundaryString {
 public:
  BoundaryString() noexcept = default;
  explicit BoundaryString(std::wstring_view text, std::wstring_view rest = {})
      : text_(MakeBoundaryText(text, rest)) {}
  BoundaryString(const BoundaryString& other) noexcept : text_(other.text_) { AddRefBoundaryText(text_); }
  BoundaryString(BoundaryString&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  BoundaryString& operator=(BoundaryString other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~BoundaryString() { ReleaseBoundaryText(text_); }

  // The place for an out argument; what was held is released first.
  BoundaryText* Put() noexcept {
    ReleaseBoundaryText(std::exchange(text_, nullptr));
    return &text_;
  }
  // Hands the reference to the caller.
  BoundaryText Detach() noexcept { return std::exchange(text_, nullptr); }
  std::wstring_view View() const noexcept { return BoundaryTextView(text_); }
  std::wstring Text() const { return std::wstring(View()); }

 private:
  BoundaryText text_ = nullptr;
};

// A text argument as it came in; null is the empty text.
inline std::wstring_view TextArgument(const wchar_t* text) noexcept {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text);
}

// Runs a call that fills one out text and returns that text; empty when the call fails.
template <typename Call>
std::wstring TakeText(Call&& call) {
  BoundaryString text;
  return SUCCEEDED(call(text.Put())) ? text.Text() : std::wstring();
}

}  // namespace smh
