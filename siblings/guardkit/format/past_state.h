// The system as it was before some of a checkpoint's steps, for a plan: what undoing those leaves, in front
// of what is really there.
//
// Every operation takes constant time on average, but for those that answer or take a whole key, which take
// time by its values: a plan may have as many steps as a journal holds.
#pragma once

#include "siblings/guardkit/format/system_state.h"

#include <unordered_map>

namespace smh {

// A number for each name, the same for all spellings of one. For one thread. Raises std::bad_alloc.
class NameNumbers {
 public:
  // Borrowed.
  explicit NameNumbers(SystemState& system) : system_(system) {}
  std::size_t Of(const std::wstring& name);
  // Of a value in a key.
  std::uint64_t OfValue(const std::wstring& key, const std::wstring& name);

 private:
  SystemState& system_;
  std::unordered_map<std::wstring, std::size_t> numbers_;
};

// At first the system as it is; GoBefore takes the steps back, last one first. A value is a part of its key.
// Borrows the system, the names, and the steps, which outlive it. Reads raise what the system's do. For one
// thread.
class PastState {
 public:
  PastState(SystemState& system, NameNumbers& names) : system_(system), names_(names) {}

  ValueState Value(const std::wstring& key, const std::wstring& name);
  bool KeyExists(const std::wstring& key);
  KeyState Key(const std::wstring& key);
  FileState File(const std::wstring& path);

  // Back to the moment before a step.
  void GoBefore(const ValueStep& step);
  void GoBefore(const KeyStep& step);
  void GoBefore(const FileStep& step);
  void GoBefore(const MoveStep& step);

 private:
  struct KnownValue {
    const std::wstring* name = nullptr;
    const ValueState* state = nullptr;
  };
  struct KnownKey {
    // As a whole, by name, where that is known; then the values that are known behind it.
    const KeyState* whole = nullptr;
    std::unordered_map<std::size_t, const NamedValue*> wholeValues;
    std::unordered_map<std::size_t, KnownValue> values;
  };
  const KnownKey* Find(const std::wstring& key);

  SystemState& system_;
  NameNumbers& names_;
  std::unordered_map<std::size_t, KnownKey> keys_;
  std::unordered_map<std::size_t, const FileState*> files_;
};

}  // namespace smh
