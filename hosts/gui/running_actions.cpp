#include "hosts/gui/running_actions.h"

#include "hosts/gui/texts/frame_texts.h"

namespace smh {

namespace {

constexpr ULONGLONG kLongAfter = 500;  // milliseconds

}  // namespace

std::wstring WholeText(const RunningAction& action) {
  const ActionTitle& title = action.title;
  return action.CanBeCancelled() ? Format(texts::kActionWhole, title.doing, title.entries) : title.doing;
}

std::wstring ProgressText(const RunningAction& action) {
  const ActionTitle& title = action.title;
  if (!action.CanBeCancelled()) return Format(texts::kActionOngoing, title.doing);
  const std::size_t done = action.progress->Done();
  return action.progress->IsCancelled() ? Format(texts::kActionCancelling, done, title.entries)
                                        : Format(texts::kActionProgress, title.doing, done, title.entries);
}

RunningActions::~RunningActions() {
  for (const RunningAction& action : actions_) action.progress->Cancel();
}

const RunningAction* RunningActions::Long() const noexcept {
  const bool isLong = IsAny() && GetTickCount64() - actions_.front().begun >= kLongAfter;
  return isLong ? &actions_.front() : nullptr;
}

std::wstring RunningActions::WhyNotNow() const {
  const RunningAction* const action = Long();
  if (action == nullptr) return {};
  return Format(action->CanBeCancelled() ? texts::kActionFirstOrCancel : texts::kActionFirst,
                WholeText(*action));
}

void RunningActions::Cancel() {
  if (IsAny() && actions_.front().CanBeCancelled()) actions_.front().progress->Cancel();
}

std::shared_ptr<ActionProgress> RunningActions::Begin(ActionTitle title) {
  auto progress = std::make_shared<ActionProgress>();
  actions_.push_back({std::move(title), GetTickCount64(), progress});
  if (onChange_) onChange_();
  return progress;
}

void RunningActions::End(const std::shared_ptr<ActionProgress>& progress) {
  std::erase_if(actions_, [&](const RunningAction& each) { return each.progress == progress; });
  if (onChange_) onChange_();
}

}  // namespace smh
