#include "startupctl_fixture.h"

#include "support/child_process.h"
#include "text_encoding.h"

namespace smh::test {
namespace {

constexpr wchar_t kSampleProgram[] = L"..\\samples\\drive_c\\Program Files\\Northlight Audio\\auroratray.exe";

}  // namespace

StartupctlTest::StartupctlTest() : program_(folder_.File(L"tray program.exe")) {
  // Windows always has these.
  MakeKey(HKEY_CURRENT_USER, kRunKey);
  for (const REGSAM view : {REGSAM(0), NativeView()}) MakeKey(HKEY_LOCAL_MACHINE, kRunKey, view);
  WriteFileBytes(program_, ReadFileBytes(ThisFolder() + kSampleProgram));
}

std::optional<std::wstring> StartupctlTest::Text(HKEY root, const std::wstring& key, const std::wstring& name,
                                                 REGSAM view) {
  const auto value = GetValue(root, key, name, view);
  if (!value) return std::nullopt;
  EXPECT_EQ(value->type, static_cast<DWORD>(REG_SZ));
  const auto* units = reinterpret_cast<const wchar_t*>(value->bytes.data());
  const std::size_t count = value->bytes.size() / sizeof(wchar_t);
  return std::wstring(units, count == 0 ? 0 : count - 1);
}

std::optional<std::wstring> StartupctlTest::TextInBothViews(HKEY root, const std::wstring& key,
                                                            const std::wstring& name) {
  const auto plain = Text(root, key, name, 0);
  EXPECT_EQ(plain, Text(root, key, name, NativeView()));
  return plain;
}

void StartupctlTest::UseCheckpoints(bool use) {
  SetValue(HKEY_CURRENT_USER, kSettings, L"UseCheckpoints", Dword(use ? 1 : 0));
}

StartupctlResult StartupctlTest::Run(const std::vector<std::wstring>& arguments, DWORD exitCode) {
  StartupctlResult result = RunStartupctl(arguments);
  EXPECT_EQ(result.exitCode, exitCode) << ToUtf8(arguments.front()) << ": " << result.errors;
  return result;
}

Json StartupctlTest::List() {
  return Json::parse(Run({L"list", L"--all", L"--json"}).output);
}

Json StartupctlTest::Find(const std::string& caption) {
  Json found = Json::array();
  for (const Json& item : List()) {
    if (item["caption"] == caption) found.push_back(item);
  }
  return found;
}

}  // namespace smh::test
