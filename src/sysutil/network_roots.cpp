#include "sysutil/network_roots.h"

#include "infra/runtime/ascii_text.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"
#include "infra/runtime/thread_slot.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <memory>

namespace smh {

namespace {

// How often a waiting thread asks whether it shall end.
constexpr DWORD kWaitStepMs = 50;
constexpr ULONGLONG kHoldsOutsideOfAPassMs = 10'000;
constexpr ULONGLONG kQuickAnswerMs = 250;
// More are not made: then a root counts as one that does not answer.
constexpr std::size_t kMostHangingLooks = 32;
constexpr SIZE_T kLookStackBytes = 0x20000;

constexpr DWORD kNetworkErrors[] = {
    ERROR_BAD_NETPATH,
    ERROR_BAD_NET_NAME,
    ERROR_REM_NOT_LIST,
    ERROR_NETWORK_BUSY,
    ERROR_DEV_NOT_EXIST,
    ERROR_BAD_NET_RESP,
    ERROR_UNEXP_NET_ERR,
    ERROR_NETNAME_DELETED,
    ERROR_SEM_TIMEOUT,
    ERROR_CONNECTION_UNAVAIL,
    ERROR_NO_NET_OR_BAD_PATH,
    ERROR_NO_NETWORK,
    ERROR_CONNECTION_REFUSED,
    ERROR_NETWORK_UNREACHABLE,
    ERROR_HOST_UNREACHABLE,
    ERROR_CONNECTION_ABORTED,
    ERROR_NOT_CONNECTED,
    ERROR_BAD_DEV_TYPE,
    ERROR_TIMEOUT,
};

bool IsNetworkError(DWORD error) noexcept {
  return std::ranges::find(kNetworkErrors, error) != std::end(kNetworkErrors);
}

bool IsSeparator(wchar_t unit) noexcept {
  return unit == L'\\' || unit == L'/';
}

// One look at a root, on a thread that runs the system's function and nothing else: its argument is the path,
// its exit code the attributes.
class Look {
 public:
  explicit Look(const std::wstring& root) {
    const std::size_t bytes = (root.size() + 1) * sizeof(wchar_t);
    path_ = static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), 0, bytes));
    if (path_ == nullptr) throw std::bad_alloc();
    std::copy_n(root.c_str(), root.size() + 1, path_);
    const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(&GetFileAttributesW);
    thread_ = ScopedHandle(
        CreateThread(nullptr, kLookStackBytes, start, path_, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    if (!thread_) {
      HeapFree(GetProcessHeap(), 0, path_);
      RaiseLastOSError();
    }
  }
  // The path of a look that goes on stays behind with its thread.
  ~Look() {
    if (IsOver()) HeapFree(GetProcessHeap(), 0, path_);
  }
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

  bool IsOver(DWORD wait = 0) const noexcept {
    return WaitForSingleObject(thread_.Get(), wait) == WAIT_OBJECT_0;
  }
  // Of one that is over, after so long. An answer that is none has to be asked for again, because the
  // thread's error went with it; one that took its time is the network's.
  bool HasAnswered(ULONGLONG after) const noexcept {
    DWORD attributes = INVALID_FILE_ATTRIBUTES;
    GetExitCodeThread(thread_.Get(), &attributes);
    if (attributes != INVALID_FILE_ATTRIBUTES) return true;
    if (after > kQuickAnswerMs) return false;
    return GetFileAttributesW(path_) != INVALID_FILE_ATTRIBUTES || !IsNetworkError(GetLastError());
  }

 private:
  wchar_t* path_ = nullptr;
  ScopedHandle thread_;
};

struct Knowledge {
  // Counts with the passes' beginnings.
  std::uint64_t learned = 0;
  ULONGLONG time = 0;
  bool answers = false;
};

struct KnownRoot : Knowledge {
  // Under way, or given up and still there.
  std::shared_ptr<Look> look;
};

}  // namespace

struct NetworkRoots {
  void CheckPass() const {
    const ReadingPass* const pass = passOfThread.Get();
    if (pass != nullptr && pass->isAskedToEnd_ && pass->isAskedToEnd_()) throw EAbort();
  }
  std::uint64_t Count() {
    const ScopedLock guard(lock);
    return ++events;
  }
  bool IsCurrent(const Knowledge& known) const noexcept {
    if (known.learned == 0) return false;
    const ReadingPass* const pass = passOfThread.Get();
    return pass != nullptr ? known.learned > pass->begin_
                           : GetTickCount64() - known.time < kHoldsOutsideOfAPassMs;
  }
  void Learn(Knowledge& known, bool answers) SMH_NEEDS_LOCK(lock) {
    known.learned = ++events;
    known.time = GetTickCount64();
    known.answers = answers;
  }

  bool IsNetworkDrive(wchar_t letter);
  bool Answers(const std::wstring& root);
  void MarkDead(const std::wstring& root);

  const ThreadSlot<ReadingPass> passOfThread;
  // A leaf, not held while anything is looked at.
  CriticalSection lock;

 private:
  std::shared_ptr<Look> LookAt(KnownRoot& known, const std::wstring& root) SMH_NEEDS_LOCK(lock);
  bool WaitFor(const Look& look) const;

