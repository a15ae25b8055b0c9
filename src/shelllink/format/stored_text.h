// A text as a link stores it: bytes in the system code page, or UTF-16 units at any alignment. A borrowed
// view; it lives as long as the link's sections.
#pragma once

#include "shelllink/format/bytes.h"

#include <string>
#include <string_view>

namespace smh {

class StoredText {
 public:
  StoredText() noexcept = default;
  // Cut at the first zero, else at the end of `bytes`.
  static StoredText Ansi(Bytes bytes) noexcept;
  static StoredText Utf16(Bytes bytes) noexcept;

  bool IsUtf16() const noexcept { return utf16_; }
  bool Empty() const noexcept { return bytes_.empty(); }
  // An ANSI text, without the zero that ended it.
  std::string_view AnsiView() const noexcept;
  std::size_t Utf16Length() const noexcept { return bytes_.size() / sizeof(char16_t); }
  // Copies Utf16Length() units; `units` needs no zero behind them.
  void CopyUtf16(void* units) const noexcept;

 private:
  StoredText(Bytes bytes, bool utf16) noexcept : bytes_(bytes), utf16_(utf16) {}

  Bytes bytes_;
  bool utf16_ = false;
};

}  // namespace smh
