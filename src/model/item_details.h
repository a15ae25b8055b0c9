// What is known of a start-up entry beyond its identity. Everything here goes back to its initial value when
// the entry's command changes, so that a swapped command never keeps the old program's facts. The texts of a
// file's version record are among it, kept once per file however many entries start it.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/shared_text.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/module_global.h"

#include <cstdint>
#include <memory>
#include <string>

namespace smh {

// Texts of a version record as they are; empty for those that it lacks. Constant once they are shared.
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

// What is the same for every entry that starts a file.
struct FileTexts {
  SharedText path;
  // Without a trailing backslash, except for the root of a drive.
  SharedText folder;
  SharedVersionTexts version;
};

// Those of a file without version record: every text is empty. Any thread; raises EAssertionFailed before the
// module's start and after its stop, as the next does.
SharedVersionTexts NoVersionTexts();
// The folder of a file, by its path, as above.
SharedText FolderTextOf(std::wstring_view path);
// Those of a file, by its full path, that stands as `stamp` says: what somebody still holds of it, else the
// version texts are asked of the helper service, which reads the file. Any thread may call it; the lock of
// what is known is a leaf and not held meanwhile. Raises what the service raises.
FileTexts ReadFileTexts(const SharedText& file, const FileStamp& stamp);

// What is known of files. Started before the first item is made and stopped after the last one.
struct KnownVersionTexts;
extern ModuleGlobal<KnownVersionTexts> g_versionTexts;

// What the command's file is.
enum class TargetKind : std::uint8_t { kOther = 0, kExecutable = 1, kShortcut = 2 };

// Indexes into the image lists; the first three equal the ratings.
inline constexpr int kImageUnknownFile = 3;

// The expensive facts, which a second step reads.
struct ExtendedDetails {
  std::int64_t FileSize = 0;
  // OLE dates in local time; 0 when not read.
  double CreationTime = 0;
  double LastAccessTime = 0;
  double LastWriteTime = 0;
  // At most 80 units.
  SharedText FileTypeName;
  int Rating = 1;
  int ImageIndex = kImageUnknownFile;
  // Nobody could be asked for the icon.
  bool IsIconOwed = false;
};

// A value: an item guards its own by its lock and hands out copies. Texts that are not known are empty.
struct ItemDetails : ExtendedDetails {
  TargetKind Kind = TargetKind::kOther;
  SharedText LinkPath;
  SharedText IconPath;
  int IconIndex = 0;
  bool FileFound = false;
  // kFileFound exactly when FileFound is set.
  FileReachability Reachability = kFileMissing;
  // Short name of the started file; the duplicate key when an entry is moved in.
  SharedText EntryName;
  SharedText Caption;
  // The command line as stored in the location.
  SharedText Command;
  SharedText Description;
  SharedText WorkingFolder;
  // The hot key of a shortcut entry.
  int LinkShowCommand = 0;
  SharedVersionTexts Version = NoVersionTexts();
  // The file that the command starts, or the served one: that which all that is known of a file is about.
  SharedText FilePath;
  // The program that the command, or the shortcut that it names, starts something through; empty for others.
  SharedText StartedThrough;
  // What that runs; empty when it cannot be told, and without one.
  SharedText ServedFile;
  // As they stood when they were looked at, where they were there.
  FileStamp SeenFile;
  FileStamp SeenServed;
  FileStamp SeenLink;
  bool IsLinkRead = true;
  // It could not be read because it could not be opened, though it may be there: somebody may hold it.
  bool IsLinkHeld = false;
};

}  // namespace smh
