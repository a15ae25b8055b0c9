// The entry point and the one export of guardkit.dll.

#include "siblings/common/module_entry.h"
#include "core/contracts/service_table.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/journal_service.h"
#include "siblings/guardkit/reg_access.h"
#include "siblings/guardkit/safeguard.h"

namespace smh {

namespace {

constinit RegAccess regAccess;
constinit Safeguard safeguard(regAccess);
constinit JournalService journalService;

constinit const ServiceRow kServices[] = {{ISafeguard::kId, &safeguard}, {IJournal::kId, &journalService}};

constexpr ModuleStep kSteps[] = {
    {L"checkpoints", StartCheckpoints, [](StopMode&) noexcept { StopCheckpoints(); }}};

}  // namespace

}  // namespace smh

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  return smh::RunModuleEntry(reason, reserved, smh::kSteps);
}

extern "C" void* __stdcall GetInstance(const wchar_t* id, DWORD /*param*/) {
  return smh::FindService(smh::kServices, id);
}
