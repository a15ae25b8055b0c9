#include "infra/uRegistryUtils.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "sysutil/file_utils_fixture.h"

#include <algorithm>

namespace smh {
namespace {

using test::HasTwoViews;
using test::ScopedEnvironment;
using test::StartedFileUtils;
using test::Sz;

constexpr wchar_t kAppPaths[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";
constexpr wchar_t kSharedDlls[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs";

// The name of a program that no machine has.
constexpr wchar_t kTool[] = L"smh tool";

// Two folders in PATH, the four default extensions, and nothing of the test's in the registry.
class FileSearchTest : public testing::Test {
 protected:
  FileSearchTest() { Clean(); }
  ~FileSearchTest() override { Clean(); }

  static std::wstring Found(const std::wstring& name) {
    std::wstring path = L"left over";
    const bool found = FileUtils::FindFileByName(name, path);
    EXPECT_EQ(found, !path.empty()) << name;
    return path;
  }
  static std::wstring AppPathKey(std::wstring_view extension) {
    return std::wstring(kAppPaths).append(kTool).append(extension);
  }
  static void SetAppPath(std::wstring_view extension, const std::wstring& name, const test::RawValue& value,
                         REGSAM view = 0) {
    test::SetValue(HKEY_LOCAL_MACHINE, AppPathKey(extension), name, value, view);
  }
  static void AddSharedDll(const std::wstring& path, REGSAM view = 0) {
    test::SetValue(HKEY_LOCAL_MACHINE, kSharedDlls, path, test::Dword(1), view);
  }

  const test::TemporaryFolder first_;
  const test::TemporaryFolder second_;
  // Not in PATH.
  const test::TemporaryFolder apart_;

 private:
  static void Clean() {
    for (const REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
      for (const wchar_t* const extension : {L".com", L".exe", L".bat", L".cmd", L".missing"}) {
        test::DeleteKeyTree(HKEY_LOCAL_MACHINE, AppPathKey(extension), view);
      }
    }
  }

  const test::SavedKey shared_{HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_32KEY};
  const test::SavedKey sharedNative_{HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY};
  const ScopedEnvironment path_{L"PATH", first_.Path() + L";" + second_.Path()};
  const ScopedEnvironment extensions_{L"PATHEXT", L".COM;.EXE"};
  const StartedFileUtils started_;
};

TEST_F(FileSearchTest, NameWithExtensionIsFoundInTheFirstFolder) {
  const std::wstring file = first_.Write(L"smh tool.exe", "x");
  second_.Write(L"smh tool.exe", "x");
  EXPECT_EQ(Found(L"smh tool.exe"), file);
  EXPECT_EQ(FileUtils::SearchInPath(kTool, L".exe"), file);
  EXPECT_EQ(Found(L"SMH Tool.EXE"), first_.File(L"SMH Tool.EXE"));
  EXPECT_EQ(Found(L"smh tool.com"), L"");
}

TEST_F(FileSearchTest, NameWithoutExtensionIsFoundInTheLastFolder) {
  first_.Write(L"smh tool.com", "x");
  const std::wstring file = second_.Write(L"smh tool.exe", "x");
  second_.Write(L"smh tool.bat", "x");
  EXPECT_EQ(Found(kTool), second_.File(L"smh tool.EXE"));
  second_.Write(L"smh tool.com", "x");
  EXPECT_EQ(Found(kTool), second_.File(L"smh tool.COM"));
}

TEST_F(FileSearchTest, SystemFolderComesBeforeThePathButLosesWithoutExtension) {
  EXPECT_EQ(Found(L"notepad.exe"), FileUtils::GetSystemDir() + L"notepad.exe");
  second_.Write(L"notepad.exe", "x");
  EXPECT_EQ(Found(L"notepad.exe"), FileUtils::GetSystemDir() + L"notepad.exe");
  EXPECT_EQ(Found(L"notepad"), second_.File(L"notepad.EXE"));
}

TEST_F(FileSearchTest, FoldersAreNoPrograms) {
  first_.MakeFolder(L"smh tool.exe");
  EXPECT_EQ(Found(L"smh tool.exe"), L"");
  EXPECT_EQ(Found(kTool), L"");
}

TEST_F(FileSearchTest, NamesWithFolderAreNotSearched) {
  first_.Write(L"smh tool.exe", "x");
  first_.Write(L"sub\\smh tool.exe", "x");
  for (const std::wstring& name :
       {std::wstring(L"sub\\smh tool.exe"), std::wstring(L"\\smh tool.exe"), std::wstring(L"./smh tool.exe"),
        std::wstring(L"C:smh tool.exe"), first_.File(L"smh tool.exe")}) {
    EXPECT_EQ(Found(name), L"") << name;
  }
}

TEST(EmptyPathEntryTest, StandsForTheCurrentFolder) {
  const test::TemporaryFolder folder;
  folder.Write(L"smh tool.exe", "x");
  const ScopedEnvironment path(L"PATH", L"C:\\smh missing;;C:\\smh missing too");
  const StartedFileUtils started;
  wchar_t old[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, old);
  SetCurrentDirectoryW(folder.Path().c_str());
  std::wstring found;
  EXPECT_TRUE(FileUtils::FindFileByName(L"smh tool.exe", found));
  EXPECT_EQ(found, L"smh tool.exe");
  SetCurrentDirectoryW(old);
}

TEST_F(FileSearchTest, AppPathsDefaultValue) {
  const std::wstring file = apart_.Write(L"real.exe", "x");
  const ScopedEnvironment variable(L"SMH_DIR", apart_.Path());
  const test::RawValue values[] = {Sz(file), Sz(L"\"" + file + L"\""), test::ExpandSz(L"%SMH_DIR%\\real.exe"),
                                   Sz(L"\"%SMH_DIR%\\real.exe\"")};
  for (const test::RawValue& value : values) {
    SetAppPath(L".exe", L"", value);
    EXPECT_EQ(Found(L"smh tool.exe"), file);
    EXPECT_EQ(FileUtils::SearchAppPaths(0, kTool, L".exe"), file);
  }
  first_.Write(L"smh tool.exe", "x");
  EXPECT_EQ(Found(L"smh tool.exe"), first_.File(L"smh tool.exe"));
}

TEST_F(FileSearchTest, AppPathsFolderStandsInForAnUnusableDefault) {
  const std::wstring file = apart_.Write(L"smh tool.exe", "x");
  SetAppPath(L".exe", L"Path", Sz(L"\"" + apart_.Path() + L"\""));
  EXPECT_EQ(Found(L"smh tool.exe"), file);
  for (const test::RawValue& value : {Sz(L"smh tool.exe"), Sz(L""), test::Dword(7), test::MultiSz({file})}) {
    SetAppPath(L".exe", L"", value);
    EXPECT_EQ(Found(L"smh tool.exe"), file);
  }
  // A default value with a folder is believed, even when it leads nowhere.
  SetAppPath(L".exe", L"", Sz(apart_.File(L"missing.exe")));
  EXPECT_EQ(Found(L"smh tool.exe"), L"");
  SetAppPath(L".exe", L"", Sz(L""));
  SetAppPath(L".exe", L"Path", test::Dword(7));
  EXPECT_EQ(Found(L"smh tool.exe"), L"");
}

TEST_F(FileSearchTest, AppPathsTriesTheExtensionsUntilAFileExists) {
  const std::wstring file = apart_.Write(L"real.exe", "x");
  SetAppPath(L".com", L"", Sz(apart_.File(L"missing.com")));
  SetAppPath(L".exe", L"", Sz(file));
  SetAppPath(L".bat", L"", Sz(apart_.Write(L"real.bat", "x")));
  EXPECT_EQ(Found(kTool), file);
  EXPECT_EQ(Found(L"smh tool.bat"), apart_.File(L"real.bat"));
}

TEST_F(FileSearchTest, AppPathsOfTheOtherViewComeSecond) {
  const std::wstring native = apart_.Write(L"native.exe", "x");
  SetAppPath(L".exe", L"", Sz(native), KEY_WOW64_64KEY);
  EXPECT_EQ(FileUtils::SearchAppPaths(KEY_WOW64_64KEY, kTool, L".exe"), native);
  EXPECT_EQ(Found(L"smh tool.exe"), native);
  const std::wstring plain = apart_.Write(L"plain.exe", "x");
  SetAppPath(L".exe", L"", Sz(plain), KEY_WOW64_32KEY);
  EXPECT_EQ(Found(L"smh tool.exe"), plain);
}

TEST_F(FileSearchTest, AppPathsKeyWithoutRightsIsSkipped) {
  SetAppPath(L".exe", L"", Sz(apart_.Write(L"real.exe", "x")));
  const test::LimitedKey limited(HKEY_LOCAL_MACHINE, AppPathKey(L".exe"), test::LimitedKey::Rights::kNone);
  EXPECT_EQ(Found(L"smh tool.exe"), L"");
  TRegistryEx registry(KEY_READ);
  registry.SetRootKey(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(FileUtils::ReadAppPathKey(registry, L"\\" + AppPathKey(L".missing"), kTool, L".exe"), L"");
  EXPECT_FALSE(test::KeyIsThere(HKEY_LOCAL_MACHINE, AppPathKey(L".missing")));
}

TEST_F(FileSearchTest, SharedDllsFirstPathOfThatNameCounts) {
  AddSharedDll(apart_.File(L"a\\smh tool.dll"), KEY_WOW64_64KEY);
  AddSharedDll(apart_.Write(L"b\\smh tool.dll", "x"), KEY_WOW64_64KEY);
  const std::vector<std::wstring> order = test::Values(HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY);
  const auto firstOfName =
      std::ranges::find_if(order, [](const std::wstring& path) { return path.ends_with(L"smh tool.dll"); });
  ASSERT_EQ(*firstOfName, apart_.File(L"a\\smh tool.dll"));
  EXPECT_EQ(Found(L"smh tool.dll"), L"");
  apart_.Write(L"a\\smh tool.dll", "x");
  EXPECT_EQ(Found(L"SMH tool.DLL"), apart_.File(L"a\\smh tool.dll"));
}

TEST_F(FileSearchTest, SharedDllsLastMatchingExtensionWins) {
  AddSharedDll(apart_.Write(L"smh tool.com", "x"), KEY_WOW64_64KEY);
  AddSharedDll(apart_.Write(L"smh tool.exe", "x"), KEY_WOW64_64KEY);
  EXPECT_EQ(Found(kTool), apart_.File(L"smh tool.exe"));
  AddSharedDll(apart_.File(L"smh tool.bat"), KEY_WOW64_64KEY);
  EXPECT_EQ(Found(kTool), L"");
  EXPECT_EQ(Found(L"smh tool.com"), apart_.File(L"smh tool.com"));
}

TEST_F(FileSearchTest, SharedDllsOfTheNativeViewReplaceTheOthers) {
  const std::wstring file = apart_.Write(L"smh tool.dll", "x");
  AddSharedDll(file, KEY_WOW64_32KEY);
  EXPECT_EQ(FileUtils::SearchSharedDlls(0, kTool, L".dll"), file);
  EXPECT_EQ(Found(L"smh tool.dll"), HasTwoViews() ? L"" : file);
  AddSharedDll(apart_.Write(L"native\\smh tool.dll", "x"), KEY_WOW64_64KEY);
  if (HasTwoViews()) {
    EXPECT_EQ(Found(L"smh tool.dll"), apart_.File(L"native\\smh tool.dll"));
  }
}

TEST_F(FileSearchTest, OddSharedDlls) {
  test::DeleteKeyTree(HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY);
  EXPECT_EQ(FileUtils::SearchSharedDlls(KEY_WOW64_64KEY, kTool, L".dll"), L"");
  AddSharedDll(L"", KEY_WOW64_64KEY);
  AddSharedDll(L"smh tool.dll", KEY_WOW64_64KEY);
  AddSharedDll(std::wstring(16'000, L'a') + L"\\smh tool.exe", KEY_WOW64_64KEY);
  const ScopedKey key = test::MakeKey(HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY);
  const std::wstring file = apart_.Write(L"smh tool.com", "x");
  test::SetCountedValue(key.Get(), file + std::wstring(L"\0\\smh tool.com", 14), test::Dword(1));
  EXPECT_EQ(Found(L"smh tool.dll"), L"");
  EXPECT_EQ(Found(L"smh tool.exe"), L"");
  EXPECT_EQ(Found(L"smh tool.com"), L"");
}

TEST_F(FileSearchTest, OddNamesFindNothing) {
  first_.Write(L"smh tool.exe", "x");
  for (const std::wstring& name :
       {std::wstring(), std::wstring(L"."), std::wstring(L".."), std::wstring(L".exe"),
        std::wstring(L"*.exe"), std::wstring(L"smh tool.ex?"), std::wstring(L"\"smh tool.exe\""),
        std::wstring(L"smh tool.exe|"), std::wstring(L"smh tool.exe\0.exe", 17),
        std::wstring(L"smh tool\0.exe", 13), std::wstring(L"\xDC00\xD800"), std::wstring(255, L'a') + L".exe",
        std::wstring(32'000, L'a'), std::wstring(32'000, L'.'), std::wstring(32'000, L'"')}) {
    EXPECT_EQ(Found(name), L"") << name.substr(0, 20);
  }
}

}  // namespace
}  // namespace smh
