#include "core/contracts/uDllGlobals.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/handle.h"

namespace smh {

namespace DLLGlobals {

namespace {

// A string resource longer than this is cut.
constexpr int kIndirectStringUnits = 260;

}  // namespace

bool UseBackupCheckpoints() {
  ComPtr<IApplicationSettings> settings;
  // Without an answer changes are recorded: an undo too many does no harm.
  if (FAILED(Settings().GetApplicationSettings(settings.Put())) || !settings) return true;
  return settings->GetUseCheckpoints(kHostFileName) != FALSE;
}

std::wstring LoadStringResource(const std::wstring& file, std::int32_t number) {
  const ScopedModule module(LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  if (!module) return {};
  const auto id = static_cast<std::uint32_t>(number);
  wchar_t buffer[kIndirectStringUnits];
  const int length = LoadStringW(module.Get(), number < 0 ? 0 - id : id, buffer, kIndirectStringUnits);
  return length > 0 ? std::wstring(buffer, static_cast<std::size_t>(length)) : std::wstring();
}

std::wstring LoadIndirectString(std::wstring_view text) {
  if (!text.starts_with(L'@')) return std::wstring(text);
  const std::wstring reference(text.substr(1));
  std::int32_t number = 0;
  const std::wstring file = TakeText(
      [&](BoundaryText* out) { return Helper().SplitIndirectString(reference.c_str(), out, &number); });
  return LoadStringResource(file, number);
}

}  // namespace DLLGlobals

int ShowMessageBox(const std::wstring& text, UINT flags) {
  return ShowMessageBoxOwned(nullptr, text, flags);
}

int ShowMessageBoxOwned(HWND owner, const std::wstring& text, UINT flags) {
  IGlobals& globals = DLLGlobals::Globals();
  std::wstring caption = TakeText([&](BoundaryText* name) { return globals.GetVendorName(name); });
  caption.append(1, L' ');
  caption.append(TakeText([&](BoundaryText* name) { return globals.GetProductName(name); }));
  return MessageBoxW(owner, text.c_str(), caption.c_str(), flags | MB_TOPMOST | MB_TASKMODAL);
}

}  // namespace smh
