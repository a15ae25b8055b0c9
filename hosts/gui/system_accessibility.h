// The system's part in talking to programs that read the screen. It lies in oleacc.dll, which is loaded when
// it is first needed and stays until the process ends: objects of it may be in the hands of others. Any
// thread. Both raise std::bad_alloc.
#pragma once

#include <windows.h>
#include <oaidl.h>

namespace smh {

// What WM_GETOBJECT with that `wParam` is answered with to hand out an IAccessible; 0 where the library is
// missing.
LRESULT AccessibleAnswer(WPARAM wParam, IUnknown* object);

// The system's own object for a window; CO_E_DLLNOTFOUND where the library is missing.
HRESULT SystemObjectOf(HWND window, IDispatch** object);

}  // namespace smh
