// The LinkInfo structure: where the target was when the link was made, on a volume or on the network.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/section_view.h"

namespace smh {

// Borrows from the link's bytes, as the texts that it hands out. Loaded and read by one thread at a time.
class TLinkInfo {
 public:
  // For a header with kHasLinkInfo. Fails the cursor when the structure is longer than the file or than its
  // size field allows, and loads nothing. Else keeps the structure, then raises LinkFormatError (kLinkInfo)
  // when it contradicts itself. The accessors bound themselves, so they may be used whatever the outcome.
  void Load(ByteCursor& file);
  void Clear() noexcept { info_ = {}; }

  // With its size; valid as long as the link's bytes.
  Bytes Stored() const noexcept { return info_.All(); }

  bool HasLocalBasePath() const noexcept;
  bool HasNetworkLink() const noexcept;
  // Both empty without a local base path. Together they are the target.
  StoredText LocalBasePath() const noexcept;
  StoredText CommonPathSuffix() const noexcept;
  // Empty without a network link.
  StoredText NetName() const noexcept;

 private:
  bool HasUnicodeOffsets() const noexcept;
  // From its start to the end of LinkInfo: its own size field bounds nothing that is read.
  SectionView VolumeId() const noexcept;
  SectionView NetworkLink() const noexcept;
  StoredText PathAt(std::uint32_t ansiField, std::uint32_t unicodeField) const noexcept;
  void CheckOffsets() const;
  void CheckVolumeId() const;
  void CheckNetworkLink() const;

  SectionView info_;
};

}  // namespace smh
