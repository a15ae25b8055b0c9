// Loading of the sibling libraries, and the module's one cache of their services.
//
// The interface of a service says where it comes from, in its own header: `kId` is its identifier as text,
// `kLibrary` the file of its library, `kLocator` what people are told when it cannot be had.
#pragma once

#include "infra/runtime/ascii_text.h"
#include "infra/runtime/module_global.h"

#include <windows.h>
#include <unknwn.h>

#include <atomic>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// The sibling libraries loaded so far, by the names they were asked for. Entries are only appended, and the
// libraries stay loaded until the process ends, so that interfaces handed out stay valid. Has no lock of its
// own: one thread at a time.
class TLibraryList {
 public:
  // Position of a name, ignoring case; -1 when it is not listed.
  int IndexOf(std::wstring_view name) const noexcept;
  // Loads by full path, see LoadSibling. The handle stays the list's. On failure null, and nothing is stored,
  // so that a later call tries again. Raises std::bad_alloc.
  HMODULE Load(const std::wstring& name);
  // The listed handle, else what Load answers.
  HMODULE GetHandle(const std::wstring& name);

 private:
  std::vector<std::wstring> names_;
  std::vector<HMODULE> handles_;
};

// What is known of one service: not asked yet, failed (never tried again), or the library's answer,
// uncounted. Read and written under the lock of the siblings only.
struct InterfaceCache {
  enum class State : unsigned char { kNotAsked, kFailed, kAnswered };
  State state = State::kNotAsked;
  IUnknown* answer = nullptr;
};

// The service `interfaceId` of `libraryFile`, uncounted, or null. A failing library is tried exactly once for
// a cache, whatever it failed with. From any thread between start and stop of the siblings; enters their
// lock. Raises EAssertionFailed at another time, and std::bad_alloc.
IUnknown* GetLibraryInterface(InterfaceCache& cache, const wchar_t* libraryFile, const wchar_t* interfaceId,
                              DWORD param);
// When `service` is null, says which library is missing ("basekit.dll::Helper") and ends the process, see
// EndForMissingSibling: the system cannot run without its siblings.
void CheckInterface(const IUnknown* service, const wchar_t* locator);

// The cache of one service. Constant-initialised and trivially destroyed; the stop of the siblings empties
// every one that was asked.
class SiblingCache {
 public:
  using Initialise = void (*)(IUnknown& service);

  // The texts must live as long as the module.
  constexpr SiblingCache(const wchar_t* libraryFile, const wchar_t* interfaceId, const wchar_t* locator,
                         Initialise initialise) noexcept
      : libraryFile_(libraryFile), interfaceId_(interfaceId), locator_(locator), initialise_(initialise) {}
  SiblingCache(const SiblingCache&) = delete;
  SiblingCache& operator=(const SiblingCache&) = delete;

  // See Sibling.
  IUnknown& Get() {
    if (IUnknown* const service = service_.load(std::memory_order_acquire)) return *service;
    return *Fetch(true);
  }
  // See SiblingIfThere.
  IUnknown* Find() {
    IUnknown* const service = service_.load(std::memory_order_acquire);
    return service != nullptr ? service : Fetch(false);
  }

 private:
  friend struct Siblings;

  // Null only when it is not required.
  IUnknown* Fetch(bool required);
  // Lets go of the reference. Answers the next cache of the list that it leaves.
  SiblingCache* Empty() noexcept;

  const wchar_t* const libraryFile_;
  const wchar_t* const interfaceId_;
  const wchar_t* const locator_;
  const Initialise initialise_;
  InterfaceCache found_;
  SiblingCache* next_ = nullptr;
  // Set last, once the service is referenced and initialised.
  std::atomic<IUnknown*> service_{nullptr};
};

// Calls the operation `Initialize` of a service that has one; what that answers changes nothing.
template <typename Interface>
void InitialiseSibling(IUnknown& service) {
  if constexpr (requires { std::declval<Interface&>().Initialize(); }) {
    static_cast<Interface&>(service).Initialize();
  }
}

template <typename Interface>
inline constinit SiblingCache g_siblingCache(Interface::kLibrary, Interface::kId, Interface::kLocator,
                                             InitialiseSibling<Interface>);

// The service with that interface. The first call loads its library, takes a reference and, when the service
// has an operation `Initialize`, calls that, once; whoever is given the service finds it initialised. Without
// the service the process ends, see CheckInterface. Borrowed, and valid until the stop of the siblings. From
// any thread between their start and stop, but not from DllMain; only first calls enter the siblings' lock,
// and raise EAssertionFailed at another time and std::bad_alloc.
template <typename Interface>
Interface& Sibling() {
  return static_cast<Interface&>(g_siblingCache<Interface>.Get());
}
// The same for a service that the module can do without: null, and no second attempt, when it cannot be had.
template <typename Interface>
Interface* SiblingIfThere() {
  return static_cast<Interface*>(g_siblingCache<Interface>.Find());
}

// The library list and the list of the caches. Its stop releases the references, under the lock; it never
// frees a library.
struct Siblings;
extern ModuleGlobal<Siblings> g_siblings;

}  // namespace smh
