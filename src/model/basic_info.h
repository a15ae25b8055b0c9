// The cheap facts of an entry, gathered when it is found: the file it starts, its caption, its version
// record; and what any list of programs shows of the file that a command starts.
//
// Any thread may call these; the locks that they take are leaves. What touches the disk raises EAbort once
// the thread's reading pass was asked to end (network_roots.h), and waits for no place that does not answer.
#pragma once

#include "core/contracts/location_table.h"
#include "core/contracts/shared_text.h"
#include "model/item_details.h"
#include "shelllink/uShellLinkInfo.h"

#include <optional>
#include <string>
#include <string_view>

namespace smh {

// What an item takes from a shortcut: texts as the shortcut has them, or empty.
struct ShortcutFacts {
  // The file that the target, together with the arguments, resolves to; empty for a link without target.
  SharedText targetFile;
  // Target file and arguments as one command line; empty for a link without target.
  SharedText command;
  // As stored; "@file,number" names a text of a library.
  SharedText description;
  SharedText workingFolder;
  SharedText iconPath;
  int iconIndex = 0;
  int hotKey = 0;
  // The shortcut's own, when it was read.
  FileStamp stamp;
};

// Of a shortcut that has been read. Searches its target.
ShortcutFacts ShortcutFactsOf(const TShellLinkInfo& link);
struct ShortcutReading {
  std::optional<ShortcutFacts> facts;
  // There are none because the shortcut could not be opened or reached, though it may be there.
  bool isHeld = false;
};
// Reads the file and searches its target; takes no lock but the log's. No facts, with a record in the
// statistics log, for a shortcut that cannot be read, and without one for a shortcut that cannot be reached.
ShortcutReading ReadShortcut(const std::wstring& file);

// By the file's extension alone; asks basekit for the startable ones once, and raises what that raises.
TargetKind TargetKindOfFile(std::wstring_view file);

// The details' file is a shortcut: takes from it what it says, and makes the file that it starts the details'
// file, with what that serves. None, with the file as it was, for a shortcut that cannot be read; one without
// target keeps it too. Touches the disk.
std::optional<ShortcutFacts> FollowShortcut(ItemDetails& details);

// Whether the files that the details tell of stand as they were seen: the shortcut, if it could be read, what
// is started, if it was there, and what that runs, if it could be told. One call of the system for each.
bool StandsAsSeen(const ItemDetails& details);
// Whether two tell of the same files, as they stood at the same time.
bool IsSeenAlike(const ItemDetails& a, const ItemDetails& b);

// Whether the file is there, as `stamp` says, or out of reach; its folder, where no working folder is known
// yet; and the texts of its version record, which it reads. Raises std::bad_alloc.
void DescribeStartedFile(const std::optional<FileStamp>& stamp, ItemDetails& details);

// Whether the location keeps files in a folder rather than values in the registry.
bool IsFolderLocation(TTypeStartupLocation location) noexcept;

// Completes details that have nothing but the caption and the command as given. In a folder location `name`
// is the entry's own file, and that is what the entry starts. Touches disk and registry: called
// without a lock. What is missing stays empty; raises what the services
// raise.
void FillBasicDetails(TTypeStartupLocation location, const SharedText& name, ItemDetails& details);

}  // namespace smh
