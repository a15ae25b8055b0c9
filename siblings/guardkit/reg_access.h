// The registry half of the backup service: every change of a key or value is made here. intf_safeguard.h has
// the contract.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_safeguard.h"

namespace smh {

// Without state, for any thread. No exception leaves a slot: it becomes a Win32 status.
class RegAccess final : public ServiceObject<IRegAccess> {
 public:
  LSTATUS STDMETHODCALLTYPE CreateKey(HKEY parent, const wchar_t* subKey, DWORD* disposition, HKEY* key,
                                      DWORD reserved, REGSAM access, DWORD unused1, DWORD unused2,
                                      DWORD unused3) override;
  LSTATUS STDMETHODCALLTYPE OpenKey(HKEY parent, const wchar_t* subKey, HKEY* key, REGSAM access,
                                    DWORD unused) override;
  HRESULT STDMETHODCALLTYPE Reserved3() override;
  // Refuses an empty name too: it would delete the parent itself.
  LSTATUS STDMETHODCALLTYPE DeleteKey(HKEY parent, const wchar_t* subKey, REGSAM viewBits,
                                      DWORD unused) override;
  LSTATUS STDMETHODCALLTYPE SetValue(HKEY key, const wchar_t* name, DWORD size, const void* data, DWORD type,
                                     DWORD unused) override;
  LSTATUS STDMETHODCALLTYPE DeleteValue(HKEY key, const wchar_t* name) override;
  HRESULT STDMETHODCALLTYPE Reserved7() override;
  HRESULT STDMETHODCALLTYPE Reserved8() override;
  HRESULT STDMETHODCALLTYPE Reserved9() override;
  HRESULT STDMETHODCALLTYPE Reserved10() override;
  HRESULT STDMETHODCALLTYPE Reserved11() override;
  LSTATUS STDMETHODCALLTYPE CloseKey(HKEY key) override;
};

}  // namespace smh
