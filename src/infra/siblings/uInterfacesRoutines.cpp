#include "infra/siblings/uInterfacesRoutines.h"

#include "infra/runtime/critical_section.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "infra/siblings/exported_instance.h"
#include "infra/siblings/missing_sibling.h"
#include "infra/siblings/sibling_file.h"

#include <algorithm>
#include <utility>

namespace smh {

struct Siblings {
  Siblings() = default;
  ~Siblings() {
    const ScopedLock held(lock);
    while (asked != nullptr) asked = asked->Empty();
  }
  Siblings(const Siblings&) = delete;
  Siblings& operator=(const Siblings&) = delete;

  // Guards the caches in the list, too. It may be entered under any other lock of the module.
  // Under it libraries are loaded and services initialised: after it comes the loader's, and none of this
  // module.
  CriticalSection lock;
  TLibraryList libraries SMH_GUARDED_BY(lock);
  // Every cache that was asked, through its `next_`.
  SiblingCache* asked SMH_GUARDED_BY(lock) = nullptr;
};

constinit ModuleGlobal<Siblings> g_siblings(L"uInterfacesRoutines");

int TLibraryList::IndexOf(std::wstring_view name) const noexcept {
  const auto found =
      std::ranges::find_if(names_, [name](const auto& known) { return SameText(known, name); });
  return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

HMODULE TLibraryList::Load(const std::wstring& name) {
  const HMODULE module = LoadSibling(name);
  if (module == nullptr) return nullptr;
  handles_.reserve(handles_.size() + 1);
  names_.push_back(name);
  handles_.push_back(module);
  return module;
}

HMODULE TLibraryList::GetHandle(const std::wstring& name) {
  const int index = IndexOf(name);
  return index >= 0 ? handles_[static_cast<std::size_t>(index)] : Load(name);
}

IUnknown* GetLibraryInterface(InterfaceCache& cache, const wchar_t* libraryFile, const wchar_t* interfaceId,
                              DWORD param) {
  const ScopedLock lock(g_siblings->lock);
  if (cache.state != InterfaceCache::State::kNotAsked) return cache.answer;
  // Marked before the attempt: whatever it meets, there is no second one.
  cache.state = InterfaceCache::State::kFailed;
  cache.answer = ExportedInstance(g_siblings->libraries.GetHandle(libraryFile), interfaceId, param);
  if (cache.answer != nullptr) cache.state = InterfaceCache::State::kAnswered;
  return cache.answer;
}

void CheckInterface(const IUnknown* service, const wchar_t* locator) {
  if (service != nullptr) return;
  EndForMissingSibling(Format(
      L"An error occurred while loading library %s. \r\n\r\nIt may have been removed. Please reinstall the "
      L"application. If the problem persists, contact technical support.",
      locator));
}

IUnknown* SiblingCache::Fetch(bool required) {
  const ScopedLock lock(g_siblings->lock);
  if (IUnknown* const service = service_.load(std::memory_order_relaxed)) return service;
  if (found_.state == InterfaceCache::State::kNotAsked) next_ = std::exchange(g_siblings->asked, this);
  IUnknown* const service = GetLibraryInterface(found_, libraryFile_, interfaceId_, 0);
  if (required) CheckInterface(service, locator_);
  if (service == nullptr) return nullptr;
  service->AddRef();
  initialise_(*service);
  service_.store(service, std::memory_order_release);
  return service;
}

SiblingCache* SiblingCache::Empty() noexcept {
  if (IUnknown* const service = service_.exchange(nullptr)) service->Release();
  found_ = {};
  return std::exchange(next_, nullptr);
}

}  // namespace smh
