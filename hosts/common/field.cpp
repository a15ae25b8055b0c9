#include "hosts/common/field.h"

#include "hosts/common/host_error.h"
#include "hosts/common/texts/failure_texts.h"

namespace smh {

void RefuseKey(const std::wstring& key, std::span<const std::wstring_view> known) {
  throw UsageError(Format(texts::kNoColumn, key, JoinNames(known, L", ")));
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
