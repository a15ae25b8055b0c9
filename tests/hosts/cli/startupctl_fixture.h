// startupctl.exe on the real Run keys: they are empty at the beginning of a test and as before at its end.
#pragma once

#include "hosts/common/text_encoding.h"
#include "infra/files/file_facts.h"
#include "tests/hosts/cli/startupctl_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <nlohmann/json.hpp>
#include <shlobj.h>

#include <filesystem>

namespace smh::test {

using Json = nlohmann::ordered_json;

class StartupctlTest : public testing::Test {
 protected:
  inline static const std::wstring kSettings =
      L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";

  StartupctlTest() {
    // Windows always has these.
    MakeKey(HKEY_CURRENT_USER, kRunKey);
    for (const REGSAM view : {REGSAM(0), OwnView()}) MakeKey(HKEY_LOCAL_MACHINE, kRunKey, view);
  }

  // A program that starts without consequence, with a version record, in a folder of the test's own.
  const std::wstring& Program() const noexcept { return program_; }
  const TemporaryFolder& Folder() const noexcept { return folder_; }
  // `arguments` behind the quoted program.
  std::wstring Command(const std::wstring& arguments) const { return L"\"" + program_ + L"\" " + arguments; }

  void SetRun(HKEY root, const std::wstring& name, const std::wstring& command, REGSAM view = 0) const {
    SetValue(root, kRunKey, name, Sz(command), view);
  }
  // The text of a value in both views, which must agree; none when it is in neither.
  static std::optional<std::wstring> TextInBothViews(HKEY root, const std::wstring& key,
                                                     const std::wstring& name) {
    const std::optional<RawValue> plain = GetValue(root, key, name);
    EXPECT_EQ(plain, GetValue(root, key, name, OwnView()));
    if (!plain) return std::nullopt;
    EXPECT_EQ(plain->type, static_cast<DWORD>(REG_SZ));
    return TextOf(*plain);
  }
  // Tests run with administrators' rights.
  static std::filesystem::path JournalFolder() {
    return std::filesystem::path(ShellFolder(CSIDL_COMMON_APPDATA)) / L"Quillmark\\Startup Manager\\Journal";
  }
  static void ClearJournal() {
    std::error_code ignored;
    std::filesystem::remove_all(JournalFolder(), ignored);
  }
  static void UseCheckpoints(bool use) {
    SetValue(HKEY_CURRENT_USER, kSettings, L"UseCheckpoints", Dword(use ? 1 : 0));
  }

  // Runs the command and expects the exit code; its error output is shown when that differs.
  static StartupctlResult Run(const std::vector<std::wstring>& arguments, DWORD exitCode = 0) {
    StartupctlResult result = RunStartupctl(arguments);
    EXPECT_EQ(result.exitCode, exitCode) << ToUtf8(arguments.front()) << ": " << result.errors;
    return result;
  }
  // The items of `list --all --json` and those of one caption.
  static Json List() { return Json::parse(Run({L"list", L"--all", L"--json"}).output); }
  static Json Find(const std::string& caption) {
    Json found = Json::array();
    for (const Json& item : List()) {
      if (item["caption"] == caption) found.push_back(item);
    }
    return found;
  }

 private:
  const SavedKey settings_{HKEY_CURRENT_USER, kSettings};
  const EmptiedKeys emptied_{{kRunKey, kRunKey + L"-"}};
  const TemporaryFolder folder_;
  const std::wstring program_ = folder_.Write(L"tray program.exe", ReadFileBytes(SampleProgramFile()));
};

}  // namespace smh::test
