// How many checkpoints are kept. The oldest go first; one that was never finished stays until it was undone.
#pragma once

#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/journal_folder.h"

namespace smh {

// The limits. Whichever is exceeded first lets checkpoints go.
struct Retention {
  std::uint32_t checkpoints = 200;
  std::uint64_t bytes = 64u << 20;  // journals and contents together
};

// From the settings of prefkit.dll beside this module, which is loaded if need be; the defaults without it.
// Any thread, without a lock: a library may be loaded.
Retention ReadRetention() noexcept;

// Deletes finished checkpoints and the contents that none of the others needs. The caller holds the journal's
// lock. The newest checkpoint always stays. What fails is left for the next time.
void LetGoOfOldest(const JournalFolder& folder, const BlobStore& blobs, const Retention& retention) noexcept;

}  // namespace smh
