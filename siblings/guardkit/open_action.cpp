#include "siblings/guardkit/open_action.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/dropped_list.h"
#include "siblings/guardkit/journal_index.h"

#include <utility>

namespace smh {

namespace {

// Leaves a part as much as that of its file's greatest size.
constexpr std::uint64_t kFileIsFull = kLargestJournal / 4;

constexpr DWORD kPatienceToDrop = 1'000;

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

}  // namespace

OpenAction::OpenAction(std::wstring title, std::uint32_t undoes, std::vector<std::uint32_t> chosen)
    : title_(std::move(title)), undoes_(undoes), chosen_(std::move(chosen)) {}

OpenAction::~OpenAction() {
  if (finished_) return;
  for (JournalFile& file : files_) file.Abandon();
}

const JournalFolder& OpenAction::Folder() {
  if (!folder_) folder_.emplace(JournalFolder::Open());
  return *folder_;
}

void OpenAction::AddFile() {
  // Before anything is changed: that could bring about what theirs did not.
  if (files_.empty()) CloseFailed(Folder());
  CheckpointHeader header;
  header.id = NextJournalId(ListJournals(Folder()), ReadDropped(Folder()));
  header.undoes = undoes_;
  header.time = Now();
  header.process = GetCurrentProcessId();
  header.processStarted = StartOfThisProcess();
  header.user = CurrentUserSid();
  header.title = title_.empty() ? firstTitle_ : title_;
  header.continues = Id();
  if (files_.empty()) header.chosen = chosen_;
  files_.emplace_back(Folder(), header);
}

JournalFile& OpenAction::BeginPart(PartHeader part) {
  if (files_.empty()) firstTitle_ = part.title;
  if (files_.empty() || File().Size() >= kFileIsFull) AddFile();
  RenamePart(std::move(part));
  return File();
}

void OpenAction::RenamePart(PartHeader part) {
  part.number = PartCount() + 1;
  if (part.time == 0) part.time = Now();
  File().BeginPart(part);
}

std::uint32_t OpenAction::PartCount() const noexcept {
  std::uint32_t count = 0;
  for (const JournalFile& file : files_) count += file.PartCount();
  return count;
}

void OpenAction::EndPart(const JournalFile::Ending& ending) noexcept {
  if (!ending.failed && (ending.evenEmpty || File().HasPartSteps())) hasDone_ = true;
  if (!File().EndPart(ending)) abandoned_ = true;
}

void OpenAction::AbandonPart() noexcept {
  if (File().HasPartSteps()) abandoned_ = true;
}

std::uint32_t OpenAction::Finish() noexcept {
  finished_ = true;
  std::uint32_t next = 0;
  // The first one last: its end is the action's.
  for (auto file = files_.rbegin(); file != files_.rend(); ++file) {
    const bool isLeft = file->PartCount() != 0 && !file->IsWorthless();
    const std::uint32_t id = isLeft ? file->Id() : next;
    if (abandoned_ && !file->IsWorthless()) {
      file->Abandon();
    } else {
      file->Finish(hasDone_ ? JournalEnd::kDone : JournalEnd::kFailed, next);
    }
    next = id;
  }
  return next;
}

void OpenAction::LetGoOfOldest(bool lockHeld) noexcept {
  try {
    std::optional<JournalLock> lock;
    if (!lockHeld) lock.emplace(Folder(), kPatienceToDrop);
    smh::LetGoOfOldest(Folder(), BlobStore(Folder()), retention_);
  } catch (...) {
    // The next action tries it again.
  }
}

}  // namespace smh
