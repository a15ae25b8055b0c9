// What is known of the trust in one entry (file_trust.h asks for it). A value.
#pragma once

#include "hosts/common/trust_word.h"

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

  // Whom the certificate names: the organisation, or the certificate's name without one.
  const std::wstring& Signer() const noexcept { return organisation.empty() ? commonName : organisation; }
};

}  // namespace smh
