#include "hosts/gui/entry_words.h"

#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/texts/entry_texts.h"
#include "infra/runtime/text.h"

#include <oleauto.h>

namespace smh {

namespace {

struct ReasonWords {
  std::int32_t flag;
  const Text* behindOn;  // "On, but ..."; null for what the state says in another way
  Text sentence;
};

constexpr ReasonWords kReasons[] = {
    {kReasonDisabled, nullptr, texts::kLiesDisabled},
    {kReasonSwitchedOff, &texts::kSwitchedOff, texts::kWasSwitchedOff},
    {kReasonPolicy, &texts::kByPolicy, texts::kPolicyForbids},
    {kReasonBlocked, &texts::kAsExtension, texts::kIsBlocked},
    {kReasonNotApproved, &texts::kNotApproved, texts::kOnlyApproved},
    {kReasonNotRead, &texts::kNotRead, texts::kLocationNotRead},
    {kReasonOnlyInIEMode, &texts::kOnlyInIEMode, texts::kLoadedInIEMode},
    {kReasonMissing, nullptr, texts::kFileNotThere},
    {kReasonUnreachable, nullptr, texts::kFileDoesNotAnswer},
};

constexpr std::int32_t kOneLoader = kReasonOnlyFor64 | kReasonOnlyFor32;

// The text, and the kind of programs that load it, or the list that starts it, when it is one of the two.
std::wstring WithOnlyLoader(const ItemRecord& item, const std::wstring& text) {
  if (item.starts != kStartsYes) return text;
  const bool isOfLists = IsOfTwoLists(item);
  const std::int32_t loader = item.reasons & kOneLoader;
  if (loader == kReasonOnlyFor64) return Format(isOfLists ? texts::kOnlyFromList32 : texts::kOnlyIn32, text);
  if (loader == kReasonOnlyFor32) return Format(isOfLists ? texts::kOnlyFromList64 : texts::kOnlyIn64, text);
  return text;
}

bool LacksCommand(const ItemRecord& item) noexcept {
  return (item.reasons & kReasonMissing) != 0 && item.command.empty();
}

// "On", and why that does not say all.
std::wstring OnText(const ItemRecord& item) {
  std::wstring on = texts::kOn.Get();
  if (item.starts == kStartsYes) return WithOnlyLoader(item, on);
  for (const ReasonWords& row : kReasons) {
    if ((item.reasons & row.flag) == 0 || row.behindOn == nullptr) continue;
    return Format(item.starts == kStartsNo ? texts::kBut : texts::kPerhaps, on, row.behindOn->Get());
  }
  if (LacksCommand(item)) return Format(texts::kWithoutCommand, on);
  if (item.starts == kStartsUnknown && !IsFileMissing(item) && !IsFileUnreachable(item)) {
    return Format(texts::kStartUncertain, on);
  }
  return on;
}

bool IsRisky(const ItemRecord& item) noexcept {
  return item.trust ? item.trust->word == TrustWord::kRisky : item.rating == kRatingRisky;
}

}  // namespace

bool IsFileMissing(const ItemRecord& item) noexcept {
  return !item.fileFound && !IsFileUnreachable(item) && !item.command.empty();
}

bool IsFileUnreachable(const ItemRecord& item) noexcept {
  return item.reachability == kFileUnreachable;
}

bool IsDanger(const ItemRecord& item) noexcept {
  return item.trust ? IsAlarming(item.trust->word, item.trust->signature) : item.rating == kRatingRisky;
}

bool IsLocked(const ItemRecord& item) noexcept {
  return !item.Can(kActionEnable) && !item.Can(kActionDisable) && !item.Can(kActionDelete);
}

bool CanSwitchOff(const ItemRecord& item) noexcept {
  return item.enabled && item.canSwitch && NeedsSwitch(item, true);
}

bool CanSwitchOn(const ItemRecord& item) noexcept {
  return item.enabled && item.canSwitch && NeedsSwitch(item, false);
}

bool CanEnable(const ItemRecord& item) noexcept {
  return item.Can(kActionEnable) || CanSwitchOn(item);
}

std::wstring StatusText(const ItemRecord& item) {
  std::wstring text = item.enabled ? OnText(item) : std::wstring(texts::kOff.Get());
  if (IsFileMissing(item)) text = Format(texts::kFileMissing, text);
  if (IsFileUnreachable(item)) text = Format(texts::kFileOutOfReach, text);
  if (IsLocked(item)) text = Format(texts::kLocked, text);
  return text;
}

std::wstring StartsAnswerText(const ItemRecord& item) {
  const Text& answer = item.starts == kStartsYes  ? texts::kYes
                       : item.starts == kStartsNo ? texts::kNo
                                                  : texts::kCannotBeTold;
  return WithOnlyLoader(item, answer.Get());
}

std::vector<std::wstring_view> ReasonSentences(const ItemRecord& item) {
  std::vector<std::wstring_view> sentences;
  for (const ReasonWords& row : kReasons) {
    if ((item.reasons & row.flag) == 0) continue;
    const bool isBare = row.flag == kReasonMissing && LacksCommand(item);
    sentences.push_back((isBare ? texts::kHasNoCommand : row.sentence).Get());
  }
  return sentences;
}

std::wstring TrustText(const ItemRecord& item) {
  if (IsRisky(item)) return texts::kRisky.Get();
  if (!item.trust) return texts::kChecking.Get();
  if (item.trust->signature == kSignatureBroken) return texts::kBrokenSignature.Get();
  if (item.trust->signature == kSignatureDistrusted) return texts::kWithdrawnSignature.Get();
  switch (item.trust->word) {
    case TrustWord::kVerified:
      return texts::kVerified.Get();
    case TrustWord::kClaimed:
      return texts::kClaimed.Get();
    default:
      return texts::kUnknown.Get();
  }
}

std::wstring TrustReason(const ItemRecord& item) {
  if (IsRisky(item)) return texts::kListedRisky.Get();
  if (!item.trust) return {};
  switch (item.trust->word) {
    case TrustWord::kVerified:
      return texts::kRatedVerified.Get();
    case TrustWord::kClaimed:
      return texts::kRatedClaimed.Get();
    default:
      return texts::kNotRated.Get();
  }
}

int TrustRank(const ItemRecord& item) noexcept {
  if (IsRisky(item)) return 0;
  if (IsDanger(item)) return 1;
  if (!item.trust) return 4;
  return item.trust->word == TrustWord::kClaimed ? 2 : item.trust->word == TrustWord::kVerified ? 5 : 3;
}

std::int32_t TrustPicture(const ItemRecord& item) noexcept {
  if (IsDanger(item)) return kRatingRisky;
  const bool isVerified = item.trust && item.trust->word == TrustWord::kVerified;
  return isVerified ? kRatingTrusted : kRatingUnknown;
}

std::wstring RunQuestion(const ItemRecord& item, bool elevated) {
  const auto isAsked = elevated ? NeedsConsent : IsAlarming;
  if (!item.trust || !isAsked(item.trust->word, item.trust->signature)) return {};
  const std::wstring& file = item.trust->file.empty() ? item.command : item.trust->file;
  return Format(elevated ? texts::kRunQuestionElevated : texts::kRunQuestion, CaptionText(item),
                TrustText(item), TrustReason(item),
                SignatureText(item.trust->signature, Printable(item.trust->Signer())), Printable(file));
}

std::wstring CaptionText(const ItemRecord& item) {
  if (!item.caption.empty()) return Printable(item.caption);
  return item.root.empty() ? Printable(FileNamePart(item.name)) : texts::kDefaultValue.Get();
}

std::wstring LocalTimeText(const std::optional<double>& date) {
  SYSTEMTIME time;
  if (!date || !VariantTimeToSystemTime(*date, &time)) return {};
  wchar_t day[64] = L"";
  wchar_t clock[64] = L"";
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, day, ARRAYSIZE(day));
  GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &time, nullptr, clock, ARRAYSIZE(clock));
  return std::wstring(day) + L" " + clock;
}

RowTone ToneOfRow(const ItemRecord& item) noexcept {
  if (!item.enabled) return RowTone::kGrey;
  if (IsDanger(item) || IsFileMissing(item)) return RowTone::kRed;
  return item.starts == kStartsNo ? RowTone::kGrey : RowTone::kPlain;
}

}  // namespace smh
