// Properties of the library's items, read through GetProperty into values of the caller's. A property of
// another type, or one that cannot be read, counts as absent; nothing is raised but std::bad_alloc. `Item` is
// IStartupItem or IFavoriteItem, and `property` an index of its GetProperty.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/com_ptr.h"

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

// What a variant holds: a text, with NULs inside if it has any, and a 32-bit number.
inline std::optional<std::wstring> TextIn(const VARIANT& value) {
  if (value.vt != VT_BSTR) return std::nullopt;
  const BSTR text = value.bstrVal;
  return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text));
}
inline std::optional<std::int32_t> NumberIn(const VARIANT& value) {
  return value.vt == VT_I4 ? std::optional(static_cast<std::int32_t>(value.lVal)) : std::nullopt;
}

// A text; empty when absent.
template <typename Item>
std::wstring TextProperty(Item& item, std::int32_t property) {
  ScopedVariant value;
  return FAILED(item.GetProperty(property, value.Put())) ? std::wstring()
                                                         : TextIn(value.Get()).value_or(std::wstring());
}

// A 32-bit number; `absent` when absent.
template <typename Item>
std::int32_t NumberProperty(Item& item, std::int32_t property, std::int32_t absent) {
  ScopedVariant value;
  return FAILED(item.GetProperty(property, value.Put())) ? absent : NumberIn(value.Get()).value_or(absent);
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

// The further facts of an entry, by ItemFact; all are absent when the library does not know the interface.
class FactReader {
 public:
  explicit FactReader(IUnknown& item) {
    item.QueryInterface(IStartupItemFacts::iid, reinterpret_cast<void**>(facts_.Put()));
  }
  std::optional<std::wstring> Text(std::int32_t fact) const {
    ScopedVariant value;
    return Read(fact, value) ? TextIn(value.Get()) : std::nullopt;
  }
  std::optional<std::int32_t> Number(std::int32_t fact) const {
    ScopedVariant value;
    return Read(fact, value) ? NumberIn(value.Get()) : std::nullopt;
  }
  bool Flag(std::int32_t fact) const {
    ScopedVariant value;
    return Read(fact, value) && value.Get().vt == VT_BOOL && value.Get().boolVal != VARIANT_FALSE;
  }
  // An OLE date in local time; none for day zero.
  std::optional<double> Date(std::int32_t fact) const {
    ScopedVariant value;
    if (!Read(fact, value) || value.Get().vt != VT_DATE || value.Get().date == 0) return std::nullopt;
    return value.Get().date;
  }

 private:
  bool Read(std::int32_t fact, ScopedVariant& value) const {
    return facts_ && SUCCEEDED(facts_->GetFact(fact, value.Put()));
  }

  ComPtr<IStartupItemFacts> facts_;
};

}  // namespace smh
