#include "sysutil/uFileUtils.h"

#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "sysutil/file_utils_fixture.h"

namespace smh {
namespace {

using test::HasTwoViews;

// A file until the end of the test.
class OwnFile {
 public:
  explicit OwnFile(std::wstring path) : path_(std::move(path)) { test::WriteFileBytes(path_, "x"); }
  ~OwnFile() { DeleteFileW(path_.c_str()); }
  OwnFile(const OwnFile&) = delete;
  OwnFile& operator=(const OwnFile&) = delete;

 private:
  std::wstring path_;
};

class OwnFolder {
 public:
  explicit OwnFolder(std::wstring path) : path_(std::move(path)) { CreateDirectoryW(path_.c_str(), nullptr); }
  ~OwnFolder() { RemoveDirectoryW(path_.c_str()); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

 private:
  std::wstring path_;
};

class Wow64PathsTest : public test::FileUtilsTest {
 protected:
  // Expects that `asked` is found as `expected`, by each operation.
  static void ExpectFile(const std::wstring& asked, const std::wstring& expected) {
    std::wstring path = asked;
    EXPECT_TRUE(FileUtils::FileExistsWow64(path)) << asked;
    EXPECT_EQ(path, expected);
    EXPECT_EQ(FileUtils::MapWow64Path(asked), expected);
  }
  static void ExpectNoFile(const std::wstring& asked) {
    std::wstring path = asked;
    EXPECT_FALSE(FileUtils::FileExistsWow64(path)) << asked;
    EXPECT_EQ(path, asked);
    EXPECT_EQ(FileUtils::MapWow64Path(asked), asked);
  }

  const std::wstring system = FileUtils::GetSystemDir();
  const std::wstring native = FileUtils::GetSysnativeDir();
  const std::wstring programs = FileUtils::GetProgramFilesX86Dir();
  const std::wstring nativePrograms = FileUtils::GetProgramFilesNativeDir();
};

TEST_F(Wow64PathsTest, FileWhereItIsNamedStaysItself) {
  const test::TemporaryFolder folder;
  const std::wstring file = folder.Write(L"here.txt", "x");
  ExpectFile(file, file);
  ExpectNoFile(folder.File(L"missing.txt"));
  ExpectNoFile(folder.Path());
  ExpectFile(system + L"kernel32.dll", system + L"kernel32.dll");
}

TEST_F(Wow64PathsTest, OddPathsAreNoFiles) {
  for (const std::wstring& path :
       {std::wstring(), std::wstring(L"\\"), std::wstring(L"C:"), std::wstring(L"C:\\*"), system,
        system + L"kernel32.dll\"", system + L"kernel32.dl?", system + std::wstring(32'000, L'a'),
        system + std::wstring(L"kernel32.dll\0x", 14), std::wstring(40'000, L'\\'),
        std::wstring(L"\xD800")}) {
    ExpectNoFile(path);
  }
}

TEST_F(Wow64PathsTest, FileOfTheNativeSystemFolder) {
  const OwnFile file(native + L"smh only native.txt");
  if (!HasTwoViews()) {
    ExpectFile(system + L"smh only native.txt", system + L"smh only native.txt");
    ExpectNoFile(L"C:\\Windows\\Sysnative\\smh only native.txt");
    return;
  }
  ExpectFile(system + L"smh only native.txt", native + L"smh only native.txt");
  ExpectFile(native + L"smh only native.txt", native + L"smh only native.txt");
  ExpectFile(L"C:\\WINDOWS\\System32\\SMH only native.txt", native + L"SMH only native.txt");
  ExpectNoFile(system + L"smh other.txt");
  ExpectNoFile(system.substr(0, system.size() - 1) + L"smh only native.txt");
}

TEST_F(Wow64PathsTest, FileOfTheRedirectedSystemFolder) {
  const OwnFile file(system + L"smh only redirected.txt");
  if (HasTwoViews()) {
    ExpectFile(native + L"smh only redirected.txt", system + L"smh only redirected.txt");
  } else {
    ExpectNoFile(L"C:\\Windows\\Sysnative\\smh only redirected.txt");
  }
}

TEST_F(Wow64PathsTest, ProgramFoldersAreTwins) {
  const OwnFile file(programs + L"smh 32.txt");
  const OwnFile nativeFile(nativePrograms + L"smh 64.txt");
  ExpectFile(nativePrograms + L"smh 32.txt", programs + L"smh 32.txt");
  ExpectFile(programs + L"smh 64.txt", nativePrograms + L"smh 64.txt");
  const OwnFile both(programs + L"smh 64.txt");
  ExpectFile(programs + L"smh 64.txt", programs + L"smh 64.txt");
}

TEST_F(Wow64PathsTest, Folders) {
  const OwnFolder folder(native + L"smh folder");
  const OwnFile file(native + L"smh no folder");
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(system + L"smh folder"), native + L"smh folder");
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(system + L"smh no folder"), system + L"smh no folder");
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(system), system);
  EXPECT_EQ(FileUtils::DirectoryExistsWow64(L"C:\\smh missing"), L"C:\\smh missing");
  ExpectNoFile(system + L"smh folder");
}

}  // namespace
}  // namespace smh
