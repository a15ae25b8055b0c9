#include "hosts/gui/entry_words.h"

#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <oleauto.h>

namespace smh {

namespace {

struct ReasonWords {
  std::int32_t flag;
  std::wstring_view behindOn;  // "On, but ..."; empty for what the state says in another way
  std::wstring_view sentence;
};

constexpr ReasonWords kReasons[] = {
    {kReasonDisabled, L"", L"It lies in the place for disabled entries"},
    {kReasonSwitchedOff, L"switched off in Task Manager", L"It was switched off in Task Manager or Settings"},
    {kReasonPolicy, L"blocked by a policy", L"A policy of this machine or user forbids it"},
    {kReasonBlocked, L"blocked as an extension",
     L"It is on the list of blocked extensions, or was switched off as a browser add-on"},
    {kReasonNotApproved, L"not an approved extension",
     L"Only approved extensions are loaded, and it is none"},
    {kReasonNotRead, L"not read by this Windows", L"This Windows does not read its location"},
    {kReasonOnlyInIEMode, L"only in IE mode",
     L"This Windows loads it in the IE mode of another browser only"},
    {kReasonMissing, L"", L"Its file is not there"},
    {kReasonUnreachable, L"", L"Its file is on a share or drive that does not answer now"},
};

constexpr std::int32_t kOneLoader = kReasonOnlyFor64 | kReasonOnlyFor32;

// The kind of programs that load it, or the list that starts it, when it is one of the two; else empty.
std::wstring_view OnlyLoader(const ItemRecord& item) noexcept {
  if (item.starts != kStartsYes) return {};
  const bool isOfLists = IsOfTwoLists(item);
  const std::int32_t loader = item.reasons & kOneLoader;
  if (loader == kReasonOnlyFor64)
    return isOfLists ? L", from the 32-bit list only" : L", in 32-bit programs only";
  if (loader == kReasonOnlyFor32)
    return isOfLists ? L", from the 64-bit list only" : L", in 64-bit programs only";
  return {};
}

bool LacksCommand(const ItemRecord& item) noexcept {
  return (item.reasons & kReasonMissing) != 0 && item.command.empty();
}

// What stands behind "On": why that does not say all.
std::wstring BehindOn(const ItemRecord& item) {
  std::wstring text(OnlyLoader(item));
  if (item.starts == kStartsYes) return text;
  for (const ReasonWords& row : kReasons) {
    if ((item.reasons & row.flag) == 0 || row.behindOn.empty()) continue;
    return text.append(item.starts == kStartsNo ? L", but " : L", perhaps ").append(row.behindOn);
  }
  if (LacksCommand(item)) return L", but without a command";
  if (item.starts == kStartsUnknown && !IsFileMissing(item) && !IsFileUnreachable(item)) {
    text = L", start uncertain";
  }
  return text;
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
  std::wstring text = item.enabled ? L"On" : L"Off";
  if (item.enabled) text += BehindOn(item);
  if (IsFileMissing(item)) text += L", file missing";
  if (IsFileUnreachable(item)) text += L", file out of reach";
  if (IsLocked(item)) text += L", locked";
  return text;
}

std::wstring StartsAnswerText(const ItemRecord& item) {
  std::wstring text = item.starts == kStartsYes  ? L"Yes"
                      : item.starts == kStartsNo ? L"No"
                                                 : L"Cannot be told";
  return text.append(OnlyLoader(item));
}

std::vector<std::wstring_view> ReasonSentences(const ItemRecord& item) {
  std::vector<std::wstring_view> sentences;
  for (const ReasonWords& row : kReasons) {
    if ((item.reasons & row.flag) == 0) continue;
    const bool isBare = row.flag == kReasonMissing && LacksCommand(item);
    sentences.push_back(isBare ? L"It has no command" : row.sentence);
  }
  return sentences;
}

std::wstring TrustText(const ItemRecord& item) {
  if (IsRisky(item)) return L"Risky";
  if (!item.trust) return L"Checking\u2026";
  if (item.trust->signature == kSignatureBroken) return L"Broken signature";
  if (item.trust->signature == kSignatureDistrusted) return L"Withdrawn signature";
  std::wstring text(TrustName(item.trust->word));
  text.front() = static_cast<wchar_t>(text.front() - L'a' + L'A');
  return text;
}

std::wstring TrustReason(const ItemRecord& item) {
  if (IsRisky(item)) return L"listed as risky";
  if (!item.trust) return {};
  switch (item.trust->word) {
    case TrustWord::kVerified:
      return L"rated trusted, and signed by the maker that the rating names";
    case TrustWord::kClaimed:
      return L"rated trusted for its name or company alone, which anybody can write into a file";
    default:
      return L"not rated";
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
  std::wstring text = L"Run \u201C" + CaptionText(item) + L"\u201D";
  text.append(elevated ? L" with the rights of an administrator?\n\n" : L"?\n\n");
  text.append(TrustText(item)).append(L": ").append(TrustReason(item)).append(L"; ");
  text.append(SignatureText(item.trust->signature, Printable(item.trust->Signer()))).append(L".");
  const std::wstring& file = item.trust->file.empty() ? item.command : item.trust->file;
  return text.append(L"\n\n").append(Printable(file));
}

std::wstring CaptionText(const ItemRecord& item) {
  if (!item.caption.empty()) return Printable(item.caption);
  return item.root.empty() ? Printable(FileNamePart(item.name)) : L"(Default)";
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
