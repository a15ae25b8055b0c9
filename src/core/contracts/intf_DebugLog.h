// The developer trace of tracekit.dll. Calls are stdcall; slots are numbered after IUnknown's three. Any
// thread may call; every call writes its line before it returns.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// Entries and exits nest by thread and indent the lines between them. A line that cannot be written is a
// failure that callers ignore.
struct IDebugLog : IUnknown {
  static constexpr wchar_t kId[] = L"{F7CF8DA8-ADCC-4d0b-BB10-66552FC851A9}";
  static constexpr wchar_t kLibrary[] = L"tracekit.dll";
  static constexpr wchar_t kLocator[] = L"tracekit.dll::Debug Log API";
  static constexpr GUID iid = {0xF7CF8DA8, 0xADCC, 0x4D0B, {0xBB, 0x10, 0x66, 0x55, 0x2F, 0xC8, 0x51, 0xA9}};

  // 1: `context` names the object (any pointer-sized value); `args` holds `count` NUL-terminated texts, read
  // before this returns.
  virtual HRESULT STDMETHODCALLTYPE EnterMethod(const void* context, const wchar_t* name,
                                                const wchar_t* const* args, std::int32_t count) = 0;
  // 2: ends the method that the thread entered last.
  virtual HRESULT STDMETHODCALLTYPE ExitMethod(const void* context) = 0;
  // 3: a line of its own.
  virtual HRESULT STDMETHODCALLTYPE Message(const wchar_t* text) = 0;
  // 4: 0 switches the output off, any other number on.
  virtual HRESULT STDMETHODCALLTYPE SetEnabled(std::int32_t enabled) = 0;
};

}  // namespace smh
