// The file behind a command line that names a shortcut.
#include "core/uStartupManager.h"

#include "folder_fixture.h"
#include "infra/uInterfacesRoutines.h"

namespace smh::test {
namespace {

TEST_F(FolderTest, ACommandThatIsAShortcutResolvesToWhatThatStarts) {
  // Never released: the end of a manager that was not asked for its collection faults.
  const auto resolve = [manager = new TStartupManager](const std::wstring& command) {
    return TakeText([&](BoundaryText* file) { return manager->ResolveCommandFile(command.c_str(), file); });
  };
  const std::wstring link = PutShortcut(Folder().File(L"a link.lnk"), L"/tray");
  EXPECT_EQ(resolve(link), Program());
  EXPECT_EQ(resolve(L'"' + Folder().File(L"A LINK.LNK") + L'"'), Program());
  // What cannot be read, or has no target, is its own answer.
  const std::wstring damaged = L'"' + Folder().Write(L"damaged.Lnk", "text") + L'"';
  EXPECT_EQ(resolve(damaged), damaged);
  const std::wstring empty = Folder().Write(L"empty.lnk", LinkBuilder{}.Build().Text());
  EXPECT_EQ(resolve(empty), empty);
  EXPECT_EQ(resolve(Folder().File(L"missing.lnk")), Folder().File(L"missing.lnk"));
}

}  // namespace
}  // namespace smh::test
