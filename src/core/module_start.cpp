#include "core/module_start.h"

#include "clients/living_collections.h"
#include "core/location_classes.h"
#include "core/contracts/uDllGlobals.h"
#include "core/uStartupManager.h"
#include "infra/log/crash_report.h"
#include "infra/log/uAxDebug.h"
#include "infra/siblings/uInterfacesRoutines.h"
#include "infra/log/uStatisticsLog.h"
#include "model/reading.h"
#include "model/uLocationStartup.h"
#include "shelllink/desktop_folder.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"
#include "sysutil/windows/uWindowsExt.h"

#include <ole2.h>

#include <utility>

namespace smh {

namespace {

IStartupManager* g_manager = nullptr;

// A stop that enters no lock and frees nothing once a thread was ended where it stood.
template <void (*Stop)() noexcept>
void UnlessBroken(StopMode& mode) noexcept {
  if (mode == StopMode::kUnload) Stop();
}

void StartNothing() {}

void StopNothing(StopMode&) noexcept {}

void StartOle() {
  // A host that chose the other threading model already is none of our business, and what it initialised is
  // not ours to undo.
  OleInitialize(nullptr);
}

void StartManager() {
  g_manager = nullptr;
}

void ReleaseManager() noexcept {
  if (IStartupManager* const manager = std::exchange(g_manager, nullptr)) manager->Release();
}

// The reader first: it may hold a lock that the manager's end needs, and wait for the loader's, which is held
// during an unload, itself.
void StopReaderAndManager(StopMode& mode) noexcept {
  StopReaderAtUnload(mode);
  UnlessBroken<ReleaseManager>(mode);
}

constexpr ModuleStep kSteps[] = {
    {L"sibling libraries", StartLibraryList, UnlessBroken<StopLibraryList>},
    {L"OLE", StartOle, StopNothing},
    {L"crash reports", RegisterCrashHandler, UnlessBroken<UnregisterCrashHandler>},
    {L"module globals", StartDllGlobals, UnlessBroken<StopDllGlobals>},
    {L"Windows version", StartWinVersionInfo, UnlessBroken<StopWinVersionInfo>},
    {L"windows", StartNothing, UnlessBroken<StopWindowsExt>},
    {L"command lines", StartFileUtils, UnlessBroken<StopFileUtils>},
    {L"shell links", StartShellLink, UnlessBroken<StopShellLink>},
    {L"debug log", StartDebugLog, UnlessBroken<StopDebugLog>},
    {L"statistics log", StartStatisticsLog, UnlessBroken<StopStatisticsLog>},
    {L"items", StartStartupItem, UnlessBroken<StopStartupItem>},
    {L"locations and reader", StartLocations, UnlessBroken<FreeLocations>},
    {L"location classes", RegisterLocationClasses, StopNothing},
    {L"manager", StartManager, StopReaderAndManager},
    // Stopped first, for the same reason as the reader.
    {L"default programs", StartLivingCollections, StopLivingCollectionsAtUnload},
};

}  // namespace

std::span<const ModuleStep> ModuleSteps() noexcept {
  return kSteps;
}

IStartupManager* Manager() {
  if (g_manager == nullptr) g_manager = new TStartupManager();
  return g_manager;
}

}  // namespace smh
