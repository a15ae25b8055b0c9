#include "siblings/guardkit/checkpoints.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/journal_index.h"
#include "siblings/guardkit/registry_place.h"

#include <utility>

namespace smh {

namespace {

std::uint64_t Now() noexcept {
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  return NumberOf(time);
}

std::uint64_t StartOfThisProcess() noexcept {
  FILETIME started = {};
  FILETIME ended;
  FILETIME kernel;
  FILETIME user;
  GetProcessTimes(GetCurrentProcess(), &started, &ended, &kernel, &user);
  return NumberOf(started);
}

CheckpointHeader MakeHeader(const JournalFolder& folder, std::wstring_view title, std::uint32_t undoes) {
  // Before anything is changed: that could bring about what theirs did not.
  CloseFailed(folder);
  const std::vector<JournalName> known = ListJournals(folder);
  CheckpointHeader header;
  header.id = known.empty() ? 1 : known.back().id + 1;
  header.undoes = undoes;
  header.time = Now();
  header.process = GetCurrentProcessId();
  header.processStarted = StartOfThisProcess();
  header.user = CurrentUserSid();
  header.title = title;
  return header;
}

constexpr wchar_t kTitleOfOthers[] = L"Startup Manager: Change";

ScopedHandle ThisThread() {
  ScopedHandle thread;
  if (DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), thread.Put(), SYNCHRONIZE,
                      FALSE, 0) == FALSE) {
    RaiseLastOSError();
  }
  return thread;
}

bool HasEnded(HANDLE thread) noexcept {
  return WaitForSingleObject(thread, 0) == WAIT_OBJECT_0;
}

}  // namespace

OpenCheckpoint::OpenCheckpoint(std::wstring_view title, std::uint32_t undoes)
    : folder_(JournalFolder::Open()),
      lock_(folder_, JournalLock::kPatience),
      blobs_(folder_),
      file_(folder_, MakeHeader(folder_, title, undoes)),
      isUndo_(undoes != 0) {
  blobs_.RemoveStagingFiles();
}

OpenCheckpoint::~OpenCheckpoint() {
  const bool hasSteps = StepCount() != 0;
  if (abandoned_ && hasSteps) return;
  // One in which everything was refused failed too, though nobody said so.
  const bool failed = hasSteps && !hasDone_ && !isUndo_;
  file_.Finish(
      {.evenEmpty = kept_, .failed = failed, .evenWithout = !mayStand_, .takenBack = std::move(takenBack_)});
  if (hasSteps && !isUndo_) LetGoOfOldest(folder_, blobs_, retention_);
}

void OpenCheckpoint::BeginLevel() {
  const Level& outer = levels_.back();
  levels_.push_back({StepCount(), hasDone_, mayStand_, outer.takesBack, outer.check, outer.source});
}

bool OpenCheckpoint::EndLevel() noexcept {
  levels_.pop_back();
  return !levels_.empty();
}

void OpenCheckpoint::SetSource(StepSource source) {
  levels_.back().source = std::make_shared<const StepSource>(std::move(source));
}

const StepSource& OpenCheckpoint::SourceOf(const Step& step) const noexcept {
  static const StepSource none;
  const StepSource* const source = levels_.back().source.get();
  return source != nullptr && IsWriting(step) ? *source : none;
}

std::uint32_t OpenCheckpoint::TakeBack() {
  Level& level = levels_.back();
  for (std::uint32_t step = level.firstStep; step < StepCount(); ++step) takenBack_.insert(step);
  level.takesBack = true;
  hasDone_ = level.hadDone;
  return level.firstStep;
}

void OpenCheckpoint::NoteWrite(const std::wstring& place) {
  written_[HiveOf(place)] = place;
}

void OpenCheckpoint::FlushBeforeDelete(const std::wstring& place) {
  const std::wstring hive = HiveOf(place);
  for (auto next = written_.begin(); next != written_.end();) {
    if (next->first == hive) {
      ++next;
      continue;
    }
    const ScopedKey key = OpenPlace(next->second, KEY_QUERY_VALUE);
    const LSTATUS status = key ? RegFlushKey(key.Get()) : ERROR_SUCCESS;
    // Taking back may find no room; the journal has what would be lost.
    if (!TakesBack()) CheckStatus(status);
    next = written_.erase(next);
  }
}

constinit ModuleGlobal<Checkpoints> g_checkpoints(L"checkpoints");

Checkpoints::~Checkpoints() {
  for (auto& [thread, entry] : entries_) entry.checkpoint->Abandon();
}

void Checkpoints::Begin(std::wstring_view title) {
  for (auto& [thread, entry] : TakeAbandoned()) entry.checkpoint->Abandon();
  {
    const ScopedLock guard(lock_);
    if (Entry* const own = FindOwn()) {
      own->checkpoint->BeginLevel();
      return;
    }
  }
  Entry entry{ThisThread(), std::make_unique<OpenCheckpoint>(title)};
  const ScopedLock guard(lock_);
  entries_.emplace(GetCurrentThreadId(), std::move(entry));
}

bool Checkpoints::End() noexcept {
  // Closed, which writes to the disk, after the lock was given back.
  std::unique_ptr<OpenCheckpoint> closing;
  const ScopedLock guard(lock_);
  Entry* const own = FindOwn();
  if (own == nullptr) return false;
  if (own->checkpoint->EndLevel()) return true;
  closing = std::move(own->checkpoint);
  entries_.erase(GetCurrentThreadId());
  return true;
}

OpenCheckpoint* Checkpoints::Current() noexcept {
  const ScopedLock guard(lock_);
  Entry* const own = FindOwn();
  return own == nullptr ? nullptr : own->checkpoint.get();
}

Checkpoints::Entry* Checkpoints::FindOwn() noexcept {
  const auto own = entries_.find(GetCurrentThreadId());
  // The identifier of a thread that has ended is given out again.
  return own == entries_.end() || HasEnded(own->second.thread.Get()) ? nullptr : &own->second;
}

std::map<DWORD, Checkpoints::Entry> Checkpoints::TakeAbandoned() {
  std::map<DWORD, Entry> abandoned;
  const ScopedLock guard(lock_);
  for (auto next = entries_.begin(); next != entries_.end();) {
    const auto current = next++;
    if (HasEnded(current->second.thread.Get())) abandoned.insert(entries_.extract(current));
  }
  return abandoned;
}

ScopedRecording::ScopedRecording(Checkpoints& checkpoints) : checkpoints_(checkpoints) {
  checkpoints_.Begin(kTitleOfOthers);
}

}  // namespace smh
