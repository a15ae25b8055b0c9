#include "hosts/gui/undo_forecast.h"

#include "hosts/common/journal_words.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/history_rows.h"
#include "hosts/gui/texts/status_texts.h"

namespace smh {

std::wstring LossText(const UndoForecast& forecast) {
  const std::size_t count = forecast.dropped.size();
  if (count == 0) return {};
  return Format(texts::kUndoLoss.For(count), count, Printable(ShownTitle(forecast.dropped.back().title)));
}

std::wstring DeletionText(const UndoForecast& forecast) {
  if (!forecast.isRecorded) return texts::kNotRecorded.Get();
  const std::wstring loss = LossText(forecast);
  return texts::kUndoBringsBack.Get() + (loss.empty() ? loss : L' ' + loss);
}

}  // namespace smh
