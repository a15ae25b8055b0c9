#include "infra/uAxDebug.h"

#include "support/child_process.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "support/test_main.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

constexpr wchar_t kSettings[] = L"Software\\Quillmark\\DebugMode";

SMH_CHILD(DebugDecision) {
  StartDebugLog();
  const bool decided = IsDebugMode();
  // What was decided at the start holds.
  SetDebugModeSetting(!decided);
  return IsDebugMode() == decided ? decided : 2;
}

struct DebugCase {
  bool library;
  std::optional<test::RawValue> setting;
  std::vector<std::wstring> arguments;
  DWORD expected;
};

TEST(DebugDecisionTest, LibraryThenRegistryThenFirstArgument) {
  const test::RawValue odd{REG_DWORD, {std::byte{1}}};
  const DebugCase cases[] = {
      {false, test::Dword(1), {L"-debug"}, 0},
      {true, std::nullopt, {}, 0},
      {true, test::Dword(1), {}, 1},
      {true, test::Dword(0), {}, 0},
      {true, test::Dword(2), {}, 0},
      {true, test::Sz(L"1"), {}, 0},
      {true, odd, {}, 0},
      {true, std::nullopt, {L"-debug"}, 1},
      {true, test::Dword(0), {L"-DeBuG"}, 1},
      {true, odd, {L"-DEBUG"}, 1},
      {true, std::nullopt, {L"x", L"-debug"}, 0},
      {true, std::nullopt, {L"-debugger"}, 0},
  };
  const test::SavedKey saved(HKEY_CURRENT_USER, kSettings);
  const test::TemporaryFolder folder;
  const std::wstring program = folder.File(L"host.exe");
  ASSERT_TRUE(CopyFileW(test::ThisProgram().c_str(), program.c_str(), TRUE));
  const std::wstring library = folder.File(L"tracekit.dll");
  for (const DebugCase& row : cases) {
    DeleteFileW(library.c_str());
    if (row.library) folder.Write(L"tracekit.dll", "only its presence counts");
    test::DeleteKeyTree(HKEY_CURRENT_USER, kSettings);
    if (row.setting) test::SetValue(HKEY_CURRENT_USER, kSettings, L"DebugMode", *row.setting);
    std::vector<std::wstring> arguments = row.arguments;
    arguments.push_back(L"--child=DebugDecision");
    const test::ChildResult result = test::RunProgram(program, arguments);
    EXPECT_EQ(result.exitCode, row.expected) << "case " << &row - cases << ": " << result.output;
    EXPECT_EQ(test::GetValue(HKEY_CURRENT_USER, kSettings, L"DebugMode"), test::Dword(1 - row.expected));
  }
}

TEST(DebugLogTest, ClientOfAnOffLogAnswersWithoutALibrary) {
  StopDebugLog();
  IDebugLog* const log = DebugLog();
  ASSERT_NE(log, nullptr);
  EXPECT_FALSE(IsDebugMode());
  EXPECT_EQ(log->Message(L"x"), S_OK);
  void* same = nullptr;
  EXPECT_EQ(log->QueryInterface(IDebugLog::iid, &same), S_OK);
  EXPECT_EQ(same, log);
  log->Release();
  EXPECT_EQ(DebugLog(), log);
}

}  // namespace
}  // namespace smh
