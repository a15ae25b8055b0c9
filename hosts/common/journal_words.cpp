#include "hosts/common/journal_words.h"

#include "hosts/common/known_text.h"
#include "hosts/common/texts/title_texts.h"

#include <iterator>

namespace smh {

namespace {

// What the library writes in front.
constexpr std::wstring_view kOwner = L"Startup Manager: ";

template <std::size_t size, typename Value>
const Text& TextAt(const Text (&rows)[size], Value value) noexcept {
  const auto index = static_cast<std::size_t>(value);
  return index < size ? rows[index] : texts::kNotKnown;
}

std::wstring Told(std::wstring_view title, bool withOwner) {
  for (const Text* const row : {&texts::kUndoOf, &texts::kRedoOf}) {
    if (const auto of = ArgumentsIn(*row, title)) return Format(*row, Told(of->front(), withOwner));
  }
  if (!title.starts_with(kOwner)) return Known(texts::kTitles, title).Shown();
  title.remove_prefix(kOwner.size());
  return std::wstring(withOwner ? kOwner : std::wstring_view()) + Known(texts::kTitles, title).Shown();
}

}  // namespace

std::wstring TitleText(std::wstring_view title) {
  return Told(title, true);
}

std::wstring ShownTitle(std::wstring_view title) {
  return Told(title, false);
}

std::wstring ShownStep(std::wstring_view text) {
  const auto only = ArgumentsIn(texts::kOnlyCopy, text);
  const std::wstring step = Known(texts::kUndoSteps, only ? std::wstring_view(only->front()) : text).Shown();
  return only ? Format(texts::kOnlyCopy, step) : step;
}

const Text& CheckpointStateText(CheckpointState state) noexcept {
  return TextAt(texts::kCheckpointStates, state);
}

const Text& StepOutcomeText(StepOutcome outcome) noexcept {
  return TextAt(texts::kStepOutcomes, outcome);
}

}  // namespace smh
