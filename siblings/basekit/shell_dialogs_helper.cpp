#include "siblings/basekit/services.h"

#include <commctrl.h>
#include <shlobj.h>

#include "siblings/basekit/environment.h"
#include "core/contracts/guard.h"
#include "infra/runtime/exceptions.h"

namespace smh {

namespace {

// COM for the calling thread, which may have it already, in whichever mode.
class ScopedCom {
 public:
  ScopedCom() noexcept
      : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
  ~ScopedCom() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ScopedCom(const ScopedCom&) = delete;
  ScopedCom& operator=(const ScopedCom&) = delete;

 private:
  HRESULT result_;
};

}  // namespace

// The classes that the pages of a property sheet are made of.
HRESULT ShellDialogsHelper::Initialize() {
  return Guarded([] {
    INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_WIN95_CLASSES};
    if (InitCommonControlsEx(&classes) == FALSE) throw Exception(L"No common controls");
  });
}

// The shell chooses pages by name only, so that `number` has no part here.
HRESULT ShellDialogsHelper::ShowFileDetails(HWND window, const wchar_t* file, const wchar_t* text,
                                            std::int32_t /*number*/) {
  return Guarded([&] {
    const std::wstring path = FullPath(file == nullptr ? L"" : file);
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) RaiseLastOSError();
    const ScopedCom com;
    const wchar_t* const page = TextArgument(text).empty() ? nullptr : text;
    if (SHObjectProperties(window, SHOP_FILEPATH, path.c_str(), page) == FALSE) RaiseOSError(ERROR_CANCELLED);
  });
}

}  // namespace smh
