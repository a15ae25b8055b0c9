#include "siblings/basekit/version_cache.h"
#include "tests/siblings/common/sibling_library.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

// As hosts know them: as published, not taken from the code under test.
const struct {
  const wchar_t* library;
  const wchar_t* id;
} kServices[] = {
    {L"basekit.dll", L"{5C9ABD04-59E8-4686-8E32-FF648BB7FDD5}"},
    {L"basekit.dll", L"{E3B78765-F359-4D65-86A3-5FE2CA92922E}"},
    {L"basekit.dll", L"{6773075A-4E7A-4292-A6B9-12F24F316C36}"},
    {L"basekit.dll", L"{77E19BE1-1240-496E-9650-2D951D7396DF}"},
    {L"raterkit.dll", L"{A90B8362-CEEF-4902-A639-A0125EDD0201}"},
    {L"guardkit.dll", L"{5C2990D5-37CD-4FE8-8EC4-A23723A7D4F1}"},
    {L"guardkit.dll", L"{D2A4C6E0-71B5-4E39-A0F8-5B9C3D8E1F46}"},
    {L"prefkit.dll", L"{EFD8173C-C76D-4A9A-87BF-359D2ED08AFD}"},
    {L"tracekit.dll", L"{F7CF8DA8-ADCC-4d0b-BB10-66552FC851A9}"},
};

// Loads and unloads the library of every row.
TEST(SiblingModuleTest, EveryLibraryDescribesItselfAndItsServicesOutliveTheirReferences) {
  VersionCache versions;
  for (const auto& row : kServices) {
    SCOPED_TRACE(row.id);
    const SiblingLibrary library(row.library);
    auto* const service = static_cast<IUnknown*>(library.Instance(row.id));
    ASSERT_NE(service, nullptr);
    std::wstring id = row.id;
    CharLowerW(id.data());
    EXPECT_EQ(library.Instance(id.c_str()), service);
    for (const std::wstring& other : {id.substr(1), id + L" ", std::wstring()}) {
      EXPECT_EQ(library.Instance(other.c_str()), nullptr);
    }
    EXPECT_EQ(library.Instance(nullptr), nullptr);

    for (int i = 0; i < 3; ++i) service->Release();
    GUID own;
    ASSERT_EQ(IIDFromString(row.id, &own), S_OK);
    for (const GUID& iid : {own, IID_IUnknown}) {
      void* object = nullptr;
      EXPECT_EQ(service->QueryInterface(iid, &object), S_OK);
      EXPECT_EQ(object, service);
    }
    void* object = service;
    EXPECT_EQ(service->QueryInterface(IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);

    const std::wstring path = ThisFolder() + row.library;
    EXPECT_EQ(versions.Get(path)->String(L"CompanyName"), L"Quillmark");
    EXPECT_EQ(versions.Get(path)->String(L"OriginalFilename"), row.library);
  }
}

}  // namespace
}  // namespace smh::test
