#include "model/icon_source.h"

#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "infra/siblings/sibling_file.h"
#include "shelllink/uShellLinkInfo.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace smh {

namespace {

constexpr int kPatience = 10;
constexpr int kPatienceForAnEnd = 1;
constexpr int kPatienceForAWait = 5;
constexpr DWORD kLongestWaitMs = 5'000;
constexpr DWORD kWaitStepMs = 50;

struct ViewTraits {
  using Type = IconExchange*;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { UnmapViewOfFile(value); }
};

bool WriteRows(HBITMAP bitmap, int side, WORD bits, const void* rows) noexcept {
  struct {
    BITMAPINFOHEADER header;
    RGBQUAD colors[2];
  } form = {{sizeof(BITMAPINFOHEADER), side, -side, 1, bits, BI_RGB, 0, 0, 0, 0, 0},
            {{0, 0, 0, 0}, {0xFF, 0xFF, 0xFF, 0}}};
  return SetDIBits(nullptr, bitmap, 0, static_cast<UINT>(side), rows, reinterpret_cast<BITMAPINFO*>(&form),
                   DIB_RGB_COLORS) == side;
}

template <int side>
ScopedIcon MakeIcon(const IconPixels<side>& pixels) noexcept {
  if (pixels.isThere == 0) return ScopedIcon();
  const ScopedBitmap colors(CreateBitmap(side, side, 1, 32, pixels.colors));
  const ScopedBitmap mask(CreateBitmap(side, side, 1, 1, nullptr));
  if (!colors || !mask || !WriteRows(mask.Get(), side, 1, pixels.mask)) return ScopedIcon();
  ICONINFO parts = {TRUE, 0, 0, mask.Get(), colors.Get()};
  return ScopedIcon(CreateIconIndirect(&parts));
}

struct AnsweredPixels {
  IconPixels<kLargeIconSide> large;
  IconPixels<kSmallIconSide> small;
};

bool CanBeAsked(const IconQuestion& question) {
  return !question.file.empty() && question.file.size() < IconExchange::kFileUnits &&
         !IsRefusedLink(question.file);
}

// The list of the handles that a new process inherits, whatever else in this one is marked for that.
class InheritedHandles {
 public:
  // Keeps the place of the handles.
  explicit InheritedHandles(std::span<HANDLE> handles) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_ = std::make_unique<std::byte[]>(size);
    isMade_ = InitializeProcThreadAttributeList(Get(), 1, 0, &size) != FALSE &&
              UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles.data(),
                                        handles.size_bytes(), nullptr, nullptr) != FALSE;
  }
  ~InheritedHandles() { DeleteProcThreadAttributeList(Get()); }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  bool IsMade() const noexcept { return isMade_; }
  LPPROC_THREAD_ATTRIBUTE_LIST Get() const noexcept {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.get());
  }

 private:
  std::unique_ptr<std::byte[]> memory_;
  bool isMade_ = false;
};

}  // namespace

