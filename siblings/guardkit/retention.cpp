#include "siblings/guardkit/retention.h"

#include "core/contracts/intf_settings.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"
#include "infra/siblings/exported_instance.h"
#include "infra/siblings/sibling_file.h"
#include "siblings/guardkit/journal_index.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

namespace smh {

namespace {

// The host that the settings belong to, as the library asks for them.
constexpr wchar_t kHostFileName[] = L"startupmanager.exe";

ISettings* FindSettings() {
  // Never freed, as every sibling.
  const HMODULE prefkit = LoadSibling(ISettings::kLibrary);
  return static_cast<ISettings*>(ExportedInstance(prefkit, ISettings::kId));
}

std::uint64_t Now() noexcept {
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  return NumberOf(time);
}

std::uint64_t SizeOf(const std::vector<JournalName>& files) {
  return std::accumulate(files.begin(), files.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const JournalName& name) { return sum + name.size; });
}

DroppedAction RowOf(const IndexedAction& action) {
  return {action.Id(),
          action.header.undoes,
          action.header.time,
          static_cast<std::uint32_t>(action.parts.size()),
          static_cast<std::uint32_t>(action.stepCount),
          Now(),
          action.header.title};
}

// The journal as retention sees it: what each action takes, and what goes with it.
class KeptActions {
 public:
  KeptActions(const JournalFolder& folder, const BlobStore& blobs)
      : index_(IndexJournal(folder)), blobs_(blobs.List()) {
    for (const IndexedAction& action : index_) {
      size_ += SizeOf(action.files);
      for (const ContentHash& hash : action.kept) ++uses_[hash];
      isComplete_ = isComplete_ && action.state != CheckpointState::kDamaged;
      isHeld_ = isHeld_ || action.isHeld;
    }
    for (const auto& [hash, size] : blobs_) {
      if (uses_.contains(hash)) size_ += size;
    }
  }

  const std::vector<IndexedAction>& Index() const noexcept { return index_; }
  std::uint64_t Size() const noexcept { return size_; }

  // Oldest first. `newestToo`: another one will be the newest.
  std::vector<const IndexedAction*> ThatMayGo(bool newestToo) const {
    std::set<std::uint32_t> staying;
    std::uint32_t newest = 0;
    for (const IndexedAction& action : index_) {
      if (action.IsReadable()) newest = action.Id();
      const bool isUnfinished =
          action.state == CheckpointState::kOpen || action.state == CheckpointState::kInterrupted;
      if (isUnfinished) staying.insert(action.header.undoes);
    }
    if (!newestToo) staying.insert(newest);
    std::vector<const IndexedAction*> result;
    for (const IndexedAction& action : index_) {
      const bool isClosed = std::ranges::all_of(
          action.files, [](const JournalName& name) { return name.closed && !name.isFolder; });
      if (isClosed && action.state != CheckpointState::kOpen && !staying.contains(action.Id()))
        result.push_back(&action);
    }
    return result;
  }

  // Counts it as gone.
  void Drop(const IndexedAction& action) {
    size_ -= SizeOf(action.files);
    for (const ContentHash& hash : action.kept) {
      if (--uses_[hash] != 0) continue;
      uses_.erase(hash);
      const auto blob = blobs_.find(hash);
      if (blob == blobs_.end()) continue;
      size_ -= blob->second;
      unused_.push_back(hash);
    }
  }

  // It could not be deleted after all.
  void Keep(const IndexedAction& action) {
    for (const ContentHash& hash : action.kept) ++uses_[hash];
  }

  // Removes what only dropped ones needed. What belongs to nobody goes too, unless there is a damaged one
  // whose it may be.
  void RemoveUnused(const BlobStore& blobs) const {
    // It may need any of them.
    if (isHeld_) return;
    for (const ContentHash& hash : unused_) {
      if (!uses_.contains(hash)) blobs.Remove(hash);
    }
    if (!isComplete_) return;
    for (const auto& [hash, size] : blobs_) {
      if (!uses_.contains(hash)) blobs.Remove(hash);
    }
  }

