// What is known of files' signatures, and the asking for it; intf_FileTrust.h has the rules for those who
// ask.
#pragma once

#include "infra/runtime/critical_section.h"
#include "siblings/raterkit/opened_file.h"
#include "siblings/raterkit/signature_file.h"
#include "siblings/raterkit/system_trust.h"

#include <windows.h>

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace smh {

struct TrustedFile : Signature {
  // None when the file could not be read.
  std::optional<Sha256> hash;
};

// Any thread, several at once; a second question for a file that is being verified verifies it, too.
class TrustStore {
 public:
  // How many files are known at once, and for how long.
  static constexpr std::size_t kMostFiles = 4096;
  static constexpr ULONGLONG kKnownMs = 600'000;

  TrustStore(std::unique_ptr<SystemTrust> system, std::wstring file, std::size_t base)
      : system_(std::move(system)), file_(std::move(file), base) {}

  // Never fails: what cannot be told is kSignatureUnreadable. Waits for a place on the network as
  // network_roots.h says. Raises std::bad_alloc.
  TrustedFile Verify(std::wstring_view path);

 private:
  struct Known {
    TrustedFile file;
    ULONGLONG since = 0;
  };

  TrustedFile VerifyReachable(std::wstring_view path);
  Signature Ask(const OpenedFile& file);
  std::optional<TrustedFile> Recall(const FileKey& key);
  void Remember(const FileKey& key, const TrustedFile& file);

  const std::unique_ptr<SystemTrust> system_;
  SignatureFile file_;
  // A leaf, held for a few assignments: never while a file is looked at.
  CriticalSection lock_;
  std::map<FileKey, Known> known_ SMH_GUARDED_BY(lock_);
  // The oldest first.
  std::deque<FileKey> order_ SMH_GUARDED_BY(lock_);
};

}  // namespace smh
