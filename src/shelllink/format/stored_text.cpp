#include "shelllink/format/stored_text.h"

namespace smh {

StoredText StoredText::Ansi(Bytes bytes) noexcept {
  if (bytes.empty()) return {};
  const void* const zero = std::memchr(bytes.data(), 0, bytes.size());
  if (zero == nullptr) return {bytes, false};
  return {bytes.first(static_cast<std::size_t>(static_cast<const std::byte*>(zero) - bytes.data())), false};
}

StoredText StoredText::Utf16(Bytes bytes) noexcept {
  constexpr std::size_t kUnit = sizeof(char16_t);
  std::size_t end = 0;
  while (end + kUnit <= bytes.size() && LoadInteger<char16_t>(bytes.subspan(end)) != 0) end += kUnit;
  return {bytes.first(end), true};
}

std::string_view StoredText::AnsiView() const noexcept {
  return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
}

void StoredText::CopyUtf16(void* units) const noexcept {
  if (!bytes_.empty()) std::memcpy(units, bytes_.data(), bytes_.size());
}

}  // namespace smh
