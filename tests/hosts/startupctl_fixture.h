// startupctl.exe on the real Run keys: they are empty at the beginning of a test and as before at its end.
#pragma once

#include "startupctl_process.h"

#include "support/file_fixture.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <deque>
#include <optional>
#include <string>

namespace smh::test {

using Json = nlohmann::ordered_json;

inline const std::wstring kRunKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
inline const std::wstring kSideKey = kRunKey + L"\\Disabled (Startup Manager)";

class StartupctlTest : public testing::Test {
 protected:
  inline static const std::wstring kSettings =
      L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";

  StartupctlTest();

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
                                                     const std::wstring& name);
  static std::optional<std::wstring> Text(HKEY root, const std::wstring& key, const std::wstring& name,
                                          REGSAM view);
  // The view in which the library writes entries of HKEY_LOCAL_MACHINE.
  static REGSAM NativeView() { return HasTwoViews() ? KEY_WOW64_64KEY : 0; }
  static void UseCheckpoints(bool use);

  // Runs the command and expects the exit code; its error output is shown when that differs.
  static StartupctlResult Run(const std::vector<std::wstring>& arguments, DWORD exitCode = 0);
  // The items of `list --all --json` and those of one caption.
  static Json List();
  static Json Find(const std::string& caption);

 private:
  const SavedKey settings_{HKEY_CURRENT_USER, kSettings};
  const EmptiedKeys emptied_{{kRunKey, kRunKey + L"-"}};
  TemporaryFolder folder_;
  std::wstring program_;
};

}  // namespace smh::test
