// The sections of one link, parsed from memory in the order of the file, after the Shell Link Binary File
// Format. Knows nothing of files and the shell.
//
// Nothing here takes a lock; each object is for one thread at a time. The single sections borrow from the
// link's bytes, which LinkSections owns; those that are longer than the file fail the cursor.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "shelllink/format/extra_data.h"
#include "shelllink/format/link_format_error.h"
#include "shelllink/format/link_info.h"
#include "shelllink/format/section_view.h"
#include "shelllink/format/task_memory.h"

#include <array>
#include <memory>
#include <vector>

namespace smh {

// Bits of LinkFlags that change the reading.
inline constexpr std::uint32_t kHasLinkTargetIDList = 0x01;
inline constexpr std::uint32_t kHasLinkInfo = 0x02;
inline constexpr std::uint32_t kHasName = 0x04;
inline constexpr std::uint32_t kHasRelativePath = 0x08;
inline constexpr std::uint32_t kHasWorkingDir = 0x10;
inline constexpr std::uint32_t kHasArguments = 0x20;
inline constexpr std::uint32_t kHasIconLocation = 0x40;
inline constexpr std::uint32_t kIsUnicode = 0x80;
inline constexpr std::uint32_t kForceNoLinkInfo = 0x100;
// They change nothing here, but speak of the target.
inline constexpr std::uint32_t kHasExpString = 0x200;
inline constexpr std::uint32_t kHasDarwinId = 0x1000;
inline constexpr std::uint32_t kPreferEnvironmentPath = 0x0200'0000;

inline constexpr std::uint32_t kLinkHeaderSize = 76;

// {00021401-0000-0000-00C0-000000000046}, the published identifier with two bytes swapped, and
// {00021401-0000-0000-C000-000000000046}. Links that carry the first are accepted on purpose.
extern const ClassIdBytes kSwappedLinkClassId;
extern const ClassIdBytes kLinkClassId;

// The ShellLinkHeader. Every field is 0 when no header is loaded.
class THeaderInfo {
 public:
  // Fails the cursor when the file is shorter than a header, and loads nothing. Else keeps the header, then
  // raises LinkFormatError (kHeaderSize, kClassId) when it is not a link's.
  void Load(ByteCursor& file);
  void Clear() noexcept { header_ = {}; }

  // Valid as long as the link's bytes; empty when no header is loaded.
  Bytes Stored() const noexcept { return header_.All(); }
  std::uint32_t LinkFlags() const noexcept { return header_.U32At(20); }
  // Whether any bit of `flag` is set.
  bool Has(std::uint32_t flag) const noexcept { return (LinkFlags() & flag) != 0; }
  std::int32_t IconIndex() const noexcept { return static_cast<std::int32_t>(header_.U32At(56)); }
  std::uint32_t ShowCommand() const noexcept { return header_.U32At(60); }
  std::uint16_t HotKey() const noexcept { return header_.U16At(64); }

 private:
  SectionView header_;
};

// The LinkTargetIDList: the target as an item ID list of the shell's namespace. Owns a copy of the list.
class TLinkTargetIDList {
 public:
  // For a header with kHasLinkTargetIDList. Accepts any bytes. Fails the cursor when the list is longer than
  // the file, and loads nothing. Raises std::bad_alloc.
  void Load(ByteCursor& file);
  void Clear() noexcept;

  // In memory of the task allocator; empty without a list. Valid until the next Load or Clear.
  Bytes List() const noexcept { return {list_.get(), size_}; }
  // Whether every item has a size that lies inside the list, and a terminator follows the last. The shell
  // reads a list without knowing its size, so only one that passes may reach it.
  bool IsWellFormed() const noexcept;

 private:
  TaskMemory list_;
  std::size_t size_ = 0;
};

enum class LinkString { kName, kRelativePath, kArguments, kWorkingDir, kIconLocation };
inline constexpr std::size_t kLinkStringCount = 5;

// The StringData structures: up to five texts, each a count of characters and the characters.
class TStringData {
 public:
  // Reads the texts that the header announces. Fails the cursor at one that is longer than the file; those
  // before it are kept.
  void Load(ByteCursor& file, const THeaderInfo& header);
  void Clear() noexcept { strings_ = {}; }

  // Cut at the first NUL or at the stored count, whichever comes first; empty when the link has none. Borrows
  // from the link's bytes.
  StoredText Text(LinkString which) const noexcept;
  // All of it, as it is stored, in UTF-16 or in the system code page.
  Bytes Stored(LinkString which) const noexcept { return strings_[static_cast<std::size_t>(which)]; }
  bool IsUnicode() const noexcept { return isUnicode_; }

 private:
  std::array<Bytes, kLinkStringCount> strings_;
  bool isUnicode_ = false;
};

// A whole link. Owns its bytes; what it and its sections hand out is valid until the next Load or Clear.
class LinkSections {
 public:
  LinkSections() = default;
  LinkSections(const LinkSections&) = delete;
  LinkSections& operator=(const LinkSections&) = delete;

  // Drops what was read and parses a whole link of `size` bytes. Raises LinkFormatError; the sections before
  // the fault are kept. Raises std::bad_alloc.
  void Load(std::unique_ptr<std::byte[]> link, std::size_t size);
  // The same from a copy.
  void Load(Bytes link);
  void Clear() noexcept;

  const THeaderInfo& Header() const noexcept { return header_; }
  const TLinkTargetIDList& TargetIDList() const noexcept { return targetIDList_; }
  const TLinkInfo& LinkInfo() const noexcept { return linkInfo_; }
  const TStringData& Strings() const noexcept { return strings_; }
  // In the order of the file.
  const std::vector<TExtraData>& ExtraData() const noexcept { return extraData_; }

  // The first block of that kind, or null; valid until the next Load or Clear, like all texts.
  const TExtraData* FindExtraData(TExtraDataKind kind) const noexcept;
  // The target of the environment block; empty without one.
  StoredText EnvironmentTarget() const noexcept;
  // The target of the icon environment block, else the IconLocation string.
  StoredText IconLocation() const noexcept;
  // Whether the target may be taken from LinkInfo.
  bool MayUseLinkInfo() const noexcept { return !header_.Has(kForceNoLinkInfo); }

 private:
  void Parse(Bytes link);
  void LoadExtraData(ByteCursor& file);
  StoredText TargetOf(TExtraDataKind kind) const noexcept;

  std::unique_ptr<std::byte[]> bytes_;
  THeaderInfo header_;
  TLinkTargetIDList targetIDList_;
  TLinkInfo linkInfo_;
  TStringData strings_;
  std::vector<TExtraData> extraData_;
};

}  // namespace smh
