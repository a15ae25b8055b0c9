// The account that the process runs under.
#pragma once

#include <string>

namespace smh {

// "DOMAIN\user" of the calling thread, or the user's name alone when the domain is not known; empty when
// neither is.
std::wstring CurrentUserText();
// Whether the calling thread has the rights of the administrators' group now: false for an administrator
// without elevation, and when that cannot be told.
bool IsAdministrator() noexcept;

}  // namespace smh
