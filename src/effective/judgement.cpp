#include "effective/judgement.h"

#include "effective/start_rows.h"
#include "sysutil/program_file.h"

namespace smh {

namespace {

// What was found out so far.
struct Answer {
  StartsAnswer starts = kStartsYes;
  std::int32_t reasons = 0;

  void No(StartReason reason) noexcept {
    starts = kStartsNo;
    reasons |= reason;
  }
  // A reason that may be one; 0 for none.
  void Untold(std::int32_t reason) noexcept {
    if (starts == kStartsYes) starts = kStartsUnknown;
    reasons |= reason;
  }
};

void JudgeFile(const ItemDetails& details, Answer& answer) {
  if (details.Reachability == kFileUnreachable) {
    answer.Untold(kReasonUnreachable);
  } else if (details.Reachability == kFileMissing) {
    // What opens an address is another program's affair.
    if (IsUrl(details.FilePath)) {
      answer.Untold(0);
    } else {
      answer.No(kReasonMissing);
    }
  } else if (details.Kind == TargetKind::kShortcut && details.FilePath == details.LinkPath) {
    // Nobody knows what it leads to.
    answer.Untold(0);
  }
}

void JudgeReader(const SystemRules& rules, StartedBy by, Answer& answer) {
  if (by == StartedBy::kNobody || (by == StartedBy::kColumns && rules.release >= kVista)) {
    answer.No(kReasonNotRead);
  } else if (by == StartedBy::kSetup || by == StartedBy::kPermissions) {
    answer.Untold(0);
  }
}

}  // namespace

EffectiveState Judge(const SystemRules& rules, const TStartupItem& item) {
  const StartRow row = StartRowOf(item.Location());
  return item.Get([&](const ItemState& state) {
    Answer answer;
    if (!state.isEnabled) answer.No(kReasonDisabled);
    JudgeReader(rules, row.by, answer);
    JudgeFile(state.details, answer);
    EffectiveState judged;
    judged.starts = answer.starts;
    judged.reasons = answer.reasons;
    return judged;
  });
}

}  // namespace smh
