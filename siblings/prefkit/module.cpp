// The one export of prefkit.dll.

#include "core/contracts/service_table.h"
#include "siblings/prefkit/services.h"

namespace smh {

namespace {

constinit ApplicationSettings applicationSettings;
constinit Settings settings(applicationSettings);

constinit const ServiceRow kServices[] = {{ISettings::kId, &settings}};

}  // namespace

}  // namespace smh

extern "C" void* __stdcall GetInstance(const wchar_t* id, DWORD /*param*/) {
  return smh::FindService(smh::kServices, id);
}
