#include "core/contracts/intf_FileTrust.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/handle.h"
#include "siblings/raterkit/trust_store.h"
#include "sysutil/network_roots.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/sample_root.h"

#include <gtest/gtest.h>
#include <wincrypt.h>
#include <winioctl.h>

#include <atomic>
#include <future>
#include <sstream>
#include <thread>

namespace smh::test {
namespace {

// Stands in for the system: it answers by what the file holds, "CODE CATALOGUECODE" in hexadecimal digits,
// and holds on to files that hold "wait".
class StandIn final : public SystemTrust {
 public:
  SystemAnswer VerifyFile(HANDLE file, const std::wstring& path) override {
    // Who opens the path again finds the same file.
    BY_HANDLE_FILE_INFORMATION own = {};
    BY_HANDLE_FILE_INFORMATION other = {};
    const ScopedHandle again(
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(GetFileInformationByHandle(file, &own) && GetFileInformationByHandle(again.Get(), &other));
    EXPECT_EQ(own.nFileIndexLow, other.nFileIndexLow);
    EXPECT_EQ(path.find(L".."), std::wstring::npos);
    ++s_asked;
    std::string text(32, '\0');
    DWORD read = 0;
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    ReadFile(file, text.data(), 31, &read, nullptr);
    if (text.starts_with("wait")) WaitForSingleObject(s_go.Get(), 5000);
    char* end = nullptr;
    SystemAnswer answer;
    answer.code = static_cast<LONG>(std::strtoul(text.c_str(), &end, 16));
    answer.organisation = L"Microsoft Corporation";
    catalogue_ = static_cast<LONG>(std::strtoul(end, nullptr, 16));
    return answer;
  }
  SystemAnswer VerifyByCatalogue(HANDLE /*file*/, const std::wstring& /*path*/) override {
    SystemAnswer answer;
    answer.code = catalogue_;
    return answer;
  }

  static inline std::atomic<int> s_asked{0};
  static inline const ScopedHandle s_go{CreateEventW(nullptr, TRUE, FALSE, nullptr)};

 private:
  LONG catalogue_ = 0;
};

// A line of the file, made to be about other contents and to say another state.
std::string WithOther(const std::string& text, const Sha256& hash, char state) {
  std::string line = text.substr(text.find("\n1\t") + 1);
  line.resize(line.find('\n'));
  line.resize(line.rfind('\t') + 1);
  const std::wstring digits = TextOf(hash);
  line.replace(2, 64, std::string(digits.begin(), digits.end()));
  line[line.find(".exe\t") + 5] = state;
  std::uint64_t sum = 0xCBF29CE484222325;
  for (const char unit : line) sum = (sum ^ static_cast<unsigned char>(unit)) * 0x100000001B3;
  std::ostringstream digitsOfSum;
  digitsOfSum << std::hex << sum;
  return "\n" + line + digitsOfSum.str() + "\n";
}

DWORD WINAPI SlowAttributes(const wchar_t* /*path*/) {
  WaitForSingleObject(StandIn::s_go.Get(), 6000);
  return INVALID_FILE_ATTRIBUTES;
}
BOOL WINAPI NoTimes(HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) {
  return FALSE;
}

// As one who writes through a view that he had mapped before the file was opened, behind what the system
// read.
BOOL WINAPI OtherBytes(HANDLE file, void* buffer, DWORD size, DWORD* bytes, OVERLAPPED* overlapped) {
  const BOOL isRead =
      RealFunction<decltype(ReadFile)>(L"kernel32.dll", "ReadFile")(file, buffer, size, bytes, overlapped);
  if (StandIn::s_asked > 0 && size > 31 && *bytes > 0) *static_cast<char*>(buffer) ^= 1;
  return isRead;
}
BOOL WINAPI SomeChange(HANDLE, DWORD, void*, DWORD, void* record, DWORD, DWORD* bytes, OVERLAPPED*) {
  static_cast<USN_RECORD*>(record)->Usn = 7;
  *bytes = sizeof(USN_RECORD);
  return TRUE;
}
UINT s_driveType = DRIVE_FIXED;
UINT WINAPI DriveType(const wchar_t* /*root*/) {
  return s_driveType;
}

class TrustStoreTest : public testing::Test {
 protected:
  TrustStoreTest() {
    g_networkRoots.Start();
    StandIn::s_asked = 0;
  }
  ~TrustStoreTest() override { g_networkRoots.Stop(); }

