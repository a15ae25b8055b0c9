// What planning an undo asks of the system.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <string>
#include <string_view>

namespace smh {

// What a plan looks at. The reads may raise any std::exception: such a step is blocked. Asked on the
// thread that plans.
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

}  // namespace smh
