// A link with another command: what speaks of the target is of one link, all the rest of another.
//
// No state: any thread. Portable.
#pragma once

#include "shelllink/format/link_sections.h"

#include <functional>
#include <string>
#include <string_view>

namespace smh {

// A text of the system code page in UTF-16.
using WidenText = std::function<std::u16string(std::string_view)>;

// The bytes of a link with the ID list, LinkInfo, arguments and the target's attributes, times and size of
// `command`, and the rest of `kept`, byte for byte: its other texts (in UTF-16 if they were not), show
// command, hot key, icon index, all flags that do not speak of the target, and the blocks that do not.
//
// Left out, because the shell would look for the old target by them: the relative path, the blocks of the
// environment, special folder, known folder, second ID list, tracker and installer, and what of a property
// store holds the name `file`, that of the old target's file; an empty one is held by nothing.
//
// Without `takesLinkInfo` the link has none, and its ID list has to do.
//
// Both links were loaded without a fault. What `widen` raises passes, and std::bad_alloc.
std::string SpliceLink(const LinkSections& kept, const LinkSections& command, std::u16string_view file,
                       const WidenText& widen, bool takesLinkInfo = true);

}  // namespace smh
