// The cheap facts of an entry, gathered when it is found: the file it starts, its caption, its version
// record.
#pragma once

#include "core/startup_location.h"
#include "model/started_file.h"
#include <string>
#include <string_view>

namespace smh {

// Whether the location keeps files in a folder rather than values in the registry.
bool IsFolderLocation(TTypeStartupLocation location) noexcept;

// Details with nothing but the given texts and the target's kind. `target` receives what the command resolves
// to, so that FillBasicDetails need not resolve it again. In a folder location `name` is the entry's own
// file, and that is what the entry starts.
ItemDetails InitialDetails(TTypeStartupLocation location, const std::wstring& name, std::wstring_view caption,
                           std::wstring_view command, std::wstring& target);

// Completes details made by InitialDetails. Touches the disk; call it without holding a lock.
void FillBasicDetails(TTypeStartupLocation location, std::wstring target, ItemDetails& details);

}  // namespace smh
