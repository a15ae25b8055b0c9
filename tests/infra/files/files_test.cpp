// Names, sizes, contents and folders of real files.
#include "core/contracts/shared_text.h"
#include "infra/files/file_facts.h"
#include "infra/files/file_reading.h"
#include "infra/files/folder_access.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/growing_text.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace smh::test {
namespace {

constexpr std::wstring_view kAsItStands = L"\\\\?\\";
// Cut to 32 bits it is 3.
constexpr std::uint64_t kLargeSize = 0x1'0000'0003;

enum class Found { kNothing, kFile, kFolder };

Found Look(PathView path) {
  const bool isFile = IsFile(path);
  const bool isFolder = IsFolder(path);
  EXPECT_FALSE(isFile && isFolder);
  EXPECT_EQ(Exists(path), isFile || isFolder);
  EXPECT_EQ(StampOf(path).has_value(), isFile || isFolder);
  if (isFile) return Found::kFile;
  return isFolder ? Found::kFolder : Found::kNothing;
}

// The code of the EOSError that is raised; 0 when none is.
template <typename Call>
DWORD ErrorOf(Call&& call) {
  try {
    call();
  } catch (const EOSError& error) {
    return error.Code();
  }
  return ERROR_SUCCESS;
}

BOOL WINAPI NoSize(HANDLE, LARGE_INTEGER*) {
  SetLastError(ERROR_INVALID_HANDLE);
  return FALSE;
}

BOOL WINAPI SizeOfSix(HANDLE, LARGE_INTEGER* size) {
  size->QuadPart = 6;
  return TRUE;
}

void MakeLargeFile(const std::wstring& path) {
  const ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  LARGE_INTEGER end;
  end.QuadPart = kLargeSize;
  ASSERT_TRUE(SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.Get()));
}

class FilesTest : public ::testing::Test {
 protected:
  // A file's path of so many units.
  std::wstring PathOfLength(std::size_t units) const {
    std::wstring path = folder_.File(L"deep");
    while (units - path.size() > 150) path.append(L"\\").append(100, L'd');
    path.append(L"\\");
    return path.append(units - path.size(), L'f');
  }

  const TemporaryFolder folder_;
  const std::wstring file_ = folder_.Write(L"file.txt", "12345");
};

TEST_F(FilesTest, AFileAFolderOrNothing) {
  const std::wstring sub = folder_.MakeFolder(L"sub.d");
  const std::wstring cut = file_ + std::wstring(L"\0more", 5);
  const struct {
    std::wstring path;
    Found expected;
  } rows[] = {
      {file_, Found::kFile},
      {sub, Found::kFolder},
      {sub + L'\\', Found::kFolder},
      {L"C:\\", Found::kFolder},
      {folder_.File(L"missing.txt"), Found::kNothing},
      {folder_.File(L"missing\\file.txt"), Found::kNothing},
      {file_ + L"\\below", Found::kNothing},
      {L"", Found::kNothing},
      {cut, Found::kNothing},
      {sub + std::wstring(L"\0", 1), Found::kNothing},
      {file_ + L".", Found::kFile},
      {file_ + L"  ", Found::kFile},
      {sub + L". .", Found::kFolder},
      {std::wstring(kAsItStands) + file_, Found::kFile},
      {std::wstring(kAsItStands) + sub, Found::kFolder},
      {std::wstring(kAsItStands) + file_ + L".", Found::kNothing},
      {std::wstring(kAsItStands) + file_ + L" ", Found::kNothing},
      {folder_.File(L"*.txt"), Found::kNothing},
      {L"con", Found::kNothing},
      {L"nul.txt", Found::kNothing},
      {folder_.File(L"Nul"), Found::kNothing},
      {folder_.File(L"com1 .exe"), Found::kNothing},
      {L"\\\\.\\nul", Found::kNothing},
      {L"//./pipe/smh", Found::kNothing},
      {folder_.Write(L"com10", "x"), Found::kFile},
      {folder_.Write(L"conf.nul", "x"), Found::kFile},
      {L"\\\\.\\" + file_, Found::kFile},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Look(row.path), row.expected) << row.path;
    EXPECT_EQ(Look(SharedText(row.path)), row.expected) << row.path;
  }
}

