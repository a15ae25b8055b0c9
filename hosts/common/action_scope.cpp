#include "hosts/common/action_scope.h"

#include "core/contracts/intf_settings.h"
#include "hosts/common/library.h"

#include <utility>

namespace smh {

namespace {

// The name that the library asks the setting for, whatever program it is in.
constexpr wchar_t kSettingsOf[] = L"startupmanager.exe";

}  // namespace

ActionScope::ActionScope(const Journal& journal, const std::wstring& title) : journal_(journal) {
  if (!UsesCheckpoints()) return;
  journal_.BeginAction(title);
  open_ = true;
}

ActionScope::~ActionScope() {
  End();
}

std::uint32_t ActionScope::End() noexcept {
  return std::exchange(open_, false) ? journal_.EndAction() : 0;
}

bool UsesCheckpoints() noexcept {
  try {
    const ScopedModule prefkit = LoadFromOwnFolder(ISettings::kLibrary);
    ComPtr<IApplicationSettings> settings;
    if (FAILED(AskService<ISettings>(prefkit.Get()).GetApplicationSettings(settings.Put()))) return true;
    return !settings || settings->GetUseCheckpoints(kSettingsOf) != FALSE;
  } catch (...) {
    return true;
  }
}

}  // namespace smh