 private:
  const std::vector<IndexedAction> index_;
  const std::map<ContentHash, std::uint64_t> blobs_;
  std::map<ContentHash, std::size_t> uses_;
  std::vector<ContentHash> unused_;
  std::uint64_t size_ = 0;
  bool isComplete_ = true;
  bool isHeld_ = false;
};

bool IsTooOld(const std::vector<JournalName>& files, std::uint32_t days) {
  constexpr std::uint64_t kDay = 24ull * 60 * 60 * 10'000'000;
  const std::uint64_t now = Now();
  return std::ranges::all_of(files, [&](const JournalName& name) {
    return name.written < now && (now - name.written) / kDay >= days;
  });
}

// Counts them as gone in `kept`.
std::vector<const IndexedAction*> ChooseToDrop(KeptActions& kept, const Retention& retention,
                                               std::uint64_t bytes, bool newestToo) {
  std::vector<const IndexedAction*> chosen;
  for (const IndexedAction* const action : kept.ThatMayGo(newestToo)) {
    if (!IsTooOld(action->files, retention.days) && kept.Size() + bytes <= retention.bytes) continue;
    kept.Drop(*action);
    chosen.push_back(action);
  }
  return chosen;
}

// The first file last: what is left of a deletion that fails is still that action.
bool DeleteFiles(const JournalFolder& folder, const IndexedAction& action) {
  return std::all_of(action.files.rbegin(), action.files.rend(), [&folder](const JournalName& name) {
    return DeleteFileW(folder.File(name.FileName()).c_str()) != FALSE;
  });
}

// Before they are deleted: nothing goes without a row.
void AddDropped(const JournalFolder& folder, const std::vector<const IndexedAction*>& actions,
                bool forgotten) {
  std::vector<DroppedAction> rows = ReadDropped(folder);
  for (const IndexedAction* const action : actions) {
    // It was to go before, and could not be deleted.
    std::erase_if(rows, [action](const DroppedAction& row) { return row.id == action->Id(); });
    rows.push_back(forgotten ? DroppedAction{.id = action->Id(), .forgotten = true} : RowOf(*action));
  }
  WriteDropped(folder, rows);
}

// With contents that belong to nobody.
std::uint64_t SizeByListing(const JournalFolder& folder, const BlobStore& blobs) {
  std::uint64_t size = SizeOf(ListJournals(folder));
  for (const auto& [hash, bytes] : blobs.List()) size += bytes;
  return size;
}

// By its listing alone.
bool MayBeTooMuch(const JournalFolder& folder, const BlobStore& blobs, const Retention& retention) {
  if (SizeByListing(folder, blobs) > retention.bytes) return true;
  return std::ranges::any_of(ListJournals(folder), [&](const JournalName& name) {
    return name.closed && IsTooOld({name}, retention.days);
  });
}

HRESULT ForgetDropped(const JournalFolder& folder, std::uint32_t id) {
  std::vector<DroppedAction> rows = ReadDropped(folder);
  const auto row = std::ranges::find(rows, id, &DroppedAction::id);
  if (row == rows.end() || row->forgotten) return HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
  *row = {.id = id, .forgotten = true};
  WriteDropped(folder, rows);
  return S_OK;
}

// Its undos and theirs: without it they mean nothing.
std::vector<const IndexedAction*> FamilyOf(const std::vector<IndexedAction>& index, std::uint32_t id) {
  std::set<std::uint32_t> ids = {id};
  std::vector<const IndexedAction*> family;
  for (const IndexedAction& action : index) {
    if (action.Id() != id && !ids.contains(action.header.undoes)) continue;
    ids.insert(action.Id());
    family.push_back(&action);
  }
  return family;
}

// `gone` are those of the index that were forgotten before, and get what goes here.
HRESULT ForgetOne(const JournalFolder& folder, KeptActions& kept, std::uint32_t id,
                  std::set<std::uint32_t>& gone) {
  const IndexedAction* const action = FindById(kept.Index(), id);
  if (action == nullptr) return ForgetDropped(folder, id);
  const std::uint32_t undoes = action->header.undoes;
  const bool isUndone = FindById(kept.Index(), undoes) != nullptr && !gone.contains(undoes);
  if (undoes != 0 && isUndone) return IJournal::kWrongState;
  std::vector<const IndexedAction*> family = FamilyOf(kept.Index(), id);
  std::erase_if(family, [&](const IndexedAction* each) { return gone.contains(each->Id()); });
  if (std::ranges::any_of(family,
                          [](const IndexedAction* each) { return each->state == CheckpointState::kOpen; })) {
    return HRESULT_FROM_WIN32(ERROR_BUSY);
  }
  AddDropped(folder, family, true);
  DWORD error = ERROR_SUCCESS;
  // The newest first: an action without its undo would seem to stand.
  for (auto each = family.rbegin(); each != family.rend() && error == ERROR_SUCCESS; ++each) {
    if (!DeleteFiles(folder, **each)) error = GetLastError();
    if (error != ERROR_SUCCESS) break;
    kept.Drop(**each);
    gone.insert((*each)->Id());
  }
  return HRESULT_FROM_WIN32(error);
}

}  // namespace

