// The journal's texts as people read them: it is written in English. Any thread.
#pragma once

#include "hosts/common/journal.h"
#include "hosts/common/text.h"

#include <string>
#include <string_view>

namespace smh {

// The title of an action or a part. One that no host and no library writes stands as it is.
std::wstring TitleText(std::wstring_view title);
// The same without the library's name in front: "Disabling Inkwell" for "Startup Manager: Disabling Inkwell".
std::wstring ShownTitle(std::wstring_view title);
// A step of UndoRecord.
std::wstring ShownStep(std::wstring_view text);
// What CheckpointStateName and StepOutcomeName tell programs.
const Text& CheckpointStateText(CheckpointState state) noexcept;
const Text& StepOutcomeText(StepOutcome outcome) noexcept;

}  // namespace smh
