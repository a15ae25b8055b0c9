// In a file of its own, so that its callers cannot see through the calls.
#include "benchmarks/minimal_item.h"

#include <oleauto.h>

#include <utility>

namespace smh::bench {

namespace {

CRITICAL_SECTION listLock;
CRITICAL_SECTION itemLock;
std::wstring itemText;

class Item final : public MinimalItem {
 public:
  HRESULT STDMETHODCALLTYPE GetText(VARIANT* text) override {
    EnterCriticalSection(&itemLock);
    text->vt = VT_BSTR;
    text->bstrVal = SysAllocStringLen(itemText.data(), static_cast<UINT>(itemText.size()));
    LeaveCriticalSection(&itemLock);
    return S_OK;
  }
  void STDMETHODCALLTYPE Free() override { delete this; }

 private:
  char rest_[28] = {};
};
static_assert(sizeof(Item) == 32);

class List final : public MinimalList {
 public:
  MinimalItem* STDMETHODCALLTYPE Make() override {
    EnterCriticalSection(&listLock);
    auto* const item = new Item;
    LeaveCriticalSection(&listLock);
    return item;
  }
};

}  // namespace

MinimalList& MakeMinimalList(std::wstring text) {
  static List list;
  InitializeCriticalSection(&listLock);
  InitializeCriticalSection(&itemLock);
  itemText = std::move(text);
  return list;
}

}  // namespace smh::bench
