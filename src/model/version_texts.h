// The texts of a file's version record that the lists show, kept once per file however many entries start it.
#pragma once

#include "core/contracts/shared_text.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/module_global.h"

#include <memory>
#include <string>

namespace smh {

// Texts of the record as they are; empty for those that it lacks. Constant once they are shared.
struct VersionTexts {
  SharedText FileDescription;
  SharedText ProductName;
  SharedText Comments;
  // The numeric version as text.
  SharedText VersionNumber;
  SharedText InternalName;
  SharedText OriginalFilename;
  SharedText ProductVersion;
  SharedText FileVersion;
  SharedText PrivateBuild;
  SharedText SpecialBuild;
  SharedText CompanyName;
  SharedText LegalCopyright;
  SharedText LegalTrademarks;

  // What people call the version and the maker.
  const SharedText& Version() const noexcept { return ProductVersion.empty() ? FileVersion : ProductVersion; }
  const SharedText& Company() const noexcept { return CompanyName.empty() ? LegalCopyright : CompanyName; }
};

// Never null.
using SharedVersionTexts = std::shared_ptr<const VersionTexts>;

// Those of a file without version record: every text is empty.
SharedVersionTexts NoVersionTexts();
// Those of a file, by its full path, that stands as `stamp` says: what somebody still holds of it, else asked
// of the helper service, which reads the file. Any thread may call it; the lock of what is known is a leaf
// and not held meanwhile.
SharedVersionTexts ReadVersionTexts(const SharedText& file, const FileStamp& stamp);

// What is known of files. Started before the first item is made and stopped after the last one.
struct KnownVersionTexts;
extern ModuleGlobal<KnownVersionTexts> g_versionTexts;

}  // namespace smh
