// What an undo compares with: the registry and the files as they are. No link is followed on the way.
#pragma once

#include "siblings/guardkit/format/undo_plan.h"

#include <string>
#include <string_view>

namespace smh {

// The registry and the files as they are. Reads raise EOSError for what cannot be looked at, and for a key
// that is not `sid`'s own (ERROR_ACCESS_DENIED). Any thread may call.
class LiveSystem final : public SystemState {
 public:
  // `sid` is the user's who undoes.
  explicit LiveSystem(std::wstring sid) : sid_(std::move(sid)) {}

  ValueState Value(const std::wstring& key, const std::wstring& name) override;
  KeyState Key(const std::wstring& key) override;
  FileState File(const std::wstring& path) override;
  bool SameName(std::wstring_view a, std::wstring_view b) override;

 private:
  void RequireOwn(const std::wstring& key) const;

  std::wstring sid_;
};

}  // namespace smh
