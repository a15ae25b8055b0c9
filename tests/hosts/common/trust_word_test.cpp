#include "hosts/common/file_trust.h"
#include "hosts/common/trust_word.h"
#include "tests/support/child_process.h"

#include <gtest/gtest.h>

#include <utility>

namespace smh::test {
namespace {

constexpr wchar_t kFamous[] = L"Microsoft Corporation";

// Whatever a file says of itself, and whatever a self-made certificate has for a name: only a signature that
// the system finds valid, by exactly that organisation, verifies it.
TEST(TrustWordTest, NothingButTheRightSignatureVerifies) {
  for (std::int32_t state = -1; state <= kSignatureUnreadable + 1; ++state) {
    const bool isSigned = state == kSignatureValid || state == kSignatureCatalogue;
    const TrustWord signedWord = isSigned ? TrustWord::kVerified : TrustWord::kClaimed;
    EXPECT_EQ(TrustWordOf(kRatingTrusted, state, kFamous, kFamous), signedWord) << state;
    for (const wchar_t* const other :
         {L"", L"microsoft corporation", L"Microsoft Corporation ", L"Somebody"}) {
      EXPECT_EQ(TrustWordOf(kRatingTrusted, state, other, kFamous), TrustWord::kClaimed) << state << other;
      EXPECT_EQ(TrustWordOf(kRatingTrusted, state, kFamous, other), TrustWord::kClaimed) << state << other;
    }
    EXPECT_EQ(TrustWordOf(kRatingTrusted, state, L"", L""), TrustWord::kClaimed);
    EXPECT_EQ(TrustWordOf(kRatingUnknown, state, kFamous, kFamous), TrustWord::kUnknown);
    EXPECT_EQ(TrustWordOf(7, state, kFamous, kFamous), TrustWord::kUnknown);
    EXPECT_EQ(TrustWordOf(kRatingRisky, state, kFamous, kFamous), TrustWord::kRisky);
    const bool isBad = state == kSignatureBroken || state == kSignatureDistrusted;
    EXPECT_EQ(IsAlarming(TrustWord::kUnknown, state), isBad);
    EXPECT_TRUE(IsAlarming(TrustWord::kRisky, state));
    EXPECT_TRUE(NeedsConsent(TrustWord::kClaimed, state));
  }
  EXPECT_FALSE(NeedsConsent(TrustWord::kVerified, kSignatureValid));
  EXPECT_EQ(SignatureText(kSignatureBroken, L"A%B"), L"changed after it was signed by A%B");
  EXPECT_EQ(SignatureText(99, L"X"), L"cannot be checked");
  EXPECT_EQ(SignatureName(-1), L"unreadable");
}

// The file that runs is the one that is asked about, not the program that it is started through.
TEST(FileTrustTest, TheRunningFileCounts) {
  const std::wstring samples = ThisFolder() + L"..\\samples\\drive_c\\";
  const std::wstring system = L"C:\\windows\\system32\\cmd.exe";
  ItemRecord item;
  item.company = kFamous;
  item.rating = kRatingTrusted;
  item.reachability = kFileFound;
  const FileTrust trust;
  const auto words = [&](const std::wstring& described, const std::wstring& through,
                         const std::wstring& served) {
    item.describedFile = described;
    item.startedThrough = through;
    item.servedFile = served;
    const EntryTrust found = trust.Verify(item);
    return std::pair(TrustName(found.word), SignatureName(found.signature));
  };
  using Words = std::pair<std::wstring_view, std::wstring_view>;
  EXPECT_EQ(words(samples + L"Samples\\Temp\\officesync.exe", L"", L""), Words(L"claimed", L"none"));
  EXPECT_EQ(words(samples + L"Program Files\\Fernhill\\fernupdate.exe", L"", L""),
            Words(L"claimed", L"broken"));
  EXPECT_EQ(words(system, system, samples + L"Samples\\plain.exe"), Words(L"unknown", L"none"));
  EXPECT_EQ(words(system, system, samples + L"Samples\\Temp\\scvhost.exe"), Words(L"risky", L"none"));
  EXPECT_EQ(words(system, system, L""), Words(L"unknown", L"unreadable"));
  item.reachability = kFileUnreachable;
  EXPECT_EQ(words(samples + L"Samples\\plain.exe", L"", L""), Words(L"claimed", L"unreadable"));
}

}  // namespace
}  // namespace smh::test
