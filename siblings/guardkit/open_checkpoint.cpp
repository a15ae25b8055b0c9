#include "siblings/guardkit/open_checkpoint.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/registry_place.h"

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
  file_.Finish(kept_);
  if (hasSteps && !isUndo_) LetGoOfOldest(folder_, blobs_, retention_);
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
    if (const ScopedKey key = OpenPlace(next->second, KEY_QUERY_VALUE)) CheckStatus(RegFlushKey(key.Get()));
    next = written_.erase(next);
  }
}

}  // namespace smh
