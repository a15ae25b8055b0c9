#include "siblings/sibling_library.h"

#include "infra/intf_DebugLog.h"
#include "infra/intf_FileRater.h"
#include "infra/intf_general.h"
#include "infra/intf_journal.h"
#include "infra/intf_safeguard.h"
#include "infra/intf_settings.h"
#include "infra/text.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

struct Service {
  const wchar_t* library;
  const wchar_t* id;
  GUID iid;
};

// As hosts know them: texts and identifiers as published, not taken from the code under test.
const Service kServices[] = {
    {L"basekit.dll", L"{5C9ABD04-59E8-4686-8E32-FF648BB7FDD5}", IHelper::iid},
    {L"basekit.dll", L"{E3B78765-F359-4D65-86A3-5FE2CA92922E}", IGlobals::iid},
    {L"basekit.dll", L"{6773075A-4E7A-4292-A6B9-12F24F316C36}", IShellHelper::iid},
    {L"basekit.dll", L"{77E19BE1-1240-496E-9650-2D951D7396DF}", IShellDialogsHelper::iid},
    {L"raterkit.dll", L"{A90B8362-CEEF-4902-A639-A0125EDD0201}", IFileRater::iid},
    {L"guardkit.dll", L"{5C2990D5-37CD-4FE8-8EC4-A23723A7D4F1}", ISafeguard::iid},
    {L"guardkit.dll", L"{D2A4C6E0-71B5-4E39-A0F8-5B9C3D8E1F46}", IJournal::iid},
    {L"prefkit.dll", L"{EFD8173C-C76D-4A9A-87BF-359D2ED08AFD}", ISettings::iid},
    {L"tracekit.dll", L"{F7CF8DA8-ADCC-4d0b-BB10-66552FC851A9}", IDebugLog::iid},
};

// Loads and unloads the library of every row.
TEST(SiblingModuleTest, OneExportHandsOutServicesThatOutliveTheirReferences) {
  for (const Service& row : kServices) {
    SCOPED_TRACE(row.id);
    const test::SiblingLibrary library(row.library);
    EXPECT_EQ(library.ExportNames(), std::vector<std::string>{"GetInstance"});
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
    for (const GUID& iid : {row.iid, IID_IUnknown}) {
      void* object = nullptr;
      EXPECT_EQ(service->QueryInterface(iid, &object), S_OK);
      EXPECT_EQ(object, service);
    }
    void* object = service;
    EXPECT_EQ(service->QueryInterface(IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
  }
}

TEST(SiblingModuleTest, EveryLibraryDescribesItself) {
  const test::SiblingLibrary basekit(L"basekit.dll");
  auto* const helper = basekit.Service<IHelper>();
  for (const Service& row : kServices) {
    const std::wstring path = test::ThisFolder() + row.library;
    const auto string = [&](const wchar_t* name) {
      return TakeText([&](BoundaryText* out) { return helper->GetVersionString(path.c_str(), name, out); });
    };
    EXPECT_EQ(string(L"CompanyName"), L"Quillmark");
    EXPECT_EQ(string(L"OriginalFilename"), row.library);
  }
}

}  // namespace
}  // namespace smh
