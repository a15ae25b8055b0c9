#include "clients/living_collections.h"

#include "infra/runtime/critical_section.h"

#include <utility>
#include <vector>

namespace smh {

namespace {

struct Living {
  // Guards the list. Taken alone.
  CriticalSection lock;
  std::vector<LivingCollection*> collections;
};

Living* g_living = nullptr;

}  // namespace

LivingCollection::LivingCollection() {
  ScopedLock lock(g_living->lock);
  g_living->collections.push_back(this);
}

LivingCollection::~LivingCollection() {
  ScopedLock lock(g_living->lock);
  std::erase(g_living->collections, this);
}

void StartLivingCollections() {
  g_living = new Living();
}

void StopLivingCollectionsAtUnload(StopMode& mode) noexcept {
  // Held by a thread that is making or ending a collection: it would never get to run again.
  if (!g_living->lock.TryEnter()) {
    mode = StopMode::kUnloadBroken;
    return;
  }
  const std::vector<LivingCollection*> collections = std::exchange(g_living->collections, {});
  g_living->lock.Leave();
  const DWORD since = GetTickCount();
  for (LivingCollection* const collection : collections) collection->Reader().AskToPark();
  for (LivingCollection* const collection : collections) {
    if (!collection->Reader().EndParked(since)) mode = StopMode::kUnloadBroken;
  }
  if (mode != StopMode::kUnload) return;
  for (LivingCollection* const collection : collections) collection->Destroy();
  delete std::exchange(g_living, nullptr);
}

}  // namespace smh
