#include "locations/registry/run_key_classes.h"

// The key path of a row and its side keys: this system's own, an older name of the same kind, and the places
// of two other tools.
#define SMH_RUN_KEY(path)                                                                                 \
  L"Software\\Microsoft\\Windows\\CurrentVersion\\" path, {                                               \
    L"Software\\Microsoft\\Windows\\CurrentVersion\\" path L"\\Disabled (Startup Manager)",               \
        L"Software\\Microsoft\\Windows\\CurrentVersion\\" path L"\\Disabled (Quillmark Startup Manager)", \
        L"Software\\Microsoft\\Windows\\CurrentVersion\\" path L"\\AutorunsDisabled",                     \
        L"Software\\Microsoft\\Windows\\CurrentVersion\\" path L"-"                                       \
  }

namespace smh {

namespace {

constexpr RunKeyClass kRunKeyClasses[kRunKeyClassCount] = {
    {L"TLocationRegistryUserRun", sulRegistryUserRun, RegistryRoot::kCurrentUser, SMH_RUN_KEY(L"Run")},
    {L"TLocationRegistryUserRunOnce", sulRegistryUserRunOnce, RegistryRoot::kCurrentUser,
     SMH_RUN_KEY(L"RunOnce")},
    {L"TLocationRegistryCommonRun", sulRegistryCommonRun, RegistryRoot::kLocalMachine, SMH_RUN_KEY(L"Run")},
    {L"TLocationRegistryCommonRunOnce", sulRegistryCommonRunOnce, RegistryRoot::kLocalMachine,
     SMH_RUN_KEY(L"RunOnce")},
    {L"TLocationRegistryUserRunOnceSetup", sulRegistryUserRunOnceSetup, RegistryRoot::kCurrentUser,
     SMH_RUN_KEY(L"RunOnce\\Setup")},
    {L"TLocationRegistryCommonRunOnceSetup", sulRegistryCommonRunOnceSetup, RegistryRoot::kLocalMachine,
     SMH_RUN_KEY(L"RunOnce\\Setup")},
    {L"TLocationRegistryCommonRunServices", sulRegistryRunServices, RegistryRoot::kLocalMachine,
     SMH_RUN_KEY(L"RunServices")},
    {L"TLocationRegistryCommonRunServicesOnce", sulRegistryRunServicesOnce, RegistryRoot::kLocalMachine,
     SMH_RUN_KEY(L"RunServicesOnce")},
};

}  // namespace

const RunKeyClass (&RunKeyClasses() noexcept)[kRunKeyClassCount] {
  return kRunKeyClasses;
}

}  // namespace smh
