// The objects behind basekit's services; intf_general.h has their contracts. Any thread may call: none has
// state of its own, see version_cache.h and redirected_twin.h. No exception leaves a slot: it becomes the
// answer. The thread's error info stays as it is.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_general.h"

namespace smh {

// IHelper, over environment.h, version_cache.h and helper_parts.h.
class Helper final : public ServiceObject<IHelper> {
 public:
  HRESULT STDMETHODCALLTYPE GetWindowsFolder(BoundaryText* folder) override;
  HRESULT STDMETHODCALLTYPE GetSystemFolder(BoundaryText* folder) override;
  HRESULT STDMETHODCALLTYPE GetFileNameWithoutExt(const wchar_t* file, BoundaryText* name) override;
  HRESULT STDMETHODCALLTYPE CanonicalizePath(const wchar_t* text, BoundaryText* path) override;
  HRESULT STDMETHODCALLTYPE GetExecutableExtensions(BoundaryText* extensions) override;
  HRESULT STDMETHODCALLTYPE GetBaseFolder(BoundaryText* folder) override;
  HRESULT STDMETHODCALLTYPE GetVersionString(const wchar_t* file, const wchar_t* name,
                                             BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE GetVersionNumber(const wchar_t* file, BoundaryText* version) override;
  HRESULT STDMETHODCALLTYPE FileTimeToDateTime(const FILETIME* time, double* date) override;
  HRESULT STDMETHODCALLTYPE SplitIndirectString(const wchar_t* text, BoundaryText* file,
                                                std::int32_t* number) override;
  HRESULT STDMETHODCALLTYPE ExpandEnvironment(const wchar_t* text, BoundaryText* expanded) override;
  HRESULT STDMETHODCALLTYPE GetCurrentUserText(BoundaryText* text) override;
  BOOL STDMETHODCALLTYPE IsUserAdmin() override;
  HRESULT STDMETHODCALLTYPE GetVersionStrings(const wchar_t* file, const wchar_t* const* names,
                                              std::uint32_t count, BoundaryText* texts) override;
};

// IGlobals, over the names of siblings/common/product.h and this module's own version record.
class Globals final : public ServiceObject<IGlobals> {
 public:
  HRESULT STDMETHODCALLTYPE Reserved1() override;
  HRESULT STDMETHODCALLTYPE GetVendorName(BoundaryText* name) override;
  HRESULT STDMETHODCALLTYPE GetProductName(BoundaryText* name) override;
  HRESULT STDMETHODCALLTYPE GetProductVersion(BoundaryText* version) override;
};

// IShellHelper, over program_part.h and redirected_twin.h.
class ShellHelper final : public ServiceObject<IShellHelper> {
 public:
  HRESULT STDMETHODCALLTYPE GetSpecialFolder(std::int32_t csidl, std::uint32_t flags,
                                             BoundaryText* folder) override;
  HRESULT STDMETHODCALLTYPE GetProgramPart(const wchar_t* command, BoundaryText* program) override;
  HRESULT STDMETHODCALLTYPE ExpandPath(const wchar_t* text, BoundaryText* path) override;
  HRESULT STDMETHODCALLTYPE NormalizeCommand(const wchar_t* text, BoundaryText* command) override;
  HRESULT STDMETHODCALLTYPE GetProgramPartBy(const wchar_t* command, FileProbe probe, void* context,
                                             BoundaryText* program) override;
};

// IShellDialogsHelper. Initializes COM for the calling thread while a call needs it.
class ShellDialogsHelper final : public ServiceObject<IShellDialogsHelper> {
 public:
  HRESULT STDMETHODCALLTYPE Initialize() override;
  HRESULT STDMETHODCALLTYPE ShowFileDetails(HWND window, const wchar_t* file, const wchar_t* text,
                                            std::int32_t number) override;
};

}  // namespace smh
