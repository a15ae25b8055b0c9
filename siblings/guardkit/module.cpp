// The entry point and the one export of guardkit.dll.

#include "common/module_entry.h"
#include "common/service_table.h"
#include "guardkit/checkpoints.h"
#include "guardkit/journal_service.h"
#include "guardkit/reg_access.h"
#include "guardkit/safeguard.h"

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
