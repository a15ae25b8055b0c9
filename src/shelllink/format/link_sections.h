// All sections of one link, parsed from memory in the order of the file. Knows nothing of files and the
// shell.
//
// The sections borrow from one buffer that this object owns; what they hand out is valid until the next Load
// or Clear. Not for use by two threads at once.
#pragma once

#include "shelllink/format/extra_data.h"
#include "shelllink/format/header_info.h"
#include "shelllink/format/link_info.h"
#include "shelllink/format/link_target_id_list.h"
#include "shelllink/format/string_data.h"

#include <memory>
#include <vector>

namespace smh {

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
