#include "siblings/guardkit/format/record_codec.h"

#include <array>

namespace smh {

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

void RecordWriter::Put(Bytes bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void RecordWriter::Block(Bytes bytes) {
  U32(static_cast<std::uint32_t>(bytes.size()));
  Put(bytes);
}

void RecordWriter::Text(std::wstring_view text) {
  U32(static_cast<std::uint32_t>(text.size()));
  for (const wchar_t unit : text) PutInteger(static_cast<std::uint16_t>(unit));
}

ByteVector ReadBlock(ByteCursor& in) {
  const Bytes bytes = in.Take(in.U32());
  return ByteVector(bytes.begin(), bytes.end());
}

std::wstring ReadText(ByteCursor& in) {
  ByteCursor units = in.Sub(std::uint64_t{in.U32()} * sizeof(std::uint16_t));
  std::wstring text(units.Remaining() / sizeof(std::uint16_t), L'\0');
  for (wchar_t& unit : text) unit = static_cast<wchar_t>(units.U16());
  return text;
}

bool ReadFlag(ByteCursor& in) noexcept {
  const std::uint8_t flag = in.U8();
  if (flag > 1) in.Fail();
  return flag == 1;
}

std::uint32_t Checksum(Bytes bytes) noexcept {
  std::uint32_t value = 0xFFFFFFFF;
  for (const std::byte byte : bytes) {
    value = (value >> 8) ^ kChecksumTable[(value ^ static_cast<std::uint32_t>(byte)) & 0xFF];
  }
  return ~value;
}

}  // namespace smh
