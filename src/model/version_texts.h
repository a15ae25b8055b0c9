// The texts of a file's version record that the lists show.
#pragma once

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

// Asks the helper service; every text is empty for a file without version record.
VersionTexts ReadVersionTexts(const std::wstring& file);

}  // namespace smh