  // Another process, as far as it matters.
  std::unique_ptr<TrustStore> Store() const {
    return std::make_unique<TrustStore>(std::make_unique<StandIn>(), folder_.File(L"data\\signatures.txt"),
                                        folder_.Path().size() + 1);
  }

  const TemporaryFolder folder_;
};

TEST_F(TrustStoreTest, EveryAnswerOfTheSystemHasItsState) {
  const struct {
    const char* answer;
    SignatureState state;
  } rows[] = {
      {"0", kSignatureValid},
      {"800B0100 0", kSignatureCatalogue},
      {"800B0003 0", kSignatureCatalogue},
      {"800B0100 800B0100", kSignatureNone},
      {"800B0100 800B0101", kSignatureExpired},
      {"80096010", kSignatureBroken},
      {"80096011", kSignatureBroken},
      {"800B0109", kSignatureUntrusted},
      {"800B0110", kSignatureUntrusted},
      {"800B0101", kSignatureExpired},
      {"800B0111", kSignatureDistrusted},
      {"800B010C", kSignatureDistrusted},
      {"800B010A", kSignatureOffline},
      {"80092013", kSignatureOffline},
      {"80096001", kSignatureUnreadable},
      {"80070005", kSignatureUnreadable},
      {"12345678", kSignatureUnreadable},
  };
  const auto store = Store();
  for (const auto& row : rows)
    EXPECT_EQ(store->Verify(folder_.Write(L"a.exe", row.answer) + L"\\..\\a.exe").state, row.state)
        << row.answer;
}

TEST_F(TrustStoreTest, WhatCannotBeReadIsNotVerifiedAndHoldsNobody) {
  const std::wstring file = folder_.Write(L"a.exe", "0");
  const auto store = Store();
  for (const std::wstring& path :
       std::vector<std::wstring>{L"", L"a.exe", folder_.Path(), folder_.File(L"gone.exe"),
                                 folder_.File(L"nul"), L"\\\\.\\pipe\\x", L"C:\\windows\\system32\\con.exe",
                                 file + std::wstring(1, L'\0') + L"x", std::wstring(40'000, L'x')}) {
    EXPECT_EQ(store->Verify(path).state, kSignatureUnreadable) << path.substr(0, 80);
  }
  {
    const ScopedHandle writer(
        CreateFileW(file.c_str(), GENERIC_WRITE, 7, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(store->Verify(file).state, kSignatureUnreadable);
  }
  EXPECT_EQ(store->Verify(file).state, kSignatureValid);

  // A server that does not answer.
  const ImportPatch attributes("GetFileAttributesW", SlowAttributes);
  const ULONGLONG begin = GetTickCount64();
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(store->Verify(L"\\\\smh-dead\\share\\a.exe").code, HRESULT_FROM_WIN32(ERROR_BAD_NETPATH));
  EXPECT_LT(GetTickCount64() - begin, 2 * kRootPatienceMs);
}

TEST_F(TrustStoreTest, OneFileDoesNotWaitForAnother) {
  const std::wstring slow = folder_.Write(L"slow.exe", "wait");
  const std::wstring quick = folder_.Write(L"quick.exe", "80096010");
  const auto store = Store();
  ResetEvent(StandIn::s_go.Get());
  auto other = std::async(std::launch::async, [&] { return store->Verify(slow).state; });
  while (StandIn::s_asked == 0) Sleep(1);
  EXPECT_EQ(store->Verify(quick).state, kSignatureBroken);
  EXPECT_EQ(other.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
  SetEvent(StandIn::s_go.Get());
  other.get();
}

TEST_F(TrustStoreTest, ASwappedFileIsVerifiedAgain) {
  const std::wstring file = folder_.Write(L"a.exe", "0        ");
  const auto store = Store();
  EXPECT_EQ(store->Verify(file).state, kSignatureValid);
  EXPECT_EQ(store->Verify(file).state, kSignatureValid);
  EXPECT_EQ(StandIn::s_asked, 1);
  // In place, with the size and the times that it had, the one that only the system sets among them.
  const ImportPatch times("GetFileInformationByHandleEx", NoTimes);
  EXPECT_EQ(store->Verify(file).state, kSignatureValid);
  const int asked = StandIn::s_asked;
  const FileKey before = OpenedFile(file).Key();
  {
    const ScopedHandle writer(
        CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    DWORD written = 0;
    WriteFile(writer.Get(), "80096010", 8, &written, nullptr);
    const FILETIME time = FileTimeOf(before.written);
    SetFileTime(writer.Get(), nullptr, nullptr, &time);
  }
  EXPECT_EQ(OpenedFile(file).Key(), before);
  const TrustedFile swapped = store->Verify(file);
  EXPECT_EQ(swapped.state, kSignatureBroken);
  EXPECT_EQ(swapped.hash, OpenedFile(file).Hash());
  // The kind of file decides what is looked for: its name belongs to what is known.
  ASSERT_TRUE(MoveFileW(file.c_str(), folder_.File(L"a.ps1").c_str()));
  EXPECT_EQ(store->Verify(folder_.File(L"a.ps1")).state, kSignatureBroken);
  EXPECT_EQ(StandIn::s_asked, asked + 2);
}

TEST_F(TrustStoreTest, OfBytesThatChangeMeanwhileNothingIsTold) {
  const std::wstring file = folder_.Write(L"a.exe", "0");
  const auto store = Store();
  {
    const ImportPatch read("ReadFile", OtherBytes);
    EXPECT_EQ(store->Verify(file).state, kSignatureUnreadable);
  }
  EXPECT_EQ(store->Verify(file).state, kSignatureValid);
}

TEST_F(TrustStoreTest, WhatAVolumeSaysOfItsFilesCountsOnDisksOfThisMachineOnly) {
  const std::wstring file = folder_.Write(L"a.exe", "0");
  const ImportPatch change("DeviceIoControl", SomeChange);
  const ImportPatch type("GetDriveTypeW", DriveType);
  for (const UINT drive : {UINT{DRIVE_FIXED}, UINT{DRIVE_REMOVABLE}, UINT{DRIVE_REMOTE}}) {
    s_driveType = drive;
    EXPECT_EQ(OpenedFile(file).Key().change, drive == DRIVE_FIXED ? 7 : 0) << drive;
  }
}

TEST_F(TrustStoreTest, TheFileOnDiskSavesWorkAndMakesNothingVerified) {
  const std::wstring broken = folder_.Write(L"broken.exe", "80096010");
  const std::wstring none = folder_.Write(L"none.exe", "800B0100 800B0100");
  const std::wstring good = folder_.Write(L"good.exe", "0");
  for (int i = 0; i < 2; ++i) {
    const auto store = Store();
    EXPECT_EQ(store->Verify(broken).state, kSignatureBroken);
    EXPECT_EQ(store->Verify(broken).organisation, L"Microsoft Corporation");
    EXPECT_EQ(store->Verify(none).state, kSignatureNone);
    EXPECT_EQ(store->Verify(good).state, kSignatureValid);
  }
  EXPECT_EQ(StandIn::s_asked, 5);

  // Damage spoils its own line only.
  const std::wstring path = folder_.File(L"data\\signatures.txt");
  const std::string text = ReadFileBytes(path);
  WriteFileBytes(path, "\xFF garbage\t\t" + text.substr(0, text.size() / 2) + text);
  EXPECT_EQ(Store()->Verify(broken).state, kSignatureBroken);
  EXPECT_EQ(StandIn::s_asked, 5);
  // A line is believed when it says something bad, never when it takes an alarm away.
  const std::wstring other = folder_.Write(L"other.exe", "800B0100 800B0100 ");
  WriteFileBytes(path, WithOther(text, OpenedFile(other).Hash(), '3'));
  EXPECT_EQ(Store()->Verify(other).state, kSignatureBroken);
  const std::wstring changed = folder_.Write(L"changed.exe", "80096010 ");
  for (const char state : {'0', '1', '2', '5', '8', '9'}) {
    WriteFileBytes(path, WithOther(text, OpenedFile(changed).Hash(), state));
    EXPECT_EQ(Store()->Verify(changed).state, kSignatureBroken) << state;
  }
}

TEST_F(TrustStoreTest, PathsAreThoseOfA64BitProgram) {
  const std::wstring native = L"C:\\windows\\sysnative\\smh-a.exe";
  if (!IsFolder(std::wstring(L"C:\\windows\\syswow64"))) GTEST_SKIP() << "one system folder only";
  WriteFileBytes(native, "0");
  WriteFileBytes(L"C:\\windows\\system32\\smh-a.exe", "1");
  const auto store = Store();
  const TrustedFile file = store->Verify(L"C:\\Windows\\System32\\smh-a.exe");
  EXPECT_EQ(file.state, kSignatureValid);
  EXPECT_EQ(store->Verify(native).hash, file.hash);
  EXPECT_NE(store->Verify(L"C:\\windows\\syswow64\\smh-a.exe").hash, file.hash);
  for (const std::wstring& path : {native, std::wstring(L"C:\\windows\\syswow64\\smh-a.exe")})
    DeleteFileW(path.c_str());
}

struct Facts : FileTrustFacts {
  explicit Facts(const std::wstring& file) : FileTrustFacts{} {
    const SiblingLibrary raterkit(L"raterkit.dll");
    FileTrustFacts::size = sizeof(FileTrustFacts);
    EXPECT_EQ(CallSlot<HRESULT>(raterkit.Service<IFileTrust>(), 1, file.c_str(),
                                static_cast<FileTrustFacts*>(this)),
              S_OK);
    names = TextOf(organisation) + L"|" + TextOf(commonName);
    hash = TextOf(sha256);
  }
  static std::wstring TextOf(BoundaryText text) {
    const std::wstring copy(BoundaryTextView(text));
    ReleaseBoundaryText(text);
    return copy;
  }
  std::wstring names, hash;
};

// By the system itself, with the programs of the sample machine.
TEST(FileTrustTest, SignaturesOfSamples) {
  const std::wstring samples = ThisFolder() + L"..\\samples\\drive_c\\";
  const std::wstring good = samples + L"Program Files\\Quillmark\\Inkwell\\inkwell.exe";
  // A root that nobody knows, and none at all.
  EXPECT_EQ(Facts(good).state, kSignatureUntrusted);
  EXPECT_EQ(Facts(samples + L"Program Files\\Northlight Audio\\auroratray.exe").state, kSignatureUntrusted);
  EXPECT_EQ(Facts(samples + L"Program Files\\Fernhill\\fernupdate.exe").state, kSignatureBroken);
  const Facts plain(samples + L"Samples\\plain.exe");
  EXPECT_EQ(plain.state, kSignatureNone);
  EXPECT_EQ(plain.names, L"|");

  SetSampleRoot(samples, RootPlace::kUser, true);
  const Facts knownToUser(good);
  SetSampleRoot(samples, RootPlace::kMachinePolicy, true);
  const Facts known(good);
  SetSampleRoot(samples, RootPlace::kUser, false);
  SetSampleRoot(samples, RootPlace::kMachinePolicy, false);
  EXPECT_EQ(knownToUser.state, kSignatureUntrusted);
  EXPECT_EQ(known.state, kSignatureValid);
  EXPECT_EQ(known.names, L"Quillmark|Quillmark Programs");
  EXPECT_EQ(known.hash.size(), 64U);
  EXPECT_NE(known.signingTime.dwHighDateTime, 0U);
}

}  // namespace
}  // namespace smh::test
