// The cheap facts of an entry, gathered when it is found: the file it starts, its caption, its version
// record; and what any list of programs shows of the file that a command starts.
#pragma once

#include "core/contracts/location_table.h"
#include "model/item_details.h"
#include "model/shortcut_facts.h"

#include <optional>
#include <string_view>

namespace smh {

// Any thread may call these; the locks that they take are leaves.

// By the file's extension alone; asks basekit for the startable ones once, and raises what that raises.
TargetKind TargetKindOfFile(std::wstring_view file);

// The details' file is a shortcut: takes from it what it says, and makes the file that it starts the details'
// file. None, with the file as it was, for a shortcut that cannot be read; one without target keeps it too.
// Touches the disk.
std::optional<ShortcutFacts> FollowShortcut(ItemDetails& details);

// Whether the file is there, as `stamp` says; its folder, where no working folder is known yet; and the texts
// of its version record, which it reads. Raises std::bad_alloc.
void DescribeStartedFile(const std::optional<FileStamp>& stamp, ItemDetails& details);

// Whether the location keeps files in a folder rather than values in the registry.
bool IsFolderLocation(TTypeStartupLocation location) noexcept;

// Completes details that have nothing but the caption and the command as given. In a folder location `name`
// is the entry's own file, and that is what the entry starts. Touches disk and registry: loads call it
// without a lock, changes under the item-list lock. What is missing stays empty; raises what the services
// raise.
void FillBasicDetails(TTypeStartupLocation location, const SharedText& name, ItemDetails& details);

}  // namespace smh
