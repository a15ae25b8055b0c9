#include "clients/living_collections.h"

#include "infra/runtime/critical_section.h"

#include <utility>
#include <vector>

namespace smh {

struct LivingCollections {
  // Taken alone.
  CriticalSection lock;
  std::vector<LivingCollection*> collections SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<LivingCollections> g_livingCollections(L"living_collections");

LivingCollection::LivingCollection() {
  ScopedLock lock(g_livingCollections->lock);
  g_livingCollections->collections.push_back(this);
}

LivingCollection::~LivingCollection() {
  ScopedLock lock(g_livingCollections->lock);
  std::erase(g_livingCollections->collections, this);
}

void EndCollectionsAtUnload(StopMode& mode) noexcept {
  // Held by a thread that is making or ending a collection: it would never get to run again.
  if (!g_livingCollections->lock.TryEnter()) {
    mode = StopMode::kUnloadBroken;
    return;
  }
  const std::vector<LivingCollection*> collections = std::exchange(g_livingCollections->collections, {});
  g_livingCollections->lock.Leave();
  const DWORD since = GetTickCount();
  for (LivingCollection* const collection : collections) collection->Reader().AskToPark();
  for (LivingCollection* const collection : collections) {
    if (!collection->Reader().EndParked(since)) mode = StopMode::kUnloadBroken;
  }
  if (mode != StopMode::kUnload) return;
  for (LivingCollection* const collection : collections) collection->Destroy();
}

}  // namespace smh
