// The settings service of prefkit.dll. Calls are stdcall; slots are numbered after IUnknown's three. Every
// question reads the registry anew; any thread may ask. `hostFileName` is the host's file, with or without a
// folder.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// The settings of one host, kept per user. One that cannot be read has its default.
struct IApplicationSettings : IUnknown {
  static constexpr GUID iid = {0xEFD8173C, 0xC76D, 0x4A9A, {0x87, 0xBF, 0x35, 0x9D, 0x2E, 0xD0, 0x8A, 0xFE}};

  // 1: whether changes run inside backup checkpoints: 0 or 1. Kept per user, per host file; 1 when never set.
  virtual BOOL STDMETHODCALLTYPE GetUseCheckpoints(const wchar_t* hostFileName) = 0;
  // 2, 3: for how many days the backup service keeps what was changed, and how much space that may take: at
  // least 1, and 180 and 256 when never set.
  virtual DWORD STDMETHODCALLTYPE GetKeptDays(const wchar_t* hostFileName) = 0;
  virtual DWORD STDMETHODCALLTYPE GetKeptMegabytes(const wchar_t* hostFileName) = 0;
};

// The service itself.
struct ISettings : IUnknown {
  static constexpr wchar_t kId[] = L"{EFD8173C-C76D-4A9A-87BF-359D2ED08AFD}";
  static constexpr wchar_t kLibrary[] = L"prefkit.dll";
  static constexpr wchar_t kLocator[] = L"prefkit.dll::Settings";
  static constexpr GUID iid = {0xEFD8173C, 0xC76D, 0x4A9A, {0x87, 0xBF, 0x35, 0x9D, 0x2E, 0xD0, 0x8A, 0xFD}};

  // 1-3: E_NOTIMPL.
  virtual HRESULT STDMETHODCALLTYPE Reserved1() = 0;
  virtual HRESULT STDMETHODCALLTYPE Reserved2() = 0;
  virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;
  // 4: one reference for the caller.
  virtual HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings** settings) = 0;
};

}  // namespace smh
