// Asking before something that is more than the user may think of. For the one thread of the program.
#pragma once

#include "hosts/cli/texts/message_texts.h"

#include <string>
#include <string_view>

namespace smh {

// Returns when the user agrees: with `isGiven` (--yes) at once, else after a question on the terminal, to
// which anything but "y", "yes" or what means that in the language of the process is a no. Raises HostError
// on a no, and, without a terminal to ask at, with the words that --yes is wanted; `what` is a sentence
// without its end ("That means 12 entries"), and `otherwise` names what can be done instead.
void RequireConsent(const std::wstring& what, bool isGiven,
                    std::wstring_view otherwise = texts::kOrDryRun.Get());

}  // namespace smh
