// How much is kept. The oldest actions go first, each as a whole and never without a row in the dropped list;
// one that was never finished stays until it was undone.
#pragma once

#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/journal_folder.h"

#include <span>
#include <vector>

namespace smh {

struct IndexedAction;

// The limits. Whichever is exceeded lets actions go.
struct Retention {
  std::uint32_t days = 180;
  std::uint64_t bytes = 256u << 20;  // journals and contents together
};

// From the settings of prefkit.dll beside this module, which is loaded if need be; the defaults without it.
// Any thread, without a lock: a library may be loaded.
Retention ReadRetention() noexcept;

// Deletes ended actions that are too old or too much, and the contents that none of the others needs. The
// newest stays, and what somebody undoes. The caller holds the journal's lock. What fails is left for the
// next time.
void LetGoOfOldest(const JournalFolder& folder, const BlobStore& blobs, const Retention& retention) noexcept;

// What LetGoOfOldest would let go of if so many bytes more were recorded, and does not anyway. Raises
// EOSError.
std::vector<IndexedAction> WouldLetGoOf(const JournalFolder& folder, const Retention& retention,
                                        std::uint64_t bytes);

// As IJournal's slot 9, for the owner of the journal's lock; `results` has one place for each of `ids`, which
// get their answers in their order. Raises EOSError when the journal cannot be read or written.
void ForgetActions(const JournalFolder& folder, std::span<const std::uint32_t> ids,
                   std::span<HRESULT> results);

}  // namespace smh
