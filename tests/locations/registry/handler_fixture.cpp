#include "handler_fixture.h"

#include "infra/uRegistryUtils.h"

namespace smh::test {

HandlerTest::HandlerTest()
    : keys_({kMenus, kObjects, kApproved, kHooks, L"Software\\Classes\\CLSID\\" + kClass,
             L"Software\\Classes\\CLSID\\" + kOther, L"Software\\Classes\\CLSID\\" + kUnserved}) {
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    const std::wstring classes = L"Software\\Classes\\CLSID\\";
    SetHandler(HKEY_LOCAL_MACHINE, classes + kClass + L"\\InprocServer32", kServer, view);
    SetHandler(HKEY_LOCAL_MACHINE, classes + kOther + L"\\InprocServer32", kOtherServer, view);
    SetHandler(HKEY_LOCAL_MACHINE, classes + kUnserved + L"\\LocalServer32", kServer, view);
  }
}

std::vector<ItemRef> HandlerTest::Listed(const TLocationStartup& location) {
  std::vector<ItemRef> listed;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->Location() == location.LocationType()) listed.push_back(item);
  }
  return listed;
}

std::vector<std::wstring> HandlerTest::Captions(const TLocationStartup& location) {
  std::vector<std::wstring> captions;
  for (const ItemRef& item : Listed(location)) captions.push_back(item->GivenText());
  return captions;
}

ItemRef HandlerTest::LoadAndFind(TLocationStartup& location, REGSAM view, HKEY root, const std::wstring& key,
                                 const std::wstring& name) {
  location.ReadItems();
  return FindItem(location.LocationType(), BuildFullValuePath(view, root, key, name));
}

}  // namespace smh::test
