// Text as searches compare it.
#pragma once

#include <string>

namespace smh {

// By the system's rules for letters, code unit by code unit; what is searched in and what is searched for
// both pass through here.
std::wstring LowerCase(std::wstring text);

}  // namespace smh
