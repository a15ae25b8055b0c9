// What hosts call an entry, from its rating, its signature, and whom the rating wants to have signed. Pure;
// any thread. Texts and names are literals.
#pragma once

#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_FileTrust.h"
#include "hosts/common/text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace smh {

// kVerified alone deserves a green tick.
enum class TrustWord {
  kVerified,  // rated trusted, and validly signed by the very organisation that the rating line names
  kClaimed,   // rated trusted for its name or version record, which anybody can write
  kUnknown,
  kRisky,
};

// `rating` is a FileRating, `state` a SignatureState; what is none of them counts as unknown and unreadable.
// The organisation is the signer's, `signer` the one that the rating line names: they must be the same to the
// letter, and not empty.
TrustWord TrustWordOf(std::int32_t rating, std::int32_t state, std::wstring_view organisation,
                      std::wstring_view signer) noexcept;

// Whether it is shown as a danger: risky, or with a signature that was broken or withdrawn.
bool IsAlarming(TrustWord word, std::int32_t state) noexcept;
// Whether somebody who may change the whole machine is asked before it is started: alarming or claimed.
bool NeedsConsent(TrustWord word, std::int32_t state) noexcept;

// "verified", "claimed", "unknown", "risky": for programs, and for people.
std::wstring_view TrustName(TrustWord word) noexcept;
const Text& TrustWordText(TrustWord word) noexcept;
// For people: of a file that was not verified, by its FileRating.
const Text& RatingText(std::int32_t rating) noexcept;
// "valid", "catalogue", "none", "broken", "untrusted", "expired", "distrusted", "offline", "unreadable".
std::wstring_view SignatureName(std::int32_t state) noexcept;
// A phrase for people: "signed by X". `signer` is the organisation, or the certificate's name without one.
std::wstring SignatureText(std::int32_t state, std::wstring_view signer);

}  // namespace smh
