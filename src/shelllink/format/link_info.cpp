#include "shelllink/format/link_info.h"

#include "shelllink/format/link_format_error.h"

#include <initializer_list>

namespace smh {

namespace {

// Fields of LinkInfo, by offset.
constexpr std::uint32_t kHeaderSize = 4;
constexpr std::uint32_t kFlags = 8;
constexpr std::uint32_t kVolumeIdOffset = 12;
constexpr std::uint32_t kLocalBasePathOffset = 16;
constexpr std::uint32_t kNetworkLinkOffset = 20;
constexpr std::uint32_t kCommonPathSuffixOffset = 24;
constexpr std::uint32_t kLocalBasePathOffsetUnicode = 28;
constexpr std::uint32_t kCommonPathSuffixOffsetUnicode = 32;

constexpr std::uint32_t kHeaderSizeWithoutUnicode = 28;
constexpr std::uint32_t kHeaderSizeWithUnicode = 36;

constexpr std::uint32_t kVolumeIDAndLocalBasePath = 0x1;
constexpr std::uint32_t kCommonNetworkRelativeLinkAndPathSuffix = 0x2;

// Fields of VolumeID.
constexpr std::uint32_t kVolumeIdSize = 0;
constexpr std::uint32_t kVolumeLabelOffset = 12;
constexpr std::uint32_t kVolumeLabelOffsetUnicode = 16;
// A label offset of this value says that the Unicode field is the one in use.
constexpr std::uint32_t kLabelIsUnicode = 20;

// Fields of CommonNetworkRelativeLink.
constexpr std::uint32_t kNetworkSize = 0;
constexpr std::uint32_t kNetworkFlags = 4;
constexpr std::uint32_t kNetNameOffset = 8;
constexpr std::uint32_t kNetNameOffsetUnicode = 20;
constexpr std::uint32_t kDeviceNameOffsetUnicode = 24;
constexpr std::uint32_t kValidDevice = 0x1;
// A net name behind this offset leaves room for the Unicode fields.
constexpr std::uint32_t kLastAnsiNetNameOffset = 20;

void Require(bool holds) {
  if (!holds) throw LinkFormatError(LinkFault::kLinkInfo);
}

}  // namespace

void TLinkInfo::Load(ByteCursor& file) {
  constexpr std::uint32_t kSizeField = 4;
  // The size counts itself.
  const std::uint32_t size = ByteCursor(file).U32();
  if (size < kSizeField) file.Fail();
  const Bytes info = file.Take(size);
  if (!file.Ok()) return;
  info_ = SectionView(info);
  CheckOffsets();
  CheckVolumeId();
  CheckNetworkLink();
}

bool TLinkInfo::HasLocalBasePath() const noexcept {
  return (info_.U32At(kFlags) & kVolumeIDAndLocalBasePath) != 0;
}

bool TLinkInfo::HasNetworkLink() const noexcept {
  return (info_.U32At(kFlags) & kCommonNetworkRelativeLinkAndPathSuffix) != 0 &&
         info_.U32At(kNetworkLinkOffset) != 0;
}

StoredText TLinkInfo::LocalBasePath() const noexcept {
  return PathAt(kLocalBasePathOffset, kLocalBasePathOffsetUnicode);
}

StoredText TLinkInfo::CommonPathSuffix() const noexcept {
  return PathAt(kCommonPathSuffixOffset, kCommonPathSuffixOffsetUnicode);
}

StoredText TLinkInfo::NetName() const noexcept {
  if (!HasNetworkLink()) return {};
  const SectionView link = NetworkLink();
  const std::uint32_t offset = link.U32At(kNetNameOffset);
  if (offset <= kLastAnsiNetNameOffset) return link.AnsiAt(offset);
  return link.Utf16At(link.U32At(kNetNameOffsetUnicode));
}

bool TLinkInfo::HasUnicodeOffsets() const noexcept {
  return info_.U32At(kHeaderSize) >= kHeaderSizeWithUnicode;
}

SectionView TLinkInfo::VolumeId() const noexcept {
  return info_.From(info_.U32At(kVolumeIdOffset));
}

SectionView TLinkInfo::NetworkLink() const noexcept {
  return info_.From(info_.U32At(kNetworkLinkOffset));
}

StoredText TLinkInfo::PathAt(std::uint32_t ansiField, std::uint32_t unicodeField) const noexcept {
  if (!HasLocalBasePath()) return {};
  const std::uint32_t unicode = HasUnicodeOffsets() ? info_.U32At(unicodeField) : 0;
  if (unicode != 0) return info_.Utf16At(unicode);
  const std::uint32_t ansi = info_.U32At(ansiField);
  return ansi == 0 ? StoredText() : info_.AnsiAt(ansi);
}

void TLinkInfo::CheckOffsets() const {
  const std::uint64_t size = info_.All().size();
  const std::uint32_t headerSize = info_.U32At(kHeaderSize);
  Require(headerSize <= size);
  Require(HasUnicodeOffsets() || headerSize == kHeaderSizeWithoutUnicode);
  for (const std::uint32_t field :
       {kVolumeIdOffset, kLocalBasePathOffset, kNetworkLinkOffset, kCommonPathSuffixOffset}) {
    Require(info_.U32At(field) <= size);
  }
  if (!HasUnicodeOffsets()) return;
  Require(info_.U32At(kLocalBasePathOffsetUnicode) <= size);
  Require(info_.U32At(kCommonPathSuffixOffsetUnicode) <= size);
}

void TLinkInfo::CheckVolumeId() const {
  if (!HasLocalBasePath() || info_.U32At(kVolumeIdOffset) == 0) return;
  const SectionView volume = VolumeId();
  const std::uint32_t label = volume.U32At(kVolumeLabelOffset);
  Require((label == kLabelIsUnicode ? volume.U32At(kVolumeLabelOffsetUnicode) : label) <=
          volume.U32At(kVolumeIdSize));
}

void TLinkInfo::CheckNetworkLink() const {
  if (!HasNetworkLink()) return;
  const SectionView link = NetworkLink();
  const std::uint32_t size = link.U32At(kNetworkSize);
  const std::uint32_t name = link.U32At(kNetNameOffset);
  const bool isUnicode = name > kLastAnsiNetNameOffset;
  const auto checkName = [&] { Require((isUnicode ? link.U32At(kNetNameOffsetUnicode) : name) <= size); };
  checkName();
  if ((link.U32At(kNetworkFlags) & kValidDevice) == 0) return;
  // Looks at the net name again, on purpose: links whose DeviceNameOffset points elsewhere are accepted.
  checkName();
  if (isUnicode) Require(link.U32At(kDeviceNameOffsetUnicode) <= size);
}

}  // namespace smh
