#include "siblings/guardkit/checkpoints.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/registry_place.h"

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

OpenCheckpoint::OpenCheckpoint(std::unique_ptr<OpenAction>&& own, OpenAction& action, PartHeader part)
    : own_(std::move(own)),
      action_(action),
      isFirst_(action.Id() == 0),
      lock_(action.Folder(), JournalLock::kPatience),
      blobs_(action.Folder()),
      file_(action.BeginPart(std::move(part))),
      firstStep_(file_.StepCount()) {
  if (isFirst_) blobs_.RemoveStagingFiles();
}

OpenCheckpoint::OpenCheckpoint(OpenAction& action, PartHeader part)
    : OpenCheckpoint(nullptr, action, std::move(part)) {}

OpenCheckpoint::OpenCheckpoint(std::wstring_view title)
    : OpenCheckpoint(std::make_unique<OpenAction>(std::wstring(title)), title) {}

OpenCheckpoint::OpenCheckpoint(std::unique_ptr<OpenAction>&& own, std::wstring_view title)
    : OpenCheckpoint(std::move(own), *own, PartHeader{.title = std::wstring(title)}) {}

OpenCheckpoint::~OpenCheckpoint() {
  const bool hasSteps = !steps_.empty();
  if (abandoned_ && hasSteps) {
    action_.AbandonPart();
  } else {
    // One in which everything was refused failed too, though nobody said so.
    const bool failed = hasSteps && !hasDone_ && !action_.IsUndo();
    action_.EndPart({.evenEmpty = kept_,
                     .failed = failed,
                     .evenWithout = !mayStand_,
                     .takenBack = std::move(takenBack_)});
  }
  if (own_ == nullptr) return;
  own_->Finish();
  if (hasSteps) own_->LetGoOfOldest(true);
}

std::uint32_t OpenCheckpoint::Append(const Step& step) {
  steps_.push_back({step});
  // Only what is written has one.
  if (levels_.back().source && IsWriting(step)) steps_.back().source = *levels_.back().source;
  try {
    const std::uint32_t number = file_.AppendStep(step, steps_.back().source);
    mayStand_ = true;
    return number;
  } catch (...) {
    steps_.pop_back();
    throw;
  }
}

void OpenCheckpoint::Mark(std::uint32_t number, LSTATUS status) noexcept {
  file_.AppendMark(number, status);
  RecordedStep& step = steps_[number - firstStep_];
  step.mark = status == ERROR_SUCCESS ? StepMark::kDone : StepMark::kFailed;
  step.status = static_cast<std::uint32_t>(status);
  if (status == ERROR_SUCCESS) hasDone_ = true;
}

void OpenCheckpoint::BeginLevel() {
  const Level& outer = levels_.back();
  levels_.push_back({steps_.size(), hasDone_, mayStand_, outer.takesBack, outer.check, outer.source});
}

bool OpenCheckpoint::EndLevel() noexcept {
  levels_.pop_back();
  return !levels_.empty();
}

void OpenCheckpoint::SetSource(StepSource source) {
  levels_.back().source = std::make_shared<const StepSource>(std::move(source));
}

std::size_t OpenCheckpoint::TakeBack() {
  Level& level = levels_.back();
  for (std::size_t step = level.firstStep; step < steps_.size(); ++step) {
    takenBack_.insert(firstStep_ + static_cast<std::uint32_t>(step));
  }
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
  for (Entry& entry : entries_) {
    if (entry.checkpoint) entry.checkpoint->Abandon();
  }
}

void Checkpoints::Begin(std::wstring_view title) {
  for (Entry& entry : TakeAbandoned()) {
    if (entry.checkpoint) entry.checkpoint->Abandon();
  }
  Entry* const own = own_.Get();
  if (own != nullptr && own->checkpoint) return own->checkpoint->BeginLevel();
  auto checkpoint =
      own != nullptr && own->action
          ? std::make_unique<OpenCheckpoint>(*own->action, PartHeader{.title = std::wstring(title)})
          : std::make_unique<OpenCheckpoint>(title);
  Own().checkpoint = std::move(checkpoint);
}

bool Checkpoints::End() noexcept {
  Entry* const own = own_.Get();
  if (own == nullptr || !own->checkpoint) return false;
  if (own->checkpoint->EndLevel()) return true;
  // Closed, which writes to the disk.
  own->checkpoint.reset();
  if (!own->action) RemoveOwn();
  return true;
}

void Checkpoints::BeginAction(std::wstring title) {
  // Left ones would seem to be at work.
  for (Entry& entry : TakeAbandoned()) {
    if (entry.checkpoint) entry.checkpoint->Abandon();
  }
  if (IsBusy()) RaiseOSError(ERROR_BUSY);
  auto action = std::make_unique<OpenAction>(std::move(title));
  Own().action = std::move(action);
}

std::uint32_t Checkpoints::EndAction() {
  Entry* const own = own_.Get();
  if (own == nullptr || !own->action) RaiseOSError(ERROR_INVALID_FUNCTION);
  if (own->checkpoint) RaiseOSError(ERROR_BUSY);
  const std::unique_ptr<OpenAction> ending = std::move(own->action);
  RemoveOwn();
  const std::uint32_t id = ending->Finish();
  if (id != 0) ending->LetGoOfOldest(false);
  return id;
}

bool Checkpoints::IsBusy() const noexcept {
  return own_.Get() != nullptr;
}

OpenCheckpoint* Checkpoints::Current() const noexcept {
  const Entry* const own = own_.Get();
  return own == nullptr ? nullptr : own->checkpoint.get();
}

Checkpoints::Entry& Checkpoints::Own() {
  if (Entry* const own = own_.Get()) return *own;
  Entry entry{.thread = ThisThread(), .action = nullptr, .checkpoint = nullptr};
  const ScopedLock guard(lock_);
  Entry& own = entries_.emplace_back(std::move(entry));
  try {
    own_.Set(&own);
  } catch (...) {
    entries_.pop_back();
    throw;
  }
  return own;
}

void Checkpoints::RemoveOwn() noexcept {
  const Entry* const own = own_.Get();
  own_.Clear();
  const ScopedLock guard(lock_);
  entries_.remove_if([own](const Entry& entry) { return &entry == own; });
}

std::list<Checkpoints::Entry> Checkpoints::TakeAbandoned() {
  std::list<Entry> abandoned;
  const Entry* const own = own_.Get();
  const ScopedLock guard(lock_);
  for (auto next = entries_.begin(); next != entries_.end();) {
    const auto current = next++;
    if (&*current != own && HasEnded(current->thread.Get())) {
      abandoned.splice(abandoned.end(), entries_, current);
    }
  }
  return abandoned;
}

ScopedRecording::ScopedRecording(Checkpoints& checkpoints) : checkpoints_(checkpoints) {
  checkpoints_.Begin(kTitleOfOthers);
}

}  // namespace smh
