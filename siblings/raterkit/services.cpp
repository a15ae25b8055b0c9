#include "siblings/common/module.h"
#include "siblings/raterkit/file_rater.h"

namespace smh {

namespace {

constinit FileRater fileRater;

constinit const ServiceRow kServices[] = {{IFileRater::kId, &fileRater}};

constexpr ModuleStep kSteps[] = {StepOf<g_ratings>(L"ratings")};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh
