// Properties of the library's items, read through GetProperty into values of the caller's. A property of
// another type, or one that cannot be read, counts as absent; nothing is raised but std::bad_alloc. `Item` is
// IStartupItem or IFavoriteItem, and `property` an index of its GetProperty.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <cstdint>
#include <optional>
#include <string>

namespace smh {

// Owns a VARIANT and clears it.
class ScopedVariant {
 public:
  ScopedVariant() { VariantInit(&value_); }
  ~ScopedVariant() { VariantClear(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  // The place for an out argument. It is not cleared before: one call for each object.
  VARIANT* Put() noexcept { return &value_; }
  const VARIANT& Get() const noexcept { return value_; }

 private:
  VARIANT value_;
};

// A text, with NULs inside if it has any; empty when absent.
template <typename Item>
std::wstring TextProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_BSTR) return {};
  const BSTR text = value.Get().bstrVal;
  return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text));
}

// A 32-bit number; `absent` when absent.
template <typename Item>
std::int32_t NumberProperty(Item& item, std::int32_t property, std::int32_t absent) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_I4) return absent;
  return static_cast<std::int32_t>(value.Get().lVal);
}

// A truth value; false when absent.
template <typename Item>
bool FlagProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  return SUCCEEDED(item.GetProperty(property, value.Put())) && value.Get().vt == VT_BOOL &&
         value.Get().boolVal != VARIANT_FALSE;
}

// A size in bytes.
template <typename Item>
std::optional<std::int64_t> SizeProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_I8) return std::nullopt;
  return value.Get().llVal;
}

// An OLE date in local time. Day zero is older than every file: it stands for "no date".
template <typename Item>
std::optional<double> DateProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_DATE) return std::nullopt;
  return value.Get().date == 0 ? std::nullopt : std::optional(value.Get().date);
}

}  // namespace smh
