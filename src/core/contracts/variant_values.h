// Values of properties as variants. The caller owns the variant and clears it. Any thread, no lock; nothing
// here fails but where it is said.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <string>

namespace smh {

// A variant without a value.
inline VARIANT NullVariant() noexcept {
  VARIANT value{};
  value.vt = VT_NULL;
  return value;
}
// VT_BSTR. Raises std::bad_alloc.
VARIANT TextVariant(std::wstring_view text);
// VT_I4.
VARIANT NumberVariant(std::int32_t number) noexcept;
// VT_BOOL.
VARIANT BooleanVariant(bool set) noexcept;
// VT_I8: bytes.
VARIANT SizeVariant(std::int64_t size) noexcept;
// VT_DATE: an OLE date in local time.
VARIANT DateVariant(double date) noexcept;

}  // namespace smh
