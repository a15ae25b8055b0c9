// The entry point and the one export of raterkit.dll.

#include "siblings/common/module_entry.h"
#include "core/contracts/service_table.h"
#include "siblings/raterkit/file_rater.h"

namespace smh {

namespace {

constinit FileRater fileRater;

constinit const ServiceRow kServices[] = {{IFileRater::kId, &fileRater}};

constexpr ModuleStep kSteps[] = {{L"ratings", StartRatings, [](StopMode&) noexcept { StopRatings(); }}};

}  // namespace

}  // namespace smh

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  return smh::RunModuleEntry(reason, reserved, smh::kSteps);
}

extern "C" void* __stdcall GetInstance(const wchar_t* id, DWORD /*param*/) {
  return smh::FindService(smh::kServices, id);
}
