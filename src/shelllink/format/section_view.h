// Fields of a section by their offsets. A field or text that does not lie inside the section as a whole reads
// as zero or empty, so every offset that a file states may be followed.
#pragma once

#include "shelllink/format/stored_text.h"

namespace smh {

class SectionView {
 public:
  SectionView() noexcept = default;
  explicit SectionView(Bytes bytes) noexcept : bytes_(bytes) {}

  bool Empty() const noexcept { return bytes_.empty(); }
  Bytes All() const noexcept { return bytes_; }
  std::uint16_t U16At(std::uint64_t offset) const noexcept { return IntegerAt<std::uint16_t>(offset); }
  std::uint32_t U32At(std::uint64_t offset) const noexcept { return IntegerAt<std::uint32_t>(offset); }
  StoredText AnsiAt(std::uint64_t offset) const noexcept { return StoredText::Ansi(From(offset).All()); }
  StoredText Utf16At(std::uint64_t offset) const noexcept { return StoredText::Utf16(From(offset).All()); }
  // From `offset` to the end of this section.
  SectionView From(std::uint64_t offset) const noexcept;

 private:
  template <typename Integer>
  Integer IntegerAt(std::uint64_t offset) const noexcept {
    const Bytes rest = From(offset).All();
    return rest.size() < sizeof(Integer) ? Integer{0} : LoadInteger<Integer>(rest);
  }

  Bytes bytes_;
};

}  // namespace smh
