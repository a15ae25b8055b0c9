// The library in this process, with a disk on which one file takes long.
#include "hosts/common/host_error.h"
#include "hosts/common/reading.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/import_patch.h"

#include <algorithm>

namespace smh::test {
namespace {

DWORD WINAPI SlowAttributes(const wchar_t* path) {
  if (std::wstring_view(path).starts_with(L"C:\\smh-slow\\")) Sleep(3000);
  return RealFunction<decltype(GetFileAttributesW)>(L"kernel32.dll", "GetFileAttributesW")(path);
}

class ReadingTest : public StartupctlTest {};

TEST_F(ReadingTest, WhatWasReadInTimeIsThereAndTheRestIsNamed) {
  SetRun(HKEY_CURRENT_USER, L"ctl first", Command(L""));
  SetRun(HKEY_CURRENT_USER, L"ctl slow", L"\"C:\\smh-slow\\a.exe\"");
  const Library library;
  const ImportPatch patch("GetFileAttributesW", SlowAttributes,
                          GetModuleHandleW(L"StartupManagerHelper.dll"));
  const ReadState state = ReadToEnd(library, ReadScope::kUsual, 1000);
  EXPECT_EQ(state, kReadStateReading);
  const std::vector<ItemRecord> items = TakeSnapshot(library);
  const auto isListed = [&items](const wchar_t* caption) {
    return std::ranges::any_of(items, [&](const ItemRecord& item) { return item.caption == caption; });
  };
  EXPECT_TRUE(isListed(L"ctl first"));
  EXPECT_FALSE(isListed(L"ctl slow"));
  EXPECT_THROW(RequireListed(state), HostError);
  EXPECT_THROW(RequireComplete(kReadStateListed), HostError);
  EXPECT_NO_THROW(RequireListed(kReadStateListed));
  library.Items().Stop();
}

}  // namespace
}  // namespace smh::test
