#include "siblings/guardkit/checkpoints.h"

#include "infra/runtime/exceptions.h"

#include <utility>

namespace smh {

namespace {

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

constinit ModuleGlobal<Checkpoints> g_checkpoints(L"checkpoints");

Checkpoints::~Checkpoints() {
  for (auto& [thread, entry] : entries_) entry.checkpoint->Abandon();
}

void Checkpoints::Begin(std::wstring_view title) {
  for (auto& [thread, entry] : TakeAbandoned()) entry.checkpoint->Abandon();
  {
    const ScopedLock guard(lock_);
    if (Entry* const own = FindOwn()) {
      ++own->depth;
      return;
    }
  }
  Entry entry{ThisThread(), 1, std::make_unique<OpenCheckpoint>(title)};
  const ScopedLock guard(lock_);
  entries_.emplace(GetCurrentThreadId(), std::move(entry));
}

bool Checkpoints::End() noexcept {
  // Closed, which writes to the disk, after the lock was given back.
  std::unique_ptr<OpenCheckpoint> closing;
  const ScopedLock guard(lock_);
  Entry* const own = FindOwn();
  if (own == nullptr) return false;
  if (--own->depth != 0) return true;
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