TEST_F(FilesTest, TheLastErrorSaysWhyNothingIsThere) {
  const auto errorOf = [](const std::wstring& path) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(AttributesOf(path), INVALID_FILE_ATTRIBUTES);
    return GetLastError();
  };
  EXPECT_EQ(errorOf(folder_.File(L"missing")), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(errorOf(folder_.File(L"missing\\file")), DWORD{ERROR_PATH_NOT_FOUND});
  EXPECT_EQ(errorOf(file_ + std::wstring(L"\0", 1)), DWORD{ERROR_INVALID_NAME});
  EXPECT_EQ(errorOf(folder_.File(L"nul")), DWORD{ERROR_INVALID_NAME});
}

TEST_F(FilesTest, PathsAsLongAsTheSystemTakesThem) {
  for (const std::size_t units : {MAX_PATH - 2, MAX_PATH - 1, MAX_PATH, MAX_PATH + 1, 1'000}) {
    const std::wstring path = PathOfLength(units);
    ASSERT_EQ(path.size(), units);
    const std::wstring full = std::wstring(kAsItStands) + path;
    MakeFolderPath(std::wstring(FolderPart(full)));
    ASSERT_TRUE(ScopedHandle(CreateFileW(full.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr)));
    EXPECT_EQ(Look(full), Found::kFile) << units;
    if (units < MAX_PATH) {
      EXPECT_EQ(Look(path), Found::kFile) << units;
    }
    EXPECT_EQ(FullPathOf(path.c_str()), path) << units;
    EXPECT_EQ(ReadWholeFile(full, FILE_SHARE_READ, 0), "");
    DeleteFileW(full.c_str());
  }
  std::error_code ignored;
  std::filesystem::remove_all(std::wstring(kAsItStands) + folder_.File(L"deep"), ignored);
}

TEST_F(FilesTest, AStampTellsAFileFromItselfAtAnotherTime) {
  const std::optional<FileStamp> before = StampOf(file_);
  ASSERT_TRUE(before.has_value());
  EXPECT_EQ(before->size, 5u);
  EXPECT_FALSE(before->isFolder);
  EXPECT_EQ(StampOf(file_), before);
  EXPECT_TRUE(StampOf(folder_.Path())->isFolder);
  {
    const ScopedHandle file(
        CreateFileW(file_.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    const FILETIME later = FileTimeOf(before->lastWrite + 0x1'0000'0000);
    ASSERT_TRUE(SetFileTime(file.Get(), nullptr, nullptr, &later));
  }
  EXPECT_EQ(StampOf(file_), (FileStamp{false, 5, before->lastWrite + 0x1'0000'0000}));
  MakeLargeFile(file_);
  EXPECT_EQ(StampOf(file_)->size, kLargeSize);
  WIN32_FIND_DATAW data;
  ASSERT_TRUE(ScopedFind(FindFirstFileW(file_.c_str(), &data)));
  EXPECT_EQ(SizeIn(data), kLargeSize);
  EXPECT_EQ(NumberOf(FileTimeOf(0xFEDC'BA98'7654'3210)), 0xFEDC'BA98'7654'3210u);
}

TEST_F(FilesTest, AFileIsReadWholeOrNotAtAll) {
  for (const std::size_t size : {0u, 1u, 99u, 100u, 101u, 70'000u}) {
    std::string bytes(size, 'x');
    if (size != 0) bytes.back() = '\0';
    WriteFileBytes(file_, bytes);
    EXPECT_EQ(ReadWholeFile(file_, FILE_SHARE_READ, size), bytes);
    EXPECT_EQ(ReadWholeFile(file_, FILE_SHARE_READ | FILE_SHARE_WRITE, size + 1), bytes);
    const ScopedHandle file(
        CreateFileW(file_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(ReadOpenFile(file.Get(), size).size(), size);
    if (size == 0) continue;
    EXPECT_EQ(ErrorOf([&] { ReadWholeFile(file_, FILE_SHARE_READ, size - 1); }), DWORD{ERROR_FILE_TOO_LARGE});
    EXPECT_EQ(ErrorOf([&] { ReadOpenFile(file.Get(), size - 1); }), DWORD{ERROR_FILE_TOO_LARGE});
  }
  MakeLargeFile(file_);
  EXPECT_EQ(ErrorOf([&] { ReadWholeFile(file_, FILE_SHARE_READ, 0xFFFF'FFFF); }),
            DWORD{ERROR_FILE_TOO_LARGE});
}

TEST_F(FilesTest, WhatCannotBeReadSaysWhy) {
  const auto read = [](const std::wstring& path, DWORD sharing = FILE_SHARE_READ) {
    return ErrorOf([&] { ReadWholeFile(path, sharing, 100); });
  };
  EXPECT_EQ(read(folder_.File(L"missing")), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(read(folder_.File(L"missing\\file")), DWORD{ERROR_PATH_NOT_FOUND});
  EXPECT_EQ(read(folder_.Path()), DWORD{ERROR_ACCESS_DENIED});
  {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const ScopedHandle writer(
        CreateFileW(file_.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(read(file_), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(read(file_, kShareAll), DWORD{ERROR_SUCCESS});
  }
  const ImportPatch size("GetFileSizeEx", &NoSize);
  EXPECT_EQ(read(file_), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(FilesTest, AFileThatGetsShorterMeanwhile) {
  const ImportPatch size("GetFileSizeEx", &SizeOfSix);
  EXPECT_EQ(ErrorOf([&] { ReadWholeFile(file_, FILE_SHARE_READ, 100); }), DWORD{ERROR_HANDLE_EOF});
  EXPECT_EQ(ReadWholeFile(file_, FILE_SHARE_READ | FILE_SHARE_WRITE, 100), "12345");
  const ScopedHandle file(
      CreateFileW(file_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_EQ(ReadOpenFile(file.Get(), 100).size(), 5u);
}

std::vector<std::wstring> g_own;
std::vector<std::wstring> g_above;

TEST_F(FilesTest, WhoMakesWhichFolder) {
  g_own.clear();
  g_above.clear();
  const FolderMaker own = [](const std::wstring& path) {
    g_own.push_back(path);
    SetLastError(ERROR_ALREADY_EXISTS);
    return false;
  };
  const FolderMaker above = [](const std::wstring& path) {
    g_above.push_back(path);
    return CreateDirectoryW(path.c_str(), nullptr) != FALSE;
  };
  MakeFolderPath(folder_.File(L"a\\b\\c\\"), own, above);
  EXPECT_EQ(g_own, std::vector{folder_.File(L"a\\b\\c")});
  EXPECT_EQ(g_above, (std::vector{folder_.File(L"a"), folder_.File(L"a\\b")}));
  MakeFolderPath(folder_.File(L"a\\b\\"), own, above);
  EXPECT_EQ(g_own.size(), 1u) << "a folder that is there is left alone";
  const FolderMaker refused = [](const std::wstring&) {
    SetLastError(ERROR_ACCESS_DENIED);
    return false;
  };
  EXPECT_EQ(ErrorOf([&] { MakeFolderPath(folder_.File(L"x\\y"), above, refused); }),
            DWORD{ERROR_ACCESS_DENIED});
  EXPECT_FALSE(Exists(folder_.File(L"x")));
}

TEST(GrowingTextTest, TextsThatGrowBetweenTwoCalls) {
  std::wstring text(MAX_PATH, L'a');
  const auto copy = [&](wchar_t* buffer, DWORD units) -> DWORD {
    const std::wstring now = text;
    if (text.size() < 300) text.append(20, L'b');
    if (now.size() >= units) return static_cast<DWORD>(now.size()) + 1;
    now.copy(buffer, now.size());
    return static_cast<DWORD>(now.size());
  };
  EXPECT_EQ(GrowingText(copy), std::wstring(MAX_PATH, L'a').append(40, L'b'));
  text = L"short";
  EXPECT_EQ(GrowingText(copy), L"short");
}

}  // namespace
}  // namespace smh::test
