// The texts of a file's version record that the lists show, kept once per file however many entries start it.
#pragma once

#include "sysutil/file_stamp.h"

#include <memory>
#include <string>

namespace smh {

struct VersionTexts {
  std::wstring FileDescription;
  std::wstring ProductName;
  std::wstring Comments;
  // The numeric version as text.
  std::wstring VersionNumber;
  std::wstring InternalName;
  std::wstring OriginalFilename;
  std::wstring ProductVersion;
  std::wstring FileVersion;
  std::wstring PrivateBuild;
  std::wstring SpecialBuild;
  std::wstring CompanyName;
  std::wstring LegalCopyright;
  std::wstring LegalTrademarks;

  // What people call the version and the maker.
  const std::wstring& Version() const noexcept {
    return ProductVersion.empty() ? FileVersion : ProductVersion;
  }
  const std::wstring& Company() const noexcept { return CompanyName.empty() ? LegalCopyright : CompanyName; }
};

// Never null.
using SharedVersionTexts = std::shared_ptr<const VersionTexts>;

// Those of a file without version record: every text is empty.
SharedVersionTexts NoVersionTexts();
// Those of a file that stands as `stamp` says: what somebody still holds of it, else asked of the helper
// service. Any thread may call it.
SharedVersionTexts ReadVersionTexts(const std::wstring& file, const FileStamp& stamp);

// Module start-up and shut-down of what is known of files.
void StartVersionTexts();
void StopVersionTexts() noexcept;

}  // namespace smh
