#include "hosts/gui/running_actions.h"

namespace smh {

namespace {

constexpr ULONGLONG kLongAfter = 500;  // milliseconds

}  // namespace

std::wstring WholeText(const RunningAction& action) {
  const ActionTitle& title = action.title;
  return action.CanBeCancelled() ? title.doing + L" " + std::to_wstring(title.entries) + L" entries"
                                 : title.doing;
}

std::wstring ProgressText(const RunningAction& action) {
  if (!action.CanBeCancelled()) return action.title.doing + L"\u2026";
  const std::wstring count = std::to_wstring(action.progress->Done()) + L" of " +
                             std::to_wstring(action.title.entries) + L" entries";
  return action.progress->IsCancelled() ? L"Cancelling after " + count : action.title.doing + L" " + count;
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
  return L"Not done: first let \u201C" + WholeText(*action) + L"\u201D end" +
         (action->CanBeCancelled() ? L", or cancel it with Esc." : L".");
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
