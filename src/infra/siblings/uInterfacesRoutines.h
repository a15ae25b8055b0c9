// Loading of the sibling libraries, and the cached lookup of their services.
//
// Callers reach the services through the module globals, which hold their lock around the first fetch of
// each; the trace and the message box come without it. The list and the answers are therefore kept under one
// lock here as well. It is entered after the globals' lock and before nothing but the loader's.
#pragma once

#include "infra/runtime/ascii_text.h"

#include <windows.h>
#include <unknwn.h>

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The sibling libraries loaded so far, by the names they were asked for. Entries are only appended, and the
// libraries stay loaded until the process ends, so that interfaces handed out stay valid.
class TLibraryList {
 public:
  // Position of a name, ignoring case; -1 when it is not listed.
  int IndexOf(std::wstring_view name) const noexcept;
  // Loads by bare name (the platform's search, the host's folder first). On failure null, and nothing is
  // stored, so that a later call tries again.
  HMODULE Load(const std::wstring& name);
  HMODULE GetHandle(const std::wstring& name);

 private:
  std::vector<std::wstring> names_;
  std::vector<HMODULE> handles_;
};

// The services of the sibling libraries; their files, identifiers and locators are one table.
enum class SiblingService {
  kHelper,
  kGlobals,
  kShellHelper,
  kShellDialogsHelper,
  kFileRater,
  kSafeguard,
  kSettings,
  kDebugLog,
};
inline constexpr std::size_t kSiblingServiceCount = 8;

// One per service: not asked yet, failed (never tried again), or the library's answer, uncounted.
struct InterfaceCache {
  enum class State : unsigned char { kNotAsked, kFailed, kAnswered };
  State state = State::kNotAsked;
  IUnknown* answer = nullptr;
};

// The service `interfaceId` of `libraryFile`, or null. A failing library is tried exactly once per process.
IUnknown* GetLibraryInterface(InterfaceCache& cache, const wchar_t* libraryFile, const wchar_t* interfaceId,
                              DWORD param);
// When `service` is null, shows which library is missing ("basekit.dll::Helper") and ends the process: the
// system cannot run without its siblings.
void CheckInterface(const IUnknown* service, const wchar_t* locator);
// The service, found and checked as above; what the getter of each service returns.
IUnknown* GetSiblingService(SiblingService service);

// Module start-up and shut-down of the library list. Shut-down forgets, it never frees a library.
void StartLibraryList();
void StopLibraryList() noexcept;

}  // namespace smh
