// Links as the shell itself saves them.

#include "infra/com_ptr.h"
#include "shelllink/shell_link_fixture.h"

#include <shlobj.h>

#include <stdexcept>

namespace smh::test {
namespace {

void Check(HRESULT result) {
  if (FAILED(result)) throw std::runtime_error("the shell's link object failed");
}

ComPtr<IShellLinkW> NewShellLink() {
  ComPtr<IShellLinkW> link;
  Check(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                         reinterpret_cast<void**>(link.Put())));
  return link;
}

void Save(IShellLinkW& link, const std::wstring& path) {
  ComPtr<IPersistFile> file;
  Check(link.QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.Put())));
  Check(file->Save(path.c_str(), TRUE));
}

class SavedLinkTest : public ShellLinkTest {};

TEST_F(SavedLinkTest, EveryPropertyComesBack) {
  const std::wstring program = folder.Write(L"a program.exe", "x");
  const std::wstring icons = folder.File(L"icons.dll");
  const ComPtr<IShellLinkW> saved = NewShellLink();
  Check(saved->SetPath(program.c_str()));
  Check(saved->SetArguments(L"/one \"two three\""));
  Check(saved->SetDescription(L"K\u00F6ln \u4E2D"));
  Check(saved->SetWorkingDirectory(folder.Path().c_str()));
  Check(saved->SetIconLocation(icons.c_str(), -5));
  Check(saved->SetShowCmd(SW_SHOWMINNOACTIVE));
  Check(saved->SetHotkey(0x0641));
  const std::wstring path = folder.File(L"saved.lnk");
  Save(*saved, path);

  const TShellLinkInfo info(path);
  EXPECT_EQ(info.Target(), program);
  EXPECT_EQ(info.Arguments(), L"/one \"two three\"");
  EXPECT_EQ(info.Description(), L"K\u00F6ln \u4E2D");
  EXPECT_EQ(info.WorkingDirectory(), folder.Path());
  EXPECT_EQ(info.IconLocation(), icons);
  EXPECT_EQ(info.IconIndex(), -5);
  EXPECT_EQ(info.ShowCommand(), DWORD{SW_SHOWMINNOACTIVE});
  EXPECT_EQ(info.HotKey(), 0x0641);
  EXPECT_EQ(info.FileSize(), ReadFileBytes(path).size());
}

TEST_F(SavedLinkTest, TargetThatDoesNotExist) {
  const std::wstring gone = folder.File(L"gone.exe");
  const ComPtr<IShellLinkW> saved = NewShellLink();
  // Succeeds with S_FALSE on some systems.
  Check(saved->SetPath(gone.c_str()));
  const std::wstring path = folder.File(L"gone.lnk");
  Save(*saved, path);
  EXPECT_EQ(TShellLinkInfo(path).Target(), gone);
}

}  // namespace
}  // namespace smh::test
