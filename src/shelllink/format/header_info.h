// The ShellLinkHeader of the Shell Link Binary File Format.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/link_format_error.h"
#include "shelllink/format/section_view.h"

namespace smh {

// Bits of LinkFlags; no other changes the reading.
inline constexpr std::uint32_t kHasLinkTargetIDList = 0x01;
inline constexpr std::uint32_t kHasLinkInfo = 0x02;
inline constexpr std::uint32_t kHasName = 0x04;
inline constexpr std::uint32_t kHasRelativePath = 0x08;
inline constexpr std::uint32_t kHasWorkingDir = 0x10;
inline constexpr std::uint32_t kHasArguments = 0x20;
inline constexpr std::uint32_t kHasIconLocation = 0x40;
inline constexpr std::uint32_t kIsUnicode = 0x80;
inline constexpr std::uint32_t kForceNoLinkInfo = 0x100;

inline constexpr std::uint32_t kLinkHeaderSize = 76;

// {00021401-0000-0000-00C0-000000000046}, the published identifier with two bytes swapped, and
// {00021401-0000-0000-C000-000000000046}. Links that carry the first are accepted on purpose.
extern const ClassIdBytes kSwappedLinkClassId;
extern const ClassIdBytes kLinkClassId;

// Every field is zero when no header is loaded. Borrows from the link's bytes. Loaded and read by one thread
// at a time.
class THeaderInfo {
 public:
  // Fails the cursor when the file is shorter than a header, and loads nothing. Else keeps the header, then
  // raises LinkFormatError (kHeaderSize, kClassId) when it is not a link's.
  void Load(ByteCursor& file);
  void Clear() noexcept { header_ = {}; }

  std::uint32_t LinkFlags() const noexcept { return header_.U32At(20); }
  // Whether any bit of `flag` is set.
  bool Has(std::uint32_t flag) const noexcept { return (LinkFlags() & flag) != 0; }
  std::int32_t IconIndex() const noexcept { return static_cast<std::int32_t>(header_.U32At(56)); }
  std::uint32_t ShowCommand() const noexcept { return header_.U32At(60); }
  std::uint16_t HotKey() const noexcept { return header_.U16At(64); }

 private:
  SectionView header_;
};

}  // namespace smh
