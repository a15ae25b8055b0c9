#include "shelllink/format/link_sections.h"

#include <algorithm>

namespace smh {

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
