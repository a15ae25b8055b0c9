#include "shelllink/format/section_view.h"

#include <cstring>

namespace smh {

StoredText StoredText::Ansi(Bytes bytes) noexcept {
  if (bytes.empty()) return {};
  const void* const nul = std::memchr(bytes.data(), 0, bytes.size());
  if (nul == nullptr) return {bytes, false};
  return {bytes.first(static_cast<std::size_t>(static_cast<const std::byte*>(nul) - bytes.data())), false};
}

StoredText StoredText::Utf16(Bytes bytes) noexcept {
  // Behind the last code unit the cursor reads NULs.
  ByteCursor units(bytes);
  std::size_t size = 0;
  while (units.U16() != 0) size += sizeof(char16_t);
  return {bytes.first(size), true};
}

std::string_view StoredText::AnsiView() const noexcept {
  return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
}

void StoredText::CopyUtf16(void* units) const noexcept {
  if (!bytes_.empty()) std::memcpy(units, bytes_.data(), bytes_.size());
}

}  // namespace smh
