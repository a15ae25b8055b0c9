#include "hosts/common/trust_word.h"

#include "hosts/common/texts/start_texts.h"

#include <iterator>

namespace smh {

namespace {

// By SignatureState.
constexpr std::wstring_view kSignatureNames[] = {L"valid",      L"catalogue", L"none",
                                                 L"broken",     L"untrusted", L"expired",
                                                 L"distrusted", L"offline",   L"unreadable"};
static_assert(std::size(kSignatureNames) == kSignatureUnreadable + 1);
static_assert(std::size(texts::kSignatures) == kSignatureUnreadable + 1);

std::size_t IndexOf(std::int32_t state) noexcept {
  const bool isKnown = state >= 0 && state < kSignatureUnreadable;
  return static_cast<std::size_t>(isKnown ? state : kSignatureUnreadable);
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

const Text& TrustWordText(TrustWord word) noexcept {
  return texts::kTrustWords[static_cast<std::size_t>(word)];
}

const Text& RatingText(std::int32_t rating) noexcept {
  const bool isKnown = rating == kRatingTrusted || rating == kRatingRisky;
  return texts::kRatingWords[isKnown ? rating : kRatingUnknown];
}

std::wstring_view SignatureName(std::int32_t state) noexcept {
  return kSignatureNames[IndexOf(state)];
}

std::wstring SignatureText(std::int32_t state, std::wstring_view signer) {
  const texts::SignatureTexts& row = texts::kSignatures[IndexOf(state)];
  return signer.empty() ? row.plain.Get() : Format(row.by, signer);
}

}  // namespace smh
