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

// Whether two states are the same to an undo. Of a key the values count, in any order, and not class and
// rights; of a file its streams, and not times, attributes and rights: these change without anybody's doing.
bool SameContent(const ValueState& a, const ValueState& b);
bool SameContent(const KeyState& a, const KeyState& b);
bool SameContent(const FileState& a, const FileState& b);

// What undoing a step would do.
enum class Verdict {
  kUndo,
  // It never happened, or nothing of it is left.
  kNothing,
  // Neither the state that the step left is there, nor, for a step that is not known to be done, the one
  // before it.
  kConflict,
  // What is there cannot be looked at: no rights, or a link stands in the way.
  kBlocked,
};

// A step and what undoing it would do.
struct PlannedStep {
  std::size_t number = 0;  // in the checkpoint
  Verdict verdict = Verdict::kNothing;
};

// A step is known to be done when it is marked so and the checkpoint ended well: a call may have done what it
// answered to have refused, and what did not end well may have been taken back in part.
//
// In the order of undoing: last step first. A step is compared with the state that undoing the later steps
// will have left, so that a plan may be made before anything is done. Changes nothing; `system` is borrowed
// for the call. Raises std::bad_alloc. Any thread.
std::vector<PlannedStep> PlanUndo(const JournalContents& checkpoint, SystemState& system);

// Whether anything of a checkpoint stands, is in conflict or cannot be looked at. A key that it made does not
// count when it holds values: it stays. As PlanUndo otherwise.
bool IsAnythingLeft(const JournalContents& checkpoint, SystemState& system);

}  // namespace smh
