#include "core/contracts/variant_values.h"

#include <oleauto.h>

#include <new>

namespace smh {

VARIANT TextVariant(std::wstring_view text) {
  VARIANT value = NullVariant();
  value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (value.bstrVal == nullptr) throw std::bad_alloc();
  value.vt = VT_BSTR;
  return value;
}

VARIANT NumberVariant(std::int32_t number) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

VARIANT BooleanVariant(bool set) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_BOOL;
  value.boolVal = set ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT SizeVariant(std::int64_t size) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_I8;
  value.llVal = size;
  return value;
}

VARIANT DateVariant(double date) noexcept {
  VARIANT value = NullVariant();
  value.vt = VT_DATE;
  value.date = date;
  return value;
}

}  // namespace smh
