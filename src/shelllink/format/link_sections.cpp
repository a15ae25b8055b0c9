#include "shelllink/format/link_sections.h"

#include <algorithm>
#include <cstring>

namespace smh {

namespace {

constexpr ClassIdBytes ClassIdOf(std::uint8_t eighth, std::uint8_t ninth) {
  ClassIdBytes id{std::byte{0x01}, std::byte{0x14}, std::byte{0x02}};
  id[8] = std::byte{eighth};
  id[9] = std::byte{ninth};
  id[15] = std::byte{0x46};
  return id;
}

struct StringRow {
  std::uint32_t flag;
  LinkString which;
};

// In the order of the file.
constexpr StringRow kStrings[] = {
    {kHasName, LinkString::kName},
    {kHasRelativePath, LinkString::kRelativePath},
    {kHasWorkingDir, LinkString::kWorkingDir},
    {kHasArguments, LinkString::kArguments},
    {kHasIconLocation, LinkString::kIconLocation},
};

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

void TLinkTargetIDList::Load(ByteCursor& file) {
  const Bytes list = file.Take(file.U16());
  if (list.empty()) return;
  list_ = AllocateTaskMemory(list.size());
  size_ = list.size();
  std::memcpy(list_.get(), list.data(), list.size());
}

void TLinkTargetIDList::Clear() noexcept {
  list_.reset();
  size_ = 0;
}

bool TLinkTargetIDList::IsWellFormed() const noexcept {
  // An item's size counts itself; one without a byte of content says nothing that a folder could read.
  constexpr std::size_t kSizeField = 2;
  ByteCursor list(List());
  std::uint16_t size = list.U16();
  while (size > kSizeField) {
    list.Skip(size - kSizeField);
    size = list.U16();
  }
  return list.Ok() && size == 0;
}

void TStringData::Load(ByteCursor& file, const THeaderInfo& header) {
  isUnicode_ = header.Has(kIsUnicode);
  for (const StringRow& row : kStrings) {
    if (!header.Has(row.flag)) continue;
    const std::uint64_t count = file.U16();
    strings_[static_cast<std::size_t>(row.which)] = file.Take(isUnicode_ ? count * sizeof(char16_t) : count);
  }
}

StoredText TStringData::Text(LinkString which) const noexcept {
  const Bytes bytes = strings_[static_cast<std::size_t>(which)];
  return isUnicode_ ? StoredText::Utf16(bytes) : StoredText::Ansi(bytes);
}

void LinkSections::Load(std::unique_ptr<std::byte[]> link, std::size_t size) {
  Clear();
  bytes_ = std::move(link);
  Parse({bytes_.get(), size});
}

void LinkSections::Load(Bytes link) {
  auto copy = std::make_unique_for_overwrite<std::byte[]>(link.size());
  std::ranges::copy(link, copy.get());
  Load(std::move(copy), link.size());
}

void LinkSections::Clear() noexcept {
  extraData_.clear();
  strings_.Clear();
  linkInfo_.Clear();
  targetIDList_.Clear();
  header_.Clear();
  bytes_.reset();
}

void LinkSections::Parse(Bytes link) {
  ByteCursor file(link);
  header_.Load(file);
  if (header_.Has(kHasLinkTargetIDList)) targetIDList_.Load(file);
  if (header_.Has(kHasLinkInfo)) linkInfo_.Load(file);
  strings_.Load(file, header_);
  // A file that ends right after the strings is complete; one that ends after a block is not.
  if (file.Remaining() > 0) LoadExtraData(file);
  if (!file.Ok()) throw LinkFormatError(LinkFault::kSizeOrData);
}

void LinkSections::LoadExtraData(ByteCursor& file) {
  constexpr std::uint32_t kSmallestBlock = 4;
  // Links of today carry up to five.
  extraData_.reserve(8);
  for (std::uint32_t size = file.U32(); size >= kSmallestBlock; size = file.U32()) {
    const TExtraData block = TExtraData::Load(file, size);
    if (!file.Ok()) return;
    extraData_.push_back(block);
  }
  if (!file.AtEnd()) file.Fail();
}

const TExtraData* LinkSections::FindExtraData(TExtraDataKind kind) const noexcept {
  const auto block = std::ranges::find(extraData_, kind, &TExtraData::Kind);
  return block == extraData_.end() ? nullptr : &*block;
}

StoredText LinkSections::EnvironmentTarget() const noexcept {
  return TargetOf(TExtraDataKind::edkEnvironment);
}

StoredText LinkSections::IconLocation() const noexcept {
  const StoredText target = TargetOf(TExtraDataKind::edkIconEnvironment);
  return target.Empty() ? strings_.Text(LinkString::kIconLocation) : target;
}

StoredText LinkSections::TargetOf(TExtraDataKind kind) const noexcept {
  const TExtraData* const block = FindExtraData(kind);
  return block == nullptr ? StoredText() : block->Target();
}

}  // namespace smh
