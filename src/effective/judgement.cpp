#include "effective/judgement.h"

#include "effective/start_rows.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"
#include "sysutil/program_file.h"

#include <algorithm>

namespace smh {

namespace {

// What was found out so far.
struct Answer {
  StartsAnswer starts = kStartsYes;
  std::int32_t reasons = 0;
  // Those of which nothing tells whether they hold.
  std::int32_t maybe = 0;

  void No(StartReason reason) noexcept {
    starts = kStartsNo;
    reasons |= reason;
  }
  void Untold() noexcept {
    if (starts == kStartsYes) starts = kStartsUnknown;
  }
  void Take(Told told, StartReason reason) noexcept {
    if (told == Told::kYes) No(reason);
    if (told != Told::kUntold) return;
    Untold();
    maybe |= reason;
  }
  // What is certainly not started does not hang on what cannot be told.
  std::int32_t ReasonsFor(StartsAnswer told) const noexcept {
    return told == kStartsNo ? reasons : reasons | maybe;
  }
};

// One list that has the entry, or programs of one kind, which have a view of their own.
struct Half {
  bool isThere = false;
  SwitchList switches = SwitchList::kNone;
  LoaderView view = LoaderView::k32;
  std::int32_t file = kFileMissing;
  SwitchValue value{};
  Answer answer{};
};

bool IsExtension(StartedBy by) noexcept {
  return by == StartedBy::kExtensions || by == StartedBy::kColumns || by == StartedBy::kPermissions;
}
bool IsAddOn(StartedBy by) noexcept {
  return by == StartedBy::kBrowser || by == StartedBy::kSearch;
}

// Work on one entry, under its lock.
class Judging {
 public:
  Judging(const SystemRules& rules, const TStartupItem& item, const ItemState& state) noexcept
      : rules_(rules),
        row_(StartRowOf(item.Location())),
        root_(SwitchRoot(item.Location())),
        entriesAreKeys_(FamilyOf(LocationRowOf(item.Location())).entriesAreKeys),
        state_(state) {
    FindHalves(item.Twin(), item.TwinFile());
  }

  EffectiveState Judge() noexcept {
    if (!state_.isEnabled) common_.No(kReasonDisabled);
    JudgeReader();
    if (row_.by == StartedBy::kShell) JudgeProgram();
    if (IsAddOn(row_.by)) JudgeAddOn();
    for (Half* half : {&first_, &second_}) {
      if (half->isThere) JudgeHalf(*half);
    }
    return Together();
  }

 private:
  void FindHalves(ItemTwin twin, std::int32_t twinFile) noexcept;
  std::optional<GUID> Class() const noexcept;
  void JudgeReader() noexcept;
  void JudgeFile(Half& half) const noexcept;
  void JudgeProgram() noexcept;
  void JudgeAddOn() noexcept;
  void JudgeHalf(Half& half) const noexcept;
  void JudgeExtension(Half& half) const noexcept;
  bool CanSwitch() const noexcept;
  StartsAnswer Of(const Half& half) const noexcept;
  EffectiveState Together() const noexcept;

