// Properties of the library's items, read through GetProperty. A property of another type counts as absent.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <cstdint>
#include <optional>
#include <string>

namespace smh {

class ScopedVariant {
 public:
  ScopedVariant() { VariantInit(&value_); }
  ~ScopedVariant() { VariantClear(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  VARIANT* Put() noexcept { return &value_; }
  const VARIANT& Get() const noexcept { return value_; }

 private:
  VARIANT value_;
};

// `Item` is IStartupItem or IFavoriteItem.
template <typename Item>
std::wstring TextProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_BSTR) return {};
  const BSTR text = value.Get().bstrVal;
  return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text));
}

template <typename Item>
std::int32_t NumberProperty(Item& item, std::int32_t property, std::int32_t absent) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_I4) return absent;
  return static_cast<std::int32_t>(value.Get().lVal);
}

template <typename Item>
bool FlagProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  return SUCCEEDED(item.GetProperty(property, value.Put())) && value.Get().vt == VT_BOOL &&
         value.Get().boolVal != VARIANT_FALSE;
}

template <typename Item>
std::optional<std::int64_t> SizeProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_I8) return std::nullopt;
  return value.Get().llVal;
}

// Day zero of OLE dates is older than every file: it stands for "no date".
template <typename Item>
std::optional<double> DateProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  if (FAILED(item.GetProperty(property, value.Put())) || value.Get().vt != VT_DATE) return std::nullopt;
  return value.Get().date == 0 ? std::nullopt : std::optional(value.Get().date);
}

}  // namespace smh
