#include "siblings/sibling_library.h"

#include "infra/intf_DebugLog.h"
#include "infra/intf_FileRater.h"
#include "infra/intf_general.h"
#include "infra/intf_safeguard.h"
#include "infra/intf_settings.h"
#include "infra/text.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>

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
    {L"prefkit.dll", L"{EFD8173C-C76D-4A9A-87BF-359D2ED08AFD}", ISettings::iid},
    {L"tracekit.dll", L"{F7CF8DA8-ADCC-4d0b-BB10-66552FC851A9}", IDebugLog::iid},
};

class ServiceTest : public testing::TestWithParam<Service> {
 protected:
  test::SiblingLibrary library_{GetParam().library};
};

TEST_P(ServiceTest, IsTheOnlyExportsAnswerForItsIdentifierInAnyCase) {
  EXPECT_EQ(library_.ExportNames(), std::vector<std::string>{"GetInstance"});
  void* const service = library_.Instance(GetParam().id);
  ASSERT_NE(service, nullptr);
  std::wstring id = GetParam().id;
  for (wchar_t& unit : id) unit = static_cast<wchar_t>(std::towlower(unit));
  EXPECT_EQ(library_.Instance(id.c_str()), service);

  EXPECT_EQ(library_.Instance(nullptr), nullptr);
  EXPECT_EQ(library_.Instance(L""), nullptr);
  EXPECT_EQ(library_.Instance(L"{00000000-0000-0000-C000-000000000046}"), nullptr);
  EXPECT_EQ(library_.Instance((id + L" ").c_str()), nullptr);
  EXPECT_EQ(library_.Instance(id.substr(0, id.size() - 1).c_str()), nullptr);
}

TEST_P(ServiceTest, OutlivesItsReferencesAndAnswersTwoInterfaces) {
  auto* const service = static_cast<IUnknown*>(library_.Instance(GetParam().id));
  for (int i = 0; i < 3; ++i) service->Release();
  EXPECT_GT(service->AddRef(), 0u);

  void* object = nullptr;
  EXPECT_EQ(service->QueryInterface(GetParam().iid, &object), S_OK);
  EXPECT_EQ(object, service);
  object = nullptr;
  EXPECT_EQ(service->QueryInterface(IID_IUnknown, &object), S_OK);
  EXPECT_EQ(object, service);
  EXPECT_EQ(service->QueryInterface(IID_IClassFactory, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(service->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(Siblings, ServiceTest, testing::ValuesIn(kServices));

TEST(SiblingModuleTest, LoadsAndUnloadsAgainAndAgain) {
  for (int i = 0; i < 5; ++i) {
    for (const Service& row : kServices) {
      const test::SiblingLibrary library(row.library);
      ASSERT_NE(library.Instance(row.id), nullptr);
    }
  }
}

TEST(SiblingModuleTest, EveryLibraryDescribesItself) {
  const test::SiblingLibrary basekit(L"basekit.dll");
  auto* const helper = basekit.Service<IHelper>();
  std::vector<std::wstring> descriptions;
  for (const wchar_t* const file :
       {L"basekit.dll", L"prefkit.dll", L"raterkit.dll", L"guardkit.dll", L"tracekit.dll"}) {
    const std::wstring path = test::ThisFolder() + file;
    const auto string = [&](const wchar_t* name) {
      return TakeText([&](BoundaryText* out) { return helper->GetVersionString(path.c_str(), name, out); });
    };
    EXPECT_EQ(string(L"CompanyName"), L"Quillmark");
    EXPECT_EQ(string(L"ProductName"), L"Startup Manager");
    EXPECT_EQ(string(L"OriginalFilename"), file);
    EXPECT_EQ(std::ranges::count(descriptions, string(L"FileDescription")), 0) << string(L"FileDescription");
    descriptions.push_back(string(L"FileDescription"));
  }
}

}  // namespace
}  // namespace smh
