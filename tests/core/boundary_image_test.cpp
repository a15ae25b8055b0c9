#include "tests/core/boundary_client.h"
#include "tests/support/child_process.h"

namespace smh::test {
namespace {

// A module of the product as the loader lays it out, without being started.
class ModuleFileTest : public testing::TestWithParam<const wchar_t*> {
 protected:
  template <typename Record>
  const Record* At(DWORD address) const {
    return reinterpret_cast<const Record*>(reinterpret_cast<const char*>(module.Get()) + address);
  }
  // Null when the module has none of that kind.
  template <typename Record>
  const Record* Directory(int index) const {
    const auto* headers = At<IMAGE_NT_HEADERS32>(At<IMAGE_DOS_HEADER>(0)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[index];
    return directory.Size == 0 ? nullptr : At<Record>(directory.VirtualAddress);
  }

  const std::wstring file = ThisFolder() + GetParam();
  const ScopedModule module{LoadLibraryExW(file.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES)};
};

TEST_P(ModuleFileTest, ExportsExactlyGetInstance) {
  ASSERT_TRUE(module);
  const auto* table = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->NumberOfFunctions, 1u);
  ASSERT_EQ(table->NumberOfNames, 1u);
  EXPECT_STREQ(At<char>(*At<DWORD>(table->AddressOfNames)), "GetInstance");
}

TEST_P(ModuleFileTest, ImportsOnlyWhatTheSystemFolderHolds) {
  ASSERT_TRUE(module);
  wchar_t folder[MAX_PATH];
  const std::wstring system = std::wstring(folder, GetSystemDirectoryW(folder, MAX_PATH)) + L'\\';
  const auto* import = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
  ASSERT_NE(import, nullptr);
  for (; import->Name != 0; ++import) {
    const std::string bytes = At<char>(import->Name);
    const std::wstring name(bytes.begin(), bytes.end());
    EXPECT_NE(GetFileAttributesW((system + name).c_str()), INVALID_FILE_ATTRIBUTES) << bytes;
    EXPECT_EQ(GetFileAttributesW((ThisFolder() + name).c_str()), INVALID_FILE_ATTRIBUTES) << bytes;
  }
  EXPECT_EQ(Directory<char>(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Product, ModuleFileTest,
                         testing::Values(L"StartupManagerHelper.dll", L"basekit.dll", L"prefkit.dll",
                                         L"raterkit.dll", L"guardkit.dll", L"tracekit.dll"));

TEST(IconTest, FixedImagesLoadInBothSizes) {
  const ScopedModule library(
      LoadLibraryExW(LoadedLibrary::File().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  ASSERT_TRUE(library);
  for (const wchar_t* name :
       {L"RATING_TRUST", L"RATING_UNKNOWN", L"RATING_RISKY", L"IMG_UNKNOWN_SMALL", L"IMG_UNKNOWN_LARGE"}) {
    for (const int side : {16, 32}) {
      const ScopedIcon icon(
          static_cast<HICON>(LoadImageW(library.Get(), name, IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
      EXPECT_TRUE(icon) << name << side;
    }
  }
}

}  // namespace
}  // namespace smh::test