// The running process; its end is the end of the object.
class IconSource::Program {
 public:
  // Null when it cannot be started.
  static std::unique_ptr<Program> Start() {
    auto program = std::make_unique<Program>();
    return program->Make() && program->Run() ? std::move(program) : nullptr;
  }
  Program() = default;
  ~Program() {
    if (process_) TerminateProcess(process_.Get(), 0);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void Post(const IconQuestion& question) noexcept {
    view_.Get()->request = question.request;
    view_.Get()->index = question.index;
    std::copy_n(question.file.c_str(), question.file.size() + 1, view_.Get()->file);
    SetEvent(request_.Get());
  }
  // Of the last answer; the next one overwrites them in the program's memory.
  AnsweredPixels Pixels() const noexcept { return {view_.Get()->large, view_.Get()->small}; }
  HANDLE Answer() const noexcept { return answer_.Get(); }
  HANDLE Process() const noexcept { return process_.Get(); }
  bool HasEnded() const noexcept { return WaitForSingleObject(Process(), 0) == WAIT_OBJECT_0; }
  // Of itself, because nothing was asked for so long.
  bool HasEndedIdle() const noexcept {
    DWORD code = STILL_ACTIVE;
    return GetExitCodeProcess(Process(), &code) != FALSE && code == 0;
  }

 private:
  bool Make() noexcept {
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    section_.Reset(CreateFileMappingW(INVALID_HANDLE_VALUE, &inherited, PAGE_READWRITE, 0,
                                      sizeof(IconExchange), nullptr));
    request_.Reset(CreateEventW(&inherited, FALSE, FALSE, nullptr));
    answer_.Reset(CreateEventW(&inherited, FALSE, FALSE, nullptr));
    const HANDLE self = GetCurrentProcess();
    DuplicateHandle(self, self, self, library_.Put(), SYNCHRONIZE, TRUE, 0);
    if (!section_ || !request_ || !answer_ || !library_) return false;
    view_.Reset(static_cast<IconExchange*>(MapViewOfFile(section_.Get(), FILE_MAP_WRITE, 0, 0, 0)));
    return static_cast<bool>(view_);
  }

  bool Run() {
    const std::wstring file = FindSibling(kIconProgram);
    if (file.empty()) return false;
    HANDLE handles[] = {section_.Get(), request_.Get(), answer_.Get(), library_.Get()};
    const InheritedHandles list(handles);
    if (!list.IsMade()) return false;
    std::wstring command = L'"' + file + L'"';
    for (const HANDLE handle : handles) {
      command += L' ' + std::to_wstring(reinterpret_cast<std::uintptr_t>(handle));
    }
    STARTUPINFOEXW start = {};
    start.StartupInfo.cb = sizeof(start);
    start.lpAttributeList = list.Get();
    // Its own folder: it must not keep the host's in use.
    const std::wstring folder(FolderPart(file));
    PROCESS_INFORMATION made;
    if (CreateProcessW(file.c_str(), command.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, folder.c_str(),
                       &start.StartupInfo, &made) == FALSE) {
      return false;
    }
    process_.Reset(made.hProcess);
    const ScopedHandle thread(made.hThread);
    return true;
  }

  ScopedHandle section_;
  ScopedHandle request_;
  ScopedHandle answer_;
  ScopedHandle library_;
  ScopedResource<ViewTraits> view_;
  ScopedHandle process_;
};

struct IdleIconProgram {
  // A leaf.
  CriticalSection lock;
  std::unique_ptr<IconSource::Program> program SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<IdleIconProgram> g_idleIconProgram(L"icon_source");

IconSource::IconSource(HANDLE wake, std::function<void()> checkTerminated)
    : wake_(wake), checkTerminated_(std::move(checkTerminated)), patience_(kPatience) {}

IconSource::~IconSource() {
  // An answer that nobody has waited for would be the next one's.
  if (!program_ || ahead_ || !g_idleIconProgram.IsStarted()) return;
  const ScopedLock lock(g_idleIconProgram->lock);
  if (!g_idleIconProgram->program) g_idleIconProgram->program = std::move(program_);
}

std::unique_ptr<IconSource::Program> IconSource::TakeProgram() {
  std::unique_ptr<Program> idle;
  if (g_idleIconProgram.IsStarted()) {
    const ScopedLock lock(g_idleIconProgram->lock);
    idle = std::move(g_idleIconProgram->program);
  }
  return idle && !idle->HasEnded() ? std::move(idle) : Program::Start();
}

IconPair IconSource::OfFile(const std::wstring& file, int index) {
  return Ask({IconRequest::kOfFile, file, index});
}

IconPair IconSource::OfShell(const std::wstring& file) {
  return Ask({IconRequest::kOfShell, file});
}

IconPair IconSource::OfEither(const std::wstring& file, int index) {
  return Ask({IconRequest::kOfEither, file, index});
}

// The program, at work on the question; null when there is none.
std::unique_ptr<IconSource::Program> IconSource::TakeAsked(const IconQuestion& question) {
  const std::optional<IconQuestion> ahead = std::exchange(ahead_, std::nullopt);
  std::unique_ptr<Program> program = std::move(program_);
  if (program && ahead == question) return program;
  // Something else is answered first.
  if (program && ahead && !WaitForAnswer(*program)) program.reset();
  if (!program) program = TakeProgram();
  if (program) program->Post(question);
  return program;
}

void IconSource::AskAhead() {
  if (!next_) return;
  std::optional<IconQuestion> question = next_();
  if (!question || !CanBeAsked(*question)) return;
  program_->Post(*question);
  ahead_ = std::move(question);
}

IconPair IconSource::Ask(const IconQuestion& question) {
  const bool isAsked = patience_ > 0 && CanBeAsked(question);
  // What a stop has cancelled says nothing about the file.
  checkTerminated_();
  if (!isAsked) return {};
  // Ends with this call, whatever comes, unless it answers.
  std::unique_ptr<Program> program = TakeAsked(question);
  if (!program) {
    patience_ = 0;
    return {};
  }
  if (const auto work = std::exchange(meanwhile_, nullptr)) work();
  if (!WaitForAnswer(*program)) {
    if (!program->HasEndedIdle()) return {};
    // In that very moment.
    program = Program::Start();
    if (!program) return {};
    program->Post(question);
    if (!WaitForAnswer(*program)) return {};
  }
  const AnsweredPixels pixels = program->Pixels();
  program_ = std::move(program);
  AskAhead();
  return {MakeIcon(pixels.large), MakeIcon(pixels.small)};
}

bool IconSource::WaitForAnswer(const Program& program) {
  const HANDLE ends[] = {program.Answer(), program.Process(), wake_};
  DWORD count = wake_ == nullptr ? 2 : 3;
  const DWORD since = GetTickCount();
  do {
    switch (WaitForMultipleObjects(count, ends, FALSE, kWaitStepMs)) {
      case WAIT_OBJECT_0:
        return true;
      case WAIT_OBJECT_0 + 2:
        // It stays signalled: once is enough.
        count = 2;
        [[fallthrough]];
      case WAIT_TIMEOUT:
        checkTerminated_();
        break;
      default:
        patience_ -= kPatienceForAnEnd;
        return false;
    }
  } while (GetTickCount() - since < kLongestWaitMs);
  patience_ -= kPatienceForAWait;
  return false;
}

}  // namespace smh
