#include "sysutil/uFileUtils.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/sysutil/file_utils_fixture.h"

namespace smh::test {
namespace {

using TextList = std::vector<std::wstring>;

// In the case in which the system writes it.
std::wstring WindowsFolder() {
  wchar_t folder[MAX_PATH];
  return std::wstring(folder, GetWindowsDirectoryW(folder, MAX_PATH)) + L'\\';
}

TEST_F(FileUtilsTest, Folders) {
  const std::wstring windows = WindowsFolder();
  EXPECT_EQ(FileUtils::GetWin16SystemDir(), windows + L"system\\");
  EXPECT_EQ(FileUtils::GetSystemDir(), windows + L"system32\\");
  EXPECT_EQ(FileUtils::GetSysnativeDir(), windows + (HasTwoViews() ? L"Sysnative\\" : L"system32\\"));
  EXPECT_EQ(FileUtils::GetProgramFilesX86Dir(),
            HasTwoViews() ? L"C:\\Program Files (x86)\\" : L"C:\\Program Files\\");
  EXPECT_EQ(FileUtils::GetProgramFilesNativeDir(), L"C:\\Program Files\\");
}

TEST_F(FileUtilsTest, Normalisation) {
  const ScopedEnvironment variable(L"SMH_DIR", L"C:\\some dir");
  const struct {
    const wchar_t* text;
    const wchar_t* path;
    const wchar_t* folder;
  } rows[] = {
      {L"\"\"", L"", L""},
      {L"name.exe", L"name.exe", L"name.exe\\"},
      {L"\"%SMH_DIR%\\x.exe\"", L"C:\\some dir\\x.exe", L"C:\\some dir\\x.exe\\"},
      {L"C:\\a\\.\\b\\..\\c\\", L"C:\\a\\c\\", L"C:\\a\\c\\"},
      {L"%SMH_NOT_THERE%", L"%SMH_NOT_THERE%", L"%SMH_NOT_THERE%\\"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FileUtils::NormalizePath(SharedText(row.text)), row.path);
    EXPECT_EQ(FileUtils::NormalizeDirectory(row.text), row.folder);
  }
}

TEST(SearchDirectoriesTest, EntriesOfPathBehindTheSystemFolders) {
  const std::wstring windows = WindowsFolder();
  std::wstring upper = windows;
  CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
  const ScopedEnvironment variable(L"SMH_DIR", L"C:\\from variable");
  const std::pair<std::optional<std::wstring>, TextList> rows[] = {
      {std::nullopt, {}},
      {L"C:\\b;C:\\a\\;C:\\b", {L"C:\\b\\", L"C:\\a\\", L"C:\\b\\"}},
      {L"C:\\a;;", {L"C:\\a\\", L"", L""}},
      {L"C:\\with blank;%SMH_DIR%", {L"C:\\with blank\\", L"C:\\from variable\\"}},
      {L"\"C:\\semi;colon\";C:\\c", {L"C:\\semi;colon\\", L"C:\\c\\"}},
      {L"\"never;closed", {L"\"never\\", L"closed\\"}},
      // One occurrence of each system folder moves to the front.
      {L"C:\\a;" + upper + L"SYSTEM32;C:\\b;" + upper + L";" + upper + L"SYSTEM\\", {L"C:\\a\\", L"C:\\b\\"}},
      {windows + L"system32;C:\\a;" + windows + L"system32", {L"C:\\a\\", windows + L"system32\\"}},
  };
  for (const auto& [text, entries] : rows) {
    const ScopedEnvironment path(L"PATH", text);
    const StartedFileUtils started;
    TextList expected = {windows + L"system\\", windows + L"system32\\", windows};
    expected.insert(expected.end(), entries.begin(), entries.end());
    EXPECT_EQ(FileUtils::SearchDirectories(), expected);
  }
}

TEST(ExecutableExtensionsTest, DefaultsFollowWhatPathExtNames) {
  const std::wstring longest(20'000, L'x');
  const std::pair<std::optional<std::wstring>, TextList> rows[] = {
      {L"EXE;.BAT", {L".EXE", L".BAT", L".com", L".cmd"}},
      {std::nullopt, {L".com", L".exe", L".bat", L".cmd"}},
      {L".Cmd;;js;js", {L".Cmd", L".", L".js", L".js", L".com", L".exe", L".bat"}},
      {longest, {L"." + longest, L".com", L".exe", L".bat", L".cmd"}},
  };
  for (const auto& [text, extensions] : rows) {
    const ScopedEnvironment variable(L"PATHEXT", text);
    const StartedFileUtils started;
    EXPECT_EQ(FileUtils::ExecutableExtensions(), extensions);
  }
}

TEST(FileUtilsCachesTest, EnvironmentIsReadOncePerStart) {
  const ScopedEnvironment path(L"PATH", L"C:\\first");
  const ScopedEnvironment extensions(L"PATHEXT", L".one");
  const StartedFileUtils started;
  EXPECT_EQ(FileUtils::SearchDirectories().back(), L"C:\\first\\");
  EXPECT_EQ(FileUtils::ExecutableExtensions().front(), L".one");
  SetEnvironmentVariableW(L"PATH", L"C:\\second");
  SetEnvironmentVariableW(L"PATHEXT", L".two");
  EXPECT_EQ(FileUtils::SearchDirectories().back(), L"C:\\first\\");
  EXPECT_EQ(FileUtils::ExecutableExtensions().front(), L".one");
}

// A file until the end of the test.
class OwnFile {
 public:
  explicit OwnFile(std::wstring path) : path_(std::move(path)) { WriteFileBytes(path_, "x"); }
  ~OwnFile() { DeleteFileW(path_.c_str()); }
  OwnFile(const OwnFile&) = delete;
  OwnFile& operator=(const OwnFile&) = delete;

 private:
  std::wstring path_;
};

class Wow64PathsTest : public FileUtilsTest {
 protected:
  // What is found for `asked` by each operation; empty for nothing.
  static void ExpectFile(const std::wstring& asked, const std::wstring& found) {
    std::wstring path = asked;
    EXPECT_EQ(FileUtils::FileExistsWow64(path), !found.empty()) << asked;
    EXPECT_EQ(path, found.empty() ? asked : found);
    EXPECT_EQ(FileUtils::MapWow64Path(asked), path);
  }
  static void ExpectNoFile(const std::wstring& asked) { ExpectFile(asked, L""); }

  const std::wstring system = FileUtils::GetSystemDir();
  const std::wstring native = FileUtils::GetSysnativeDir();
  const std::wstring programs = FileUtils::GetProgramFilesX86Dir();
  const std::wstring nativePrograms = FileUtils::GetProgramFilesNativeDir();
};

TEST_F(Wow64PathsTest, FilesOfTheNativeAndTheRedirectedSystemFolder) {
  const OwnFile file(native + L"smh only native.txt");
  const OwnFile redirected(system + L"smh only redirected.txt");
  ExpectFile(system + L"kernel32.dll", system + L"kernel32.dll");
  if (!HasTwoViews()) {
    ExpectFile(system + L"smh only native.txt", system + L"smh only native.txt");
    ExpectNoFile(L"C:\\Windows\\Sysnative\\smh only native.txt");
    return;
  }
  ExpectFile(system + L"smh only native.txt", native + L"smh only native.txt");
  ExpectFile(native + L"smh only redirected.txt", system + L"smh only redirected.txt");
  ExpectFile(L"C:\\WINDOWS\\System32\\SMH only native.txt", native + L"SMH only native.txt");
  ExpectNoFile(system + L"smh other.txt");
  ExpectNoFile(system.substr(0, system.size() - 1) + L"smh only native.txt");
}

TEST_F(Wow64PathsTest, ProgramFoldersAreTwins) {
  const OwnFile file(programs + L"smh 32.txt");
  const OwnFile nativeFile(nativePrograms + L"smh 64.txt");
  ExpectFile(nativePrograms + L"smh 32.txt", programs + L"smh 32.txt");
  ExpectFile(programs + L"smh 64.txt", nativePrograms + L"smh 64.txt");
  const OwnFile both(programs + L"smh 64.txt");
  ExpectFile(programs + L"smh 64.txt", programs + L"smh 64.txt");
}

TEST_F(Wow64PathsTest, OddPathsAreNoFiles) {
  for (const std::wstring& path :
       {std::wstring(), std::wstring(L"C:"), system, system + L"kernel32.dll\"", system + L"kernel32.dl?",
        system + std::wstring(32'000, L'a'), system + std::wstring(L"kernel32.dll\0x", 14),
        std::wstring(40'000, L'\\'), std::wstring(L"\xD800")}) {
    ExpectNoFile(path);
  }
}

TEST_F(Wow64PathsTest, Folders) {
  const OwnFile file(native + L"smh no folder");
  CreateDirectoryW((native + L"smh folder").c_str(), nullptr);
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(system + L"smh folder"), native + L"smh folder");
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(system + L"smh no folder"), system + L"smh no folder");
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(system), system);
  ExpectNoFile(system + L"smh folder");
  RemoveDirectoryW((native + L"smh folder").c_str());
}

}  // namespace
}  // namespace smh::test
