// Opening and refusing files.

#include "tests/shelllink/shell_link_fixture.h"

namespace smh::test {
namespace {

// The message of the refusal; empty when the link is accepted.
std::wstring RefusalOf(const std::wstring& path) {
  try {
    TShellLinkInfo info(path);
  } catch (const TShellLinkInfoException& exception) {
    return exception.Message();
  }
  return {};
}

// The system's code of a failure to open; 0 when the file opens.
DWORD OpenErrorOf(const std::wstring& path) {
  try {
    TShellLinkInfo info(path);
  } catch (const EFOpenError& error) {
    return error.Code();
  }
  return 0;
}

class LinkFileTest : public ShellLinkTest {
 protected:
  // A valid link of exactly that size.
  std::wstring WriteLinkOfSize(std::size_t size) const {
    LinkBuilder link;
    link.blocks = {{0xA0000008, {}}};
    link.blocks[0].data.resize(size - link.Build().Size());
    return WriteLink(link);
  }
};

TEST_F(LinkFileTest, ExtensionIsTestedFirst) {
  for (const wchar_t* const name : {L"x.LNK", L"x.lNk", L".lnk", L"a.txt.lnk"}) {
    EXPECT_EQ(RefusalOf(WriteLink(LinkBuilder{}, name)), L"") << name;
  }
  const std::wstring text = folder.File(L"missing.txt");
  EXPECT_EQ(RefusalOf(text), L"Invalid file extension \".txt\", expected \".lnk\" (" + text + L").");
  const std::wstring none = WriteLink(LinkBuilder{}, L"a.lnk\\lnk");
  EXPECT_EQ(RefusalOf(none), L"Invalid file extension \"\", expected \".lnk\" (" + none + L").");
}

TEST_F(LinkFileTest, MessagesOfTheFaults) {
  const BuiltLink good = LinkBuilder{.info = LinkInfoSpec{}}.Build();
  std::wstring path = WriteLink(good.With("HeaderSize", 0xFFFFFFFF));
  EXPECT_EQ(RefusalOf(path), L"Invalid header size \"4294967295\", expected \"76\" (" + path + L").");
  path = WriteLink(good.With("LinkCLSIDHigh", 0x4600000000ABCDEF));
  EXPECT_EQ(RefusalOf(path),
            L"Invalid file GUID \"{00021401-0000-0000-EFCD-AB0000000046}\", expected "
            L"\"{00021401-0000-0000-00C0-000000000046}\" or \"{00021401-0000-0000-C000-000000000046}\" (" +
                path + L").");
  path = WriteLink(good.With("LinkInfoHeaderSize", 32));
  EXPECT_EQ(RefusalOf(path), L"Invalid LinkInfo section format (" + path + L").");
  path = WriteLink(good.Followed("x"));
  EXPECT_EQ(RefusalOf(path), L"Incorrect file size or format data. (" + path + L")");
}

TEST_F(LinkFileTest, SizesAtTheLimits) {
  for (const std::size_t size : {0u, 75u}) {
    const std::wstring path = WriteLink(LinkBuilder{}.Build().CutTo(size));
    EXPECT_EQ(RefusalOf(path), L"Incorrect file size or format data. (" + path + L")") << size;
  }
  const TShellLinkInfo largest(WriteLinkOfSize(5'242'880));
  EXPECT_EQ(largest.FileSize(), 5'242'880u);
  ASSERT_NE(largest.FindExtraData(TExtraDataKind::edkShim), nullptr);
  const std::wstring tooLarge = WriteLinkOfSize(5'242'881);
  EXPECT_EQ(RefusalOf(tooLarge), L"Incorrect file size or format data. (" + tooLarge + L")");
}

TEST_F(LinkFileTest, WhatCannotBeOpened) {
  EXPECT_EQ(OpenErrorOf(folder.File(L"missing.lnk")), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(OpenErrorOf(folder.File(L"missing\\x.lnk")), DWORD{ERROR_PATH_NOT_FOUND});
  EXPECT_EQ(OpenErrorOf(folder.MakeFolder(L"folder.lnk")), DWORD{ERROR_ACCESS_DENIED});
  EXPECT_NE(OpenErrorOf(folder.File(L"\xD800 \xDC00.lnk")), DWORD{ERROR_SUCCESS});
  const std::wstring missing = folder.File(L"missing.lnk");
  try {
    TShellLinkInfo info(missing);
    FAIL();
  } catch (const EFileStreamError& error) {
    EXPECT_EQ(error.Message(),
              L"Cannot open file \"" + missing + L"\". " + SystemErrorText(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(error.Result(), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  }
}

TEST_F(LinkFileTest, DeniesWritesWhileOpenAndLetsGoAfterwards) {
  const std::wstring path = WriteLink(LinkBuilder{}.Build().Followed("x"));
  const auto open = [&](DWORD access, DWORD share) {
    return ScopedHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
  };
  const auto openErrorFor = [&](DWORD access, DWORD share) {
    return open(access, share) ? DWORD{ERROR_SUCCESS} : GetLastError();
  };
  {
    const ScopedHandle writer = open(GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_EQ(OpenErrorOf(path), DWORD{ERROR_SHARING_VIOLATION});
  }
  {
    const LinkFile file(path);
    EXPECT_EQ(openErrorFor(GENERIC_READ, FILE_SHARE_READ), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(openErrorFor(GENERIC_WRITE, FILE_SHARE_READ), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(openErrorFor(DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE), DWORD{ERROR_SUCCESS})
        << "others may move it";
  }
  EXPECT_NE(RefusalOf(path), L"");
  EXPECT_EQ(openErrorFor(GENERIC_WRITE, 0), DWORD{ERROR_SUCCESS});
}

TEST_F(LinkFileTest, TheSameNameInAnotherCaseDoesNotReload) {
  LinkBuilder link;
  link.hotKey = 1;
  const std::wstring path = WriteLink(link, L"Name.lnk");
  TShellLinkInfo info(path);
  link.hotKey = 2;
  WriteLink(link, L"Name.lnk");
  info.SetFileName(folder.File(L"NAME.LNK"));
  EXPECT_EQ(info.HotKey(), 1);
  EXPECT_EQ(info.FileName(), path);
  info.SetFileName(L"");
  EXPECT_EQ(info.HotKey(), 0);
  EXPECT_EQ(info.FileSize(), 0u);
  info.SetFileName(path);
  EXPECT_EQ(info.HotKey(), 2);
}

TEST_F(LinkFileTest, UsableAfterARefusedFile) {
  TShellLinkInfo info(WriteLink(FullLink(), L"good.lnk"));
  const std::wstring bad = WriteLink(FullLink().Build().Followed("x"), L"bad.lnk");
  EXPECT_THROW(info.SetFileName(bad), TShellLinkInfoException);
  EXPECT_EQ(info.FileName(), bad);
  EXPECT_EQ(info.Arguments(), L"/start \"a b\"");
  EXPECT_THROW(info.SetFileName(folder.File(L"missing.lnk")), EFOpenError);
  EXPECT_EQ(info.Arguments(), L"");
  EXPECT_EQ(info.Target(), L"");
  EXPECT_EQ(info.IconLocation(), L"");
  EXPECT_EQ(info.FindExtraData(TExtraDataKind::edkDarwin), nullptr);
  info.SetFileName(folder.File(L"good.lnk"));
  EXPECT_EQ(info.WorkingDirectory(), L"C:\\Work");
}

}  // namespace
}  // namespace smh::test
