#include "siblings/common/module.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/journal_service.h"
#include "siblings/guardkit/reg_access.h"
#include "siblings/guardkit/safeguard.h"

namespace smh {

namespace {

constinit RegAccess regAccess;
constinit Safeguard safeguard(regAccess);
constinit JournalService journalService;

constinit const ServiceRow kServices[] = {{ISafeguard::kId, &safeguard}, {IJournal::kId, &journalService}};

constexpr ModuleStep kSteps[] = {StepOf<g_checkpoints>(L"checkpoints")};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh
