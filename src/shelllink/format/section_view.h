// Fields and texts of a section by their offsets. A text is what a link stores: bytes in the system code
// page, or UTF-16 code units at any alignment.
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
  // Cut at the first NUL, else at the end of `bytes`; half a code unit there is none.
  static StoredText Ansi(Bytes bytes) noexcept;
  static StoredText Utf16(Bytes bytes) noexcept;

  bool IsUtf16() const noexcept { return utf16_; }
  bool Empty() const noexcept { return bytes_.empty(); }
  // An ANSI text, without the terminator. Only for a text that is not UTF-16.
  std::string_view AnsiView() const noexcept;
  // In code units; only for a UTF-16 text, like the next.
  std::size_t Utf16Length() const noexcept { return bytes_.size() / sizeof(char16_t); }
  // Copies Utf16Length() units into the caller's memory and no terminator.
  void CopyUtf16(void* units) const noexcept;

 private:
  StoredText(Bytes bytes, bool utf16) noexcept : bytes_(bytes), utf16_(utf16) {}

  Bytes bytes_;
  bool utf16_ = false;
};

// A field or text that does not lie inside the section as a whole reads as 0 or empty, so every offset
// that a file states may be followed. Borrows the section's bytes; what it gives lives as long as they. No
// state: any thread.
class SectionView {
 public:
  SectionView() noexcept = default;
  explicit SectionView(Bytes bytes) noexcept : bytes_(bytes) {}

  Bytes All() const noexcept { return bytes_; }
  std::uint16_t U16At(std::uint64_t offset) const noexcept { return At(offset).U16(); }
  std::uint32_t U32At(std::uint64_t offset) const noexcept { return At(offset).U32(); }
  // Cut at the first NUL, else at the end of the section.
  StoredText AnsiAt(std::uint64_t offset) const noexcept { return StoredText::Ansi(From(offset).All()); }
  StoredText Utf16At(std::uint64_t offset) const noexcept { return StoredText::Utf16(From(offset).All()); }
  // From `offset` to the end of this section; empty when that lies before it.
  SectionView From(std::uint64_t offset) const noexcept {
    ByteCursor rest = At(offset);
    return SectionView(rest.Take(rest.Remaining()));
  }

 private:
  ByteCursor At(std::uint64_t offset) const noexcept {
    ByteCursor fields(bytes_);
    fields.Skip(offset);
    return fields;
  }

  Bytes bytes_;
};

}  // namespace smh
