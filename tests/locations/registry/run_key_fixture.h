// Tests on the real Run keys, which are put back afterwards.
#pragma once

#include "model/uLocationStartup.h"
#include "support/module_fixture.h"
#include "support/registry_fixture.h"

#include <memory>
#include <string>
#include <vector>

namespace smh::test {

inline const std::wstring kRun = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
inline const std::wstring kOwnSide = kRun + L"\\Disabled (Startup Manager)";

class RunKeyTest : public ModuleTest {
 protected:
  RunKeyTest();

  TLocationStartup& UserRun() { return *FindLocation(sulRegistryUserRun); }
  TLocationStartup& CommonRun() { return *FindLocation(sulRegistryCommonRun); }
  // Loads and answers the one item with that caption; null when there is none.
  static ItemRef LoadAndFind(TLocationStartup& location, std::wstring_view caption);
  static ItemRef FindByCaption(TLocationStartup& location, std::wstring_view caption);
  static std::vector<std::wstring> Captions(TLocationStartup& location);
  static std::wstring Command(const ItemRef& item) { return item->Details().Command; }

  // The 64-bit view where there is one.
  static REGSAM OwnView() { return HasTwoViews() ? KEY_WOW64_64KEY : 0; }

 private:
  std::vector<std::unique_ptr<SavedKey>> saved_;
};

}  // namespace smh::test
