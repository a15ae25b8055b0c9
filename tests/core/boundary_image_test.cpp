#include "core/boundary_client.h"
#include "core/boundary_pe_image.h"
#include "support/child_process.h"
#include "support/file_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>

namespace smh::test {
namespace {

class ModuleFileTest : public testing::TestWithParam<const wchar_t*> {
 protected:
  const std::wstring file = ThisFolder() + GetParam();
  const PeImage image{ReadFileBytes(file)};
};

TEST_P(ModuleFileTest, ExportsExactlyGetInstance) {
  EXPECT_EQ(image.Exports(), std::vector<std::string>{"GetInstance"});
}

TEST_P(ModuleFileTest, ImportsOnlyWhatTheSystemFolderHolds) {
  wchar_t folder[MAX_PATH];
  const std::wstring system(folder, GetSystemDirectoryW(folder, MAX_PATH));
  const std::vector<std::string> modules = image.ImportedModules();
  ASSERT_FALSE(modules.empty());
  for (const std::string& module : modules) {
    const std::wstring name(module.begin(), module.end());
    EXPECT_NE(GetFileAttributesW((system + L'\\' + name).c_str()), INVALID_FILE_ATTRIBUTES) << module;
    EXPECT_EQ(GetFileAttributesW((ThisFolder() + name).c_str()), INVALID_FILE_ATTRIBUTES) << module;
  }
  EXPECT_FALSE(image.HasDelayedImports());
}

TEST_P(ModuleFileTest, NamesItselfInItsVersionRecord) {
  DWORD ignored = 0;
  std::vector<char> record(GetFileVersionInfoSizeW(file.c_str(), &ignored));
  ASSERT_FALSE(record.empty());
  ASSERT_TRUE(GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(record.size()), record.data()));
  const auto text = [&](const wchar_t* name) {
    void* value = nullptr;
    UINT length = 0;
    const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    VerQueryValueW(record.data(), path.c_str(), &value, &length);
    return length == 0 ? std::wstring() : std::wstring(static_cast<const wchar_t*>(value));
  };
  EXPECT_EQ(_wcsicmp(text(L"OriginalFilename").c_str(), GetParam()), 0);
  EXPECT_EQ(text(L"CompanyName"), L"Quillmark");
  EXPECT_EQ(text(L"ProductName"), L"Startup Manager");
  EXPECT_NE(text(L"FileDescription"), L"");

  void* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(record.data(), L"\\", &fixed, &length));
  const auto& numbers = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
  wchar_t version[48];
  std::swprintf(version, std::size(version), L"%u.%u.%u.%u", HIWORD(numbers.dwFileVersionMS),
                LOWORD(numbers.dwFileVersionMS), HIWORD(numbers.dwFileVersionLS),
                LOWORD(numbers.dwFileVersionLS));
  EXPECT_EQ(text(L"FileVersion"), version);
}

INSTANTIATE_TEST_SUITE_P(Product, ModuleFileTest,
                         testing::Values(L"StartupManagerHelper.dll", L"basekit.dll", L"prefkit.dll",
                                         L"raterkit.dll", L"guardkit.dll", L"tracekit.dll"));

class IconTest : public testing::TestWithParam<const wchar_t*> {};

TEST_P(IconTest, LoadsInBothSizes) {
  const ScopedModule library(
      LoadLibraryExW(LoadedLibrary::File().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  ASSERT_TRUE(library);
  for (const int side : {16, 32}) {
    const ScopedIcon icon(
        static_cast<HICON>(LoadImageW(library.Get(), GetParam(), IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
    EXPECT_TRUE(icon) << side;
  }
}

INSTANTIATE_TEST_SUITE_P(Fixed, IconTest,
                         testing::Values(L"RATING_TRUST", L"RATING_UNKNOWN", L"RATING_RISKY",
                                         L"IMG_UNKNOWN_SMALL", L"IMG_UNKNOWN_LARGE"));

TEST(PeImageTest, RefusesWhatIsCutShort) {
  const std::string bytes = ReadFileBytes(LoadedLibrary::File());
  for (const std::size_t size : {std::size_t{0}, std::size_t{63}, std::size_t{200}, std::size_t{1024}}) {
    EXPECT_THROW(PeImage(bytes.substr(0, size)).Exports(), std::runtime_error) << size;
  }
}

}  // namespace
}  // namespace smh::test
