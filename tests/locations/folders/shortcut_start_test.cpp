// A shortcut starts what its command started: the same program with the same arguments, whoever starts it.
// Every command of the table is started as it stands and through its shortcut, by a 32-bit process and, where
// there are such, by a 64-bit one. What is refused is tested with the commands.
#include "infra/runtime/text.h"
#include "locations/folders/shortcut_command.h"
#include "model/change_refused.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"
#include "tests/locations/folders/folder_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

// The last line of a record.
constexpr char kEnd[] = {'\n', '\0', '.', '\0', '\n', '\0'};

enum class Started {
  // By every process, before and after.
  kByAll,
  // The same, its references being expanded before.
  kExpanded,
  // There is nothing to start.
  kNever,
  // Before by a 32-bit process alone, which sees other folders; after by all.
  kBeforeBy32,
  // Before by a 32-bit process alone, after by a 64-bit one alone.
  kBeforeBy32AfterBy64,
};

struct Row {
  std::wstring command;
  Started started = Started::kByAll;
};

struct Starter {
  const wchar_t* program;
  bool is64Bit;
};

class ShortcutStartTest : public FolderTest {
 protected:
  ShortcutStartTest() {
    const std::string recorder32 = Program32(L"recorder32.exe");
    for (const wchar_t* const name :
         {L"tool.exe", L"two words.exe", L"caf\u00E9 \u4E2D.exe", L"dots.v2.exe"}) {
      Folder().Write(name, recorder32);
    }
    Install(FileUtils::GetSystemDir() + L"smh-twins.exe", recorder32);
    Install(FileUtils::GetSystemDir() + L"smh-record.dll", Program32(L"record_call32.dll"));
    Install(WindowsFolder() + L"smh-bare.exe", recorder32);
    if (WinVersionInfo::IsWow64()) {
      const std::string recorder64 = Program32(L"recorder64.exe");
      Install(FileUtils::GetSystemDir() + L"smh-only32.exe", recorder32);
      Install(FileUtils::GetSysnativeDir() + L"smh-twins.exe", recorder64);
      Install(FileUtils::GetSysnativeDir() + L"smh-only64.exe", recorder64);
      Install(FileUtils::GetSysnativeDir() + L"smh-record.dll", Program32(L"record_call64.dll"));
    }
    Folder().MakeFolder(L"made");
    SetEnvironmentVariableW(L"SmhTool", In(L"tool.exe").c_str());
    SetEnvironmentVariableW(L"SmhFolder", Folder().Path().c_str());
  }
  ~ShortcutStartTest() override {
    for (const std::wstring& file : installed_) DeleteFileW(file.c_str());
    SetEnvironmentVariableW(L"SmhTool", nullptr);
    SetEnvironmentVariableW(L"SmhFolder", nullptr);
  }

  std::wstring In(std::wstring_view name) const { return Folder().File(name); }
  static std::wstring WindowsFolder() {
    return std::wstring(FolderPart(WithoutTrailingBackslash(FileUtils::GetSystemDir())));
  }

  std::vector<Row> Accepted() const;
  std::vector<Row> OfTheSystemFolders() const;

  static std::vector<Starter> Starters() {
    std::vector<Starter> starters = {{L"starter32.exe", false}};
    if (WinVersionInfo::IsWow64()) starters.push_back({L"starter64.exe", true});
    return starters;
  }

  // What was recorded of every row, before and after, in the order of the rows.
  struct Records {
    std::vector<std::wstring> before;
    std::vector<std::wstring> after;
  };
  Records StartAll(const std::vector<Row>& rows, const std::vector<std::wstring>& links,
                   const Starter& starter) const;

 private:
  static std::string Program32(const wchar_t* name) { return ReadFileBytes(ThisFolder() + name); }
  void Install(const std::wstring& file, const std::string& bytes) {
    installed_.push_back(WriteFileBytes(file, bytes));
  }
  std::wstring RecordFile(std::size_t row, const wchar_t* when) const {
    return In(L"record " + std::to_wstring(row) + when);
  }
  // Taken away, so that the next starter begins anew. The shell need not say what it has started, so that the
  // starter could wait for it.
  static std::wstring TakeRecord(const std::wstring& file, bool isAwaited) {
    std::string bytes;
    for (int tries = 0; tries < (isAwaited ? 500 : 1) && !bytes.ends_with(std::string(kEnd, sizeof kEnd));
         ++tries) {
      if (tries > 0) Sleep(20);
      if (fs::exists(file)) bytes = ReadFileBytes(file);
    }
    if (bytes.empty()) return L"(nothing)";
    fs::remove(file);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
    // The program's letters are those in which it was named.
    CharLowerBuffW(text.data(), static_cast<DWORD>(text.find(L'\n')));
    return text;
  }

