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
// Raises std::bad_alloc.
VARIANT TextVariant(std::wstring_view text);
VARIANT NumberVariant(std::int32_t number) noexcept;
VARIANT BooleanVariant(bool set) noexcept;
VARIANT SizeVariant(std::int64_t size) noexcept;
// An OLE date.
VARIANT DateVariant(double date) noexcept;

}  // namespace smh
