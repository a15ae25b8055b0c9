#include "hosts/gui/notices.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/frame_texts.h"
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
    return {Format(texts::kForeignNotice, account_.name, account_.sessionUser), {}};
  }
  if (!isWelcomeRead_) {
    return {texts::kWelcomeNotice.Get(), {{CMD_HIDE_NOTICE, texts::kWelcomeRead.Get()}}};
  }
  if (account_.elevated || areRightsRead_) return {};
  return {texts::kRightsNotice.Get(),
          {{CMD_RESTART_ELEVATED, texts::kRestartElevated.Get()}, {CMD_HIDE_NOTICE, texts::kHide.Get()}}};
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
