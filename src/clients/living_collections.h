// Every collection that lives, so that their readers can be ended when the module is unloaded.
#pragma once

#include "infra/runtime/module_global.h"
#include "model/parkable_thread.h"

namespace smh {

// In the module-wide list from construction to destruction.
class LivingCollection {
 public:
  LivingCollection(const LivingCollection&) = delete;
  LivingCollection& operator=(const LivingCollection&) = delete;

  virtual ParkableThread& Reader() noexcept = 0;
  // Called at unload, its reader ended: no call of the host can reach the collection any more.
  virtual void Destroy() noexcept = 0;

 protected:
  LivingCollection();
  virtual ~LivingCollection();
};

struct LivingCollections;
extern ModuleGlobal<LivingCollections> g_livingCollections;

// At unload, with the loader's lock held: every reader is asked to park, and ended parked. Those that do not
// get there within the time limit, which all share, are ended where they stand, which breaks the mode. In an
// unbroken mode the collections are destroyed.
void EndCollectionsAtUnload(StopMode& mode) noexcept;

}  // namespace smh
