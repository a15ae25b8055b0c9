#include "core/module_start.h"

#include "clients/living_collections.h"
#include "core/make_location.h"
#include "core/uStartupManager.h"
#include "effective/system_states.h"
#include "infra/log/crash_report.h"
#include "infra/log/uAxDebug.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/patient_lock.h"
#include "infra/siblings/uInterfacesRoutines.h"
#include "locations/registry/class_watch.h"
#include "locations/registry/keys_above.h"
#include "locations/registry/server_file.h"
#include "model/change_lock.h"
#include "model/checkpoint.h"
#include "model/host_locks.h"
#include "model/image_lists.h"
#include "model/item_details.h"
#include "model/item_list.h"
#include "model/reader_state.h"
#include "model/reading.h"
#include "model/uLocationStartup.h"
#include "shelllink/desktop_folder.h"
#include "sysutil/network_roots.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"
#include "sysutil/windows/uWindowsExt.h"

#include <ole2.h>

namespace smh {

namespace {

// None until it is asked for; its end releases it.
using ManagerReference = ComPtr<IStartupManager>;
constinit ModuleGlobal<ManagerReference> g_manager(L"module_start");

// A stop that enters no lock and frees nothing once a thread was ended where it stood.
template <void (*Stop)() noexcept>
void UnlessBroken(StopMode& mode) noexcept {
  if (mode == StopMode::kUnload) Stop();
}

void ForgetEffectiveStates() noexcept {
  SetEffectiveStates(nullptr);
}

void StartOle() {
  // A host that chose the other threading model already is none of our business, and what it initialised is
  // not ours to undo.
  OleInitialize(nullptr);
}

constexpr ModuleStep kSteps[] = {
    StepOf<g_siblings>(L"sibling libraries"),
    // Left initialised: the thread that unloads the module need not be the one that loaded it.
    {L"OLE", StartOle, nullptr},
    {L"crash reports", RegisterCrashHandler, UnlessBroken<UnregisterCrashHandler>},
    {L"Windows version", nullptr, UnlessBroken<ForgetWinVersionInfo>},
    {L"windows", nullptr, UnlessBroken<ForgetWindowsExt>},
    StepOf<g_networkRoots>(L"network roots"),
    StepOf<g_fileCaches>(L"command lines"),
    StepOf<g_desktopFolder>(L"shell links"),
    StepOf<g_debugMode>(L"debug log"),
    StepOf<g_statisticsLog>(L"statistics log"),
    StepOf<g_versionTexts>(L"version texts"),
    StepOf<g_items>(L"items"),
    StepOf<g_itemIcons>(L"image lists"),
    StepOf<g_idleIconProgram>(L"idle icon program"),
    StepOf<g_nativeClasses>(L"classes"),
    StepOf<g_keysAbove>(L"keys above those watched"),
    StepOf<g_classWatch>(L"watch of classes"),
    StepOf<g_locations>(L"locations"),
    {L"location classes", [] { SetLocationMaker(MakeLocation); }, nullptr},
    StepOf<g_systemStates>(L"system's switches"),
    {L"effective states", [] { SetEffectiveStates(&*g_systemStates); }, UnlessBroken<ForgetEffectiveStates>},
    StepOf<g_checkpointTexts>(L"checkpoint texts"),
    StepOf<g_patientThreads>(L"patient locks"),
    StepOf<g_changeLock>(L"changes"),
    StepOf<g_manager>(L"manager"),
    // Stopped before the manager, whose end takes the list's lock.
    {L"locks of hosts", nullptr, AwaitHostsAtUnload},
    // Stopped before the manager: the reader may hold a lock that the manager's end needs, and wait for the
    // loader's, which is held during an unload, itself.
    StepOf<g_reader, EndReaderAtUnload>(L"reader"),
    // Stopped first, for the same reason as the reader.
    StepOf<g_livingCollections, EndCollectionsAtUnload>(L"default programs"),
};

}  // namespace

std::span<const ModuleStep> ModuleSteps() noexcept {
  return kSteps;
}

IStartupManager* Manager() {
  ManagerReference& manager = *g_manager;
  if (!manager) manager = ManagerReference::Adopt(new TStartupManager());
  return manager.Get();
}

}  // namespace smh
