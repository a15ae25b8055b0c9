#include "infra/log/uAxDebug.h"

#include "core/contracts/com_object.h"
#include "infra/log/leak_report.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/registry/registry.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "infra/siblings/sibling_file.h"
#include "infra/siblings/uInterfacesRoutines.h"

#include <shellapi.h>

#include <atomic>
#include <new>

namespace smh {

namespace {

constexpr wchar_t kSettingsKey[] = L"Software\\Quillmark\\DebugMode";
constexpr wchar_t kSettingsValue[] = L"DebugMode";
constexpr wchar_t kDebugSwitch[] = L"-debug";

class TNullDebugClient final : public ServiceObject<IDebugLog> {
 public:
  HRESULT STDMETHODCALLTYPE EnterMethod(const void*, const wchar_t*, const wchar_t* const*,
                                        std::int32_t) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ExitMethod(const void*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Message(const wchar_t*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetEnabled(std::int32_t) override { return S_OK; }
};

constinit TNullDebugClient g_nullClient;

bool SwitchedOnByRegistry() {
  TRegistry registry(KEY_READ);
  return registry.OpenKeyReadOnly(kSettingsKey) &&
         registry.DataKind(kSettingsValue) == RegistryDataKind::kInteger &&
         registry.ReadInteger(kSettingsValue) == 1;
}

bool SwitchedOnByArgument() noexcept {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  const bool on = arguments != nullptr && count > 1 && SameText(arguments[1], kDebugSwitch);
  LocalFree(static_cast<void*>(arguments));
  return on;
}

bool IsSwitchedOn() {
  try {
    if (SwitchedOnByRegistry()) return true;
  } catch (const Exception&) {
    // A value that cannot be read switches nothing on.
  }
  return SwitchedOnByArgument();
}

}  // namespace

struct DebugMode {
  DebugMode() : isOn(CheckDebugLibrary() && IsSwitchedOn()) {
    if (isOn) atStart = CountLive();
  }
  ~DebugMode() { ReportLeaks(); }
  DebugMode(const DebugMode&) = delete;
  DebugMode& operator=(const DebugMode&) = delete;

  // The loader's lock is held at an unload, so only a library that is loaded and was used already is told.
  void ReportLeaks() const noexcept {
    IDebugLog* const log = service;
    if (log == nullptr) return;
    try {
      log->Message(LeakReport(atStart, CountLive()).c_str());
    } catch (const std::bad_alloc&) {
      // Without memory there is no report.
    }
  }

  std::atomic<bool> isOn;
  // Borrowed; null until it was asked for.
  std::atomic<IDebugLog*> service{nullptr};
  LiveCounts atStart;
};

constinit ModuleGlobal<DebugMode> g_debugMode(L"uAxDebug");

IDebugLog* DebugLog() {
  if (!IsDebugMode()) return &g_nullClient;
  IDebugLog* const service = SiblingIfThere<IDebugLog>();
  g_debugMode->service = service;
  if (service != nullptr) return service;
  // Of threads that ask at the same time one says so.
  if (g_debugMode->isOn.exchange(false))
    LogFormat(L"No debug log: \"%s\" cannot be had.", IDebugLog::kLocator);
  return &g_nullClient;
}

bool IsDebugMode() {
  return g_debugMode.IsStarted() && g_debugMode->isOn;
}

void ForceDebugMode() {
  g_debugMode->atStart = CountLive();
  g_debugMode->isOn = true;
  DebugLog()->SetEnabled(1);
}

void SetDebugModeSetting(bool on) {
  TRegistry registry;
  if (!registry.OpenKey(kSettingsKey, true)) RaiseLastOSError();
  registry.WriteInteger(kSettingsValue, on ? 1 : 0);
}

bool CheckDebugLibrary() {
  return !FindSibling(IDebugLog::kLibrary).empty();
}

DebugScope::DebugScope(const void* context, const wchar_t* name,
                       std::initializer_list<const wchar_t*> arguments)
    : context_(context) {
  DebugLog()->EnterMethod(context_, name, arguments.begin(), static_cast<std::int32_t>(arguments.size()));
}

DebugScope::~DebugScope() {
  DebugLog()->ExitMethod(context_);
}

}  // namespace smh
