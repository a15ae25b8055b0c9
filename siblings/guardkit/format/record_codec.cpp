#include "siblings/guardkit/format/record_codec.h"

#include <bit>

namespace smh {

static_assert(std::endian::native == std::endian::little);

namespace {

constexpr std::array<std::uint32_t, 256> MakeChecksumTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320u : 0u);
    table[i] = value;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> kChecksumTable = MakeChecksumTable();

}  // namespace

void RecordWriter::Put(std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) bytes_.push_back(static_cast<std::byte>(value >> (8 * i) & 0xFF));
}

void RecordWriter::Block(std::span<const std::byte> bytes) {
  U32(static_cast<std::uint32_t>(bytes.size()));
  Bytes(bytes);
}

void RecordWriter::Text(std::wstring_view text) {
  U32(static_cast<std::uint32_t>(text.size()));
  for (const wchar_t unit : text) Put(static_cast<std::uint16_t>(unit), 2);
}

void RecordCursor::Fail() noexcept {
  ok_ = false;
  rest_ = {};
}

std::span<const std::byte> RecordCursor::Take(std::uint64_t count) noexcept {
  if (count > rest_.size()) {
    Fail();
    return {};
  }
  const std::span<const std::byte> taken = rest_.first(static_cast<std::size_t>(count));
  rest_ = rest_.subspan(taken.size());
  return taken;
}

ByteVector RecordCursor::Block() {
  const std::span<const std::byte> bytes = Take(U32());
  return ByteVector(bytes.begin(), bytes.end());
}

std::wstring RecordCursor::Text() {
  const std::span<const std::byte> bytes = Take(std::uint64_t{U32()} * sizeof(std::uint16_t));
  std::wstring text(bytes.size() / sizeof(std::uint16_t), L'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint16_t unit = 0;
    std::memcpy(&unit, bytes.data() + i * sizeof(unit), sizeof(unit));
    text[i] = static_cast<wchar_t>(unit);
  }
  return text;
}

std::uint32_t Checksum(std::span<const std::byte> bytes) noexcept {
  std::uint32_t value = 0xFFFFFFFF;
  for (const std::byte byte : bytes) {
    value = (value >> 8) ^ kChecksumTable[(value ^ static_cast<std::uint32_t>(byte)) & 0xFF];
  }
  return ~value;
}

}  // namespace smh
