#include "common/service_table.h"

#include <algorithm>

namespace smh {

namespace {

wchar_t AsciiLower(wchar_t unit) noexcept {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
}

bool SameId(std::wstring_view a, std::wstring_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](wchar_t x, wchar_t y) { return AsciiLower(x) == AsciiLower(y); });
}

}  // namespace

IUnknown* FindService(std::span<const ServiceRow> services, const wchar_t* id) noexcept {
  if (id == nullptr) return nullptr;
  const auto row = std::find_if(services.begin(), services.end(),
                                [&](const ServiceRow& candidate) { return SameId(candidate.id, id); });
  return row == services.end() ? nullptr : row->service;
}

}  // namespace smh
