// The backup service: checkpoints, file changes, and the way to registry changes.
#pragma once

#include "core/contracts/service_object.h"
#include "core/contracts/intf_safeguard.h"

namespace smh {

class Safeguard final : public ServiceObject<ISafeguard> {
 public:
  explicit constexpr Safeguard(IRegAccess& regAccess) noexcept : regAccess_(regAccess) {}

  HRESULT STDMETHODCALLTYPE GetRegAccess(IRegAccess** access) override;
  LSTATUS STDMETHODCALLTYPE BeginCheckpoint(const wchar_t* title) override;
  // ERROR_INVALID_FUNCTION when no checkpoint is open.
  LSTATUS STDMETHODCALLTYPE EndCheckpoint() override;
  LSTATUS STDMETHODCALLTYPE MoveRecordedFile(const wchar_t* from, const wchar_t* to) override;
  LSTATUS STDMETHODCALLTYPE DeleteRecordedFile(const wchar_t* file) override;
  LSTATUS STDMETHODCALLTYPE CopyRecordedFile(const wchar_t* from, const wchar_t* to, BOOL overwrite) override;

 private:
  IRegAccess& regAccess_;
};

}  // namespace smh
