#include "siblings/common/module.h"
#include "siblings/tracekit/debug_log.h"

namespace smh {

namespace {

constinit DebugLog debugLog;

constinit const ServiceRow kServices[] = {{IDebugLog::kId, &debugLog}};

constexpr ModuleStep kSteps[] = {StepOf<g_trace>(L"trace")};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh
