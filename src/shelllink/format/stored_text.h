// A text as a link stores it: bytes in the system code page, or UTF-16 code units at any alignment.
#pragma once

#include "infra/runtime/byte_cursor.h"

#include <string>
#include <string_view>

namespace smh {

// A borrowed view: valid as long as the bytes that it was made of, those of the link's sections. No state:
// any thread; nothing here fails.
class StoredText {
 public:
  StoredText() noexcept = default;
  // Cut at the first zero, else at the end of `bytes`; half a unit there is none.
  static StoredText Ansi(Bytes bytes) noexcept;
  static StoredText Utf16(Bytes bytes) noexcept;

  bool IsUtf16() const noexcept { return utf16_; }
  bool Empty() const noexcept { return bytes_.empty(); }
  // An ANSI text, without the zero that ended it. Only for a text that is not UTF-16.
  std::string_view AnsiView() const noexcept;
  // In code units; only for a UTF-16 text, like the next.
  std::size_t Utf16Length() const noexcept { return bytes_.size() / sizeof(char16_t); }
  // Copies Utf16Length() units into the caller's memory and no zero behind them.
  void CopyUtf16(void* units) const noexcept;

 private:
  StoredText(Bytes bytes, bool utf16) noexcept : bytes_(bytes), utf16_(utf16) {}

  Bytes bytes_;
  bool utf16_ = false;
};

}  // namespace smh
