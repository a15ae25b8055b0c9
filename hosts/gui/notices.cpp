#include "hosts/gui/notices.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/window_settings.h"

namespace smh {

namespace {

constexpr wchar_t kWelcomeRead[] = L"WelcomeRead";

bool HasUserLocation(const LocationSet& locations) {
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    if (locations[static_cast<std::size_t>(location)] && IsUserLocation(location)) return true;
  }
  return false;
}

}  // namespace

Notices::Notices(const Account& account)
    : account_(account), isWelcomeRead_(!LoadNumbers(kWelcomeRead, 1).empty()) {}

Notice Notices::For(const LocationSet& locations) const {
  if (account_.IsForeign() && HasUserLocation(locations)) {
    return {L"The entries of \u201Cthis user\u201D are those of " + account_.name + L", not of " +
                account_.sessionUser + L", who is logged on.",
            {}};
  }
  if (!isWelcomeRead_) {
    return {
        L"This is what Windows starts by itself: clear the check box of what you do not need, and take any "
        L"change back with Undo.",
        {{CMD_HIDE_NOTICE, L"Got it"}}};
  }
  if (account_.elevated || areRightsRead_) return {};
  return {L"You can change the entries of this user. Those of all users need the rights of an administrator.",
          {{CMD_RESTART_ELEVATED, L"Restart as administrator"}, {CMD_HIDE_NOTICE, L"Hide"}}};
}

void Notices::Hide() {
  if (isWelcomeRead_) {
    areRightsRead_ = true;
  } else {
    isWelcomeRead_ = true;
    SaveNumbers(kWelcomeRead, {1});
  }
}

}  // namespace smh
