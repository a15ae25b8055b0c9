// What the changes of a Startup folder need to know of a shortcut and of the entry it makes.
#pragma once

#include "locations/folders/shortcut_writer.h"
#include "model/uStartupItem.h"
#include "shelllink/uShellLinkInfo.h"

#include <memory>
#include <string>

namespace smh {

// An item of a file that lies in a Startup folder or in a folder of disabled entries, with its basic
// information; not listed. Reads the file. Raises what FillBasicInfo raises.
ItemRef MakeFileItem(TTypeStartupLocation location, const std::wstring& file, bool enabled);

// A shortcut, read, whose command may be changed, or moved to a place that keeps nothing but commands. Raises
// EOSError for a program file, the reader's exception for what cannot be read, and EOSError (not supported)
// for a link without target or one that an installer resolves.
std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file);

// Takes over all of the link but target and arguments.
void KeepFieldsOfLink(const std::unique_ptr<TShellLinkInfo>& link, ShortcutFields& fields);

}  // namespace smh
