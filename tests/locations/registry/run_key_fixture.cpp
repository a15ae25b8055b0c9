#include "run_key_fixture.h"

namespace smh::test {

RunKeyTest::RunKeyTest() {
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    for (const wchar_t* path :
         {L"", L"Once", L"Services", L"ServicesOnce", L"-", L"Once-", L"Services-", L"ServicesOnce-"}) {
      for (const REGSAM view : {REGSAM(0), REGSAM(KEY_WOW64_64KEY)}) {
        if (view != 0 && !HasTwoViews()) continue;
        saved_.push_back(std::make_unique<SavedKey>(root, kRun + path, view));
        DeleteKeyTree(root, kRun + path, view);
      }
    }
  }
  MakeKey(HKEY_CURRENT_USER, kRun);
  MakeKey(HKEY_LOCAL_MACHINE, kRun);
  MakeKey(HKEY_LOCAL_MACHINE, kRun, OwnView());
}

ItemRef RunKeyTest::LoadAndFind(TLocationStartup& location, std::wstring_view caption) {
  location.ReadItems();
  return FindByCaption(location, caption);
}

ItemRef RunKeyTest::FindByCaption(TLocationStartup& location, std::wstring_view caption) {
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->Location() == location.LocationType() && item->GivenText() == caption) return item;
  }
  return nullptr;
}

std::vector<std::wstring> RunKeyTest::Captions(TLocationStartup& location) {
  std::vector<std::wstring> captions;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->Location() == location.LocationType()) captions.push_back(item->GivenText());
  }
  return captions;
}

}  // namespace smh::test
