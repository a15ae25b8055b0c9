#include "hosts/common/field.h"

#include "hosts/common/host_error.h"

namespace smh {

void RefuseKey(const std::wstring& key, std::span<const std::wstring_view> known) {
  throw UsageError(L"There is no column \"" + key + L"\"; there are: " + JoinNames(known, L", ") + L".");
}

std::wstring JoinNames(std::span<const std::wstring_view> names, std::wstring_view separator) {
  std::wstring list;
  for (const std::wstring_view name : names) {
    if (!list.empty()) list += separator;
    list += name;
  }
  return list;
}

}  // namespace smh
