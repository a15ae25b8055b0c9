#include "model/change_lock.h"

#include "infra/runtime/critical_section.h"
#include "model/change_refused.h"

namespace smh {

constinit ModuleGlobal<PatientLock> g_changeLock(L"change_lock");

ScopedChange::ScopedChange(DWORD patience) {
  const ScopedRelease released(Items().Lock());
  if (!g_changeLock->EnterWithin(patience)) RaiseChangeUnderWay();
}

ScopedChange::~ScopedChange() {
  g_changeLock->Leave();
}

}  // namespace smh
