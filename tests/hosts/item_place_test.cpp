#include "item_place.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

TEST(ItemPlace, PartsOfTheName) {
  const struct {
    TTypeStartupLocation location;
    const wchar_t* name;
    const wchar_t* caption;
    std::vector<std::wstring> parts;
  } rows[] = {
      {sulRegistryUserRun,
       L"(x64)HKEY_CURRENT_USER\\Software\\Run\\Value",
       L"Value",
       {L"HKEY_CURRENT_USER", L"64-bit", L"Software\\Run", L"Value"}},
      {sulRegistryCommonRun,
       L"(x32)HKEY_LOCAL_MACHINE\\Run\\C:\\a\\b.exe",
       L"C:\\a\\b.exe",
       {L"HKEY_LOCAL_MACHINE", L"32-bit", L"Run", L"C:\\a\\b.exe"}},
      {sulRegistryAllContextMenuHandlers,
       L"(x64)HKEY_LOCAL_MACHINE\\Classes\\Handler\\{6F2C4B70-1D6E-4A1F-8B4C-7E2D308F9C01}",
       L"Handler",
       {L"HKEY_LOCAL_MACHINE", L"64-bit", L"Classes\\Handler", L"(Default)"}},
      {sulRegistryIEBrowserObjects,
       L"(x32)HKEY_CURRENT_USER\\Objects\\{6F2C}\\Helps\\much",
       L"Helps\\much",
       {L"HKEY_CURRENT_USER", L"32-bit", L"Objects\\{6F2C}", L"(Default)"}},
      {sulRegistryUserRun,
       L"(x32)HKEY_CURRENT_USER\\Run\\",
       L"",
       {L"HKEY_CURRENT_USER", L"32-bit", L"Run", L"(Default)"}},
      {sulFolderUser, L"C:\\Startup\\a.lnk", L"a", {L"C:\\Startup\\a.lnk"}},
  };
  for (const auto& row : rows) {
    ItemRecord item;
    item.location = row.location;
    item.name = row.name;
    item.caption = row.caption;
    std::vector<std::wstring> parts;
    for (const auto& [label, text] : ItemPlace(item)) parts.push_back(text);
    EXPECT_EQ(parts, row.parts) << row.name;
  }
}

}  // namespace
}  // namespace smh::test
