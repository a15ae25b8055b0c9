// A library with nothing in it: what loading any library costs.

#include <unknwn.h>

extern "C" IUnknown* STDMETHODCALLTYPE GetInstance(const wchar_t*, DWORD) {
  return nullptr;
}
