// The services of a module by their identifiers: what its export `GetInstance` looks into.
#pragma once

#include <unknwn.h>

#include <span>
#include <string_view>

namespace smh {

struct ServiceRow {
  std::wstring_view id;  // "{8-4-4-4-12}"
  IUnknown* service;
};

// The service, uncounted; null for an unknown or a null identifier. The case of ASCII letters does not
// matter.
IUnknown* FindService(std::span<const ServiceRow> services, const wchar_t* id) noexcept;

}  // namespace smh
