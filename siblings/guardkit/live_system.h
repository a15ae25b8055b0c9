// What an undo compares with: the registry and the files as they are. No link is followed on the way.
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/guardkit/format/system_state.h"
#include "siblings/guardkit/held_path.h"
#include "siblings/guardkit/undo_reach.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace smh {

// The registry and the files as they are, as far as an undo may touch them. Reads raise EOSError for what
// cannot be looked at, and for what is out of reach (ERROR_ACCESS_DENIED).
//
// For one plan or one look, on one thread: a plan asks for thousands of values of few keys, so keys and
// folders stay open, and a key that is asked often is read as a whole; what changes meanwhile may be missed.
class LiveSystem final : public SystemState {
 public:
  // `reach` is borrowed.
  explicit LiveSystem(const UndoReach& reach) : reach_(reach) {}

  ValueState Value(const std::wstring& key, const std::wstring& name) override;
  KeyState Key(const std::wstring& key) override;
  FileState File(const std::wstring& path) override;
  std::wstring Folded(std::wstring_view name) override;

 private:
  struct OpenedKey {
    ScopedKey key;  // empty for a missing one
    unsigned asked = 0;
    // Once it was read as a whole.
    std::optional<std::unordered_map<std::wstring, ValueState>> values = {};
  };
  void RequireReach(const std::wstring& key) const;
  // Valid until the next call.
  OpenedKey& Opened(const std::wstring& place);
  ScopedKey Open(const std::wstring& place, REGSAM access);

  const UndoReach& reach_;
  std::unordered_map<std::wstring, OpenedKey> keys_;
  // None for a missing one.
  std::unordered_map<std::wstring, std::optional<HeldPath>> folders_;
};

}  // namespace smh
