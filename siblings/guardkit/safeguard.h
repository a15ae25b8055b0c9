// The backup service: checkpoints, file changes, and the way to registry changes. intf_safeguard.h has the
// contract.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_safeguard.h"

namespace smh {

// Without state of its own, for any thread: checkpoints are kept by thread, see checkpoints.h. No exception
// leaves a slot: it becomes a Win32 status. Paths are completed by the current folder.
class Safeguard final : public ServiceObject<ISafeguard> {
 public:
  // `regAccess` is the module's object and lives as long.
  explicit constexpr Safeguard(IRegAccess& regAccess) noexcept : regAccess_(regAccess) {}

  HRESULT STDMETHODCALLTYPE GetRegAccess(IRegAccess** access) override;
  LSTATUS STDMETHODCALLTYPE BeginCheckpoint(const wchar_t* title) override;
  // ERROR_INVALID_FUNCTION when no checkpoint is open.
  LSTATUS STDMETHODCALLTYPE EndCheckpoint() override;
  LSTATUS STDMETHODCALLTYPE MoveRecordedFile(const wchar_t* from, const wchar_t* to) override;
  LSTATUS STDMETHODCALLTYPE DeleteRecordedFile(const wchar_t* file) override;
  LSTATUS STDMETHODCALLTYPE CopyRecordedFile(const wchar_t* from, const wchar_t* to, BOOL overwrite) override;
  LSTATUS STDMETHODCALLTYPE FailCheckpoint() override;
  LSTATUS STDMETHODCALLTYPE SetChangeCheck(IChangeCheck* check) override;
  LSTATUS STDMETHODCALLTYPE SetSource(HKEY key, const wchar_t* name, const wchar_t* path) override;

 private:
  IRegAccess& regAccess_;
};

}  // namespace smh
