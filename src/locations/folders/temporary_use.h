// The use of a folder of temporary shortcuts by changes of this and of other processes, and what a change
// that was ended on its way has left there.
#pragma once

#include "infra/runtime/handle.h"

#include <string>

namespace smh {

// A change at work in the folder, for as long as this lives: nobody removes what it makes there. Beginning,
// and only when no other change of any process or session is at work there, it removes the files that it
// finds. So the folder may hold nothing that does not stand elsewhere too: no file that was put aside.
//
// Any thread, without a lock; waits for others that begin at the same moment, at most two seconds, and then
// removes nothing. Never fails: what cannot be removed stays.
class [[nodiscard]] TemporaryUse {
 public:
  // A full path with a trailing backslash. The folder exists.
  explicit TemporaryUse(const std::wstring& folder);
  TemporaryUse(const TemporaryUse&) = delete;
  TemporaryUse& operator=(const TemporaryUse&) = delete;

 private:
  // An object of the system's that lives as long as any change is at work; empty when there can be none.
  ScopedHandle use_;
};

}  // namespace smh
