// Text as it crosses a module boundary. Hosts and sibling libraries include this one header.
//
// A boundary string is a pointer to the first UTF-16 code unit of a NUL-terminated text. Two 32-bit words lie
// before it: the reference count at -8 and the length in code units, without the NUL, at -4. The block comes
// from the process heap (GetProcessHeap) and is freed by whoever drops the count to zero, whichever module
// that is. A null pointer is the empty text. Text that goes in is any NUL-terminated UTF-16 pointer; null is
// the empty text there too. An out argument is overwritten without releasing what it held.
#pragma once

#include <windows.h>

#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace smh {

// A boundary string, or any NUL-terminated text that goes in.
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

// Counts one reference more, or one less; any thread may. Null is allowed. Only for boundary strings: other
// text has no count.
inline void AddRefBoundaryText(BoundaryText text) noexcept {
  if (text != nullptr) InterlockedIncrement(&detail::HeadOf(text)->references);
}

inline void ReleaseBoundaryText(BoundaryText text) noexcept {
  if (text == nullptr) return;
  detail::BoundaryTextHead* const head = detail::HeadOf(text);
  if (InterlockedDecrement(&head->references) == 0) HeapFree(GetProcessHeap(), 0, head);
}

// The text without its NUL, without a copy: valid as long as a reference is held.
inline std::wstring_view BoundaryTextView(BoundaryText text) noexcept {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, detail::HeadOf(text)->length);
}

// Owns one reference to a boundary string. Copies share the block; an object is one thread's at a time.
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
  // Valid as long as the object holds that text.
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
