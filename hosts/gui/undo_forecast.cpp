#include "hosts/gui/undo_forecast.h"

#include "hosts/common/text_encoding.h"
#include "hosts/gui/history_rows.h"

namespace smh {

std::wstring LossText(const UndoForecast& forecast) {
  const std::size_t count = forecast.dropped.size();
  if (count == 0) return {};
  return L"To keep it for undo, " + std::to_wstring(count) +
         (count == 1 ? L" older change" : L" older changes") +
         L" will be dropped and can no longer be undone, up to \u201C" +
         Printable(ShownTitle(forecast.dropped.back().title)) + L"\u201D.";
}

std::wstring DeletionText(const UndoForecast& forecast) {
  if (!forecast.isRecorded) return L"Changes are not recorded now: undo cannot bring back what is deleted.";
  const std::wstring loss = LossText(forecast);
  return L"Undo brings back what was deleted." + (loss.empty() ? loss : L' ' + loss);
}

}  // namespace smh
