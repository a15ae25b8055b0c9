// Entries on a share or a network drive that does not answer: every look at it takes seven seconds.
#include "tests/core/boundary_fixture.h"
#include "tests/support/import_patch.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>

namespace smh::test {
namespace {

constexpr DWORD kHangMs = 7000;
constexpr int kEntries = 50;

std::atomic<int> g_hanging{0};
std::atomic<int> g_mostHanging{0};

bool IsDead(const wchar_t* path) {
  const std::wstring text = path == nullptr ? L"" : path;
  return text.starts_with(L"\\\\smh-dead\\") || text.starts_with(L"Y:\\");
}

void HangIfDead(const wchar_t* path) {
  if (!IsDead(path)) return;
  g_mostHanging = std::max(g_mostHanging.load(), ++g_hanging);
  Sleep(kHangMs);
  --g_hanging;
  SetLastError(ERROR_BAD_NETPATH);
}

template <typename Function>
Function* Real(const char* name) {
  return RealFunction<Function>(L"kernel32.dll", name);
}

DWORD WINAPI Attributes(const wchar_t* path) {
  HangIfDead(path);
  return IsDead(path) ? INVALID_FILE_ATTRIBUTES
                      : Real<decltype(GetFileAttributesW)>("GetFileAttributesW")(path);
}

BOOL WINAPI AttributesEx(const wchar_t* path, GET_FILEEX_INFO_LEVELS level, void* data) {
  HangIfDead(path);
  return IsDead(path) ? FALSE
                      : Real<decltype(GetFileAttributesExW)>("GetFileAttributesExW")(path, level, data);
}

HANDLE WINAPI Open(const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE model) {
  HangIfDead(path);
  return IsDead(path) ? INVALID_HANDLE_VALUE
                      : Real<decltype(CreateFileW)>("CreateFileW")(path, access, sharing, security,
                                                                   disposition, flags, model);
}

UINT WINAPI DriveType(const wchar_t* root) {
  return IsDead(root) ? DRIVE_REMOTE : Real<decltype(GetDriveTypeW)>("GetDriveTypeW")(root);
}

template <typename Function>
void* AddressOf(Function* function) {
  void* address;
  std::memcpy(&address, &function, sizeof(address));
  return address;
}

class NetworkTest : public BoundaryTest {
 protected:
  NetworkTest() {
    const std::pair<const char*, void*> hooks[] = {{"GetFileAttributesW", AddressOf(Attributes)},
                                                   {"GetFileAttributesExW", AddressOf(AttributesEx)},
                                                   {"CreateFileW", AddressOf(Open)},
                                                   {"GetDriveTypeW", AddressOf(DriveType)}};
    for (const wchar_t* const module : {L"StartupManagerHelper.dll", L"basekit.dll"}) {
      for (const auto& [name, hook] : hooks) {
        patches_.push_back(ImportPatch::IfImported(GetModuleHandleW(module), name, hook));
      }
    }
  }
  // What hangs returns into this program.
  ~NetworkTest() override {
    items.Stop();
    WaitUntil([] { return g_hanging == 0; }, 2 * kHangMs);
  }

  static void AddEntries(const std::wstring& root) {
    const wchar_t* const forms[] = {L"%my tools\\app -x", L"\"%my tools\\app.exe\" -x", L"%app.exe",
                                    L"rundll32.exe %a.dll,Entry", L"%link.lnk"};
    for (int i = 0; i < kEntries; ++i) {
      std::wstring command = forms[static_cast<std::size_t>(i) % std::size(forms)];
      command.replace(command.find(L'%'), 1, root + std::to_wstring(i) + L'\\');
      SetUserRun(L"Dead " + std::to_wstring(i), command);
    }
  }

  bool IsFound(const std::wstring& caption) const {
    constexpr int kFileFound = 2;
    return OutVariant(FindUserRun(caption), kFileFound)->boolVal != VARIANT_FALSE;
  }

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

ULONGLONG Since(ULONGLONG begin) {
  return GetTickCount64() - begin;
}

TEST_F(NetworkTest, ADeadRootHoldsNeitherTheListNorStopNorAChange) {
  for (const wchar_t* const root : {L"\\\\smh-dead\\share\\", L"Y:\\"}) {
    SCOPED_TRACE(root);
    ASSERT_TRUE(WaitUntil([] { return g_hanging == 0; }, 2 * kHangMs));
    EmptyRunKeys();
    SetUserRun(L"Local", L"\"C:\\windows\\notepad.exe\"");
    AddEntries(root);
    g_mostHanging = 0;
    ULONGLONG begin = GetTickCount64();
    Read();
    const ULONGLONG listed = Since(begin);
    EXPECT_LT(listed, 5000u);
    EXPECT_EQ(items.GetCount(), kEntries + 1);
    EXPECT_TRUE(IsFound(L"Local"));
    EXPECT_FALSE(IsFound(L"Dead 1"));
    constexpr int kReachability = 1;
    EXPECT_EQ(FindUserRun(L"Local").Fact(kReachability), L"1");
    EXPECT_EQ(FindUserRun(L"Dead 1").Fact(kReachability), L"2");

    begin = GetTickCount64();
    for (int i = 0; i < kEntries; ++i) {
      OutText file;
      manager.ResolveCommandFile((root + std::wstring(L"app.exe")).c_str(), file.Put());
    }
    const ULONGLONG resolved = Since(begin);
    EXPECT_LT(resolved, 4000u);

    EXPECT_EQ(items.Refresh(), S_OK);
    SetUserRun(L"New", root + std::wstring(L"new.exe"));
    Sleep(300);
    begin = GetTickCount64();
    EXPECT_EQ(FindUserRun(L"Local").Disable(), S_OK);
    const ULONGLONG changed = Since(begin);
    EXPECT_LT(changed, 1000u);
    EXPECT_EQ(items.Refresh(), S_OK);
    Sleep(300);
    begin = GetTickCount64();
    EXPECT_EQ(items.Stop(), S_OK);
    const ULONGLONG stopped = Since(begin);
    EXPECT_LT(stopped, 200u);
    EXPECT_LE(g_mostHanging, 1);
    std::printf("list %llu ms, files %llu ms, change %llu ms, Stop %llu ms\n", listed, resolved, changed,
                stopped);
  }
}

}  // namespace
}  // namespace smh::test
