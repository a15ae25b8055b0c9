// What any list of programs shows of the file that a command starts.
#pragma once

#include "model/item_details.h"
#include "model/shortcut_facts.h"

namespace smh {

// By the file's extension alone.
TargetKind TargetKindOfFile(std::wstring_view file);

// The details' file is a shortcut: takes from it what it says, and makes the file that it starts the details'
// file. None, with the file as it was, for a shortcut that cannot be read; one without target keeps it too.
std::optional<ShortcutFacts> FollowShortcut(ItemDetails& details);

// Whether the file is there, as `stamp` says; its folder, where no working folder is known yet; and the texts
// of its version record.
void DescribeStartedFile(const std::optional<FileStamp>& stamp, ItemDetails& details);

}  // namespace smh
