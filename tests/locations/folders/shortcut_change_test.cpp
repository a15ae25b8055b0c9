// Shortcuts with another command, as the shell reads them, and the folder in which they are made.
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/scoped_com.h"
#include "locations/folders/temporary_use.h"
#include "model/change_refused.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/test_main.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <optional>

namespace smh::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ShortcutChangeTest : public FolderTest {
 protected:
  ShortcutChangeTest() { Folder().MakeFolder(L"made"); }

  std::wstring MadeFolder() const { return Folder().File(L"made\\"); }
  std::string Changed(std::string_view bytes, const ShortcutCommand& command) const {
    return ChangedLink(L"C:\\old.lnk", bytes, command, MadeFolder());
  }
};

// What the shell's own object reads of a link.
struct ShellView {
  std::wstring target, arguments, description, folder, icon;
  int iconIndex = 0;
  int show = 0;
  WORD hotKey = 0;
};

ShellView AsTheShellSees(const std::wstring& file) {
  const ScopedCom com(COINIT_APARTMENTTHREADED);
  ComPtr<IShellLinkW> link;
  ComPtr<IPersistFile> persist;
  ShellView view;
  if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                              reinterpret_cast<void**>(link.Put()))) ||
      FAILED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(persist.Put())))) {
    ADD_FAILURE() << "no link object";
    return view;
  }
  EXPECT_EQ(persist->Load(file.c_str(), STGM_READ), S_OK);
  wchar_t text[1024];
  const auto take = [&](std::wstring& field, HRESULT result) {
    EXPECT_HRESULT_SUCCEEDED(result);
    field = text;
  };
  take(view.target, link->GetPath(text, 1024, nullptr, SLGP_RAWPATH));
  take(view.arguments, link->GetArguments(text, 1024));
  take(view.description, link->GetDescription(text, 1024));
  take(view.folder, link->GetWorkingDirectory(text, 1024));
  take(view.icon, link->GetIconLocation(text, 1024, &view.iconIndex));
  link->GetShowCmd(&view.show);
  link->GetHotkey(&view.hotKey);
  return view;
}

TEST_F(ShortcutChangeTest, TheShellFindsTheNewTargetAndAllThatWasThere) {
  constexpr DWORD kRunAsUser = 0x2000;
  LinkBuilder old = FullLink();
  old.moreFlags = kRunAsUser;
  // An installer's link keeps its command.
  std::erase_if(old.blocks, [](const LinkBlock& block) { return block.signature == 0xA0000006; });
  const std::string bytes = old.Build().Text();
  const std::wstring file = Folder().Write(L"x.lnk", Changed(bytes, {Program(), L"/new \"a b\"  "}));
  const ShellView view = AsTheShellSees(file);
  EXPECT_EQ(view.target, Program());
  EXPECT_EQ(view.arguments, L"/new \"a b\"  ");
  EXPECT_EQ(view.description, L"Does things");
  EXPECT_EQ(view.folder, L"C:\\Work");
  EXPECT_EQ(view.icon, L"C:\\Tools\\icons.dll");
  EXPECT_EQ(view.iconIndex, -3);
  EXPECT_EQ(view.hotKey, 0x0641);
  const TShellLinkInfo link(file);
  EXPECT_TRUE(link.Sections().Header().Has(kRunAsUser));
  EXPECT_EQ(link.ShowCommand(), 7u);
  EXPECT_EQ(link.FindExtraData(TExtraDataKind::edkTracker), nullptr);
  EXPECT_NE(link.FindExtraData(TExtraDataKind::edkConsole), nullptr);
  EXPECT_EQ(ReadFileBytes(Folder().Write(L"same.lnk", Changed(bytes, {Program(), L"/new \"a b\"  "}))),
            ReadFileBytes(file));
  EXPECT_THAT(FilesIn(MadeFolder()), IsEmpty());
}

TEST_F(ShortcutChangeTest, ALinkMayNameWhatIsMissing) {
  const std::string old = LinkBytes(ShortcutFields({Program(), L"old"}), MadeFolder());
  for (const wchar_t* const target : {L"C:\\gone\\a b.exe", L"Q:\\gone.exe", L"\\\\server\\share\\x.exe"}) {
    const std::wstring file = Folder().Write(L"x.lnk", Changed(old, {target, L""}));
    const ShellView view = AsTheShellSees(file);
    EXPECT_EQ(view.target, target);
    EXPECT_EQ(view.arguments, L"");
    EXPECT_EQ(TShellLinkInfo(file).Target(), target);
  }
}

TEST_F(ShortcutChangeTest, WhatCannotBeChangedIsRefusedAndLeavesNothing) {
  const std::string old = LinkBytes(ShortcutFields({Program(), L"old"}), MadeFolder());
  LinkBuilder installed{.info = LinkInfoSpec{.basePath = "C:\\a.exe"}};
  installed.blocks = {{0xA0000006, StringBlockData("x", u"x")}};
  EXPECT_THROW(Changed(installed.Build().Text(), {Program(), L""}), EOSError);
  EXPECT_THROW(Changed(LinkBuilder{}.Build().Text(), {Program(), L""}), EOSError);
  EXPECT_THROW(Changed(old.substr(0, 90), {Program(), L""}), TShellLinkInfoException);
  // The shell takes the part before the NUL.
  EXPECT_THROW(Changed(old, {Program() + std::wstring(L"\0x", 2), L""}), EChangeRefused);
  EXPECT_THROW(Changed(old, {Program(), std::wstring(L"a\0b", 3)}), EChangeRefused);
  EXPECT_THROW(Changed(old, {L"relative.exe", L""}), EChangeRefused);
  EXPECT_THAT(FilesIn(MadeFolder()), IsEmpty());
}

// Uses the folder until it is ended.
SMH_CHILD(UseTemporaryFolder) {
  const TemporaryUse use(arguments.at(0));
  WriteFileBytes(arguments.at(0) + L"theirs.lnk", "x");
  Sleep(INFINITE);
  return 0;
}

TEST_F(ShortcutChangeTest, LeftoversGoUnlessSomebodyIsAtWork) {
  const std::wstring folder = MadeFolder();
  std::optional<ChildProcess> other(std::in_place, ThisProgram(),
                                    std::vector<std::wstring>{L"--child=UseTemporaryFolder", folder});
  for (int i = 0; i < 1000 && !Exists(folder + L"theirs.lnk"); ++i) Sleep(10);
  {
    const TemporaryUse use(folder);
    EXPECT_THAT(FilesIn(folder), ElementsAre(L"theirs.lnk"));
  }
  // Ended on its way.
  other.reset();
  {
    const TemporaryUse use(folder);
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    WriteFileBytes(folder + L"mine.lnk", "x");
    const TemporaryUse inner(folder);
    EXPECT_THAT(FilesIn(folder), ElementsAre(L"mine.lnk"));
    WriteFileBytes(Folder().MakeFolder(L"second") + L"\\left.lnk", "x");
    const TemporaryUse another(Folder().File(L"second\\"));
    EXPECT_THAT(FilesIn(Folder().File(L"second")), IsEmpty());
  }
}

TEST_F(ShortcutChangeTest, AnAddedEntryRemovesWhatAKilledChangeLeft) {
  Put(user.temporary + L"left.lnk", "x");
  UserFolder().AddItem(L"New", Command(L"/x"));
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
  EXPECT_TRUE(Exists(user.startup + L"New.lnk"));
}

}  // namespace
}  // namespace smh::test
