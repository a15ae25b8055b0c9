#include "siblings/raterkit/signature.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

// Not in every toolchain's headers.
constexpr HRESULT kMalformedSignature = static_cast<HRESULT>(0x80096011);

struct StateRow {
  HRESULT code;
  SignatureState state;
};

constexpr StateRow kStates[] = {
    {TRUST_E_BAD_DIGEST, kSignatureBroken},
    {TRUST_E_CERT_SIGNATURE, kSignatureBroken},
    {TRUST_E_NO_SIGNER_CERT, kSignatureBroken},
    {TRUST_E_COUNTER_SIGNER, kSignatureBroken},
    {TRUST_E_TIME_STAMP, kSignatureBroken},
    {kMalformedSignature, kSignatureBroken},
    {NTE_BAD_SIGNATURE, kSignatureBroken},
    {CRYPT_E_HASH_VALUE, kSignatureBroken},
    {CERT_E_MALFORMED, kSignatureBroken},
    {CERT_E_UNTRUSTEDROOT, kSignatureUntrusted},
    {CERT_E_UNTRUSTEDTESTROOT, kSignatureUntrusted},
    {CERT_E_UNTRUSTEDCA, kSignatureUntrusted},
    {CERT_E_ISSUERCHAINING, kSignatureUntrusted},
    {CERT_E_WRONG_USAGE, kSignatureUntrusted},
    {CERT_E_PURPOSE, kSignatureUntrusted},
    {CERT_E_ROLE, kSignatureUntrusted},
    {CERT_E_PATHLENCONST, kSignatureUntrusted},
    {CERT_E_CRITICAL, kSignatureUntrusted},
    {CERT_E_INVALID_NAME, kSignatureUntrusted},
    {CERT_E_INVALID_POLICY, kSignatureUntrusted},
    {TRUST_E_BASIC_CONSTRAINTS, kSignatureUntrusted},
    {TRUST_E_SUBJECT_NOT_TRUSTED, kSignatureUntrusted},
    {CERT_E_EXPIRED, kSignatureExpired},
    {CERT_E_VALIDITYPERIODNESTING, kSignatureExpired},
    {TRUST_E_EXPLICIT_DISTRUST, kSignatureDistrusted},
    {CERT_E_REVOKED, kSignatureDistrusted},
    {CRYPT_E_REVOKED, kSignatureDistrusted},
    {CRYPT_E_SECURITY_SETTINGS, kSignatureDistrusted},
    {CERT_E_CHAINING, kSignatureOffline},
    {CERT_E_REVOCATION_FAILURE, kSignatureOffline},
    {CRYPT_E_REVOCATION_OFFLINE, kSignatureOffline},
    {CRYPT_E_NO_REVOCATION_CHECK, kSignatureOffline},
};

}  // namespace

std::wstring TextOf(const Sha256& hash) {
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  std::wstring text;
  text.reserve(2 * hash.size());
  for (const std::byte byte : hash) {
    text += kDigits[std::to_integer<unsigned>(byte) >> 4];
    text += kDigits[std::to_integer<unsigned>(byte) & 15];
  }
  return text;
}

bool IsUnsigned(LONG code) noexcept {
  return code == TRUST_E_NOSIGNATURE || code == TRUST_E_SUBJECT_FORM_UNKNOWN ||
         code == TRUST_E_PROVIDER_UNKNOWN;
}

SignatureState StateOf(LONG code, bool isCatalogue) noexcept {
  if (code == 0) return isCatalogue ? kSignatureCatalogue : kSignatureValid;
  if (IsUnsigned(code)) return kSignatureNone;
  const auto row = std::ranges::find(kStates, code, &StateRow::code);
  return row == std::end(kStates) ? kSignatureUnreadable : row->state;
}

}  // namespace smh
