// Handlers, approved extensions, browser helper objects and search hooks changed by startupctl: in each view,
// under each root, with backup checkpoints and without.
#include "startupctl_fixture.h"

#include "text_encoding.h"

namespace smh::test {
namespace {

const std::wstring kClass = L"{6F2C4B70-1D6E-4A1F-8B4C-7E2D308F9C01}";
const std::wstring kMenus = L"Software\\Classes\\*\\shellex\\ContextMenuHandlers";
const std::wstring kPages = L"Software\\Classes\\Directory\\Background\\shellex\\PropertySheetHandlers";
const std::wstring kObjects =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects";
const std::wstring kApproved = L"Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved";
const std::wstring kHooks = L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks";

struct Entry {
  const wchar_t* location;
  HKEY root;
  const std::wstring& list;
  // The subkey of a handler; empty for an entry that is a value.
  std::wstring subKey;
  std::wstring text;
};

class StartupctlShellChanges : public StartupctlTest, public testing::WithParamInterface<bool> {
 protected:
  StartupctlShellChanges() {
    UseCheckpoints(GetParam());
    for (const REGSAM view : views_) {
      classes_.emplace_back(L"Software\\Classes\\CLSID\\" + kClass, HKEY_LOCAL_MACHINE, view);
      classes_.back().Set(L"InprocServer32", L"", Sz(Program()));
    }
  }

  static std::wstring Place(const Entry& entry, bool enabled) {
    return entry.list + (enabled ? L"" : L"\\AutorunsDisabled") +
           (entry.subKey.empty() ? L"" : L"\\" + entry.subKey);
  }
  static std::wstring ValueName(const Entry& entry) { return entry.subKey.empty() ? kClass : L""; }
  static std::optional<std::wstring> Find(const Entry& entry, bool enabled, REGSAM view) {
    return Text(entry.root, Place(entry, enabled), ValueName(entry), view);
  }
  // `action` on every listed entry of the test's class, in one call.
  void RunOnAll(const wchar_t* action, std::size_t count) {
    std::vector<std::wstring> arguments{action};
    for (const Json& item : List()) {
      if (item["command"] == ToUtf8(Program()))
        arguments.push_back(FromUtf8(item["name"].get<std::string>()));
    }
    ASSERT_EQ(arguments.size() - 1, count);
    Run(arguments);
  }

  const std::vector<REGSAM> views_ =
      HasTwoViews() ? std::vector<REGSAM>{0, KEY_WOW64_64KEY} : std::vector<REGSAM>{0};

 private:
  const EmptiedKeys emptied_{{kMenus, kPages, kObjects, kApproved, kHooks}};
  std::deque<RegistryTree> classes_;
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, StartupctlShellChanges, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "On" : "Off"; });

TEST_P(StartupctlShellChanges, EveryFamilyUnderEveryRootInEveryView) {
  const Entry entries[] = {
      {L"RegistryAllRegContextMenuHandlers", HKEY_LOCAL_MACHINE, kMenus, L"ctl menu", kClass},
      {L"RegistryAllRegContextMenuHandlers", HKEY_CURRENT_USER, kMenus, kClass, L"ctl user menu"},
      {L"RegistryBackgroundPropertyHandlers", HKEY_LOCAL_MACHINE, kPages, kClass, L""},
      {L"RegistryIEBrowserObjects", HKEY_LOCAL_MACHINE, kObjects, kClass, L"ctl helper"},
      {L"RegistryIEBrowserObjects", HKEY_CURRENT_USER, kObjects, kClass, L""},
      {L"RegistryShellExtApproved", HKEY_LOCAL_MACHINE, kApproved, L"", L"ctl approved"},
      {L"RegistryUserIEURLSearchHooks", HKEY_CURRENT_USER, kHooks, L"", L""},
      {L"RegistryCommonIEURLSearchHooks", HKEY_LOCAL_MACHINE, kHooks, L"", L"ctl hook"},
  };
  const auto expect = [&](const std::vector<REGSAM>& views, bool on, bool off) {
    for (const REGSAM view : views) {
      for (const Entry& entry : entries) {
        SCOPED_TRACE(ToUtf8(entry.location) + (entry.root == HKEY_CURRENT_USER ? " user" : " machine"));
        EXPECT_EQ(Find(entry, true, view), on ? std::optional(entry.text) : std::nullopt);
        EXPECT_EQ(Find(entry, false, view), off ? std::optional(entry.text) : std::nullopt);
      }
    }
  };
  // Each view on its own, then both, which must agree at every step.
  for (const std::vector<REGSAM>& views : {std::vector{views_.front()}, std::vector{views_.back()}, views_}) {
    for (const REGSAM view : views) {
      for (const Entry& entry : entries)
        SetValue(entry.root, Place(entry, true), ValueName(entry), Sz(entry.text), view);
    }
    RunOnAll(L"disable", std::size(entries));
    expect(views, false, true);
    RunOnAll(L"enable", std::size(entries));
    expect(views, true, false);
    RunOnAll(L"disable", std::size(entries));
    RunOnAll(L"delete", std::size(entries));
    expect(views, false, false);
  }
}

}  // namespace
}  // namespace smh::test
