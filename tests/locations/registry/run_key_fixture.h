// Tests on the real Run keys, which are put back afterwards.
#pragma once

#include "tests/support/module_fixture.h"
#include "tests/support/registry_fixture.h"

namespace smh::test {

class RunKeyTest : public ModuleTest {
 protected:
  RunKeyTest() {
    MakeKey(HKEY_CURRENT_USER, kRunKey);
    MakeKey(HKEY_LOCAL_MACHINE, kRunKey);
    MakeKey(HKEY_LOCAL_MACHINE, kRunKey, OwnView());
  }

  TLocationStartup& UserRun() { return *FindLocation(sulRegistryUserRun); }
  TLocationStartup& CommonRun() { return *FindLocation(sulRegistryCommonRun); }

  // Loads and answers the one item with that caption; null when there is none.
  static ItemRef LoadAndFind(TLocationStartup& location, std::wstring_view caption) {
    location.ReadItems();
    return FindByCaption(location, caption);
  }
  static ItemRef FindByCaption(const TLocationStartup& location, std::wstring_view caption) {
    for (const ItemRef& item : Listed(location)) {
      if (item->GivenText() == caption) return item;
    }
    return nullptr;
  }
  // "name=text" of every value of a key.
  static std::vector<std::wstring> TextsIn(HKEY root, const std::wstring& key, REGSAM view = 0) {
    std::vector<std::wstring> texts = Values(root, key, view);
    for (std::wstring& text : texts) text += L'=' + TextOf(GetValue(root, key, text, view));
    return texts;
  }
  static std::wstring Command(const ItemRef& item) { return std::wstring(item->State().details.Command); }

 private:
  const EmptiedKeys keys_{{kRunKey, kRunKey + L"Once", kRunKey + L"Services", kRunKey + L"ServicesOnce",
                           kRunKey + L"-", kRunKey + L"Once-", kRunKey + L"Services-",
                           kRunKey + L"ServicesOnce-"}};
};

}  // namespace smh::test
