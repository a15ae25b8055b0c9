// The one export of every library of the product.
#pragma once

#include "infra/runtime/import_function.h"

#include <unknwn.h>

namespace smh {

// What `GetInstance` of a loaded library answers for `id` ("{8-4-4-4-12}"): the interface of that identifier,
// uncounted and borrowed for as long as the library is loaded, or null. Null as well without the export, and
// for no library. `param` is 0 everywhere. From any thread, unless the library says otherwise.
inline IUnknown* ExportedInstance(HMODULE library, const wchar_t* id, DWORD param = 0) {
  using GetInstance = IUnknown*(STDMETHODCALLTYPE*)(const wchar_t* id, DWORD param);
  const auto getInstance = ImportFunction<GetInstance>(library, "GetInstance");
  return getInstance == nullptr ? nullptr : getInstance(id, param);
}

}  // namespace smh