  std::vector<std::wstring> installed_;
};

ShortcutStartTest::Records ShortcutStartTest::StartAll(const std::vector<Row>& rows,
                                                       const std::vector<std::wstring>& links,
                                                       const Starter& starter) const {
  std::wstring plan;
  const auto add = [&](const std::wstring& how, const std::wstring& record, const std::wstring& what) {
    for (const std::wstring& text : {how, record, what}) plan.append(text).append(1, L'\0');
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    add(rows[i].started == Started::kExpanded ? L"expand" : L"command", RecordFile(i, L" before"),
        rows[i].command);
    add(L"open", RecordFile(i, L" after"), links[i]);
  }
  const std::wstring file =
      Folder().Write(L"plan", {reinterpret_cast<const char*>(plan.data()), plan.size() * sizeof(wchar_t)});
  const ChildResult result = RunProgram(ThisFolder() + starter.program, {file}, 4 * kChildTimeLimit);
  EXPECT_TRUE(!result.timedOut && result.exitCode == 0) << starter.program;
  Records records;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    records.before.push_back(TakeRecord(RecordFile(i, L" before"), false));
    const Started started = rows[i].started;
    const bool isAwaited =
        started != Started::kNever && (starter.is64Bit || started != Started::kBeforeBy32AfterBy64);
    records.after.push_back(TakeRecord(RecordFile(i, L" after"), isAwaited));
  }
  return records;
}

