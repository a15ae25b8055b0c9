#include "shelllink/format/header_info.h"

namespace smh {

namespace {

constexpr ClassIdBytes ClassIdOf(std::uint8_t eighth, std::uint8_t ninth) {
  ClassIdBytes id{std::byte{0x01}, std::byte{0x14}, std::byte{0x02}};
  id[8] = std::byte{eighth};
  id[9] = std::byte{ninth};
  id[15] = std::byte{0x46};
  return id;
}

}  // namespace

constinit const ClassIdBytes kSwappedLinkClassId = ClassIdOf(0x00, 0xC0);
constinit const ClassIdBytes kLinkClassId = ClassIdOf(0xC0, 0x00);

void THeaderInfo::Load(ByteCursor& file) {
  const Bytes header = file.Take(kLinkHeaderSize);
  if (!file.Ok()) return;
  header_ = SectionView(header);
  ByteCursor fields(header);
  const std::uint32_t size = fields.U32();
  if (size != kLinkHeaderSize) throw LinkFormatError::OfHeaderSize(size);
  const ClassIdBytes id = fields.Array<sizeof(ClassIdBytes)>();
  if (id != kSwappedLinkClassId && id != kLinkClassId) throw LinkFormatError::OfClassId(id);
}

}  // namespace smh
