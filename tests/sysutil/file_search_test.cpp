#include "sysutil/file_search.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/sysutil/file_utils_fixture.h"

#include <algorithm>

namespace smh::test {
namespace {

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
  static void SetAppPath(std::wstring_view extension, const std::wstring& name, const RawValue& value,
                         REGSAM view = 0) {
    SetValue(HKEY_LOCAL_MACHINE, AppPathKey(extension), name, value, view);
  }
  static void AddSharedDll(const std::wstring& path, REGSAM view) {
    SetValue(HKEY_LOCAL_MACHINE, kSharedDlls, path, Dword(1), view);
  }

  const TemporaryFolder first_;
  const TemporaryFolder second_;
  // Not in PATH.
  const TemporaryFolder apart_;

 private:
  static void Clean() {
    for (const REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
      for (const wchar_t* const extension : {L".com", L".exe", L".bat", L".cmd"}) {
        DeleteKeyTree(HKEY_LOCAL_MACHINE, AppPathKey(extension), view);
      }
    }
  }

  const SavedKey shared_{HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_32KEY};
  const SavedKey sharedNative_{HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY};
  const ScopedEnvironment path_{L"PATH", first_.Path() + L";" + second_.Path()};
  const ScopedEnvironment extensions_{L"PATHEXT", L".COM;.EXE"};
  const StartedFileUtils started_;
};

TEST_F(FileSearchTest, NameWithExtensionIsFoundInTheFirstFolder) {
  first_.MakeFolder(L"smh tool.com");
  const std::wstring file = first_.Write(L"smh tool.exe", "x");
  second_.Write(L"smh tool.exe", "x");
  EXPECT_EQ(Found(L"smh tool.exe"), file);
  EXPECT_EQ(FileUtils::SearchInPath(kTool, L".exe"), file);
  EXPECT_EQ(Found(L"SMH Tool.EXE"), first_.File(L"SMH Tool.EXE"));
  // A folder is no program.
  EXPECT_EQ(Found(L"smh tool.com"), L"");
}

TEST_F(FileSearchTest, NameWithoutExtensionIsFoundInTheLastFolder) {
  first_.Write(L"smh tool.com", "x");
  second_.Write(L"smh tool.exe", "x");
  second_.Write(L"smh tool.bat", "x");
  EXPECT_EQ(Found(kTool), second_.File(L"smh tool.EXE"));
  second_.Write(L"smh tool.com", "x");
  EXPECT_EQ(Found(kTool), second_.File(L"smh tool.COM"));
  // The system folder, which comes first.
  second_.Write(L"notepad.exe", "x");
  EXPECT_EQ(Found(L"notepad.exe"), FileUtils::GetSystemDir() + L"notepad.exe");
  EXPECT_EQ(Found(L"notepad"), second_.File(L"notepad.EXE"));
}

TEST_F(FileSearchTest, AppPathsDefaultValueOrElseItsFolder) {
  const std::wstring real = apart_.Write(L"real.exe", "x");
  const std::wstring named = apart_.Write(L"smh tool.exe", "x");
  const ScopedEnvironment variable(L"SMH_DIR", apart_.Path());
  const std::pair<RawValue, std::wstring> rows[] = {
      {Sz(L"\"" + real + L"\""), real},
      {ExpandSz(L"%SMH_DIR%\\real.exe"), real},
      {Sz(L"smh tool.exe"), named},
      {Sz(L""), named},
      {Dword(7), named},
      {MultiSz({real}), named},
      // A default value with a folder is believed, even when it leads nowhere.
      {Sz(apart_.File(L"missing.exe")), L""},
  };
  SetAppPath(L".exe", L"Path", Sz(L"\"" + apart_.Path() + L"\""));
  EXPECT_EQ(Found(L"smh tool.exe"), named);
  for (const auto& [value, file] : rows) {
    SetAppPath(L".exe", L"", value);
    EXPECT_EQ(Found(L"smh tool.exe"), file);
    EXPECT_EQ(FileUtils::SearchAppPaths(0, kTool, L".exe"), file);
  }
  SetAppPath(L".exe", L"", Sz(L""));
  SetAppPath(L".exe", L"Path", Dword(7));
  EXPECT_EQ(Found(L"smh tool.exe"), L"");
  SetAppPath(L".exe", L"", Sz(real));
  first_.Write(L"smh tool.exe", "x");
  EXPECT_EQ(Found(L"smh tool.exe"), first_.File(L"smh tool.exe"));
}

TEST_F(FileSearchTest, AppPathsTriesTheExtensionsUntilAFileExistsAndMayBeRead) {
  const std::wstring file = apart_.Write(L"real.exe", "x");
  SetAppPath(L".com", L"", Sz(apart_.File(L"missing.com")));
  SetAppPath(L".exe", L"", Sz(file));
  SetAppPath(L".bat", L"", Sz(apart_.Write(L"real.bat", "x")));
  EXPECT_EQ(Found(kTool), file);
  const LimitedKey none(HKEY_LOCAL_MACHINE, AppPathKey(L".exe"), LimitedKey::Rights::kNone);
  EXPECT_EQ(Found(kTool), apart_.File(L"real.bat"));
}

TEST_F(FileSearchTest, AppPathsOfTheOtherViewComeSecond) {
  const std::wstring native = apart_.Write(L"native.exe", "x");
  SetAppPath(L".exe", L"", Sz(native), KEY_WOW64_64KEY);
  EXPECT_EQ(Found(L"smh tool.exe"), native);
  const std::wstring plain = apart_.Write(L"plain.exe", "x");
  SetAppPath(L".exe", L"", Sz(plain), KEY_WOW64_32KEY);
  EXPECT_EQ(Found(L"smh tool.exe"), plain);
}

TEST_F(FileSearchTest, SharedDllsFirstPathOfThatNameCounts) {
  AddSharedDll(apart_.File(L"a\\smh tool.dll"), KEY_WOW64_64KEY);
  AddSharedDll(apart_.Write(L"b\\smh tool.dll", "x"), KEY_WOW64_64KEY);
  const std::vector<std::wstring> order = Values(HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY);
  ASSERT_LT(std::ranges::find(order, apart_.File(L"a\\smh tool.dll")),
            std::ranges::find(order, apart_.File(L"b\\smh tool.dll")));
  EXPECT_EQ(Found(L"smh tool.dll"), L"");
  apart_.Write(L"a\\smh tool.dll", "x");
  EXPECT_EQ(Found(L"SMH tool.DLL"), apart_.File(L"a\\smh tool.dll"));
}

TEST_F(FileSearchTest, SharedDllsLastMatchingExtensionAndNativeViewWin) {
  AddSharedDll(apart_.Write(L"smh tool.com", "x"), KEY_WOW64_64KEY);
  AddSharedDll(apart_.Write(L"smh tool.exe", "x"), KEY_WOW64_64KEY);
  EXPECT_EQ(Found(kTool), apart_.File(L"smh tool.exe"));
  AddSharedDll(apart_.File(L"smh tool.bat"), KEY_WOW64_64KEY);
  EXPECT_EQ(Found(kTool), L"");
  // No path, none with a folder, and one that ends at its NUL.
  AddSharedDll(L"smh tool.cmd", KEY_WOW64_64KEY);
  const ScopedKey key = MakeKey(HKEY_LOCAL_MACHINE, kSharedDlls, KEY_WOW64_64KEY);
  const std::wstring cut = apart_.Write(L"cut.com", "x") + std::wstring(L"\0\\smh cut.com", 13);
  SetCountedValue(key.Get(), cut, Dword(1));
  for (const wchar_t* const name : {L"smh tool.cmd", L"smh cut.com"}) EXPECT_EQ(Found(name), L"") << name;
  // Whatever the native view says replaces the other answer.
  const std::wstring file = apart_.Write(L"smh tool.dll", "x");
  AddSharedDll(file, KEY_WOW64_32KEY);
  EXPECT_EQ(FileUtils::SearchSharedDlls(0, kTool, L".dll"), file);
  EXPECT_EQ(Found(L"smh tool.dll"), HasTwoViews() ? L"" : file);
}

TEST_F(FileSearchTest, NamesWithFolderAndOddNamesFindNothing) {
  first_.Write(L"smh tool.exe", "x");
  first_.Write(L"sub\\smh tool.exe", "x");
  for (const std::wstring& name :
       {std::wstring(L"sub\\smh tool.exe"), std::wstring(L"./smh tool.exe"), std::wstring(L"C:smh tool.exe"),
        first_.File(L"smh tool.exe"), std::wstring(), std::wstring(L".."), std::wstring(L"*.exe"),
        std::wstring(L"\"smh tool.exe\""), std::wstring(L"smh tool\0.exe", 13), std::wstring(32'000, L'a')}) {
    EXPECT_EQ(Found(name), L"") << name.substr(0, 20);
  }
}

}  // namespace
}  // namespace smh::test