std::vector<Row> ShortcutStartTest::Accepted() const {
  const std::wstring tool = In(L"tool.exe");
  const std::wstring quoted = L'"' + tool + L'"';
  const std::wstring two = In(L"two words.exe");
  const std::wstring quotedTwo = L'"' + two + L'"';
  std::wstring slashes = tool;
  std::ranges::replace(slashes, L'\\', L'/');
  std::wstring capitals = tool;
  CharUpperBuffW(capitals.data(), static_cast<DWORD>(capitals.size()));
  using enum Started;
  std::vector<Row> rows = {
      {tool},
      {quoted},
      {two},
      {quotedTwo},
      {In(L"caf\u00E9 \u4E2D.exe") + L" a"},
      {tool + L" \u4E2D \u00E9 \u20AC \U0001F600"},
      {In(L"dots.v2.exe") + L" x"},
      {slashes + L" a"},
      {capitals + L" A"},
      {In(L"made\\..\\tool.exe") + L" a"},
      {In(L"tool") + L" /x"},
      {L'"' + In(L"tool") + L"\" /x"},
      {L" \t " + tool + L" a"},
      {L"  " + quoted + L" a"},
      {tool + L" a   "},
      {quoted + L"   "},
      {tool + L"\ta\t\"b\tc\"\t"},
      {L"smh-bare a b"},
      {L"smh-bare.exe \"a b\""},
      {L"rundll32 smh-record.dll,RecordCall"},
      {L"rundll32.exe smh-record.dll,RecordCall a \"b c\"  d"},
      {FileUtils::GetSystemDir() + L"rundll32.exe smh-record.dll,RecordCall x"},
      {L'"' + FileUtils::GetSystemDir() + L"rundll32.exe\" \"smh-record.dll\",RecordCall \"x\""},
      {L"cmd /c " + tool + L" a \"b c\""},
      {L"cmd.exe /c \"" + quotedTwo + L" \"a b\" c\""},
      {FileUtils::GetSystemDir() + L"cmd.exe /c " + tool + L" a>nul"},
      {L"\"cmd\" /d /c \"" + quoted + L"\""},
      {L"%ComSpec% /c " + tool + L" a", kExpanded},
      {L"%SmhTool% a", kExpanded},
      {L"\"%SmhTool%\" \"a b\"", kExpanded},
      {L"%smhfolder%\\two words.exe a", kExpanded},
      {L"\"%SmhFolder%\\two words.exe\" \"a\" b", kExpanded},
      {FileUtils::GetSystemDir() + L"smh-twins.exe a"},
      {L"smh-twins a"},
      {L"Q:\\gone\\a.exe x", kNever},
      {L"\"Q:\\gone folder\\a b.exe\" \"x y\"", kNever},
      {In(L"gone folder\\gone.exe") + L" x", kNever},
      {L"\"" + In(L"gone.exe") + L"\" /x \"y\"", kNever},
  };
  for (const wchar_t* const arguments : {L"a b c",
                                         L"\"a b\"",
                                         L"\"two three\" four",
                                         L"\"\"",
                                         L"\"\" \"\"",
                                         L"a\"\"b",
                                         L"\"a\"\"b\"",
                                         L"\"\"\"a\"\"\"",
                                         L"\\\"a\\\"",
                                         L"\"a\\\\\" b",
                                         L"\"a\\\\\\\" b\" c",
                                         L"a\\\\\\\\\"b c\"",
                                         L"\"not closed",
                                         L"a\"b c\"d",
                                         L"a    b   ",
                                         L"/x:\"C:\\a b\\c\"",
                                         L"-p=\"x y\" --q='z w'",
                                         L"%SmhTool%",
                                         L"%unknown%",
                                         L"100% % %%",
                                         L"^a &b |c <d >e (f)",
                                         L"a,b;c=d @e /? *.* !",
                                         L"C:\\folder\\ \"C:\\folder\\\\\"",
                                         L"http://example.org/x?y=%20z"}) {
    rows.push_back({tool + L' ' + arguments});
    rows.push_back({quotedTwo + L' ' + arguments});
  }
  rows.push_back({tool + L' ' + tool});
  rows.push_back({quoted + L' ' + quoted + L' ' + quotedTwo});
  for (const std::size_t length : {300u, 2'000u, 9'000u, 30'000u}) {
    rows.push_back({tool + L" \"" + std::wstring(length, L'a') + L" b\" c"});
  }
  return rows;
}

std::vector<Row> ShortcutStartTest::OfTheSystemFolders() const {
  if (!WinVersionInfo::IsWow64()) return {};
  using enum Started;
  return {
      {FileUtils::GetSystemDir() + L"smh-only32.exe a", kBeforeBy32},
      {L"smh-only32 a", kBeforeBy32},
      {WindowsFolder() + L"SysWOW64\\smh-only32.exe \"a b\""},
      {FileUtils::GetSysnativeDir() + L"smh-only64.exe a", kBeforeBy32AfterBy64},
      {L'"' + FileUtils::GetSysnativeDir() + L"smh-only64.exe\" \"a b\"", kBeforeBy32AfterBy64},
  };
}

TEST_F(ShortcutStartTest, TheShortcutStartsWhatTheCommandStarted) {
  std::vector<Row> rows = Accepted();
  const std::vector<Row> more = OfTheSystemFolders();
  rows.insert(rows.end(), more.begin(), more.end());
  std::vector<std::wstring> links;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command.substr(0, 100));
    std::wstring file = In(L"made\\" + std::to_wstring(links.size()) + L".lnk");
    EXPECT_NO_THROW(WriteShortcut(ShortcutFields(CommandForShortcut(row.command)), file));
    links.push_back(std::move(file));
  }
  std::vector<Records> records;
  for (const Starter& starter : Starters()) records.push_back(StartAll(rows, links, starter));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(rows[i].command.substr(0, 100));
    const Started started = rows[i].started;
    const bool isOf32 = started == Started::kBeforeBy32 || started == Started::kBeforeBy32AfterBy64;
    EXPECT_EQ(records[0].before[i] == L"(nothing)", started == Started::kNever);
    for (std::size_t by = 0; by < records.size(); ++by) {
      if (by == 0 && started == Started::kBeforeBy32AfterBy64) continue;
      EXPECT_EQ(records[by].after[i], records[isOf32 ? 0 : by].before[i]) << (by == 0 ? "by 32" : "by 64");
    }
  }
}

}  // namespace
}  // namespace smh::test
