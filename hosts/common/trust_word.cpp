#include "hosts/common/trust_word.h"

#include <iterator>

namespace smh {

namespace {

// By SignatureState. "%" stands for the signer; without one the second phrase is said.
struct SignatureRow {
  std::wstring_view name;
  std::wstring_view phrase;
  std::wstring_view withoutSigner;
};

constexpr SignatureRow kSignatures[] = {
    {L"valid", L"signed by %", L"signed"},
    {L"catalogue", L"signed by %, in a catalogue of this Windows", L"signed, in a catalogue of this Windows"},
    {L"none", L"not signed", L"not signed"},
    {L"broken", L"changed after it was signed by %", L"changed after it was signed"},
    {L"untrusted", L"signed as %, for which nobody vouches on this machine",
     L"signed, but nobody vouches for it on this machine"},
    {L"expired", L"signed as %, with a certificate that had expired",
     L"signed with a certificate that had expired"},
    {L"distrusted", L"signed as %, with a certificate that was withdrawn",
     L"signed with a certificate that was withdrawn"},
    {L"offline", L"signed as %, which cannot be checked without the network",
     L"signed, which cannot be checked without the network"},
    {L"unreadable", L"cannot be checked", L"cannot be checked"},
};
static_assert(std::size(kSignatures) == kSignatureUnreadable + 1);

const SignatureRow& RowOf(std::int32_t state) noexcept {
  const bool isKnown = state >= 0 && state < kSignatureUnreadable;
  return kSignatures[isKnown ? state : kSignatureUnreadable];
}

}  // namespace

TrustWord TrustWordOf(std::int32_t rating, std::int32_t state, std::wstring_view organisation,
                      std::wstring_view signer) noexcept {
  if (rating == kRatingRisky) return TrustWord::kRisky;
  if (rating != kRatingTrusted) return TrustWord::kUnknown;
  const bool isSigned = state == kSignatureValid || state == kSignatureCatalogue;
  return isSigned && !signer.empty() && organisation == signer ? TrustWord::kVerified : TrustWord::kClaimed;
}

bool IsAlarming(TrustWord word, std::int32_t state) noexcept {
  return word == TrustWord::kRisky || state == kSignatureBroken || state == kSignatureDistrusted;
}

bool NeedsConsent(TrustWord word, std::int32_t state) noexcept {
  return word == TrustWord::kClaimed || IsAlarming(word, state);
}

std::wstring_view TrustName(TrustWord word) noexcept {
  constexpr std::wstring_view kNames[] = {L"verified", L"claimed", L"unknown", L"risky"};
  return kNames[static_cast<std::size_t>(word)];
}

std::wstring_view SignatureName(std::int32_t state) noexcept {
  return RowOf(state).name;
}

std::wstring SignatureText(std::int32_t state, std::wstring_view signer) {
  const SignatureRow& row = RowOf(state);
  std::wstring text(signer.empty() ? row.withoutSigner : row.phrase);
  if (const std::size_t place = text.find(L'%'); !signer.empty() && place != std::wstring::npos)
    text.replace(place, 1, signer);
  return text;
}

}  // namespace smh
