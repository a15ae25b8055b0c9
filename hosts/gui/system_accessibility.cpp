#include "hosts/gui/system_accessibility.h"

#include "hosts/gui/system_library.h"
#include "infra/runtime/import_function.h"

#include <oleacc.h>

namespace smh {

namespace {

struct Oleacc {
  LPFNLRESULTFROMOBJECT lresultFromObject = nullptr;
  LPFNCREATESTDACCESSIBLEOBJECT createStdAccessibleObject = nullptr;
};

const Oleacc& System() {
  static const Oleacc oleacc = [] {
    Oleacc functions;
    const HMODULE module = LoadSystemLibrary(L"oleacc.dll").Release();
    functions.lresultFromObject = ImportFunction<LPFNLRESULTFROMOBJECT>(module, "LresultFromObject");
    functions.createStdAccessibleObject =
        ImportFunction<LPFNCREATESTDACCESSIBLEOBJECT>(module, "CreateStdAccessibleObject");
    return functions;
  }();
  return oleacc;
}

}  // namespace

LRESULT AccessibleAnswer(WPARAM wParam, IUnknown* object) {
  if (System().lresultFromObject == nullptr) return 0;
  return System().lresultFromObject(IID_IAccessible, wParam, object);
}

HRESULT SystemObjectOf(HWND window, IDispatch** object) {
  if (System().createStdAccessibleObject == nullptr) return CO_E_DLLNOTFOUND;
  return System().createStdAccessibleObject(window, OBJID_WINDOW, IID_IDispatch,
                                            reinterpret_cast<void**>(object));
}

}  // namespace smh
