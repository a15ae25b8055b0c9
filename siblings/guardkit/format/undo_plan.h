// What undoing a checkpoint has to do: a comparison of every step with what is found, without any change.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <string_view>

namespace smh {

// What a plan looks at. The reads may raise any std::exception: such a step is blocked. Asked only by the
// functions below, on their thread.
class SystemState {
 public:
  virtual ~SystemState() = default;
  // The state now of a value, a key without its subkeys, and a file; one that does not exist for what is
  // missing.
  virtual ValueState Value(const std::wstring& key, const std::wstring& name) = 0;
  virtual KeyState Key(const std::wstring& key) = 0;
  virtual FileState File(const std::wstring& path) = 0;
  // A form that all spellings of a name have in common, and no other name has: two texts name the same key,
  // value or file when their folded forms are equal.
  virtual std::wstring Folded(std::wstring_view name) = 0;
};

// Whether two states are the same to an undo. Of a key the values count, in any order, and not class and
// rights; of a file its streams, and not times, attributes and rights: these change without anybody's doing.
bool SameContent(const ValueState& a, const ValueState& b);
bool SameContent(const KeyState& a, const KeyState& b);
bool SameContent(const FileState& a, const FileState& b);

// A checksum of what SameContent compares: the same for states that are the same. Raises std::bad_alloc.
std::uint32_t ContentSum(const ValueState& state);
std::uint32_t ContentSum(const KeyState& state);
std::uint32_t ContentSum(const FileState& state);

// What undoing a step would do.
enum class Verdict {
  kUndo,
  // It never happened, or nothing of it is left.
  kNothing,
  // Neither the state that the step left is there, nor, for a step that is not known to be done, the one
  // before it. Or what it left is a copy whose source will not stand: it would be the only one.
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
// will have left, so that a plan may be made before anything is done. Takes time by the count of steps.
// Changes nothing; `system` is borrowed for the call. Raises std::bad_alloc. Any thread.
std::vector<PlannedStep> PlanUndo(const JournalContents& checkpoint, SystemState& system);

// Whether the source of a step stands as it was; true for none. Raises what the reads raise.
bool SourceStands(const StepSource& source, SystemState& system);
// By the steps' numbers, what the undo of each writes a copy of: a source that was removed behind its copy is
// made again while that stands. As PlanUndo otherwise.
std::vector<StepSource> SourcesOfUndo(const std::vector<RecordedStep>& steps, SystemState& system);

// Whether anything of a checkpoint stands, is in conflict or cannot be looked at. A key that it made does not
// count when it holds values: it stays. As PlanUndo otherwise.
bool IsAnythingLeft(const JournalContents& checkpoint, SystemState& system);

}  // namespace smh
