#include "core/contracts/service_table.h"

#include "infra/runtime/ascii_text.h"

#include <algorithm>

namespace smh {

IUnknown* FindService(std::span<const ServiceRow> services, const wchar_t* id) noexcept {
  if (id == nullptr) return nullptr;
  const auto row = std::find_if(services.begin(), services.end(),
                                [&](const ServiceRow& candidate) { return SameAsciiText(candidate.id, id); });
  return row == services.end() ? nullptr : row->service;
}

}  // namespace smh
