#include "siblings/prefkit/services.h"

#include "core/contracts/boundary_call.h"
#include "infra/runtime/text.h"
#include "siblings/common/module.h"
#include "siblings/common/product.h"

#include <algorithm>
#include <string>

namespace smh {

namespace {

constinit ApplicationSettings applicationSettings;
constinit Settings settings(applicationSettings);

constinit const ServiceRow kServices[] = {{ISettings::kId, &settings}};

// "Software\Quillmark\Startup Manager\Settings\<host file>" of the current user.
std::wstring SettingsKey(std::wstring_view hostFileName) {
  std::wstring key = L"Software";
  for (const std::wstring_view level :
       {kVendorName, kProductName, std::wstring_view(L"Settings"), hostFileName}) {
    key.append(1, L'\\').append(level);
  }
  return key;
}

// A number of the host's settings; `unset` when it is missing or of another type.
DWORD ReadNumber(std::wstring_view hostFileName, const wchar_t* name, DWORD unset) {
  DWORD number = 0;
  DWORD size = sizeof(number);
  const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, SettingsKey(hostFileName).c_str(), name,
                                      RRF_RT_REG_DWORD, nullptr, &number, &size);
  return status == ERROR_SUCCESS && size == sizeof(number) ? number : unset;
}

DWORD ReadLimit(const wchar_t* hostFileName, const wchar_t* name, DWORD unset) noexcept {
  return GuardedValue<DWORD>(unset, [&] {
    const std::wstring_view host = FileNamePart(TextArgument(hostFileName));
    return host.empty() ? unset : std::max<DWORD>(ReadNumber(host, name, unset), 1);
  });
}

}  // namespace

// When nothing can be found out, changes stay undoable.
BOOL ApplicationSettings::GetUseCheckpoints(const wchar_t* hostFileName) {
  return GuardedValue<BOOL>(TRUE, [&]() -> BOOL {
    const std::wstring_view host = FileNamePart(TextArgument(hostFileName));
    return host.empty() || ReadNumber(host, L"UseCheckpoints", TRUE) != 0 ? TRUE : FALSE;
  });
}

DWORD ApplicationSettings::GetKeptDays(const wchar_t* hostFileName) {
  return ReadLimit(hostFileName, L"KeptDays", 180);
}

DWORD ApplicationSettings::GetKeptMegabytes(const wchar_t* hostFileName) {
  return ReadLimit(hostFileName, L"KeptMegabytes", 256);
}

HRESULT Settings::Reserved1() {
  return E_NOTIMPL;
}

HRESULT Settings::Reserved2() {
  return E_NOTIMPL;
}

HRESULT Settings::Reserved3() {
  return E_NOTIMPL;
}

HRESULT Settings::GetApplicationSettings(IApplicationSettings** answer) {
  return AnswerService<IApplicationSettings>(answer, application_);
}

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return {};
}

}  // namespace smh
