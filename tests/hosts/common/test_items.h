// Entries for tests that need no registry.
#pragma once

#include "hosts/common/item_record.h"

#include <string>

namespace smh::test {

inline ItemRecord MakeItem(std::int32_t location, const std::wstring& key, const std::wstring& caption,
                           const std::wstring& command = L"C:\\one.exe", bool enabled = true) {
  ItemRecord item;
  item.location = location;
  item.name = key + L"\\" + caption;
  item.caption = caption;
  item.command = command;
  item.enabled = enabled;
  return item;
}

}  // namespace smh::test
