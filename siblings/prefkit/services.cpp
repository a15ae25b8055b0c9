#include "siblings/prefkit/services.h"

#include "siblings/common/module.h"

namespace smh {

namespace {

constinit ApplicationSettings applicationSettings;
constinit Settings settings(applicationSettings);

constinit const ServiceRow kServices[] = {{ISettings::kId, &settings}};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return {};
}

}  // namespace smh