Retention ReadRetention() noexcept {
  Retention retention;
  try {
    ISettings* const settings = FindSettings();
    ComPtr<IApplicationSettings> application;
    if (settings == nullptr || FAILED(settings->GetApplicationSettings(application.Put()))) return retention;
    retention.days = application->GetKeptDays(kHostFileName);
    retention.bytes = std::uint64_t{application->GetKeptMegabytes(kHostFileName)} << 20;
  } catch (...) {
    // The defaults keep more rather than less.
  }
  return retention;
}

void LetGoOfOldest(const JournalFolder& folder, const BlobStore& blobs, const Retention& retention) noexcept {
  try {
    if (!MayBeTooMuch(folder, blobs, retention)) return;
    KeptActions kept(folder, blobs);
    const std::vector<const IndexedAction*> chosen = ChooseToDrop(kept, retention, 0, false);
    if (!chosen.empty()) {
      AddDropped(folder, chosen, false);
      for (const IndexedAction* const action : chosen) {
        if (!DeleteFiles(folder, *action)) kept.Keep(*action);
      }
    }
    kept.RemoveUnused(blobs);
  } catch (...) {
    // Too much is kept rather than too little.
  }
}

std::vector<IndexedAction> WouldLetGoOf(const JournalFolder& folder, const Retention& retention,
                                        std::uint64_t bytes) {
  const BlobStore blobs(folder);
  // Those that go for their age go anyway.
  if (SizeByListing(folder, blobs) + bytes <= retention.bytes) return {};
  KeptActions now(folder, blobs);
  KeptActions then = now;
  std::set<std::uint32_t> anyway;
  for (const IndexedAction* const action : ChooseToDrop(now, retention, 0, false))
    anyway.insert(action->Id());
  std::vector<IndexedAction> result;
  for (const IndexedAction* const action : ChooseToDrop(then, retention, bytes, true)) {
    if (!anyway.contains(action->Id())) result.push_back(*action);
  }
  return result;
}

void ForgetActions(const JournalFolder& folder, std::span<const std::uint32_t> ids,
                   std::span<HRESULT> results) {
  const BlobStore blobs(folder);
  KeptActions kept(folder, blobs);
  std::set<std::uint32_t> gone;
  for (std::size_t i = 0; i < ids.size(); ++i) results[i] = ForgetOne(folder, kept, ids[i], gone);
  kept.RemoveUnused(blobs);
}

}  // namespace smh
