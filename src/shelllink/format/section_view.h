// Fields of a section by their offsets.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/stored_text.h"

namespace smh {

// A field or text that does not lie inside the section as a whole reads as zero or empty, so every offset
// that a file states may be followed. Borrows the section's bytes; what it gives lives as long as they. No
// state: any thread.
class SectionView {
 public:
  SectionView() noexcept = default;
  explicit SectionView(Bytes bytes) noexcept : bytes_(bytes) {}

  Bytes All() const noexcept { return bytes_; }
  std::uint16_t U16At(std::uint64_t offset) const noexcept { return At(offset).U16(); }
  std::uint32_t U32At(std::uint64_t offset) const noexcept { return At(offset).U32(); }
  // Cut at the first zero, else at the end of the section.
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
