// The entry point and the one export of basekit.dll.

#include "siblings/basekit/redirected_twin.h"
#include "siblings/basekit/services.h"
#include "siblings/basekit/version_cache.h"
#include "siblings/common/module_entry.h"
#include "core/contracts/service_table.h"

namespace smh {

namespace {

constinit Helper helper;
constinit Globals globals;
constinit ShellHelper shellHelper;
constinit ShellDialogsHelper shellDialogsHelper;

constinit const ServiceRow kServices[] = {
    {IHelper::kId, &helper},
    {IGlobals::kId, &globals},
    {IShellHelper::kId, &shellHelper},
    {IShellDialogsHelper::kId, &shellDialogsHelper},
};

constexpr ModuleStep kSteps[] = {
    {L"folder twins", StartFolderTwins, [](StopMode&) noexcept { StopFolderTwins(); }},
    {L"version cache", StartVersionCache, [](StopMode&) noexcept { StopVersionCache(); }},
};

}  // namespace

}  // namespace smh

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  return smh::RunModuleEntry(reason, reserved, smh::kSteps);
}

extern "C" void* __stdcall GetInstance(const wchar_t* id, DWORD /*param*/) {
  return smh::FindService(smh::kServices, id);
}
