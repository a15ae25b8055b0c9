// The account that the process runs under.
#pragma once

#include <string>

namespace smh {

// "DOMAIN\user", or the user's name alone when the domain is not known.
std::wstring CurrentUserText();
// Whether the process has the rights of the administrators' group now: false for an administrator without
// elevation.
bool IsAdministrator() noexcept;

}  // namespace smh
