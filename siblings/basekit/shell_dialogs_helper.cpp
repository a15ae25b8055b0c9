#include "siblings/basekit/services.h"

#include <commctrl.h>
#include <shlobj.h>

#include "siblings/basekit/environment.h"
#include "core/contracts/boundary_call.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/scoped_com.h"

namespace smh {

// The classes that the pages of a property sheet are made of.
HRESULT ShellDialogsHelper::Initialize() {
  return GuardedResult([] {
    INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_WIN95_CLASSES};
    if (InitCommonControlsEx(&classes) == FALSE) throw Exception(L"No common controls");
  });
}

// The shell chooses pages by name only, so that `number` has no part here.
HRESULT ShellDialogsHelper::ShowFileDetails(HWND window, const wchar_t* file, const wchar_t* text,
                                            std::int32_t /*number*/) {
  return GuardedResult([&] {
    const std::wstring path = FullPath(file == nullptr ? L"" : file);
    if (!Exists(path)) RaiseLastOSError();
    const ScopedCom com(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    const wchar_t* const page = TextArgument(text).empty() ? nullptr : text;
    if (SHObjectProperties(window, SHOP_FILEPATH, path.c_str(), page) == FALSE) RaiseOSError(ERROR_CANCELLED);
  });
}

}  // namespace smh
