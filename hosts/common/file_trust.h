// The trust in entries, by raterkit's services: who signed the file that really runs, and what an entry is
// called for it.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/trust_word.h"
#include "infra/runtime/handle.h"

#include <windows.h>

#include <cstdint>
#include <string>

namespace smh {

// Texts that are not known are empty.
struct EntryTrust {
  TrustWord word = TrustWord::kUnknown;
  std::int32_t signature = kSignatureUnreadable;  // a SignatureState
  // The file that was asked about: the one that runs. Empty when that cannot be told; nothing is said then.
  std::wstring file;
  std::wstring organisation;
  std::wstring commonName;
  std::wstring sha256;
  FILETIME signingTime = {};  // UTC; 0 when it is not known
};

// The file that runs: what the entry's program is told to run, if it only runs another one, else what the
// entry's facts are of. Empty when that cannot be told.
const std::wstring& RunningFile(const ItemRecord& item) noexcept;

// raterkit.dll, for as long as the object lives. Any thread may ask, several at once.
class FileTrust {
 public:
  // Loads it from this program's folder. Raises HostError.
  FileTrust();

  // Reads the whole file and asks the system, which may take a second, and two for a place on the network
  // that does not answer: not on a window's thread. One that the library found out of reach is not asked for.
  // Raises std::bad_alloc.
  EntryTrust Verify(const ItemRecord& item) const;

 private:
  ScopedModule raterkit_;
  IFileTrust& trust_;
  IFileRater& rater_;
};

}  // namespace smh
