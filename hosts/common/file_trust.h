// The trust in entries, by raterkit's services: who signed the file that really runs, and what an entry is
// called for it.
#pragma once

#include "core/contracts/intf_general.h"
#include "hosts/common/entry_trust.h"
#include "hosts/common/item_record.h"
#include "infra/runtime/handle.h"

#include <string>

namespace smh {

// The file that runs: what the entry's program is told to run, if it only runs another one, else what the
// entry's facts are of. Empty when that cannot be told.
const std::wstring& RunningFile(const ItemRecord& item) noexcept;

// raterkit.dll and basekit.dll, for as long as the object lives. Any thread may ask, several at once.
class FileTrust {
 public:
  // Loads them from this program's folder. Raises HostError.
  FileTrust();

  // Reads the whole file and asks the system, which may take a second, and two for a place on the network
  // that does not answer: not on a window's thread. One that the library found out of reach is not asked for.
  // Raises std::bad_alloc.
  EntryTrust Verify(const ItemRecord& item) const;

 private:
  std::int32_t RatingOf(const std::wstring& name, const std::wstring& company) const;

  ScopedModule raterkit_;
  ScopedModule basekit_;
  IFileTrust& trust_;
  IFileRater& rater_;
  IHelper& helper_;
};

}  // namespace smh
