// What undoing a checkpoint has to do: a comparison of every step with what is found, without any change.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <string_view>

namespace smh {

// What a plan looks at. The reads may raise any std::exception: such a step is blocked. Asked only by
// PlanUndo, on its thread.
class SystemState {
 public:
  virtual ~SystemState() = default;
  // The state now of a value, a key without its subkeys, and a file; one that does not exist for what is
  // missing.
  virtual ValueState Value(const std::wstring& key, const std::wstring& name) = 0;
  virtual KeyState Key(const std::wstring& key) = 0;
  virtual FileState File(const std::wstring& path) = 0;
  // Whether two texts name the same key, value or file.
  virtual bool SameName(std::wstring_view a, std::wstring_view b) = 0;
};

// What undoing a step would do.
enum class Verdict {
  kUndo,
  // It never happened, or nothing of it is left.
  kNothing,
  // Neither the state that the step left is there, nor, for a step without a mark, the one before it.
  kConflict,
  // What is there cannot be looked at: no rights, or a link stands in the way.
  kBlocked,
};

// A step and what undoing it would do.
struct PlannedStep {
  std::size_t number = 0;  // in the checkpoint
  Verdict verdict = Verdict::kNothing;
};

// In the order of undoing: last step first. A step is compared with the state that undoing the later steps
// will have left, so that a plan may be made before anything is done. Changes nothing; `system` is borrowed
// for the call. Raises std::bad_alloc. Any thread.
std::vector<PlannedStep> PlanUndo(const JournalContents& checkpoint, SystemState& system);

}  // namespace smh
