// What stood where before each step of a checkpoint, for plans.
#pragma once

#include "siblings/guardkit/format/past_state.h"

#include <memory>
#include <span>

namespace smh {

// Answers whether what is found at a step's place stood there before some step earlier than that one. Reads
// the steps when it is asked first; an answer then takes constant time on average for values and files, and
// time by the steps of that place for keys and moves.
//
// Borrows steps and names. For one thread. Raises std::bad_alloc.
class StepHistory {
 public:
  StepHistory(const std::vector<RecordedStep>& steps, NameNumbers& names);
  ~StepHistory();
  StepHistory(const StepHistory&) = delete;
  StepHistory& operator=(const StepHistory&) = delete;

  bool HasStood(const ValueState& found, std::size_t number, const ValueStep& step);
  bool HasStood(const KeyState& found, std::size_t number, const KeyStep& step);
  bool HasStood(const FileState& found, std::size_t number, const FileStep& step);
  // Both at the same time.
  bool HasStood(const FileState& foundFrom, const FileState& foundTo, std::size_t number,
                const MoveStep& step);

 private:
  struct Index;
  Index& Indexed();
  bool IsAt(const std::wstring& path, const MoveStep& step);

  const std::vector<RecordedStep>& steps_;
  NameNumbers& names_;
  std::unique_ptr<Index> index_;
};

}  // namespace smh
