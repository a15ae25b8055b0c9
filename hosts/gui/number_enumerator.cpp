#include "hosts/gui/number_enumerator.h"

#include <oleauto.h>

#include <algorithm>

namespace smh {

HRESULT STDMETHODCALLTYPE NumberEnumerator::QueryInterface(REFIID wanted, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool isKnown = IsEqualGUID(wanted, IID_IEnumVARIANT) || IsEqualGUID(wanted, IID_IUnknown);
  *object = isKnown ? static_cast<IEnumVARIANT*>(this) : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  Acquire();
  return S_OK;
}

HRESULT STDMETHODCALLTYPE NumberEnumerator::Next(ULONG count, VARIANT* items, ULONG* fetched) {
  if (fetched != nullptr) *fetched = 0;
  if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
  ULONG given = 0;
  while (given < count && next_ < numbers_.size()) {
    VariantInit(&items[given]);
    items[given].vt = VT_I4;
    items[given++].lVal = numbers_[next_++];
  }
  if (fetched != nullptr) *fetched = given;
  return given == count ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE NumberEnumerator::Skip(ULONG count) {
  const std::size_t left = numbers_.size() - next_;
  next_ += std::min<std::size_t>(count, left);
  return count <= left ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE NumberEnumerator::Reset() {
  next_ = 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE NumberEnumerator::Clone(IEnumVARIANT** copy) {
  if (copy == nullptr) return E_POINTER;
  *copy = nullptr;
  try {
    ComPtr<NumberEnumerator> clone = MakeComObject<NumberEnumerator>(numbers_);
    clone->next_ = next_;
    *copy = clone.Detach();
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace smh
