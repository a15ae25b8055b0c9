// What is known of one file's signature, and what the system's answers mean.
#pragma once

#include "core/contracts/intf_FileTrust.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

namespace smh {

using Sha256 = std::array<std::byte, 32>;
// 64 lower-case hexadecimal digits.
std::wstring TextOf(const Sha256& hash);

// The system's answer to one question. The texts are the certificate's, whoever wrote them; a text that holds
// a NUL is empty.
struct SystemAnswer {
  // As WinVerifyTrust answers: 0, or an HRESULT.
  LONG code = 0;
  std::wstring organisation;
  std::wstring commonName;
  // UTC; 0 when it is not known.
  FILETIME signingTime = {};
};

// What that is for a file: of its own signature, or of the catalogue's that lists it. A code that nothing is
// known of is kSignatureUnreadable.
SignatureState StateOf(LONG code, bool isCatalogue) noexcept;
// Whether the code says that the file has no signature of its own, or is of a kind that has none.
bool IsUnsigned(LONG code) noexcept;

struct Signature : SystemAnswer {
  SignatureState state = kSignatureUnreadable;
};

}  // namespace smh
