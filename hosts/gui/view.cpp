#include "hosts/gui/view.h"

#include "hosts/gui/message_dialog.h"
#include "hosts/gui/texts/action_texts.h"
#include "hosts/gui/window.h"

namespace smh {

namespace {

constexpr std::size_t kMostFailures = 10;

// A dialog of the main window may be what asks.
HWND OwnerOf(const Frame& frame) noexcept {
  return frame.window == nullptr ? nullptr : GetLastActivePopup(frame.window);
}

}  // namespace

void ShowError(const Frame& frame, const std::wstring& text) {
  ShowMessage(OwnerOf(frame), {.title = kProgramTitle, .text = text, .icon = IDI_ERROR, .verb = {}});
}

bool Confirm(const Frame& frame, const std::wstring& question, const std::wstring& verb) {
  return ShowMessage(OwnerOf(frame),
                     {.title = kProgramTitle, .text = question, .icon = IDI_QUESTION, .verb = verb});
}

void ShowOutcome(const Frame& frame, const CountText& done, const OperationReport& report) {
  std::wstring said =
      report.done > 0 ? Format(done.For(report.done), report.done) : texts::kNothingChanged.Get();
  if (report.left > 0) said = Format(texts::kLeftAsTheyWere.For(report.left), report.left, said);
  frame.say(said);
  if (report.failures.empty()) return;
  std::wstring text;
  for (std::size_t i = 0; i < report.failures.size() && i < kMostFailures; ++i) {
    text += report.failures[i] + L"\n";
  }
  if (report.failures.size() > kMostFailures) {
    text += Format(texts::kAndMore, report.failures.size() - kMostFailures);
  }
  ShowError(frame, text);
}

}  // namespace smh