  const SystemRules& rules_;
  const StartRow row_;
  const LocationRoot root_;
  const bool entriesAreKeys_;
  const ItemState& state_;
  Answer common_;
  // Where it is read twice, the 64-bit one and the 32-bit one; else the first is all there is.
  bool isViewed_ = false;
  Half first_;
  Half second_;
};

void Judging::FindHalves(ItemTwin twin, std::int32_t twinFile) noexcept {
  const bool isOwnView = state_.address.viewBits == KEY_WOW64_64KEY;
  const bool hasClass = IsExtension(row_.by) || IsAddOn(row_.by);
  isViewed_ =
      rules_.hasViews && state_.address.root != nullptr && (hasClass || row_.switches32 != SwitchList::kNone);
  if (!isViewed_) {
    first_ = {true, row_.switches, LoaderView::k32, state_.details.Reachability};
    return;
  }
  first_ = {isOwnView, row_.switches, LoaderView::k64, state_.details.Reachability};
  // Of two classes of one name each is loaded in its view; of two commands the other one is another entry's.
  const bool isTwin = hasClass ? twin != kTwinNone : twin == kTwinSame;
  const bool hasOwnFile = isOwnView && twinFile != TStartupItem::kTwinsFileIsSame;
  second_ = {!isOwnView || isTwin, row_.switches32, LoaderView::k32,
             hasOwnFile ? twinFile : state_.details.Reachability};
}

std::optional<GUID> Judging::Class() const noexcept {
  const std::wstring_view key = state_.address.key;
  std::optional<GUID> identifier;
  if (entriesAreKeys_) identifier = ClassIn(key.substr(std::min(key.rfind(L'\\') + 1, key.size())));
  return identifier ? identifier : ClassIn(state_.address.valueName);
}

void Judging::JudgeReader() noexcept {
  if (row_.by == StartedBy::kNobody || (row_.by == StartedBy::kColumns && rules_.release >= kVista)) {
    common_.No(kReasonNotRead);
  } else if (row_.by == StartedBy::kSetup || row_.by == StartedBy::kPermissions) {
    common_.Untold();
  }
}

void Judging::JudgeFile(Half& half) const noexcept {
  const ItemDetails& details = state_.details;
  if (half.file == kFileUnreachable) {
    half.answer.Untold();
    half.answer.reasons |= kReasonUnreachable;
  } else if (half.file == kFileMissing) {
    // What opens an address is another program's affair.
    if (IsUrl(details.FilePath)) {
      half.answer.Untold();
    } else {
      half.answer.No(kReasonMissing);
    }
  } else if (details.Kind == TargetKind::kShortcut && details.FilePath == details.LinkPath) {
    // Nobody knows what it leads to.
    half.answer.Untold();
  }
}

void Judging::JudgeProgram() noexcept {
  common_.Take(rules_.policies.IsSet(row_.policy), kReasonPolicy);
  const ItemDetails& details = state_.details;
  const SharedText& program = details.StartedThrough.empty() ? details.FilePath : details.StartedThrough;
  common_.Take(rules_.policies.IsDenied(FileNamePart(program)), kReasonPolicy);
}

void Judging::JudgeAddOn() noexcept {
  if (rules_.release >= kWindows11) common_.No(kReasonOnlyInIEMode);
  const std::optional<GUID> identifier = Class();
  if (!identifier) {
    common_.Untold();
    return;
  }
  const ExtensionRules& rules = rules_.extensions;
  common_.Take(rules.IsForbidden(*identifier), kReasonPolicy);
  common_.Take(rules.IsSwitchedOff(*identifier), kReasonBlocked);
  if (row_.by == StartedBy::kBrowser) common_.Take(rules.AreObjectsOff(), kReasonPolicy);
}

void Judging::JudgeHalf(Half& half) const noexcept {
  JudgeFile(half);
  if (half.switches != SwitchList::kNone && rules_.release >= kWindows8) {
    half.value = rules_.switches.Find(root_, half.switches, SwitchName(state_.name, state_.address));
    half.answer.Take(half.value.isOff, kReasonSwitchedOff);
  }
  if (IsExtension(row_.by)) JudgeExtension(half);
}

void Judging::JudgeExtension(Half& half) const noexcept {
  const std::optional<GUID> identifier = Class();
  if (!identifier) {
    half.answer.Untold();
    return;
  }
  half.answer.Take(rules_.extensions.IsBlocked(*identifier, half.view), kReasonBlocked);
  const Told enforces = rules_.policies.EnforcesApproval();
  if (row_.by == StartedBy::kPermissions || enforces == Told::kNo) return;
  const Told isApproved = rules_.extensions.IsApproved(*identifier, half.view);
  if (isApproved == Told::kYes) return;
  const bool isCertain = enforces == Told::kYes && isApproved == Told::kNo;
  half.answer.Take(isCertain ? Told::kYes : Told::kUntold, kReasonNotApproved);
}

StartsAnswer Judging::Of(const Half& half) const noexcept {
  if (common_.starts == kStartsNo || half.answer.starts == kStartsNo) return kStartsNo;
  return common_.starts == kStartsYes ? half.answer.starts : common_.starts;
}

bool Judging::CanSwitch() const noexcept {
  const auto canSet = [](const Half& half) {
    return !half.isThere || (half.switches != SwitchList::kNone && half.value.isOff != Told::kUntold);
  };
  return state_.isEnabled && rules_.release >= kWindows8 && canSet(first_) && canSet(second_) &&
         rules_.switches.IsWritable(root_) && !HoldsNul(SwitchName(state_.name, state_.address));
}

EffectiveState Judging::Together() const noexcept {
  EffectiveState together;
  together.canSwitch = CanSwitch();
  bool mayStart = false;
  bool isUntold = false;
  for (const Half* half : {&first_, &second_}) {
    if (!half->isThere) continue;
    const StartsAnswer starts = Of(*half);
    mayStart = mayStart || starts == kStartsYes;
    isUntold = isUntold || starts == kStartsUnknown;
    together.reasons |= half->answer.ReasonsFor(starts);
    if (CompareFileTime(&together.switchedOffSince, &half->value.since) < 0) {
      together.switchedOffSince = half->value.since;
    }
    if (isViewed_) (half->view == LoaderView::k64 ? together.starts64 : together.starts32) = starts;
  }
  together.starts = mayStart ? kStartsYes : isUntold ? kStartsUnknown : kStartsNo;
  together.reasons |= common_.ReasonsFor(together.starts);
  if (first_.isThere && second_.isThere) {
    const std::int32_t first = first_.answer.ReasonsFor(Of(first_));
    const std::int32_t second = second_.answer.ReasonsFor(Of(second_));
    if ((first & ~second) != 0) together.reasons |= kReasonOnlyFor64;
    if ((second & ~first) != 0) together.reasons |= kReasonOnlyFor32;
  }
  return together;
}

}  // namespace

LocationRoot SwitchRoot(TTypeStartupLocation location) noexcept {
  return LocationRowOf(location).root;
}

std::wstring_view SwitchName(const SharedText& entryName, const SharedValueAddress& address) noexcept {
  return address.root != nullptr ? std::wstring_view(address.valueName) : FileNamePart(entryName);
}

EffectiveState Judge(const SystemRules& rules, const TStartupItem& item) noexcept {
  if (!rules.isRead) return {};
  return item.Get([&](const ItemState& state) { return Judging(rules, item, state).Judge(); });
}

}  // namespace smh
