#include "shelllink/format/item_strings.h"

#include "shelllink/format/section_view.h"

#include <algorithm>

namespace smh {

namespace {

// Kinds of items: single ones, and classes of which the bits outside the mask say more.
constexpr std::uint8_t kControlPanelFile = 0x00;
constexpr std::uint8_t kShellExtension = 0x2E;
constexpr std::uint8_t kDelegateFile = 0x74;
constexpr std::uint8_t kClassMask = 0x70;
constexpr std::uint8_t kRootClass = 0x10;
constexpr std::uint8_t kVolumeClass = 0x20;
constexpr std::uint8_t kFileClass = 0x30;
constexpr std::uint8_t kNetworkClass = 0x40;
constexpr std::uint8_t kOtherGuidKinds[] = {0x70, 0x71};
constexpr std::uint8_t kUnicodeFile = 0x04;

// Offsets from the start of an item, which is its size; kind, a byte of flags, then what the kind has.
constexpr std::uint64_t kKind = 2;
constexpr std::uint64_t kVolumeName = 3;
constexpr std::uint64_t kNetworkNames = 5;
constexpr std::uint64_t kFileNames = 14;
constexpr std::uint64_t kDelegateFileNames = 24;
constexpr std::uint64_t kSmallestGuidItem = 4 + 16;
constexpr std::uint64_t kControlPanelOffsets = 8;
constexpr std::uint64_t kControlPanelTexts = 12;

// Offsets in the extension of a file's item. The name is at the second place in the first version of it, and
// at the place that the field says in all.
constexpr std::uint64_t kExtensionVersion = 2;
constexpr std::uint64_t kExtensionNameField = 16;
constexpr std::uint64_t kExtensionFirstName = 20;
constexpr std::uint64_t kExtensionLocalAnsiField = 18;
constexpr std::uint64_t kExtensionLocalField = 36;
constexpr std::uint16_t kVersionWithLocalField = 7;

std::uint8_t KindOf(SectionView item) noexcept {
  return static_cast<std::uint8_t>(item.U16At(kKind));
}

bool EndsAnsi(SectionView item, std::uint64_t offset) noexcept {
  const Bytes text = item.From(offset).All();
  return std::ranges::find(text, std::byte{0}) != text.end();
}

bool EndsUtf16(SectionView item, std::uint64_t offset) noexcept {
  ByteCursor units(item.From(offset).All());
  while (units.U16() != 0) {
  }
  return units.Ok();
}

// A long name is followed by a short one, a network name by a description: both may be empty.
bool EndTwoAnsi(SectionView item, std::uint64_t offset) noexcept {
  const Bytes texts = item.From(offset).All();
  return std::ranges::count(texts, std::byte{0}) >= 2;
}

// The last field of a file's item says where its extension is; older items have none.
bool EndsExtension(SectionView item) noexcept {
  const std::uint64_t size = item.All().size();
  const std::uint16_t offset = item.U16At(size - sizeof(offset));
  if (offset < kFileNames || offset >= size) return true;
  const SectionView extension = item.From(offset);
  if (!EndsUtf16(extension, kExtensionFirstName)) return false;
  const std::uint16_t name = extension.U16At(kExtensionNameField);
  if (name != 0 && !EndsUtf16(extension, name)) return false;
  if (extension.U16At(kExtensionVersion) < kVersionWithLocalField) {
    const std::uint16_t local = extension.U16At(kExtensionLocalAnsiField);
    return local == 0 || EndsAnsi(extension, local);
  }
  const std::uint16_t local = extension.U16At(kExtensionLocalField);
  return local == 0 || EndsUtf16(extension, local);
}

bool EndsFile(SectionView item, std::uint64_t names, bool isUnicode) noexcept {
  return EndTwoAnsi(item, names) && (!isUnicode || EndsUtf16(item, names)) && EndsExtension(item);
}

// Two offsets of texts, counted from the first one.
bool EndsControlPanelFile(SectionView item) noexcept {
  const std::uint16_t name = item.U16At(kControlPanelOffsets);
  const std::uint16_t comment = item.U16At(kControlPanelOffsets + sizeof(name));
  return EndsAnsi(item, kControlPanelTexts) && EndsAnsi(item, kControlPanelTexts + name) &&
         EndsAnsi(item, kControlPanelTexts + comment);
}

// Whatever string it has, at any alignment and behind what every kind has.
bool EndsWithZeros(SectionView item) noexcept {
  constexpr std::size_t kZeros = 4;
  const Bytes bytes = item.All();
  if (bytes.size() < kSmallestGuidItem) return false;
  return std::ranges::all_of(bytes.last(kZeros), [](std::byte byte) { return byte == std::byte{0}; });
}

bool IsFolderOfGuid(std::uint8_t kind) noexcept {
  return (kind & kClassMask) == kRootClass || kind == kShellExtension ||
         std::ranges::find(kOtherGuidKinds, kind) != std::end(kOtherGuidKinds);
}

bool EndsItem(SectionView item) noexcept {
  const std::uint8_t kind = KindOf(item);
  if (IsFolderOfGuid(kind)) return item.All().size() >= kSmallestGuidItem;
  if (kind == kControlPanelFile) return EndsControlPanelFile(item);
  if (kind == kDelegateFile) return EndsFile(item, kDelegateFileNames, false);
  switch (kind & kClassMask) {
    case kVolumeClass:
      return EndsAnsi(item, kVolumeName);
    case kFileClass:
      return EndsFile(item, kFileNames, (kind & kUnicodeFile) != 0);
    case kNetworkClass:
      return EndTwoAnsi(item, kNetworkNames);
    default:
      return EndsWithZeros(item);
  }
}

// Its items are records of what was deleted, not names: their kind is not looked at either.
bool IsRecycleBin(SectionView item) noexcept {
  // {645FF040-5081-101B-9F08-00AA002F954E}
  constexpr std::uint8_t kId[] = {0x40, 0xF0, 0x5F, 0x64, 0x81, 0x50, 0x1B, 0x10,
                                  0x9F, 0x08, 0x00, 0xAA, 0x00, 0x2F, 0x95, 0x4E};
  const Bytes id = std::as_bytes(std::span(kId));
  const Bytes all = item.All();
  return std::search(all.begin(), all.end(), id.begin(), id.end()) != all.end();
}

}  // namespace

bool DoItemsHoldTheirStrings(Bytes list) noexcept {
  ByteCursor items(list);
  bool isFirst = true;
  bool isBelowRecycleBin = false;
  for (;;) {
    const std::uint16_t size = ByteCursor(items).U16();
    if (size == 0) return items.Ok();
    const SectionView item(items.Take(size));
    if (isBelowRecycleBin || !EndsItem(item)) return false;
    // Some of these folders look for themselves below another one, without end.
    if (!isFirst && IsFolderOfGuid(KindOf(item))) return false;
    isFirst = false;
    isBelowRecycleBin = IsRecycleBin(item);
  }
}

}  // namespace smh
