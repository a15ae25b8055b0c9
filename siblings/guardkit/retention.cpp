#include "siblings/guardkit/retention.h"

#include "core/contracts/intf_settings.h"
#include "infra/runtime/com_ptr.h"
#include "infra/siblings/exported_instance.h"
#include "infra/siblings/sibling_file.h"
#include "siblings/guardkit/journal_file.h"

#include <numeric>

namespace smh {

namespace {

// The host that the settings belong to, as the library asks for them.
constexpr wchar_t kHostFileName[] = L"startupmanager.exe";

ISettings* FindSettings() {
  // Never freed, as every sibling.
  const HMODULE prefkit = LoadSibling(ISettings::kLibrary);
  return static_cast<ISettings*>(ExportedInstance(prefkit, ISettings::kId));
}

void AddContents(const FileState& state, std::set<ContentHash>& used) {
  for (const StreamState& stream : state.streams) used.insert(stream.hash);
}

// What an undo may need. A journal that cannot be read keeps everything.
std::optional<std::set<ContentHash>> UsedContents(const JournalFolder& folder) {
  std::set<ContentHash> used;
  for (const JournalName& name : ListJournals(folder)) {
    const std::optional<JournalContents> contents = ReadJournal(folder, name);
    if (!contents) return std::nullopt;
    for (const RecordedStep& recorded : contents->steps) {
      if (const auto* const step = std::get_if<FileStep>(&recorded.step)) AddContents(step->before, used);
    }
  }
  return used;
}

std::uint64_t TotalSize(const std::vector<JournalName>& names, const BlobStore& blobs) {
  return std::accumulate(names.begin(), names.end(), blobs.TotalSize(),
                         [](std::uint64_t sum, const JournalName& name) { return sum + name.size; });
}

bool RemoveOldest(const JournalFolder& folder, std::vector<JournalName>& names) {
  for (std::size_t i = 0; i + 1 < names.size(); ++i) {
    if (!names[i].closed || DeleteFileW(folder.File(names[i].FileName()).c_str()) == FALSE) continue;
    names.erase(names.begin() + static_cast<std::ptrdiff_t>(i));
    return true;
  }
  return false;
}

void RemoveUnused(const JournalFolder& folder, const BlobStore& blobs) {
  if (const auto used = UsedContents(folder)) blobs.RemoveAllBut(*used);
}

}  // namespace

Retention ReadRetention() noexcept {
  Retention retention;
  try {
    ISettings* const settings = FindSettings();
    ComPtr<IApplicationSettings> application;
    if (settings == nullptr || FAILED(settings->GetApplicationSettings(application.Put()))) return retention;
    retention.checkpoints = application->GetKeptCheckpoints(kHostFileName);
    retention.bytes = std::uint64_t{application->GetKeptMegabytes(kHostFileName)} << 20;
  } catch (...) {
    // The defaults keep more rather than less.
  }
  return retention;
}

void LetGoOfOldest(const JournalFolder& folder, const BlobStore& blobs, const Retention& retention) noexcept {
  try {
    std::vector<JournalName> names = ListJournals(folder);
    bool removed = false;
    while (names.size() > retention.checkpoints && RemoveOldest(folder, names)) removed = true;
    if (removed) RemoveUnused(folder, blobs);
    while (TotalSize(names, blobs) > retention.bytes && RemoveOldest(folder, names))
      RemoveUnused(folder, blobs);
  } catch (...) {
    // Too much is kept rather than too little.
  }
}

}  // namespace smh
