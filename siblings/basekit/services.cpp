#include "siblings/basekit/services.h"

#include "siblings/basekit/redirected_twin.h"
#include "siblings/basekit/version_cache.h"
#include "siblings/common/module.h"

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

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh
