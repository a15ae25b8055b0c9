// What a user asked a host for, as one action of the journal.
#pragma once

#include "hosts/common/journal.h"

#include <string>

namespace smh {

// For a scope of one thread, which makes all changes of the action; scopes do not nest. With checkpoints
// switched off, by the setting that the library asks too, no action is opened.
class [[nodiscard]] ActionScope {
 public:
  // `journal` outlives the scope. `title` is for people ("Deleting 251 entries"); an empty one gives the
  // action the title of its first part. Raises HostError when the thread has an action open.
  ActionScope(const Journal& journal, const std::wstring& title);
  // Ends it; a failure leaves it interrupted.
  ~ActionScope();
  ActionScope(const ActionScope&) = delete;
  ActionScope& operator=(const ActionScope&) = delete;

  // Ends it before the scope does, and answers the action by which an undo takes it back; 0 when nothing was
  // recorded.
  std::uint32_t End() noexcept;

 private:
  const Journal& journal_;
  bool open_ = false;
};

// Whether changes are recorded: the setting that the library asks before each of them. Yes when it cannot be
// read. From any thread.
bool UsesCheckpoints() noexcept;

}  // namespace smh
