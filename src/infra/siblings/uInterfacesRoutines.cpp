#include "infra/siblings/uInterfacesRoutines.h"

#include "infra/runtime/critical_section.h"
#include "infra/runtime/format.h"
#include "infra/runtime/import_function.h"
#include "core/contracts/intf_DebugLog.h"
#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/intf_safeguard.h"
#include "core/contracts/intf_settings.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace smh {

namespace {

struct ServiceRow {
  const wchar_t* libraryFile;
  const wchar_t* interfaceId;
  const wchar_t* locator;
};

// In the order of SiblingService.
constexpr std::array<ServiceRow, kSiblingServiceCount> kServices = {{
    {L"basekit.dll", IHelper::kId, L"basekit.dll::Helper"},
    {L"basekit.dll", IGlobals::kId, L"basekit.dll::Globals"},
    {L"basekit.dll", IShellHelper::kId, L"basekit.dll::ShellHelper"},
    {L"basekit.dll", IShellDialogsHelper::kId, L"basekit.dll::ShellDialogsHelper"},
    {L"raterkit.dll", IFileRater::kId, L"raterkit.dll::File Rater"},
    {L"guardkit.dll", ISafeguard::kId, L"guardkit.dll::safeguard"},
    {L"prefkit.dll", ISettings::kId, L"prefkit.dll::Settings"},
    {L"tracekit.dll", IDebugLog::kId, L"tracekit.dll::Debug Log API"},
}};

struct Siblings {
  // Entered after the service cache's lock; under it comes the loader's, and no other.
  CriticalSection lock;
  TLibraryList libraries;
  std::array<InterfaceCache, kSiblingServiceCount> caches;
};

Siblings* g_siblings = nullptr;

using GetInstanceFunction = IUnknown*(STDMETHODCALLTYPE*)(const wchar_t* interfaceId, DWORD param);

}  // namespace

int TLibraryList::IndexOf(std::wstring_view name) const noexcept {
  const auto found =
      std::ranges::find_if(names_, [name](const auto& known) { return SameText(known, name); });
  return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

HMODULE TLibraryList::Load(const std::wstring& name) {
  const HMODULE module = LoadLibraryW(name.c_str());
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
  const HMODULE library = g_siblings->libraries.GetHandle(libraryFile);
  const auto getInstance = ImportFunction<GetInstanceFunction>(library, "GetInstance");
  if (getInstance == nullptr) return nullptr;
  cache.answer = getInstance(interfaceId, param);
  if (cache.answer != nullptr) cache.state = InterfaceCache::State::kAnswered;
  return cache.answer;
}

void CheckInterface(const IUnknown* service, const wchar_t* locator) {
  if (service != nullptr) return;
  const std::wstring text = Format(
      L"An error occurred while loading library %s. \r\n\r\nIt may have been removed. Please reinstall the "
      L"application. If the problem persists, contact technical support.",
      locator);
  MessageBoxW(nullptr, text.c_str(), L"Error", MB_ICONERROR);
  ExitProcess(1);
}

IUnknown* GetSiblingService(SiblingService service) {
  const auto index = static_cast<std::size_t>(service);
  const ServiceRow& row = kServices[index];
  IUnknown* const answer =
      GetLibraryInterface(g_siblings->caches[index], row.libraryFile, row.interfaceId, 0);
  CheckInterface(answer, row.locator);
  return answer;
}

void StartLibraryList() {
  g_siblings = new Siblings;
}

void StopLibraryList() noexcept {
  delete g_siblings;
  g_siblings = nullptr;
}

}  // namespace smh
