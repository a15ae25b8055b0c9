// The least that asking an item for a text is made of: three virtual calls, an object of 32 bytes, two locks
// that nobody else wants, and a text that the caller frees.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace smh::bench {

struct MinimalItem {
  virtual HRESULT STDMETHODCALLTYPE GetText(VARIANT* text) = 0;
  virtual void STDMETHODCALLTYPE Free() = 0;
};
struct MinimalList {
  virtual MinimalItem* STDMETHODCALLTYPE Make() = 0;
};

// The one list; lives as long as the process.
MinimalList& MakeMinimalList(std::wstring text);

}  // namespace smh::bench