  std::uint64_t events SMH_GUARDED_BY(lock) = 0;
  // Of drives: whether they stand for a share.
  std::array<Knowledge, 26> drives SMH_GUARDED_BY(lock);
  std::map<std::wstring, KnownRoot> roots SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<NetworkRoots> g_networkRoots(L"network_roots");

bool NetworkRoots::IsNetworkDrive(wchar_t letter) {
  const auto index = static_cast<std::size_t>((letter | 0x20) - L'a');
  {
    const ScopedLock guard(lock);
    if (IsCurrent(drives[index])) return drives[index].answers;
  }
  const wchar_t root[] = {letter, L':', L'\\', L'\0'};
  const bool isNetwork = GetDriveTypeW(root) == DRIVE_REMOTE;
  const ScopedLock guard(lock);
  Learn(drives[index], isNetwork);
  return isNetwork;
}

// Null when there are too many already. Two threads that ask for a root wait for the same look.
std::shared_ptr<Look> NetworkRoots::LookAt(KnownRoot& known, const std::wstring& root) {
  if (known.look != nullptr && !known.look->IsOver()) return known.look;
  known.look.reset();
  const auto hangs = [](const auto& row) { return row.second.look != nullptr && !row.second.look->IsOver(); };
  if (std::ranges::count_if(roots, hangs) >= static_cast<std::ptrdiff_t>(kMostHangingLooks)) return nullptr;
  known.look = std::make_shared<Look>(root);
  return known.look;
}

bool NetworkRoots::WaitFor(const Look& look) const {
  const ULONGLONG begin = GetTickCount64();
  while (!look.IsOver(kWaitStepMs)) {
    CheckPass();
    if (GetTickCount64() - begin >= kRootPatienceMs) return false;
  }
  return true;
}

bool NetworkRoots::Answers(const std::wstring& root) {
  std::shared_ptr<Look> look;
  {
    const ScopedLock guard(lock);
    KnownRoot& known = roots[root];
    if (IsCurrent(known)) return known.answers;
    look = LookAt(known, root);
  }
  const ULONGLONG begin = GetTickCount64();
  const bool answers = look != nullptr && WaitFor(*look) && look->HasAnswered(GetTickCount64() - begin);
  // What a stop has cancelled is no answer.
  CheckPass();
  const ScopedLock guard(lock);
  Learn(roots[root], answers);
  return answers;
}

void NetworkRoots::MarkDead(const std::wstring& root) {
  const ScopedLock guard(lock);
  Learn(roots[root], false);
}

ReadingPass::ReadingPass(std::function<bool()> isAskedToEnd)
    : isAskedToEnd_(std::move(isAskedToEnd)), outer_(g_networkRoots->passOfThread.Get()) {
  Begin();
  g_networkRoots->passOfThread.Set(this);
}

ReadingPass::~ReadingPass() {
  g_networkRoots->passOfThread.Set(outer_);
}

void ReadingPass::Begin() {
  begin_ = g_networkRoots->Count();
}

namespace {

// "\\server\share\" of what stands behind its two separators.
std::wstring ShareOf(std::wstring_view path) {
  std::wstring root = L"\\\\";
  for (int part = 0; part < 2; ++part) {
    const std::size_t end = std::min(path.find_first_of(L"\\/"), path.size());
    if (end == 0) break;
    root.append(path.substr(0, end)).append(1, L'\\');
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return AsciiLowerCase(root);
}

// A look that is given up, or that the network fails, is none.
template <typename Test>
auto LookWhereReachable(PathView path, Test test) -> decltype(test(path)) {
  g_networkRoots->CheckPass();
  const std::wstring root = NetworkRootOf(path.c_str());
  if (root.empty()) return test(path);
  if (g_networkRoots->Answers(root)) {
    SetLastError(ERROR_SUCCESS);
    const auto answer = test(path);
    const DWORD error = GetLastError();
    if (!answer && IsNetworkError(error)) g_networkRoots->MarkDead(root);
    SetLastError(error);
    return answer;
  }
  SetLastError(ERROR_BAD_NETPATH);
  return {};
}

}  // namespace

std::wstring NetworkRootOf(std::wstring_view path) {
  if (!IsFullPath(path)) return {};
  if (IsSeparator(path[0])) {
    path.remove_prefix(2);
    const bool isSystemName = path.size() > 1 && (path[0] == L'?' || path[0] == L'.') && IsSeparator(path[1]);
    if (!isSystemName) return ShareOf(path);
    path.remove_prefix(2);
    if (StartsText(L"UNC\\", path)) return ShareOf(path.substr(4));
    if (path.size() < 3 || path[1] != L':' || !IsFullPath(path)) return {};
  }
  if (!g_networkRoots->IsNetworkDrive(path[0])) return {};
  return {static_cast<wchar_t>(path[0] & ~0x20), L':', L'\\'};
}

bool IsReachable(std::wstring_view path) {
  g_networkRoots->CheckPass();
  const std::wstring root = NetworkRootOf(path);
  return root.empty() || g_networkRoots->Answers(root);
}

bool IsReachableFile(PathView path) {
  return LookWhereReachable(path, IsFile);
}

bool IsReachableFolder(PathView path) {
  return LookWhereReachable(path, IsFolder);
}

std::optional<FileStamp> ReachableStamp(PathView path) {
  return LookWhereReachable(path, StampOf);
}

}  // namespace smh
